#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <functional>
#include <vector>

class QFormLayout;
class QTabWidget;
class QlumSettingsModel;

/// The settings that users change, on pages by subject. Nothing is stored before OK.
class QlumSettingsDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumSettingsDialog(QlumSettingsModel* settings, QWidget* parent = nullptr);

    void accept() override;

private:
    void addConnectionPage();
    void addCertificatePage();
    void addBrowsePage();
    void addLogPage();
    void addTracePage();
    void addUpdatePage();

    QFormLayout* addPage(const QString& title, const QString& name);
    void addFlag(QFormLayout* form, const char* key, const QString& label);
    void addNumber(QFormLayout* form, const char* key, const QString& label, int minimum, int maximum,
                   const QString& suffix = QString());
    void addChoice(QFormLayout* form, const char* key, const QString& label, const QStringList& values);
    void addText(QFormLayout* form, const char* key, const QString& label);
    void addFile(QFormLayout* form, const char* key, const QString& label);
    void prepare(QWidget* field, const char* key, const QString& label);
    void sltRestoreDefaults();

    struct Field
    {
        QString key;
        std::function<QVariant()> get;
        std::function<void(const QVariant&)> set;
        QVariant initial;
    };

    void addField(const char* key, std::function<QVariant()> get, std::function<void(const QVariant&)> set);

    QlumSettingsModel* m_settings;
    QTabWidget* m_pages;
    std::vector<Field> m_fields;
};
