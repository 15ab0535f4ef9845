#include <certificates/qlumthumbprint.h>

#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uabytestring.h>

#include <QByteArray>

QString qlumThumbprint(const UaPkiCertificate& certificate)
{
    if (certificate.isNull())
        return {};
    const UaByteString bytes = certificate.thumbPrint();
    return QString::fromLatin1(
        QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()), bytes.length()).toHex());
}

QString qlumEmptyKeyIdentifier()
{
    return QStringLiteral("DA:39:A3:EE:5E:6B:4B:0D:32:55:BF:EF:95:60:18:90:AF:D8:07:09");
}
