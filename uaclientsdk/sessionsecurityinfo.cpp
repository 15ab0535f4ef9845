#include <uaclientsdk/sessionsecurityinfo.h>

#include <span>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>

namespace UaClientSdk {

namespace {

constexpr OpcUa_UInt32 maxChainLength = 10;

// The size of the DER element at the front of bytes, header included; 0 when it is no complete SEQUENCE.
std::size_t derSequenceSize(std::span<const OpcUa_Byte> bytes)
{
    constexpr OpcUa_Byte sequenceTag = 0x30;
    if (bytes.size() < 2 || bytes[0] != sequenceTag) {
        return 0;
    }
    std::uint64_t size = bytes[1];
    std::size_t header = 2;
    if (size & 0x80u) {
        const std::size_t lengthBytes = size & 0x7Fu;
        if (lengthBytes == 0 || lengthBytes > 4 || bytes.size() < header + lengthBytes) {
            return 0;
        }
        size = 0;
        for (std::size_t i = 0; i < lengthBytes; ++i) {
            size = size << 8 | bytes[header + i];
        }
        header += lengthBytes;
    }
    return size <= bytes.size() - header ? header + static_cast<std::size_t>(size) : 0;
}

} // namespace

SessionSecurityInfo::SessionSecurityInfo()
    : securityPolicyUri(OpcUa_SecurityPolicy_None),
      m_userIdentity(std::make_shared<UaAnonymousIdentityToken>())
{
}

bool SessionSecurityInfo::isSecured() const
{
    return securityPolicyUri.view() != OpcUa_SecurityPolicy_None;
}

void SessionSecurityInfo::setAnonymousUserIdentity()
{
    m_userIdentity = std::make_shared<UaAnonymousIdentityToken>();
}

void SessionSecurityInfo::setUserPasswordUserIdentity(const UaString& user, const UaString& password)
{
    m_userIdentity = std::make_shared<UaUserNameIdentityToken>(user, password);
}

void SessionSecurityInfo::setCertificateUserIdentity(const UaByteString& certificate,
                                                     const UaByteString& privateKey)
{
    m_userIdentity = std::make_shared<UaCertificateIdentityToken>(certificate, privateKey);
}

UaStatus SessionSecurityInfo::splitCertificateChain(const UaByteString& chain,
                                                    UaByteStringArray& certificates)
{
    certificates.clear();
    std::span<const OpcUa_Byte> rest = chain.bytes();
    while (!rest.empty()) {
        const std::size_t size = derSequenceSize(rest);
        if (size == 0 || certificates.length() == maxChainLength) {
            certificates.clear();
            return UaStatus(OpcUa_BadCertificateInvalid);
        }
        const UaByteString certificate(rest.first(size));
        if (!certificates.append(*certificate.get())) {
            return UaStatus(OpcUa_BadOutOfMemory);
        }
        rest = rest.subspan(size);
    }
    return UaStatus(certificates.isEmpty() ? OpcUa_BadCertificateInvalid : OpcUa_Good);
}

} // namespace UaClientSdk
