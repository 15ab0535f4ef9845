// TLS certificates of servers that the user has decided to trust, in the form in which the TLS library looks
// them up: PEM files named after the hash of the subject and a number.
#pragma once
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>

#include <QString>

#include <memory>

class QDialog;
class QWidget;
class UaPkiCertificate;

/// The file below folder that holds the certificate; empty when none does.
[[nodiscard]] QString qlumFindTlsCertificate(const QString& folder, const UaPkiCertificate& certificate);
/// Writes the certificate under its first free number. The path; empty, and the reason logged, when that
/// failed.
[[nodiscard]] QString qlumStoreTlsCertificate(const QString& folder, const UaPkiCertificate& certificate);

/// By which the user judges a TLS certificate (DER) that failed with this status, or is told that he trusts
/// it already; to be shown. QDialog::Accepted: he trusts it, and qlumTrustTlsCertificate() is to keep that.
/// Shows every finding about the certificate at the server's URL. A trusted one that fails by what
/// the user may overrule for this server is shown, so that he can.
[[nodiscard]] std::unique_ptr<QDialog> qlumTlsTrustDialog(const QString& serverName, const QString& serverUrl,
                                                          const UaByteString& certificate,
                                                          const UaStatusCode& status, QWidget* parent);
/// Stores the certificate (DER) among those trusted, unless it is there already; false, and the reason
/// logged, when that failed.
[[nodiscard]] bool qlumTrustTlsCertificate(const UaByteString& certificate);
