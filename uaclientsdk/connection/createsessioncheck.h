// What a server's answer to CreateSession must prove before anything is told to it.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/erroroverrides.h>
#include <uaclientsdk/sessionsecurityinfo.h>

#include <functional>
#include <utility>

namespace UaClientSdk {

/// One answer, OPC 10000-4, 5.6.2. The order of the checks is that of the functions below.
class CreateSessionCheck
{
public:
    /// Whether the application goes on in spite of an error about that certificate.
    using Question = std::function<bool(const OverridableError& error, const UaByteString& certificate)>;

    /// url is the one that the session connected to; all are borrowed.
    CreateSessionCheck(const SessionSecurityInfo& security, const UaString& url,
                       const UaByteString& clientNonce, Question question)
        : m_security(security), m_url(url), m_clientNonce(clientNonce), m_question(std::move(question))
    {
    }

    /// BadCertificateInvalid, BadCertificateUseNotAllowed (the server's is another than the channel's),
    /// BadCertificateHostNameInvalid, BadSecurityChecksFailed (signature, or an endpoint list that is not
    /// discovery's), BadNonceInvalid, BadSecurityModeRejected (the endpoint is not in the list).
    [[nodiscard]] UaStatus run(const OpcUa_CreateSessionResponse& response);

    /// The one certificate, DER: of a secured session the one that its signatures were checked with, else the
    /// caller's or, without one, the server's, which then nobody has judged; may be empty.
    [[nodiscard]] const UaByteString& serverCertificate() const { return m_certificate; }
    /// Whether the error that run ended with could have been overridden, so that it has been told.
    [[nodiscard]] bool wasAsked() const { return m_asked; }
    [[nodiscard]] bool signatureFailed() const { return m_signatureFailed; }

private:
    [[nodiscard]] UaStatus checkCertificate(const UaByteString& chain);
    [[nodiscard]] UaStatus splitCertificate(const UaByteString& chain);
    [[nodiscard]] UaStatus checkHostName();
    [[nodiscard]] UaStatus checkSignature(const OpcUa_CreateSessionResponse& response);
    [[nodiscard]] UaStatus checkNonce(const OpcUa_ByteString& nonce);
    [[nodiscard]] UaStatus checkEndpoints(const OpcUa_CreateSessionResponse& response);
    [[nodiscard]] UaStatus compareWithDiscovery(const OpcUa_CreateSessionResponse& response);
    [[nodiscard]] UaStatus askAbout(OpcUa_StatusCode status, const char* text);
    [[nodiscard]] UaStatus ask(const OverridableError& error);

    const SessionSecurityInfo& m_security;
    const UaString& m_url;
    const UaByteString& m_clientNonce;
    const Question m_question;
    UaByteString m_certificate;
    bool m_asked = false;
    bool m_signatureFailed = false;
};

} // namespace UaClientSdk
