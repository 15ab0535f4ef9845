#include <certificates/qlumtlsoverrules.h>

#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatestore.h>
#include <opcua/opcua_crypto.h>
#include <uabase/system/uadir.h>
#include <uabase/values/uastring.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFileInfo>
#include <QList>
#include <QUrl>

#include <algorithm>
#include <cstdint>
#include <mutex>
#include <system_error>

namespace {
constexpr OpcUa_StatusCode codeBits = 0xFFFF0000u;
constexpr std::uint64_t maximumSize = 1024 * 1024;

struct OverruleTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumTlsOverrules)
};

std::mutex& fileMutex()
{
    static std::mutex mutex;
    return mutex;
}

// Beside the certificates, so that whoever does away with the store does away with this.
UaString filePath()
{
    return toUaString(QFileInfo(QlumCertificateStore::tlsIssuerCertificates()).path() +
                      QStringLiteral("/overruled"));
}

QByteArray digestOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
}

// Host and port; the path leads to the same server.
QByteArray serverDigest(const QString& url)
{
    const QUrl parts(url);
    return digestOf((parts.host().toLower() + QLatin1Char(':') + QString::number(parts.port())).toUtf8());
}

QByteArray certificateDigest(const UaByteString& certificate)
{
    const auto size = static_cast<std::size_t>(std::max(certificate.length(), 0));
    const auto own = OpcUa_Certificate_GetFirstLength(certificate.data(), size);
    return digestOf(QByteArray(reinterpret_cast<const char*>(certificate.data()), static_cast<int>(own)));
}

// Lines of server, certificate and codes, as hexadecimal digits with blanks between them.
QList<QByteArray> readLines()
{
    std::vector<unsigned char> content;
    if (uaReadFile(filePath(), maximumSize, content))
        return {};
    return QByteArray(reinterpret_cast<const char*>(content.data()), static_cast<int>(content.size()))
        .split('\n');
}
} // namespace

bool qlumMayOverruleTls(OpcUa_StatusCode finding)
{
    const OpcUa_StatusCode code = finding & codeBits;
    return code == OpcUa_BadCertificateHostNameInvalid || code == OpcUa_BadCertificateTimeInvalid ||
           code == OpcUa_BadCertificateIssuerTimeInvalid;
}

bool qlumIsTlsOverruled(const QString& url, const UaByteString& certificate, OpcUa_StatusCode finding)
{
    if (!qlumMayOverruleTls(finding))
        return false;
    const QByteArray begin = serverDigest(url) + ' ' + certificateDigest(certificate) + ' ';
    const QByteArray code = QByteArray::number(finding & codeBits, 16);
    const std::lock_guard lock(fileMutex());
    const QList<QByteArray> lines = readLines();
    return std::any_of(lines.begin(), lines.end(), [&](const QByteArray& line) {
        return line.startsWith(begin) && line.mid(begin.size()).split(' ').contains(code);
    });
}

bool qlumOverruleTls(const QString& url, const UaByteString& certificate,
                     const std::vector<OpcUa_StatusCode>& findings)
{
    const QByteArray server = serverDigest(url) + ' ';
    QByteArray added = server + certificateDigest(certificate);
    for (const OpcUa_StatusCode finding : findings)
        if (qlumMayOverruleTls(finding))
            added += ' ' + QByteArray::number(finding & codeBits, 16);
    const std::lock_guard lock(fileMutex());
    QByteArray content;
    for (const QByteArray& line : readLines())
        if (!line.isEmpty() && !line.startsWith(server))
            content += line + '\n';
    content += added + '\n';
    const std::error_code error =
        uaWriteFileAtomically(filePath(),
                              {reinterpret_cast<const unsigned char*>(content.constData()),
                               static_cast<std::size_t>(content.size())},
                              0600);
    if (error)
        QlumLog(QStringLiteral("Tavelin"))
            .error(
                OverruleTexts::tr("What was overruled of a TLS certificate could not be written to '%1': %2")
                    .arg(toQString(filePath()), QString::fromStdString(error.message())));
    return !error;
}
