#pragma once
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/values/uastatuscode.h>

#include <QDialog>
#include <QString>
#include <QWidget>

class QDialogButtonBox;

/// Tells that a server did not accept this application's own certificate, shows which one that is, and helps
/// to bring it to whoever looks after the server.
class QlumCertificateRefusedDialog : public QDialog
{
    Q_OBJECT
public:
    /// file is where the certificate lies.
    QlumCertificateRefusedDialog(const QString& serverName, const UaStatusCode& status,
                                 const UaPkiCertificate& certificate, const QString& file,
                                 QWidget* parent = nullptr);

    /// Whether a status that a server has sent while a secured connection was made speaks of the client's
    /// certificate.
    [[nodiscard]] static bool isRefusal(const UaStatusCode& status);

private:
    [[nodiscard]] static QString explanation(const UaStatusCode& status);
    QWidget* createFacts();
    void createButtons(QDialogButtonBox& buttons);
    void openLocation();
    void exportCertificate();

    const UaPkiCertificate m_certificate;
    const QString m_file;
};
