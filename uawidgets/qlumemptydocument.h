#pragma once
#include <app/api/qlumdocumentwidgetinterface.h>

#include <QMap>
#include <QSettings>
#include <QString>
#include <QWidget>

/// A document or dock page that has nothing to show and says so, with what the user can do instead.
class QlumEmptyDocument : public QWidget, public QlumDocumentWidgetInterface
{
    Q_OBJECT
    Q_INTERFACES(QlumDocumentWidgetInterface)
public:
    /// Plain texts: what is missing, and what the user can do.
    explicit QlumEmptyDocument(const QString& headline, const QString& hint, QWidget* parent = nullptr);

    void saveSettings(QSettings&) override {}
    void loadSettings(QSettings&, const QMap<int, int>&) override {}
};
