#include <certificates/qlumcertificatechainmodel.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificateerror.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumseverityicon.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/uapkicpp/uapkicertificatestore.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QVariant>

#include <algorithm>
#include <memory>
#include <utility>

namespace {
using UaClientSdk::SessionSecurityInfo;

constexpr int maximumCertificates = 10; // of a chain
constexpr int selfSignedServer = 18; // the crypto library's number; the trust list says all there is to say
constexpr OpcUa_StatusCode codeBits = 0xFFFF0000u;

QlumFindingTopic topicOf(const UaStatusCode& status)
{
    switch (status.code() & codeBits) {
    case OpcUa_BadCertificateTimeInvalid:
    case OpcUa_BadCertificateIssuerTimeInvalid:
        return QlumFindingTopic::Time;
    case OpcUa_BadCertificateHostNameInvalid:
        return QlumFindingTopic::Host;
    default:
        return QlumFindingTopic::Other;
    }
}
} // namespace

QlumCertificateChainModel::QlumCertificateChainModel(const QString& serverUrl, const QString& applicationUri,
                                                     const UaByteString& certificate,
                                                     SessionSecurityInfo* security, QObject* parent)
    : QlumTreeModel({tr("Name"), tr("Trust Status")}, parent), m_certificate(certificate),
      m_serverUrl(serverUrl), m_security(security), m_checks(applicationUri, serverUrl)
{
}

QlumCertificateChainModel::QlumCertificateChainModel(const UaByteString& certificate,
                                                     const UaStatusCode& status, QObject* parent)
    : QlumTreeModel({tr("Name"), tr("Trust Status")}, parent), m_certificate(certificate),
      m_security(nullptr), m_givenResult(status), m_checks(QString(), QString())
{
}

QlumCertificateChainModel::QlumCertificateChainModel(const QString& serverUrl,
                                                     const UaByteString& certificate,
                                                     const UaStatusCode& status, QObject* parent)
    : QlumTreeModel({tr("Name"), tr("Trust Status")}, parent), m_certificate(certificate),
      m_serverUrl(serverUrl), m_security(nullptr), m_givenResult(status), m_checks(QString(), serverUrl)
{
}

QlumCertificateChainModel::~QlumCertificateChainModel() = default;

// ---- validation

void QlumCertificateChainModel::update()
{
    reset([this] { validate(); });
}

void QlumCertificateChainModel::validate()
{
    m_server = nullptr;
    m_root.reset();
    m_selfSignedSeen = false;
    m_found.clear();
    if (m_security) {
        m_result = buildCertificateChain();
        if (!m_result.isBad()) {
            verify();
            checkHost();
        }
    } else {
        m_result = m_givenResult;
        buildTlsNode();
        if (m_server && !m_serverUrl.isEmpty())
            judgeTls();
    }
    if (m_result.isBad())
        m_found.push_back(m_result.code());
    m_severity = m_result.isBad() ? QlumCertificateError::Error : QlumCertificateError::None;
    for (const QlumCertificateChainNode* node = m_root.get(); node; node = node->child())
        m_severity = std::max(m_severity, node->severity());
    setRoot(m_root.get(), Root::Shown);
}

QStringList QlumCertificateChainModel::findings() const
{
    QStringList result;
    for (const QlumCertificateChainNode* node = m_root.get(); node; node = node->child())
        for (const QlumCertificateChainNode::Finding& finding : node->findings())
            result.append(tr("%1: %2").arg(node->displayName(), qlumSingleLine(finding.text)));
    return result;
}

void QlumCertificateChainModel::buildTlsNode()
{
    const UaPkiCertificate certificate =
        UaPkiCertificateCollection::fromDERChain(m_certificate).certificate(0);
    if (certificate.isNull())
        return;
    m_root = std::make_unique<QlumCertificateChainNode>(certificate, QlumCertificateChainNode::Untrusted);
    m_server = m_root.get();
    m_checks.verifyNode(*m_root, false);
}

UaStatusCode QlumCertificateChainModel::buildCertificateChain()
{
    UaPkiCertificateStore store;
    Lists lists;
    lists.trusted = store.addFolder(m_security->pki().trustedCertificates);
    lists.issuers = store.addFolder(m_security->pki().issuerCertificates);

    UaByteStringArray parts;
    const UaStatus split = SessionSecurityInfo::splitCertificateChain(m_certificate, parts);
    if (split.isBad())
        return split;
    UaPkiCertificate own;
    for (OpcUa_UInt32 i = 0; i < parts.length(); ++i) {
        const UaPkiCertificate certificate = UaPkiCertificate::fromDER(UaByteString(parts[i]));
        if (certificate.isNull())
            return OpcUa_BadDecodingError;
        lists.sent.insert(certificate.thumbPrint());
        if (i == 0)
            own = certificate;
        else
            store.add(certificate);
    }
    if (own.isNull())
        return OpcUa_BadDecodingError;
    const UaByteString thumbprint = own.thumbPrint();
    const auto status = lists.trusted.count(thumbprint) != 0   ? QlumCertificateChainNode::Trusted
                        : lists.issuers.count(thumbprint) != 0 ? QlumCertificateChainNode::KnownIssuer
                                                               : QlumCertificateChainNode::Untrusted;
    auto server = std::make_unique<QlumCertificateChainNode>(own, status);
    m_server = server.get();
    m_checks.verifyNode(*server, true);
    m_root = climb(std::move(server), store, lists);
    return OpcUa_Good;
}

QlumCertificateChainModel::NodePointer QlumCertificateChainModel::climb(NodePointer server,
                                                                        const UaPkiCertificateStore& store,
                                                                        const Lists& lists) const
{
    NodePointer top = std::move(server);
    Thumbprints visited{top->certificate().thumbPrint()}; // two that issue each other would never end
    auto status = top->trustStatus();
    for (int count = 1; count < maximumCertificates; ++count) {
        const UaPkiCertificate issuer = store.issuerOf(top->certificate());
        if (issuer.isNull() || !visited.insert(issuer.thumbPrint()).second)
            break;
        const UaByteString thumbprint = issuer.thumbPrint();
        if (lists.trusted.count(thumbprint) != 0)
            status = QlumCertificateChainNode::Trusted;
        else if (lists.issuers.count(thumbprint) != 0)
            status = QlumCertificateChainNode::KnownIssuer;
        else if (lists.sent.count(thumbprint) != 0)
            status = QlumCertificateChainNode::Untrusted;
        auto node = std::make_unique<QlumCertificateChainNode>(issuer, status);
        m_checks.verifyNode(*node, false);
        node->setChild(std::move(top));
        top = std::move(node);
    }
    return top;
}

void QlumCertificateChainModel::verify()
{
    SessionSecurityInfo judged = *m_security;
    judged.serverCertificate = m_certificate; // the bytes that are shown, whatever the record holds
    const UaStatus verified = judged.verifyServerCertificate(this);
    // The verification lets time and unknown revocation pass, since this callback went on; and where it went
    // on past a self-signed certificate, what it says comes before what was found after that.
    if (verified.isBad() && (m_selfSignedSeen || !m_result.isBad()))
        m_result = verified;
}

// The session would ask, but only when the user has already been told that all is well.
void QlumCertificateChainModel::checkHost()
{
    SessionSecurityInfo judged = *m_security;
    judged.serverCertificate = m_certificate;
    if (!m_security->isSecured() || judged.namesHostOf(toUaString(m_serverUrl)))
        return;
    addFinding(*m_server, tr("the certificate is not made for the host of the server's URL"),
               OpcUa_BadCertificateHostNameInvalid);
    m_found.push_back(OpcUa_BadCertificateHostNameInvalid);
    if (!m_result.isBad())
        m_result = OpcUa_BadCertificateHostNameInvalid;
}

// The connection tells what it found one by one, and ends.
void QlumCertificateChainModel::judgeTls()
{
    SessionSecurityInfo judged;
    judged.initializePkiProviderHttps(toUaString(QlumCertificateStore::tlsIssuerCertificates()),
                                      toUaString(QlumCertificateStore::tlsIssuerRevocationLists()));
    judged.serverCertificate = m_certificate;
    const UaStatus verified = judged.verifyTlsCertificate(toUaString(m_serverUrl), this);
    if (verified.isBad())
        m_found.push_back(verified.code());
}

void QlumCertificateChainModel::addFinding(QlumCertificateChainNode& node, const QString& text,
                                           const UaStatusCode& status) const
{
    const QString finding = tr("%1 [%2]").arg(text, qlumStatusText(status.code()));
    node.otherFindings()
        .add(tr("Error"), finding)
        .setFinding(finding, QlumCertificateError::Error, topicOf(status));
}

bool QlumCertificateChainModel::isFound(OpcUa_StatusCode status) const
{
    return std::find(m_found.begin(), m_found.end(), status) != m_found.end();
}

int QlumCertificateChainModel::verificationError(SessionSecurityInfo*, void* context, const UaByteString&,
                                                 unsigned int, unsigned int depth)
{
    UaStatusCode status;
    int openSslError = 0;
    UaString text;
    SessionSecurityInfo::getCurrentErrorInformationOpenSSL(context, status, openSslError, text);
    if (openSslError == selfSignedServer) {
        m_selfSignedSeen = m_selfSignedSeen || !m_result.isBad();
        return 1;
    }
    if (QlumCertificateChainNode* node = nodeAtDepth(depth))
        addFinding(*node, qlumSingleLine(toQString(text)), status);
    if (m_security && !isTakenAsResult(status)) // TLS lets nothing pass by itself
        return 1;
    m_found.push_back(status.code());
    if (!m_result.isBad())
        m_result = status;
    return 1;
}

bool QlumCertificateChainModel::isTakenAsResult(const UaStatusCode& status)
{
    switch (status.code() & codeBits) {
    case OpcUa_BadCertificateTimeInvalid:
        return !QlumSettings::ignoreTime.value();
    case OpcUa_BadCertificateIssuerTimeInvalid:
        return !QlumSettings::ignoreIssuerTime.value();
    case OpcUa_BadCertificateRevocationUnknown:
        return !QlumSettings::ignoreNoRevocation.value();
    case OpcUa_BadCertificateIssuerRevocationUnknown:
        return !QlumSettings::ignoreNoIssuerRevocation.value();
    default:
        return true;
    }
}

// A depth beyond the chain means its top: the verification may have got further than the names tell.
QlumCertificateChainNode* QlumCertificateChainModel::nodeAtDepth(unsigned int depth) const
{
    QlumCertificateChainNode* node = m_server;
    for (; node && node->parent() && depth > 0; --depth)
        node = node->parent();
    return node;
}

// ---- model

bool QlumCertificateChainModel::isServerCertificate(const QModelIndex& index) const
{
    return m_server && node(index) == m_server;
}

// A tick beside "Untrusted" would say the contrary.
QVariant QlumCertificateChainModel::picture(const QlumCertificateChainNode& one) const
{
    if (one.trustStatus() != QlumCertificateChainNode::Untrusted ||
        one.severity() != QlumCertificateError::None)
        return qlumSeverityIcon(one.severity());
    return m_result.isBad() ? qlumSeverityIcon(QlumCertificateError::Warning) : QVariant();
}

QVariant QlumCertificateChainModel::cell(const QlumCertificateChainNode& one, int column, int role) const
{
    const bool isName = column == NameColumn;
    switch (role) {
    case Qt::DisplayRole:
        return isName ? one.displayName() : one.trustStatusText();
    case Qt::DecorationRole:
        return isName ? picture(one) : QVariant();
    case Qt::ToolTipRole:
        return isName ? qlumPlainToolTip(one.displayName()) : QVariant();
    case TrustStatusRole:
        return static_cast<int>(one.trustStatus());
    case CertificateRole:
        return QVariant::fromValue(one.certificate());
    default:
        return {};
    }
}
