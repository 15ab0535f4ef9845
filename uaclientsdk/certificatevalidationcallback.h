// Who is told what is wrong with a server's certificate.
#pragma once

#include <uabase/values/uabytestring.h>

namespace UaClientSdk {

class SessionSecurityInfo;

class CertificateValidationCallback
{
public:
    virtual ~CertificateValidationCallback() = default;

    /// One finding about the certificate (DER) at that depth: 0 the server's own, 1 its issuer and so on.
    /// errorCode is the crypto library's number, 0 for what only OPC UA asks for; context serves
    /// SessionSecurityInfo::getCurrentErrorInformationOpenSSL during the call. Runs on the thread of the
    /// verification. 1 goes on, which overrides a finding about time or unknown revocation; 0 ends the check
    /// with it.
    virtual int verificationError(SessionSecurityInfo* security, void* context,
                                  const UaByteString& certificate, unsigned int errorCode,
                                  unsigned int depth) = 0;
};

} // namespace UaClientSdk
