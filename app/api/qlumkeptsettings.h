#pragma once
#include <QMap>
#include <QSettings>
#include <QVariantMap>

/// What a project holds for a document that nobody here can open, kept so that saving writes it again.
class QlumKeptSettings
{
public:
    /// Takes the open group with all below it; ids of servers are translated.
    void read(QSettings& settings, const QMap<int, int>& serverIdMap);
    /// Into the open group.
    void write(QSettings& settings) const;

private:
    QVariantMap m_values; // by their keys in the group
};
