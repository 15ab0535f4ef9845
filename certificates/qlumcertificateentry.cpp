#include <certificates/qlumcertificateentry.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumthumbprint.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/values/uastring.h>

#include <QStringList>

namespace {
constexpr int longestText = 1000;

QString shown(const QString& text)
{
    return qlumCutText(qlumSingleLine(text), longestText);
}

QString shown(const UaString& text)
{
    return shown(toQString(text));
}

QString joined(const UaStringArray& texts)
{
    QStringList list;
    for (const OpcUa_String& text : texts)
        list.append(toQString(UaString(text)));
    return shown(list.join(QStringLiteral(", ")));
}

std::shared_ptr<const QlumCertificateEntry::Details> read(const UaPkiCertificate& certificate)
{
    auto details = std::make_shared<QlumCertificateEntry::Details>();
    if (certificate.isNull())
        return details;
    const UaPkiIdentity issuer = certificate.issuer();
    const UaPkiCertificateInfo info = certificate.info();
    details->name = shown(certificate.commonName());
    details->organization = shown(issuer.organization);
    details->organizationUnit = shown(issuer.organizationUnit);
    details->locality = shown(issuer.locality);
    details->state = shown(issuer.state);
    details->country = shown(issuer.country);
    details->applicationUri = shown(info.URI);
    details->domainNames = joined(info.DNSNames);
    details->addresses = joined(info.IPAddresses);
    details->signature = shown(certificate.signatureTypeString());
    details->thumbprint = qlumThumbprint(certificate);
    details->validFrom = info.validFrom;
    details->validTo = info.validTo;
    details->keySize = certificate.publicKey().keySize();
    return details;
}
} // namespace

QlumCertificateEntry::QlumCertificateEntry() : QlumCertificateEntry(InStore, QString(), UaPkiCertificate()) {}

QlumCertificateEntry::QlumCertificateEntry(State state, const QString& fileName,
                                           const UaPkiCertificate& certificate)
    : m_state(state), m_fileName(fileName), m_certificate(certificate), m_details(read(certificate))
{
}

QlumValidity QlumCertificateEntry::validState() const
{
    return qlumValidity(m_details->validFrom, m_details->validTo);
}
