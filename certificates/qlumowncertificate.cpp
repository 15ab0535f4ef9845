#include <certificates/qlumowncertificate.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cstdio>
#include <unistd.h>

namespace {
constexpr OpcUa_Int64 kFiveYears = 157680000;

class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumOwnCertificate)
};

UaStringArray single(const QString& text)
{
    UaStringArray array;
    if (array.create(1))
        toUaString(text).copyTo(&array[0]);
    return array;
}

QString applicationUri(const QString& organization, const QString& commonName)
{
    return QStringLiteral("urn:%1:%2:%3").arg(qlumHostName(), organization, commonName);
}

QString joinedErrors(const UaPkiErrors& object)
{
    QStringList texts;
    for (const UaString& error : object.getErrors())
        texts.append(toQString(error));
    return texts.join(QStringLiteral("; "));
}

bool renameOver(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}
} // namespace

QString qlumHostName()
{
    char name[256] = {};
    if (::gethostname(name, sizeof name - 1) != 0 || !*name)
        return QStringLiteral("localhost");
    return QString::fromLocal8Bit(name);
}

QlumOwnCertificate QlumOwnCertificate::initial(const QString& commonName, const QString& organization)
{
    QlumOwnCertificate result;
    result.subject.commonName = toUaString(commonName);
    result.subject.organization = toUaString(organization);
    result.info.URI = toUaString(applicationUri(organization, commonName));
    result.info.DNSNames = single(qlumHostName());
    result.info.validTime = kFiveYears;
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
        applicationUri(toQString(result.subject.organization), toQString(result.subject.commonName)));
    result.info.IPAddresses = oldInfo.IPAddresses;
    result.info.DNSNames = oldInfo.DNSNames;
    if (const int bits = old.publicKey().keySize(); bits >= 1024 && bits <= 4096)
        result.keyBits = bits;
    if (old.signatureAlgorithm() != UaPkiCertificate::UnknownSignatureAlgorithm)
        result.algorithm = old.signatureAlgorithm();
    return result;
}

QString QlumOwnCertificate::create(const QString& password) const
{
    const UaPkiRsaKeyPair keyPair(keyBits);
    if (keyPair.isNull())
        return Text::tr("The key could not be generated: %1").arg(joinedErrors(keyPair));
    const UaPkiCertificate certificate(info, subject, keyPair, false, algorithm);
    if (certificate.isNull())
        return Text::tr("The certificate could not be made: %1").arg(joinedErrors(certificate));
    return qlumStoreOwnCertificate(certificate, keyPair, password);
}

QString qlumStoreOwnCertificate(const UaPkiCertificate& certificate, const UaPkiRsaKeyPair& keyPair,
                                const QString& password)
{
    const auto fresh = QStringLiteral(".new");
    const QString certificateFile = QlumCertificateStore::ownCertificateFile();
    const QString keyFile = QlumCertificateStore::ownPrivateKeyFile();
    const bool written = keyPair.toPEMFile(toUaString(keyFile + fresh), toUaString(password)) &&
                         certificate.toDERFile(toUaString(certificateFile + fresh));
    if (written && renameOver(keyFile + fresh, keyFile) &&
        renameOver(certificateFile + fresh, certificateFile))
        return {};
    QFile::remove(keyFile + fresh);
    QFile::remove(certificateFile + fresh);
    return Text::tr("The certificate and its key could not be written to %1.")
        .arg(QDir::toNativeSeparators(QlumCertificateStore::ownCertificates()));
}
