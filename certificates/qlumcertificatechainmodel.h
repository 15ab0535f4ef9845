#pragma once
#include <certificates/qlumcertificateadvice.h>
#include <certificates/qlumcertificatechainnode.h>
#include <certificates/qlumcertificatechecks.h>
#include <certificates/qlumcertificateerror.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uawidgets/models/qlumtreemodel.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>
#include <set>
#include <vector>

class UaPkiCertificateStore;

Q_DECLARE_METATYPE(UaPkiCertificate)

/// A chain has no branches.
template <>
struct QlumTreeAccess<QlumCertificateChainNode>
{
    using Node = QlumCertificateChainNode;
    static Node* parent(const Node& node) { return node.parent(); }
    static Node* child(const Node& node, int row) { return row == 0 ? node.child() : nullptr; }
    static int childCount(const Node& node) { return node.child() ? 1 : 0; }
    static int row(const Node&) { return 0; }
};

/// A server's certificate with those that it was issued by, the root at the top, and what the validation says
/// of them. Empty until update() is called. GUI thread; update() reads the trust folders, which may take a
/// while.
class QlumCertificateChainModel : public QlumTreeModel<QlumCertificateChainNode>,
                                  public UaClientSdk::CertificateValidationCallback
{
    Q_OBJECT
public:
    enum Column { NameColumn, TrustStatusColumn, ColumnCount };
    enum Role { TrustStatusRole = 33, CertificateRole = 34 };

    /// Of a secure channel. security says which folders and which policy count, and must outlive the model.
    QlumCertificateChainModel(const QString& serverUrl, const QString& applicationUri,
                              const UaByteString& certificate, UaClientSdk::SessionSecurityInfo* security,
                              QObject* parent = nullptr);
    /// Of a TLS connection, which has judged the certificate already.
    QlumCertificateChainModel(const UaByteString& certificate, const UaStatusCode& status,
                              QObject* parent = nullptr);
    /// The same, with all that is wrong with it at the server of the URL, by the folders of the application.
    QlumCertificateChainModel(const QString& serverUrl, const UaByteString& certificate,
                              const UaStatusCode& status, QObject* parent = nullptr);
    ~QlumCertificateChainModel() override;

    /// Reads the folders again and validates anew.
    void update();
    /// Of the server's certificate: good, or the reason why not that decides.
    [[nodiscard]] UaStatusCode validationResult() const { return m_result; }
    /// What is to be told first: the worst of all that stands against the chain; good when nothing does.
    [[nodiscard]] UaStatusCode headline() const { return qlumWorstCertificateStatus(m_found); }
    [[nodiscard]] bool isFound(OpcUa_StatusCode status) const;
    /// The status of each thing that stands against the chain.
    [[nodiscard]] const std::vector<OpcUa_StatusCode>& found() const { return m_found; }
    /// The worst that was found in the chain, an error when the result is bad.
    [[nodiscard]] QlumCertificateError validationError() const { return m_severity; }
    /// All findings, each with the name of its certificate, for the log.
    [[nodiscard]] QStringList findings() const;
    /// The bytes that are judged here; they may hold a whole chain.
    [[nodiscard]] UaByteString serverCertificate() const { return m_certificate; }
    [[nodiscard]] bool isServerCertificate(const QModelIndex& index) const;
    /// Invalid while there is no certificate.
    [[nodiscard]] QModelIndex serverCertificateIndex() const { return indexOf(m_server); }
    /// Null for an invalid index. Good until the next update().
    [[nodiscard]] const QlumCertificateChainNode* node(const QModelIndex& index) const
    {
        return nodeAt(index);
    }
    [[nodiscard]] const QlumCertificateChainNode* root() const { return m_root.get(); }

    int verificationError(UaClientSdk::SessionSecurityInfo* security, void* context,
                          const UaByteString& certificate, unsigned int errorCode,
                          unsigned int depth) override;

protected:
    [[nodiscard]] QVariant cell(const QlumCertificateChainNode& one, int column, int role) const override;

private:
    using Thumbprints = std::set<UaByteString>;
    struct Lists
    {
        Thumbprints trusted;
        Thumbprints issuers;
        Thumbprints sent; // by the server
    };
    using NodePointer = std::unique_ptr<QlumCertificateChainNode>;

    void validate();
    void buildTlsNode();
    UaStatusCode buildCertificateChain();
    NodePointer climb(NodePointer server, const UaPkiCertificateStore& store, const Lists& lists) const;
    void verify();
    void checkHost();
    void judgeTls();
    void addFinding(QlumCertificateChainNode& node, const QString& text, const UaStatusCode& status) const;
    [[nodiscard]] QVariant picture(const QlumCertificateChainNode& one) const;
    [[nodiscard]] QlumCertificateChainNode* nodeAtDepth(unsigned int depth) const;
    [[nodiscard]] static bool isTakenAsResult(const UaStatusCode& status);

    const UaByteString m_certificate;
    const QString m_serverUrl;
    UaClientSdk::SessionSecurityInfo* const m_security; // null for TLS
    const UaStatusCode m_givenResult;                   // for TLS
    const QlumCertificateChecks m_checks;
    UaStatusCode m_result;
    std::vector<OpcUa_StatusCode> m_found; // what is not let pass by a setting
    bool m_selfSignedSeen = false;         // passed over, but it stands before what was found later
    QlumCertificateError m_severity = QlumCertificateError::None;
    NodePointer m_root;
    QlumCertificateChainNode* m_server = nullptr;
};
