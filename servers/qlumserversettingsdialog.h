#pragma once
#include <servers/qlumdiscoverysetting.h>
#include <uawidgets/qlumbasewidget.h>

class QCheckBox;
class QComboBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTreeView;
class QlumEndpointFetcher;
class QlumEndpointModel;

/// Adds a server or changes its connection settings: asks the server for its endpoints without blocking, and
/// lets the user choose one and who to be there.
class QlumServerSettingsDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// "Add Server" for settings without a URL, else "Server Settings".
    explicit QlumServerSettingsDialog(const QlumDiscoverySetting& setting = QlumDiscoverySetting(),
                                      QWidget* parent = nullptr);
    ~QlumServerSettingsDialog() override;

    /// What the dialog holds now; meaningful after it was accepted.
    [[nodiscard]] QlumDiscoverySetting discoverySetting() const;

public slots:
    void accept() override;

private slots:
    void sltFetchEndpoints();
    void sltEndpointsFetched(const QString& error, const QVector<QlumEndpoint>& endpoints);
    void sltUpdateControls();

private:
    void createWidgets();
    QWidget* createEndpointPage();
    QWidget* createIdentityPage();
    void fill(const QlumDiscoverySetting& setting);
    [[nodiscard]] QlumEndpoint currentEndpoint() const;
    void showMessage(const QString& text);

    QlumDiscoverySetting m_setting;
    QlumEndpointFetcher* m_fetcher;
    QlumEndpointModel* m_endpoints;
    QLineEdit* m_url = nullptr;
    QPushButton* m_fetch = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_message = nullptr;
    QTreeView* m_endpointView = nullptr;
    QLineEdit* m_displayName = nullptr;
    QLineEdit* m_sessionName = nullptr;
    QComboBox* m_tokenType = nullptr;
    QLineEdit* m_userName = nullptr;
    QCheckBox* m_storePassword = nullptr;
    QLineEdit* m_certificateFile = nullptr;
    QLineEdit* m_privateKeyFile = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
};
