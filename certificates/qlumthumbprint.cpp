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
