#pragma once
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

#include <vector>

class QLabel;
class QLineEdit;
class QListWidget;
class QStackedWidget;
class QlumMessageBar;
class QlumSettingsForm;
class QlumSettingsModel;

/// The settings that users change, on the pages that the application and its tools have registered. Nothing
/// is stored before OK.
class QlumSettingsDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    explicit QlumSettingsDialog(QlumSettingsModel* settings, QWidget* parent = nullptr);

    /// Stays open when something that was entered cannot be.
    void accept() override;
    /// Brings the field of the setting into sight and gives it the keyboard; nothing for an unknown key.
    void showSetting(const QString& key);

private:
    QWidget* makePages();
    QWidget* makeButtons();
    void sltSearch(const QString& text);
    void sltEdited();

    QlumSettingsModel* m_settings;
    QLineEdit* m_search;
    QListWidget* m_list;
    QStackedWidget* m_pages;
    QLabel* m_waits;
    QlumMessageBar* m_messages;
    std::vector<QlumSettingsForm*> m_forms; ///< in the order of the list
};
