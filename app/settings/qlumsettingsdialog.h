#pragma once
#include <app/api/qlumsettingsregistry.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <vector>

class QFormLayout;
class QLineEdit;
class QTabWidget;
class QlumSettingsModel;

/// The settings that users change, on the pages that the application and its tools have registered. Nothing
/// is stored before OK.
class QlumSettingsDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumSettingsDialog(QlumSettingsModel* settings, QWidget* parent = nullptr);

    void accept() override;
    /// Brings the field of the setting into sight and gives it the keyboard; nothing for an unknown key.
    void showSetting(const QString& key);

private:
    using Row = QlumSettingRow;

    void addPage(const QlumSettingsPage& page);
    void addRow(QFormLayout* form, const Row& row);
    void addNote(QFormLayout* form, const Row& row);
    void addFlag(QFormLayout* form, const Row& row);
    void addNumber(QFormLayout* form, const Row& row);
    void addChoice(QFormLayout* form, const Row& row);
    void addText(QFormLayout* form, const Row& row);
    void addFile(QFormLayout* form, const Row& row);
    void addLineField(const QString& key, QLineEdit* edit);
    void sltRestoreDefaults();

    struct Field
    {
        QString key;
        std::function<QVariant()> get;
        std::function<void(const QVariant&)> set;
        QVariant initial;
    };

    void addField(const QString& key, std::function<QVariant()> get,
                  std::function<void(const QVariant&)> set);

    QlumSettingsModel* m_settings;
    QTabWidget* m_pages;
    std::vector<Field> m_fields;
};
