#include <certificates/qlumtlstrust.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificatedialog.h>
#include <certificates/qlumcertificatestore.h>
#include <uabase/system/uadir.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>
#include <QDialog>
#include <QMessageBox>
#include <QStringList>
#include <QWidget>

namespace {
constexpr int maximumNumbers = 1000; // of one subject; a folder somebody has filled ends the search

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(QlumTlsTrust)
};

QString numbered(const QString& folder, const UaPkiCertificate& certificate, int number)
{
    return folder + QLatin1Char('/') +
           QStringLiteral("%1.%2").arg(certificate.subjectNameHash(), 8, 16, QLatin1Char('0')).arg(number);
}

UaPkiCertificate ownOf(const UaByteString& chain)
{
    return UaPkiCertificateCollection::fromDERChain(chain).certificate(0);
}

bool holds(const QString& path, const UaPkiCertificate& certificate)
{
    const auto found = UaPkiCertificateCollection::fromFile(toUaString(path));
    for (int i = 0; i < found.size(); ++i)
        if (found[i] == certificate)
            return true;
    return false;
}

std::unique_ptr<QDialog> makeAlreadyTrusted(const QString& serverName, const QString& path, QWidget* parent)
{
    const QString text =
        Texts::tr("The TLS certificate of server '%1' is already in Tavelin's trust list but validation "
                  "still fails. Please check Tavelin's log files for details about the reason for this "
                  "error.\n\nThe certificate location is: %2")
            .arg(serverName, path);
    auto box = std::make_unique<QMessageBox>(
        QMessageBox::Critical, Texts::tr("TLS Certificate Already Trusted"), text, QMessageBox::Ok, parent);
    box->setObjectName(QStringLiteral("tlsAlreadyTrusted"));
    box->setTextFormat(Qt::PlainText);
    box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return box;
}
} // namespace

QString qlumFindTlsCertificate(const QString& folder, const UaPkiCertificate& certificate)
{
    for (int number = 0; number < maximumNumbers; ++number) {
        const QString path = numbered(folder, certificate, number);
        if (!UaDir::exists(toUaString(path)))
            break;
        if (!certificate.isNull() && holds(path, certificate))
            return path;
    }
    return {};
}

QString qlumStoreTlsCertificate(const QString& folder, const UaPkiCertificate& certificate)
{
    QString path;
    for (int number = 0; number < maximumNumbers && path.isEmpty(); ++number) {
        const QString candidate = numbered(folder, certificate, number);
        if (!UaDir::exists(toUaString(candidate)))
            path = candidate;
    }
    if (!path.isEmpty() && certificate.toPEMFile(toUaString(path)))
        return path;
    QStringList reasons;
    for (const UaString& reason : certificate.getErrors())
        reasons.append(qlumSingleLine(toQString(reason)));
    QlumLog(QStringLiteral("Tavelin"))
        .error(Texts::tr("The TLS certificate could not be written to '%1': %2")
                   .arg(folder, reasons.join(QLatin1String("; "))));
    return {};
}

std::unique_ptr<QDialog> qlumTlsTrustDialog(const QString& serverName, const QString& serverUrl,
                                            const UaByteString& certificate, const UaStatusCode& status,
                                            QWidget* parent)
{
    const QString path =
        qlumFindTlsCertificate(QlumCertificateStore::tlsIssuerCertificates(), ownOf(certificate));
    auto dialog = std::make_unique<QlumCertificateDialog>(serverName, serverUrl, certificate, status, parent);
    if (path.isEmpty() || dialog->isOverrulable())
        return dialog;
    return makeAlreadyTrusted(qlumCutText(qlumSingleLine(serverName)), path, parent);
}

bool qlumTrustTlsCertificate(const UaByteString& certificate)
{
    const QString folder = QlumCertificateStore::tlsIssuerCertificates();
    const UaPkiCertificate own = ownOf(certificate);
    return !own.isNull() && (!qlumFindTlsCertificate(folder, own).isEmpty() ||
                             !qlumStoreTlsCertificate(folder, own).isEmpty());
}
