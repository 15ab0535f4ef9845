// What a certificate's status means and what to do about it.
#pragma once
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastatuscode.h>

#include <QString>

#include <vector>

/// One sentence; "No description available" for a status that has none.
[[nodiscard]] QString qlumCertificateStatusDescription(const UaStatusCode& status);
/// Of what was found the status that matters most to whoever is to decide: that a certificate is withdrawn,
/// expired or not what it says goes before that nobody has said to trust it. Good when there is none.
[[nodiscard]] UaStatusCode qlumWorstCertificateStatus(const std::vector<OpcUa_StatusCode>& found);
/// What the user can do when a server's certificate has that status; empty when there is nothing to do.
[[nodiscard]] QString qlumCertificateAdvice(const UaStatusCode& status);
