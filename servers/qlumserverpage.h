#pragma once
#include <servers/qlumdiscoverylookup.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumtlstrustquestion.h>

#include <QByteArray>
#include <QEvent>
#include <QObject>
#include <QString>
#include <QVector>
#include <QWidget>

class QBoxLayout;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QSortFilterProxyModel;
class QTreeView;
class QlumConnectDialogs;
class QlumDiscoveryView;
class QlumEndpointFetcher;
class QlumEndpointModel;

/// Where the server is and which of its endpoints is used: the servers that can be found, an address, and the
/// endpoints of the server that was asked. Nothing here blocks; a question that is under way can be
/// cancelled.
class QlumServerPage : public QWidget
{
    Q_OBJECT
public:
    /// Null: a fetcher and an asker that ask the servers themselves. Takes the fetcher.
    QlumServerPage(QlumConnectDialogs& prompts, QlumEndpointFetcher* fetcher,
                   QlumDiscoveryLookup::Asker asker, QWidget* parent = nullptr);
    ~QlumServerPage() override;

    /// The endpoint that is used so far, which the list shows until the server is asked.
    void setStored(const QlumEndpoint& endpoint);
    /// Opens the servers of this machine.
    void lookAtLocal();

    /// What the user has entered, completed.
    [[nodiscard]] QString url() const;
    /// Whether that can be dialled.
    [[nodiscard]] bool isUrlUsable() const;
    [[nodiscard]] bool isBusy() const;
    [[nodiscard]] bool hasEndpoint() const { return currentRow() >= 0; }
    /// The chosen one as the server names it; when none is, the stored one, else nothing but the address.
    [[nodiscard]] QlumEndpoint endpoint() const;
    /// Where it is reached, by what the user has entered.
    [[nodiscard]] QString dialledUrl() const;

    /// Keeps the chosen endpoint in sight when the list changes its size.
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// Another address or endpoint, or the page is busy or no longer.
    void changed();
    /// The user has chosen an endpoint for good.
    void accepted();

private slots:
    void sltFetchEndpoints();
    void sltEndpointsFetched(unsigned int status, const QVector<QlumEndpoint>& endpoints);
    void sltCertificateRefused(unsigned int status, const QByteArray& certificate);
    void sltCertificateTrusted();
    void sltUpdateControls();

private:
    [[nodiscard]] QBoxLayout* createUrlRow();
    void createEndpointView();
    /// Says so where the server names another host than the one that has answered.
    void addHostNote();
    void clearEndpoints();
    void selectEndpoint(int row);
    /// The chosen row of the model; -1 when none is.
    [[nodiscard]] int currentRow() const;
    void setMessage(const QString& text);
    void setOutcome(bool isGood, const QString& text);

    QlumEndpoint m_stored;
    QString m_askedUrl; ///< from which the listed endpoints are; empty when they are the stored one
    QlumTlsTrustQuestion m_tlsQuestion;
    QlumEndpointFetcher* m_fetcher;
    QlumEndpointModel* m_endpoints;
    QSortFilterProxyModel* m_sorted;
    QlumDiscoveryView* m_discovery;
    QLineEdit* m_url = nullptr;
    QLabel* m_urlHint = nullptr;
    QPushButton* m_fetch = nullptr;
    QTreeView* m_endpointView = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_message = nullptr;
};
