#pragma once
#include <app/api/qlumdocumentwidgetinterface.h>
#include <app/api/qlumkeptsettings.h>

#include <QMap>
#include <QSettings>
#include <QString>
#include <QWidget>

/// A document or dock page that has nothing to show and says so, with what the user can do instead. What a
/// project keeps of a document goes through it unchanged, but for the ids of servers.
class QlumEmptyDocument : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// Plain texts: what is missing, and what the user can do.
    explicit QlumEmptyDocument(const QString& headline, const QString& hint, QWidget* parent = nullptr);

    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

private:
    QlumKeptSettings m_kept;
};
