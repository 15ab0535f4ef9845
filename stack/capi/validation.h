// Between the interface's structures and those of the certificate check.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/security/certificatecheck.h>

#include <string>

namespace opcua {

inline ByteView viewOf(const OpcUa_ByteString& bytes)
{
    return bytes.Data == nullptr || bytes.Length <= 0
               ? ByteView{}
               : ByteView{bytes.Data, static_cast<size_t>(bytes.Length)};
}

inline PkiFolders foldersOf(const OpcUa_PkiConfiguration* pki)
{
    const auto text = [](const char* path) { return std::string(path != nullptr ? path : ""); };
    if (pki == nullptr)
        return {};
    return {text(pki->TrustedCertificates), text(pki->TrustedRevocationLists), text(pki->IssuerCertificates),
            text(pki->IssuerRevocationLists)};
}

/// Looks into finding; valid as long as it is.
inline OpcUa_CertificateValidation validationOf(const CertificateFinding& finding)
{
    // the structure has no const bytes, the callee must not change them
    auto* const data = const_cast<OpcUa_Byte*>(finding.certificate.data());
    return {{static_cast<OpcUa_Int32>(finding.certificate.size()), data},
            finding.status,
            finding.depth,
            finding.providerError};
}

} // namespace opcua
