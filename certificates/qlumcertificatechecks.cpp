#include <certificates/qlumcertificatechecks.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatedetailsnode.h>
#include <certificates/qlumcertificateerror.h>
#include <certificates/qlumclock.h>
#include <certificates/qlumthumbprint.h>
#include <certificates/qlumvalidity.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkikey.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uasession.h>

#include <QStringList>

#include <algorithm>
#include <initializer_list>

namespace {
constexpr int minimumKeyBits = 2048;

QString line(const UaString& text)
{
    return qlumSingleLine(toQString(text));
}

// Of texts with several lines each stays one.
QString lines(const UaString& text)
{
    QStringList parts = toQString(text).split(QLatin1Char('\n'));
    for (QString& part : parts)
        part = qlumSingleLine(part);
    return parts.join(QLatin1Char('\n'));
}

QStringList list(const UaStringArray& texts)
{
    QStringList result;
    result.reserve(static_cast<int>(texts.length()));
    for (const OpcUa_String& text : texts)
        result.append(line(UaString(text)));
    return result;
}

bool containsAny(const QString& text, std::initializer_list<const char*> words)
{
    return std::any_of(
        words.begin(), words.end(), [&text](const char* word) { return text.contains(QLatin1String(word)); });
}

QString extensionText(const UaPkiCertificate& certificate, UaPkiCertificate::Extension extension)
{
    return certificate.hasExtension(extension) ? lines(certificate.extensionValue(extension)).trimmed()
                                               : QStringLiteral("(null)");
}
} // namespace

QlumCertificateChecks::QlumCertificateChecks(const QString& applicationUri, const QString& serverUrl)
    : m_applicationUri(applicationUri),
      m_host(toQString(UaClientSdk::UaSession::getHostFromUrl(toUaString(serverUrl))))
{
}

void QlumCertificateChecks::verifyNode(QlumCertificateChainNode& node, bool checkExtensions) const
{
    addIdentity(node, tr("Subject"), node.certificate().subject());
    addIdentity(node, tr("Issuer"), node.certificate().issuer());
    addValidity(node);
    addInfo(node);
    if (!checkExtensions)
        return;
    addAlternativeNames(node);
    addExtensions(node);
}

void QlumCertificateChecks::addIdentity(QlumCertificateChainNode& node, const QString& group,
                                        const UaPkiIdentity& identity) const
{
    QlumCertificateDetailsNode& parent = node.addGroup(group);
    parent.add(tr("Common Name"), line(identity.commonName));
    parent.add(tr("Organization"), line(identity.organization));
    parent.add(tr("OrganizationUnit"), line(identity.organizationUnit));
    parent.add(tr("Locality"), line(identity.locality));
    parent.add(tr("State"), line(identity.state));
    parent.add(tr("Country"), line(identity.country));
    parent.add(tr("DomainComponent"), line(identity.domainComponent));
}

void QlumCertificateChecks::addValidity(QlumCertificateChainNode& node) const
{
    const UaDateTime from = node.certificate().validFrom();
    const UaDateTime to = node.certificate().validTo();
    const UaDateTime now = UaDateTime::fromMSecsSinceEpoch(QlumClock::now().toMSecsSinceEpoch());
    QlumCertificateDetailsNode& group = node.addGroup(tr("Validity"));
    QlumCertificateDetailsNode& begin = group.add(tr("Valid From"), qlumValidityTime(from));
    QlumCertificateDetailsNode& end = group.add(tr("Valid To"), qlumValidityTime(to));
    if (now < from)
        begin.setFinding(tr("The certificate is not yet valid"), QlumCertificateError::Warning,
                         QlumFindingTopic::Time);
    if (to < now)
        end.setFinding(tr("The certificate has expired"), QlumCertificateError::Warning,
                       QlumFindingTopic::Time);
}

void QlumCertificateChecks::addInfo(QlumCertificateChainNode& node) const
{
    QlumCertificateDetailsNode& group = node.addGroup(tr("Info"));
    group.add(tr("Serial Number"), line(node.certificate().serialNumber()));
    addSignature(group, node.certificate());
    addKey(group, node.certificate());
    group.add(tr("Thumbprint (SHA1)"), qlumThumbprint(node.certificate()));
}

void QlumCertificateChecks::addSignature(QlumCertificateDetailsNode& group,
                                         const UaPkiCertificate& certificate) const
{
    const QString name = tr("Signature Algorithm");
    switch (certificate.signatureAlgorithm()) {
    case UaPkiCertificate::Sha256:
    case UaPkiCertificate::Sha384:
    case UaPkiCertificate::Sha512:
        group.add(name, line(certificate.signatureTypeString()));
        return;
    case UaPkiCertificate::Sha1:
        group.add(name, line(certificate.signatureTypeString()))
            .setFinding(tr("Weak SignatureAlgorithm, SHA256 recommended"), QlumCertificateError::Warning);
        return;
    case UaPkiCertificate::UnknownSignatureAlgorithm:
        break;
    }
    group.add(name, tr("Unknown")).setFinding(tr("Unknown signature algorithm"), QlumCertificateError::Error);
}

void QlumCertificateChecks::addKey(QlumCertificateDetailsNode& group,
                                   const UaPkiCertificate& certificate) const
{
    const UaPkiPublicKey key = certificate.publicKey();
    const QString name = tr("Cipher Strength");
    if (key.keyType() != UaPkiKey::RSA && key.keyType() != UaPkiKey::DSA) {
        group.add(name, tr("Unknown")).setFinding(tr("Unknown key type"), QlumCertificateError::Error);
        return;
    }
    const QString text = key.keyType() == UaPkiKey::RSA ? tr("RSA (%1 bit)") : tr("DSA (%1 bit)");
    QlumCertificateDetailsNode& strength = group.add(name, text.arg(key.keySize()));
    if (key.keySize() < minimumKeyBits)
        strength.setFinding(tr("Weak Cipher Strength, at least 2048 recommended"),
                            QlumCertificateError::Warning);
}

void QlumCertificateChecks::addAlternativeNames(QlumCertificateChainNode& node) const
{
    const UaPkiCertificate& certificate = node.certificate();
    if (!certificate.hasExtension(UaPkiCertificate::SubjectAltName)) {
        const QString text = tr("SubjectAltName is missing - this extension is mandatory according to the "
                                "UA specification");
        node.otherFindings().add(tr("Error"), text).setFinding(text, QlumCertificateError::Error);
        return;
    }
    const UaPkiCertificateInfo info = certificate.info();
    QlumCertificateDetailsNode& group = node.addGroup(tr("UA Extensions"));
    QlumCertificateDetailsNode& uri = group.add(tr("URI"), line(info.URI));
    if (toQString(info.URI) != m_applicationUri)
        uri.setFinding(tr("The URI returned in the certificate does not match the Application URI of the "
                          "server (%1).")
                           .arg(qlumCutText(qlumSingleLine(m_applicationUri))),
                       QlumCertificateError::Warning);
    addHosts(group, info);
}

void QlumCertificateChecks::addHosts(QlumCertificateDetailsNode& group,
                                     const UaPkiCertificateInfo& info) const
{
    const QStringList addresses = list(info.IPAddresses);
    const QStringList names = list(info.DNSNames);
    QlumCertificateDetailsNode& addressLine = group.add(tr("IPAddresses"), addresses.join(QLatin1Char('\n')));
    QlumCertificateDetailsNode& nameLine = group.add(tr("DNSNames"), names.join(QLatin1Char('\n')));
    if (m_host.isEmpty() || addresses.contains(m_host, Qt::CaseInsensitive) ||
        names.contains(m_host, Qt::CaseInsensitive))
        return;
    const QString text = tr("The host of the server's URL ('%1') cannot be found in the list of IP addresses "
                            "or DNS names")
                             .arg(qlumCutText(qlumSingleLine(m_host)));
    addressLine.setFinding(text, QlumCertificateError::Warning, QlumFindingTopic::Host);
    nameLine.setFinding(text, QlumCertificateError::Warning, QlumFindingTopic::Host);
}

void QlumCertificateChecks::addExtensions(QlumCertificateChainNode& node) const
{
    const UaPkiCertificate& certificate = node.certificate();
    QlumCertificateDetailsNode& group = node.addGroup(tr("Extensions"));
    group.add(tr("BasicConstraints"), extensionText(certificate, UaPkiCertificate::BasicConstraints));
    addKeyIdentifiers(group, certificate);
    addUsages(group, certificate);
}

void QlumCertificateChecks::addKeyIdentifiers(QlumCertificateDetailsNode& group,
                                              const UaPkiCertificate& certificate) const
{
    const QString own = extensionText(certificate, UaPkiCertificate::SubjectKeyIdentifier);
    QlumCertificateDetailsNode& subject = group.add(tr("SubjectKeyIdentifier"), own);
    if (own.contains(qlumEmptyKeyIdentifier()))
        subject.setFinding(tr("SubjectKeyIdentifier is the hash of an empty string, this might lead to "
                              "problems validating the server's certificate"),
                           QlumCertificateError::Warning);
    const QString issuers = extensionText(certificate, UaPkiCertificate::AuthorityKeyIdentifier);
    QlumCertificateDetailsNode& authority = group.add(tr("AuthorityKeyIdentifier"), issuers);
    if (certificate.hasExtension(UaPkiCertificate::AuthorityKeyIdentifier)) {
        if (issuers.contains(qlumEmptyKeyIdentifier()))
            authority.setFinding(tr("AuthorityKeyIdentifier contains the hash of an empty string, this might "
                                    "lead to problems validating the server's certificate"),
                                 QlumCertificateError::Warning);
    } else if (certificate.isSelfSigned()) {
        authority.setFinding(tr("AuthorityKeyIdentifier is missing - this can lead to validation problems\n"
                                "If you keep getting this warning, delete all old certificates of the "
                                "server in the certificate trust list"),
                             QlumCertificateError::Warning);
    } else {
        authority.setFinding(tr("AuthorityKeyIdentifier is missing - this extension is mandatory for "
                                "CA-signed certificates according to the UA specification"),
                             QlumCertificateError::Error);
    }
}

void QlumCertificateChecks::addUsages(QlumCertificateDetailsNode& group,
                                      const UaPkiCertificate& certificate) const
{
    const QString usage = extensionText(certificate, UaPkiCertificate::KeyUsage);
    QlumCertificateDetailsNode& key = group.add(tr("KeyUsage"), usage);
    if (!certificate.hasExtension(UaPkiCertificate::KeyUsage))
        key.setFinding(
            tr("KeyUsage is missing - this extension is mandatory according to the UA specification"),
            QlumCertificateError::Warning);
    // one of the four is enough: controllers that name only some are common and work
    else if (!containsAny(usage,
                          {"Digital Signature", "Non Repudiation", "Key Encipherment", "Data Encipherment"}))
        key.setFinding(tr("KeyUsage: Shall include Digital Signature, Non Repudiation, Key Encipherment and "
                          "Data Encipherment"),
                       QlumCertificateError::Warning);

    const QString extended = extensionText(certificate, UaPkiCertificate::ExtendedKeyUsage);
    QlumCertificateDetailsNode& purpose = group.add(tr("ExtendedKeyUsage"), extended);
    if (!certificate.hasExtension(UaPkiCertificate::ExtendedKeyUsage))
        purpose.setFinding(
            tr("ExtendedKeyUsage is missing - this extension is mandatory according to the UA specification"),
            QlumCertificateError::Warning);
    else if (!containsAny(extended, {"TLS Web Server Authentication", "TLS Web Client Authentication"}))
        purpose.setFinding(tr("ExtendedKeyUsage: Shall specify TLS Web Server Authentication and/or TLS Web "
                              "Client Authentication"),
                           QlumCertificateError::Warning);
}
