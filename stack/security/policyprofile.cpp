#include <stack/security/policyprofile.h>

#include <opcua/opcua_channel.h>

#include <array>

namespace opcua {

namespace {

constexpr const char* rsaSha1 = "http://www.w3.org/2000/09/xmldsig#rsa-sha1";
constexpr const char* rsaSha256 = "http://www.w3.org/2001/04/xmldsig-more#rsa-sha256";
constexpr const char* rsaPssSha256 = "http://opcfoundation.org/UA/security/rsa-pss-sha2-256";
constexpr const char* rsa15 = "http://www.w3.org/2001/04/xmlenc#rsa-1_5";
constexpr const char* rsaOaep = "http://www.w3.org/2001/04/xmlenc#rsa-oaep";
constexpr const char* rsaOaepSha256 = "http://opcfoundation.org/UA/security/rsa-oaep-sha2-256";

constexpr std::array<PolicyProfile, 5> profiles = {{
    {OpcUa_SecurityPolicy_Basic128Rsa15, rsaSha1, rsa15, RsaSignature::Pkcs1Sha1, RsaEncryption::Pkcs1,
     Digest::Sha1, 16, 16, 16, 1024, 2048, false},
    {OpcUa_SecurityPolicy_Basic256, rsaSha1, rsaOaep, RsaSignature::Pkcs1Sha1, RsaEncryption::OaepSha1,
     Digest::Sha1, 24, 32, 32, 1024, 2048, false},
    {OpcUa_SecurityPolicy_Basic256Sha256, rsaSha256, rsaOaep, RsaSignature::Pkcs1Sha256,
     RsaEncryption::OaepSha1, Digest::Sha256, 32, 32, 32, 2048, 4096, true},
    {OpcUa_SecurityPolicy_Aes128Sha256RsaOaep, rsaSha256, rsaOaep, RsaSignature::Pkcs1Sha256,
     RsaEncryption::OaepSha1, Digest::Sha256, 32, 16, 32, 2048, 4096, true},
    {OpcUa_SecurityPolicy_Aes256Sha256RsaPss, rsaPssSha256, rsaOaepSha256, RsaSignature::PssSha256,
     RsaEncryption::OaepSha256, Digest::Sha256, 32, 32, 32, 2048, 4096, true},
}};

} // namespace

const PolicyProfile* findPolicyProfile(std::string_view uri)
{
    for (const PolicyProfile& profile : profiles)
        if (uri == profile.uri)
            return &profile;
    return nullptr;
}

} // namespace opcua
