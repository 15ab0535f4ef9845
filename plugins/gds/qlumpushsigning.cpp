#include <plugins/gds/qlumpushsigning.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <certificates/qlumcertificatestoreconfiguration.h>
#include <certificates/qlumstorefiles.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/gds/qlumpushwords.h>
#include <uabase/uapkicpp/uapkiauthority.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/secretbytes.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <ranges>
#include <vector>

namespace {
constexpr int ownKeyBits = 2048;
constexpr OpcUa_Int64 dayInSeconds = 86400;

QString signingText(const char* text)
{
    return QCoreApplication::translate("QlumPushSigning", text);
}

QString errorsOf(const UaPkiErrors& object)
{
    QStringList lines;
    for (const UaString& error : object.getErrors())
        lines.append(toQString(error));
    return lines.join(QStringLiteral("; "));
}

void send(QlumPushClient& client, const QlumPushServer& server, QlumCertificateUpdate update,
          QlumPushSigned& result)
{
    result.certificate = update.certificate;
    const UaStatus status = client.updateCertificate(server, update, result.isApplyRequired);
    if (status.isBad())
        result.fault = qlumPushWords(QStringLiteral("UpdateCertificate"), status);
}

// The names of the server's certificate of before, for the key that is made here.
UaPkiCSR requestFor(const QlumPushOrder& order, const UaPkiCertificate& current, const UaPkiRsaKeyPair& pair)
{
    UaPkiIdentity subject = current.subject();
    if (!order.wish.subject.isEmpty()) {
        subject = {};
        for (const QString& part : order.wish.subject.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
            const QString key = part.section(QLatin1Char('='), 0, 0).trimmed().toUpper();
            const UaString value = toUaString(part.section(QLatin1Char('='), 1).trimmed());
            UaString* const target = key == QLatin1String("CN")   ? &subject.commonName
                                     : key == QLatin1String("O")  ? &subject.organization
                                     : key == QLatin1String("OU") ? &subject.organizationUnit
                                     : key == QLatin1String("L")  ? &subject.locality
                                     : key == QLatin1String("S")  ? &subject.state
                                     : key == QLatin1String("C")  ? &subject.country
                                                                  : nullptr;
            if (target)
                *target = value;
        }
    }
    return UaPkiCertificate::createCSR(current.info(), subject, pair);
}

// From the certificate up to its last issuer; authorities send the files of their answers in either order.
std::vector<UaPkiCertificate> chainOf(const UaPkiCertificateCollection& file)
{
    std::vector<UaPkiCertificate> rest;
    for (int i = 0; i < file.size(); ++i)
        rest.push_back(file[i]);
    const auto hasIssued = [&rest](const UaPkiCertificate& issuer) {
        return std::ranges::any_of(rest, [&issuer](const UaPkiCertificate& one) {
            return one.isIssuedBy(issuer) && one.toByteStringDER() != issuer.toByteStringDER();
        });
    };
    const auto first = std::ranges::find_if_not(rest, hasIssued);
    if (first != rest.end())
        std::rotate(rest.begin(), first, first + 1);
    for (auto next = rest.begin(); next != rest.end() && next + 1 != rest.end(); ++next) {
        const auto issuer = std::ranges::find_if(
            next + 1, rest.end(), [next](const UaPkiCertificate& one) { return next->isIssuedBy(one); });
        if (issuer != rest.end())
            std::rotate(next + 1, issuer, issuer + 1);
    }
    return rest;
}

bool isKeyFormat(const QString& format)
{
    return format == QLatin1String("PEM") || format == QLatin1String("PFX") || format == QLatin1String("DER");
}

// No password travels with a key: what protects it is the connection.
std::shared_ptr<const UaClientSdk::SecretBytes> keyAs(const QString& format, const UaPkiRsaKeyPair& pair,
                                                      const UaPkiCertificate& certificate)
{
    if (format == QLatin1String("PFX"))
        return std::make_shared<const UaClientSdk::SecretBytes>(pair.toPFX(certificate));
    if (format == QLatin1String("PEM"))
        return std::make_shared<const UaClientSdk::SecretBytes>(pair.toPEM());
    return std::make_shared<const UaClientSdk::SecretBytes>(pair.toDER());
}
} // namespace

QString qlumAuthorityFolder()
{
    // beside the stores' common folder
    return QDir::cleanPath(QlumCertificateStore::ownCertificates() + QStringLiteral("/../../../authority"));
}

bool qlumWriteDer(const QString& path, const UaByteString& der)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) &&
           file.write(reinterpret_cast<const char*>(der.data()), der.length()) == der.length();
}

bool qlumWriteAuthority(const QString& authority, const QString& folder)
{
    const UaString place = toUaString(authority);
    const QDir target(folder);
    return qlumWriteDer(target.filePath(QStringLiteral("authority.der")),
                        UaPkiAuthority::certificateIn(place).toByteStringDER()) &&
           qlumWriteDer(target.filePath(QStringLiteral("authority.crl")),
                        UaByteString(UaPkiAuthority::revocationListIn(place).toDER()));
}

bool qlumKnowAuthority(const QString& authority, const QlumCertificateStoreConfiguration& store)
{
    using Added = QlumStoreFiles::Added;
    const QTemporaryDir between;
    if (!between.isValid() || !qlumWriteAuthority(authority, between.path()))
        return false;
    for (const char* const name : {"authority.der", "authority.crl"}) {
        const Added added =
            QlumStoreFiles::add(between.filePath(QLatin1String(name)), QlumStoreFiles::Store::Issuers, store);
        if (added != Added::Yes && added != Added::AlreadyThere)
            return false;
    }
    return true;
}

QlumPushSigned qlumSignForServer(QlumPushClient& client, const QlumPushServer& server,
                                 const QlumPushOrder& order, const UaPkiCertificate& current,
                                 const QString& folder, const QlumSecretText& password,
                                 const std::function<bool()>& isCancelled)
{
    QlumPushSigned result;
    const UaPkiAuthority authority = UaPkiAuthority::open(toUaString(folder), toUaString(password.text()));
    if (authority.isNull()) {
        result.fault = signingText(
            "The authority could not be opened: the password is wrong, or its files are damaged.");
        return result;
    }
    QlumCertificateUpdate update{order.wish.group, order.wish.type, {}, {}, {}, nullptr};
    const bool isOwnKey = order.key == QlumPushOrder::OurNewKey;
    if (isOwnKey && !isKeyFormat(order.keyFormat)) {
        result.fault = signingText("Keys cannot be made in the format %1 here.").arg(order.keyFormat);
        return result;
    }
    UaPkiCSR request;
    UaPkiRsaKeyPair pair;
    if (isOwnKey) {
        pair = UaPkiRsaKeyPair(ownKeyBits, isCancelled);
        request = requestFor(order, current, pair);
    } else {
        UaByteString der;
        const UaStatus status = client.createSigningRequest(server, order.wish, der);
        if (status.isBad()) {
            result.fault = qlumPushWords(QStringLiteral("CreateSigningRequest"), status);
            return result;
        }
        request = UaPkiCSR::fromDER(der.toByteArray());
    }
    const UaPkiCertificate certificate = authority.issue(request, order.days * dayInSeconds);
    if (certificate.isNull()) {
        result.fault = signingText("The request could not be signed: %1").arg(errorsOf(certificate));
        return result;
    }
    if (isOwnKey) {
        update.keyFormat = order.keyFormat;
        update.key = keyAs(order.keyFormat, pair, certificate);
    }
    update.certificate = certificate.toByteStringDER();
    update.issuers = {authority.certificate().toByteStringDER()};
    send(client, server, update, result);
    return result;
}

QString qlumAnswerDoubt(const QString& path, const UaByteString& request, const UaPkiCertificate& current)
{
    const std::vector<UaPkiCertificate> chain =
        chainOf(UaPkiCertificateCollection::fromFile(toUaString(path)));
    if (chain.empty() || (current.isNull() && request.isEmpty()))
        return {};
    const UaPkiCertificate& answer = chain.front();
    const auto isOfKey = [&answer](const UaPkiPublicKey& key) {
        return !key.isNull() && UaByteString(key.toDER()) == UaByteString(answer.publicKey().toDER());
    };
    const bool isOfRequest =
        !request.isEmpty() && isOfKey(UaPkiCSR::fromDER(request.toByteArray()).publicKey());
    if (!isOfRequest && (current.isNull() || !isOfKey(current.publicKey())))
        return signingText("The certificate belongs neither to a request that was made here nor to the key "
                           "that the server uses now. A server that takes it all the same may not be reached "
                           "any more.");
    if (!current.isNull() && answer.info().URI != current.info().URI)
        return signingText("The certificate is for the application %1, and the server is %2.")
            .arg(toQString(answer.info().URI), toQString(current.info().URI));
    return {};
}

QlumPushSigned qlumSendAnswer(QlumPushClient& client, const QlumPushServer& server,
                              const QlumPushOrder& order, const QString& path)
{
    QlumPushSigned result;
    const std::vector<UaPkiCertificate> chain =
        chainOf(UaPkiCertificateCollection::fromFile(toUaString(path)));
    if (chain.empty()) {
        result.fault = signingText("The file holds no certificate.");
        return result;
    }
    QlumCertificateUpdate update{order.wish.group, order.wish.type, chain.front().toByteStringDER(), {}, {},
                                 nullptr};
    for (std::size_t at = 1; at < chain.size(); ++at)
        update.issuers.push_back(chain[at].toByteStringDER());
    send(client, server, update, result);
    return result;
}
