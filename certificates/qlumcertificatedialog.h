#pragma once
#include <certificates/qlumcertificatechainmodel.h>
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificateerror.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uawidgets/qlumbasewidget.h>

#include <QAction>
#include <QList>
#include <QModelIndex>
#include <QString>
#include <QStringList>
#include <QWidget>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QListWidget;
class QPushButton;
class QResizeEvent;
class QTreeView;
class QVBoxLayout;
class QlumCertificateDetailsModel;

/// Shows a server's certificates with every finding and lets the user decide: trust, accept once, or cancel.
/// Modal. Accepted means that the connection may go on with exactly the bytes given to the constructor.
class QlumCertificateDialog : public QlumBaseWidget
{
    Q_OBJECT
public:
    /// For a secure channel. Validates at once; security must outlive the dialog.
    QlumCertificateDialog(const QString& serverName, const QString& applicationUri, const QString& serverUrl,
                          const UaByteString& certificate, UaClientSdk::SessionSecurityInfo* security,
                          QWidget* parent = nullptr);
    /// For a TLS connection that ended with this status. Accepted means that the certificate is to be
    /// trusted; who shows the dialog stores it.
    QlumCertificateDialog(const QString& serverName, const UaByteString& certificate,
                          const UaStatusCode& status, QWidget* parent = nullptr);

    /// The same, with every finding about the certificate at that URL. What may be overruled there has a box
    /// of its own: with it ticked, Accepted also overrules that, for this server and this certificate.
    QlumCertificateDialog(const QString& serverName, const QString& serverUrl,
                          const UaByteString& certificate, const UaStatusCode& status,
                          QWidget* parent = nullptr);

    /// Of TLS: whether there is something to overrule, and nothing that would still stand.
    [[nodiscard]] bool isOverrulable() const;
    [[nodiscard]] QlumCertificateError validationError() const { return m_model->validationError(); }
    [[nodiscard]] UaStatusCode validationResult() const { return m_model->validationResult(); }
    /// All findings about the chain, each with the name of its certificate, for the log.
    [[nodiscard]] QStringList findings() const { return m_model->findings(); }

    /// The user declines. A certificate that nobody trusts stays in the rejected folder.
    void reject() override;
    void accept() override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QlumCertificateDialog(const QString& serverName, QlumCertificateChainModel* model,
                          UaClientSdk::SessionSecurityInfo* security, QWidget* parent);

    [[nodiscard]] bool isBlocked() const;
    [[nodiscard]] bool hasOverrulable() const;
    [[nodiscard]] QString overruleText() const;
    [[nodiscard]] bool isTls() const { return m_security == nullptr; }
    void createHeader(QVBoxLayout* layout);
    void createChain();
    void createDetails();
    void createButtons(QVBoxLayout* layout);
    void createActions();

    void update();
    void showResult();
    void showSelected();
    void showFindings(const QlumCertificateChainNode* node);
    void fitFindings();
    void updateButtons();
    void trust();
    void trust(const UaPkiCertificate& certificate);
    void trustIssuer();
    void importList();
    /// Why it was not added; empty when it was.
    [[nodiscard]] QString addList(const QString& path) const;
    void saveAs();
    void copyThumbprint() const;
    void showWholeValue(const QModelIndex& index);
    bool write(const UaPkiCertificate& certificate, const QString& path);
    [[nodiscard]] UaPkiCertificate selectedCertificate() const;
    [[nodiscard]] static QString captionFor(bool tls, bool bad);

    const QString m_serverName;
    QString m_serverUrl; ///< of TLS; empty: unknown
    QlumCertificateChainModel* m_model;
    UaClientSdk::SessionSecurityInfo* const m_security;
    QlumCertificateDetailsModel* m_details;
    QLabel* m_icon = nullptr;
    QLabel* m_caption = nullptr;
    QLabel* m_result = nullptr;
    QLabel* m_advice = nullptr;
    QLabel* m_thumbprint = nullptr;
    QTreeView* m_chainView = nullptr;
    QList<QAction*> m_certificateActions; ///< for the selected certificate
    QListWidget* m_findings = nullptr;
    QTreeView* m_detailsView = nullptr;
    QCheckBox* m_acceptOnce = nullptr;
    QCheckBox* m_overrule = nullptr;
    QPushButton* m_trust = nullptr;
    QPushButton* m_trustIssuer = nullptr;
    QPushButton* m_importList = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
};
