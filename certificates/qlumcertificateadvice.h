// What a certificate's status means and what to do about it.
#pragma once
#include <uabase/values/uastatuscode.h>

#include <QString>

/// One sentence; "No description available" for a status that has none.
[[nodiscard]] QString qlumCertificateStatusDescription(const UaStatusCode& status);
/// What the user can do when a server's certificate has that status; empty when there is nothing to do.
[[nodiscard]] QString qlumCertificateAdvice(const UaStatusCode& status);
