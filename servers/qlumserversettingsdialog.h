#pragma once
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumtlstrustquestion.h>
#include <uawidgets/qlumbasewidget.h>

#include <QByteArray>
#include <QEvent>
#include <QObject>
#include <QString>
#include <QVector>
#include <QWidget>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSortFilterProxyModel;
class QTreeView;
class QlumConnectDialogs;
class QlumEndpointFetcher;
class QlumEndpointModel;
class QlumIdentityWidget;
class QlumRoleBox;

/// Adds a server or changes its connection settings: asks the server for its endpoints without blocking, and
/// lets the user choose one and who to be there.
class QlumServerSettingsDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// "Add Server" for settings without a URL, else "Server Settings".
    explicit QlumServerSettingsDialog(const QlumDiscoverySetting& setting = QlumDiscoverySetting(),
                                      QWidget* parent = nullptr);
    /// With a fetcher of one's own, which the dialog takes.
    QlumServerSettingsDialog(const QlumDiscoverySetting& setting, QlumEndpointFetcher* fetcher,
                             QWidget* parent);
    ~QlumServerSettingsDialog() override;

    /// What the dialog holds now; meaningful after it was accepted.
    [[nodiscard]] QlumDiscoverySetting discoverySetting() const;

    /// Keeps the chosen endpoint in sight when the list changes its size.
    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void accept() override;

private slots:
    void sltFetchEndpoints();
    void sltEndpointsFetched(unsigned int status, const QVector<QlumEndpoint>& endpoints);
    void sltCertificateRefused(unsigned int status, const QByteArray& certificate);
    void sltCertificateTrusted();
    void sltUpdateControls();

private:
    QWidget* createEndpointGroup();
    QWidget* createEndpointView();
    QWidget* createSessionGroup();
    QWidget* createIdentityGroup();
    void createButtons();
    void fill();
    void clearEndpoints();
    void suggestDisplayName();
    void selectEndpoint(int row);
    /// The chosen row of the model; -1 when none is.
    [[nodiscard]] int currentRow() const;
    void setMessage(const QString& text);

    QlumDiscoverySetting m_setting;
    QString m_askedUrl;      ///< from which the listed endpoints are; empty when they are the stored one
    QString m_suggestedName; ///< replaced when another endpoint is chosen, unless the user wrote a name
    QlumConnectDialogs* m_prompts;
    QlumTlsTrustQuestion m_tlsQuestion;
    QlumEndpointFetcher* m_fetcher;
    QlumEndpointModel* m_endpoints;
    QSortFilterProxyModel* m_sorted;
    QLineEdit* m_url = nullptr;
    QLabel* m_urlHint = nullptr;
    QPushButton* m_fetch = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_message = nullptr;
    QTreeView* m_endpointView = nullptr;
    QLineEdit* m_displayName = nullptr;
    QLineEdit* m_sessionName = nullptr;
    QlumRoleBox* m_role = nullptr;
    QlumIdentityWidget* m_identity = nullptr;
    QCheckBox* m_storePassword = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
};
