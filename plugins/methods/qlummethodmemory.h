#pragma once
#include <QMap>
#include <QPair>
#include <QSettings>
#include <QString>
#include <QVariant>

/// What the user gave to methods when he last called them, by server and method; kept with the project. GUI
/// thread.
class QlumMethodMemory
{
public:
    /// A server and the text of a method's node id, with the URI of its namespace.
    using Key = QPair<unsigned int, QString>;

    /// Values are kept as texts. Invalid when there is none.
    [[nodiscard]] QVariant value(const Key& method, const QString& name) const;
    /// What is too long to be worth it, or no text, is not kept, nor is what was there before.
    void setValue(const Key& method, const QString& name, const QVariant& value);
    /// Forgets what belongs to a server.
    void removeServer(unsigned int serverId);

    /// Into the group that is open.
    void save(QSettings& settings) const;
    /// In place of what is there; servers get the ids that the map gives them.
    void load(QSettings& settings, const QMap<int, int>& serverIdMap);

private:
    QMap<Key, QMap<QString, QString>> m_methods;
};
