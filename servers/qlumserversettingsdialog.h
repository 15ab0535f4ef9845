#pragma once
#include <servers/qlumdiscoverylookup.h>
#include <servers/qlumdiscoverysetting.h>
#include <uawidgets/qlumbasewidget.h>

#include <QString>
#include <QWidget>

class QCheckBox;
class QDialogButtonBox;
class QFormLayout;
class QLineEdit;
class QPushButton;
class QTabWidget;
class QlumAdvancedPage;
class QlumConnectDialogs;
class QlumConnectionTest;
class QlumEndpointFetcher;
class QlumIdentityWidget;
class QlumMessageBar;
class QlumRoleBox;
class QlumServerPage;
class QlumSessionPage;

/// Adds a server or changes its connection settings: finds it and its endpoints without blocking, and lets
/// the user choose one, who to be there and what to ask for. The settings can be tried before they are
/// accepted.
class QlumServerSettingsDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// "Add Server" for settings without a URL, else "Server Settings".
    explicit QlumServerSettingsDialog(const QlumDiscoverySetting& setting = QlumDiscoverySetting(),
                                      QWidget* parent = nullptr);
    /// With a fetcher of one's own, which the dialog takes, and with one's own answers about other servers.
    QlumServerSettingsDialog(const QlumDiscoverySetting& setting, QlumEndpointFetcher* fetcher,
                             QlumDiscoveryLookup::Asker asker, QWidget* parent);
    ~QlumServerSettingsDialog() override;

    /// What the dialog holds now; meaningful after it was accepted.
    [[nodiscard]] QlumDiscoverySetting discoverySetting() const;

public slots:
    /// Does nothing while the settings are incomplete.
    void accept() override;

private slots:
    void sltTest();
    void sltTested(bool isGood, const QString& what, const QString& why);
    void sltUpdateControls();

private:
    QWidget* createServerPage(QlumEndpointFetcher* fetcher, QlumDiscoveryLookup::Asker asker);
    QWidget* createIdentityPage();
    void addPage(QWidget* page, const QString& title);
    void createButtons();
    void fill();
    void takeEndpoint();
    void suggestDisplayName();
    [[nodiscard]] bool isComplete() const;

    QlumDiscoverySetting m_setting;
    QString m_suggestedName; ///< replaced when another endpoint is chosen, unless the user wrote a name
    QString m_shownEndpoint; ///< the pages show it
    QlumConnectionTest* m_test;
    QlumConnectDialogs* m_prompts;
    QTabWidget* m_pages;
    QlumServerPage* m_server = nullptr;
    QFormLayout* m_general = nullptr;
    QLineEdit* m_displayName = nullptr;
    QlumRoleBox* m_role = nullptr;
    QlumAdvancedPage* m_advanced = nullptr;
    QlumIdentityWidget* m_identity = nullptr;
    QCheckBox* m_storePassword = nullptr;
    QlumSessionPage* m_session = nullptr;
    QlumMessageBar* m_message;
    QPushButton* m_testButton = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
};
