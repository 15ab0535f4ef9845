// What the user has overruled about the TLS certificates of single servers. The decisions lie in a file of
// the certificate store and hold for one server and the very certificate that was shown: another one of the
// server is asked about anew, and so is the same one at another server.
#pragma once
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uabytestring.h>

#include <QString>

#include <vector>

/// Whether a finding is one that a user may overrule: another host, and a time of validity that is not now.
[[nodiscard]] bool qlumMayOverruleTls(OpcUa_StatusCode finding);

/// Whether the user has overruled the finding about the certificate (DER, what follows it does not count) of
/// the server at the URL. Reads the file; any thread.
[[nodiscard]] bool qlumIsTlsOverruled(const QString& url, const UaByteString& certificate,
                                      OpcUa_StatusCode finding);

/// Overrules from now on; findings that nobody may overrule are left out. Takes the place of what was
/// overruled for this server before. False, and the reason logged, when it could not be written.
[[nodiscard]] bool qlumOverruleTls(const QString& url, const UaByteString& certificate,
                                   const std::vector<OpcUa_StatusCode>& findings);
