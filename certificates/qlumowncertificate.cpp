#include <certificates/qlumowncertificate.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/uapkicpp/uapkikey.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

#include <unistd.h>

namespace {
constexpr OpcUa_Int64 fiveYears = 157680000;

class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumOwnCertificate)
};

UaStringArray single(const QString& text)
{
    UaStringArray array;
    static_cast<void>(array.append(*toUaString(text).get())); // empty when out of memory
    return array;
}

QString joinedErrors(const UaPkiErrors& object)
{
    QStringList texts;
    for (const UaString& error : object.getErrors())
        texts.append(toQString(error));
    return texts.join(QStringLiteral("; "));
}

// Two letters, or none where the user has set no country.
QString countryOf(const QLocale& locale)
{
    const QString country = locale.name().section(QLatin1Char('_'), 1, 1);
    return country.size() == 2 ? country : QString();
}
} // namespace

QString qlumHostName()
{
    char name[256] = {};
    if (::gethostname(name, sizeof name - 1) != 0 || !*name)
        return QStringLiteral("localhost");
    return QString::fromLocal8Bit(name);
}

QString qlumApplicationUri(const QString& organization, const QString& commonName)
{
    // a multi-argument arg: a name may look like a place holder
    const QByteArray bytes = QStringLiteral("urn:%1:%2:%3")
                                 .arg(qlumHostName(), organization.trimmed(), commonName.trimmed())
                                 .toUtf8();
    QString uri;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        if (code > 0x1F && code < 0x7F)
            uri += QLatin1Char(byte);
        else
            uri += QStringLiteral("%%1").arg(uint(code), 2, 16, QLatin1Char('0')).toUpper();
    }
    return uri;
}

QlumOwnCertificateFiles QlumOwnCertificateFiles::ofApplication()
{
    return {QlumCertificateStore::ownCertificateFile(), QlumCertificateStore::ownPrivateKeyFile()};
}

QlumOwnCertificate QlumOwnCertificate::initial(const QString& commonName, const QString& organization)
{
    QlumOwnCertificate result;
    result.subject.commonName = toUaString(commonName);
    result.subject.organization = toUaString(organization);
    result.subject.country = toUaString(countryOf(QLocale()));
    result.info.URI = toUaString(qlumApplicationUri(organization, commonName));
    result.info.DNSNames = single(qlumHostName());
    result.info.validTime = fiveYears;
    return result;
}

QlumOwnCertificate QlumOwnCertificate::renewed(const UaPkiCertificate& old, const QlumOwnCertificate& initial)
{
    QlumOwnCertificate result = initial;
    if (old.isNull())
        return result;
    const UaPkiCertificateInfo oldInfo = old.info();
    result.subject = old.subject();
    result.info.URI = toUaString(
        qlumApplicationUri(toQString(result.subject.organization), toQString(result.subject.commonName)));
    if (oldInfo.IPAddresses.length() + oldInfo.DNSNames.length() > 0) { // one of them is needed
        result.info.IPAddresses = oldInfo.IPAddresses;
        result.info.DNSNames = oldInfo.DNSNames;
    }
    const UaPkiPublicKey key = old.publicKey();
    if (key.keyType() == UaPkiKey::RSA && key.keySize() >= UaPkiRsaKeyPair::minimumBits)
        result.keyBits = key.keySize();
    if (old.signatureAlgorithm() != UaPkiCertificate::UnknownSignatureAlgorithm)
        result.algorithm = old.signatureAlgorithm();
    return result;
}

QlumMadeCertificate QlumOwnCertificate::make(const std::function<bool()>& isCancelled) const
{
    QlumMadeCertificate made;
    made.keyPair = isCancelled ? UaPkiRsaKeyPair(keyBits, isCancelled) : UaPkiRsaKeyPair(keyBits);
    if (made.keyPair.isNull()) {
        made.error = Text::tr("The key could not be generated: %1").arg(joinedErrors(made.keyPair));
        return made;
    }
    made.certificate = UaPkiCertificate(info, subject, made.keyPair, false, algorithm);
    if (made.certificate.isNull())
        made.error = Text::tr("The certificate could not be made: %1").arg(joinedErrors(made.certificate));
    return made;
}

QString QlumOwnCertificate::create(const QString& password) const
{
    const QlumMadeCertificate made = make();
    return made.error.isEmpty() ? qlumStoreOwnCertificate(made.certificate, made.keyPair, password,
                                                          QlumOwnCertificateFiles::ofApplication())
                                : made.error;
}
