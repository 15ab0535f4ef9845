// Which policies there are, and what they ask of the keys.
#include <stack/security/securitypolicies.h>

#include <opcua/opcua_channel.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/security/rsasecuritypolicy.h>

#include <memory>
#include <string_view>
#include <utility>

namespace opcua {

namespace {

bool keyFits(const PolicyProfile& profile, const Certificate& certificate)
{
    const int bits = certificate.rsaBits();
    return bits >= profile.minKeyBits && bits <= profile.maxKeyBits;
}

OpcUa_StatusCode makeRsaPolicy(const PolicyProfile& profile, bool encrypts, const SecurityMaterial& material,
                               std::unique_ptr<SecurityPolicy>& policy)
{
    const auto ownLeaf = firstOfChain(material.ownCertificate);
    const auto peerLeaf = firstOfChain(material.peerCertificate);
    auto own = ownLeaf ? cachedCertificate(*ownLeaf) : nullptr;
    auto peer = peerLeaf ? cachedCertificate(*peerLeaf) : nullptr;
    if (!own || !peer)
        return OpcUa_BadCertificateInvalid;
    auto key = cachedPrivateKey(material.ownPrivateKey);
    if (!key || !key->belongsTo(*own))
        return OpcUa_BadNoValidCertificates;
    if (!keyFits(profile, *own) || !keyFits(profile, *peer))
        return OpcUa_BadCertificatePolicyCheckFailed;
    policy = std::make_unique<RsaSecurityPolicy>(profile, encrypts, material.ownCertificate, std::move(own),
                                                 std::move(key), std::move(peer));
    return OpcUa_Good;
}

} // namespace

OpcUa_StatusCode makeSecurityPolicy(std::string_view uri, OpcUa_MessageSecurityMode mode,
                                    const SecurityMaterial& material, std::unique_ptr<SecurityPolicy>& policy)
{
    const bool none = uri == OpcUa_SecurityPolicy_None;
    const PolicyProfile* const profile = none ? nullptr : findPolicyProfile(uri);
    if (!none && profile == nullptr)
        return OpcUa_BadSecurityPolicyRejected;
    const bool secured =
        mode == OpcUa_MessageSecurityMode_Sign || mode == OpcUa_MessageSecurityMode_SignAndEncrypt;
    if (none ? mode != OpcUa_MessageSecurityMode_None : !secured)
        return OpcUa_BadSecurityModeRejected;
    if (profile != nullptr)
        return makeRsaPolicy(*profile, mode == OpcUa_MessageSecurityMode_SignAndEncrypt, material, policy);
    policy = makeSecurityPolicyNone();
    return OpcUa_Good;
}

void clearCredentialCaches()
{
    clearPrivateKeyCache();
    clearCertificateCache();
}

} // namespace opcua
