// Lets the user look after the certificate store.
#pragma once
#include <app/api/qlumactiontable.h>
#include <certificates/qlumcertificatestoreconfiguration.h>

#include <QIcon>
#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <array>
#include <memory>

class QAction;
class QPushButton;
class QTabWidget;
class QVBoxLayout;
class QlumCertificatePage;
class QlumCrlPage;
class QlumJobPool;
class QlumNewCertificateDlg;
class QlumStorePage;
class QlumViewState;

/// Trusted, rejected and issuer certificates, their revocation lists and the application's own certificate.
/// Every change is made in the files at once; the view is read again after it.
class QlumCertificateManager : public QWidget
{
    Q_OBJECT
public:
    /// Name and organisation are proposed for a new own certificate; canProtectKey offers a password for its
    /// key.
    QlumCertificateManager(const QString& applicationName, const QString& organization,
                           const QlumCertificateStoreConfiguration& configuration, const QIcon& icon,
                           bool canProtectKey = true, QWidget* parent = nullptr);
    ~QlumCertificateManager() override;

    /// Shows the stores of another configuration.
    void setPaths(const QlumCertificateStoreConfiguration& configuration);
    /// By QlumCertificateModel::CertStoreType and QlumCRLModel::CRLStoreType; null before setPaths.
    [[nodiscard]] QlumCertificatePage* certificatePage(int store) const;
    [[nodiscard]] QlumCrlPage* crlPage(int store) const;

public slots:
    /// Reads all stores again. Small ones are there when it returns, large ones arrive in portions.
    void sltReload();

signals:
    /// A new own certificate and key have been written.
    void sigNewCertificateCreated();

private slots:
    void sltTrust();
    void sltReject();
    void sltOpen();
    void sltDelete();
    void sltCopyThumbprint();
    void sltCopyApplicationCertificate();
    void sltCreateApplicationCertificate();
    void sltOpenOwnLocation();
    void sltUpdateActions();

private:
    QPushButton* buttonFor(QAction* action);
    void createActions();
    [[nodiscard]] QWidget* createTab(QTabWidget* stores, const QList<QAction*>& actions);
    void createLayout();
    void createPages();
    void removePages();
    void addPage(QlumStorePage* page, const QList<QAction*>& actions);
    void showStores(QTabWidget* tabs, const std::array<QlumStorePage*, 3>& pages);
    void reloadPages(const QList<QlumStorePage*>& pages);
    [[nodiscard]] std::array<QlumStorePage*, 3> certificatePages() const;
    [[nodiscard]] std::array<QlumStorePage*, 3> crlPages() const;
    [[nodiscard]] QlumStorePage* currentPage() const;

    void move(const QString& from, const QString& to, const QString& failure);
    void addFiles(QlumStorePage* page, const QStringList& paths);
    [[nodiscard]] bool ask(const QString& title, const QString& text);
    void tell(int icon, const QString& title, const QString& text);
    void store(const QlumNewCertificateDlg& dialog);

    QString m_applicationName;
    QString m_organization;
    QlumCertificateStoreConfiguration m_store;
    QIcon m_icon;
    bool m_canProtectKey;

    QlumViewState* m_state;
    QTabWidget* m_kinds;
    QTabWidget* m_certificateTabs;
    QTabWidget* m_listTabs;
    std::array<QlumCertificatePage*, 3> m_certificates{};
    std::array<QlumCrlPage*, 3> m_lists{};
    QlumActionTable m_actions;
    std::unique_ptr<QlumJobPool> m_pool; ///< last: it ends before what its jobs report to
};
