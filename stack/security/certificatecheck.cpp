#include <stack/security/certificatecheck.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/security/certificate.h>

#include <openssl/err.h>
#include <openssl/objects.h>
#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>
#include <ranges>
#include <unordered_map>
#include <vector>

namespace opcua {

namespace {

using StoreHandle = std::unique_ptr<X509_STORE, Freer<X509_STORE_free>>;
using StoreContext = std::unique_ptr<X509_STORE_CTX, Freer<X509_STORE_CTX_free>>;

struct StackFreer
{
    void operator()(STACK_OF(X509) * stack) const { sk_X509_free(stack); } // the certificates are borrowed
};
using BorrowedStack = std::unique_ptr<STACK_OF(X509), StackFreer>;

using Findings = std::vector<CertificateFinding>;

Bytes derOf(const X509* certificate)
{
    const int size = certificate == nullptr ? 0 : i2d_X509(certificate, nullptr);
    Bytes der(static_cast<size_t>(std::max(size, 0)));
    unsigned char* at = der.data();
    if (size > 0 && i2d_X509(certificate, &at) != size)
        der.clear();
    return der;
}

// The library tells one error after the other; all are wanted, so that each can be shown.
int collect(int good, X509_STORE_CTX* context)
{
    auto* const findings =
        static_cast<Findings*>(X509_STORE_CTX_get_app_data(context)); // set by verify below
    if (good == 1)
        return 1;
    const int error = X509_STORE_CTX_get_error(context);
    const int depth = X509_STORE_CTX_get_error_depth(context);
    X509* const certificate = X509_STORE_CTX_get_current_cert(context);
    // a root that no list speaks of is judged by trust alone
    if (error == X509_V_ERR_UNABLE_TO_GET_CRL && certificate != nullptr &&
        X509_self_signed(certificate, 0) == 1)
        return 1;
    try {
        findings->push_back({statusOfProviderError(error, depth), depth, error, derOf(certificate)});
    } catch (const std::bad_alloc&) {
        return 0; // ends the check as one that failed
    }
    return 1;
}

// Those that may come to lie above the chain, by their names: to decode the thousands that a folder may hold,
// and to have the library's store sort itself with each of them, takes seconds.
std::vector<CertificatePointer> possibleIssuers(const std::vector<CertificatePointer>& chain,
                                                const PkiContents& contents)
{
    std::unordered_multimap<unsigned long, const StoredCertificate*> bySubject;
    for (const auto* certificates : {&contents.trusted, &contents.issuers})
        for (const StoredCertificate& certificate : *certificates)
            bySubject.emplace(certificate.subjectHash, &certificate);
    std::vector<CertificatePointer> found;
    std::vector<unsigned long> wanted;
    for (const CertificatePointer& sent : chain) {
        wanted.push_back(X509_subject_name_hash(sent->x509()));
        wanted.push_back(X509_issuer_name_hash(sent->x509()));
    }
    while (!wanted.empty()) {
        const auto [begin, end] = bySubject.equal_range(wanted.back());
        wanted.pop_back();
        for (auto one = begin; one != end; ++one) {
            if (const CertificatePointer issuer = cachedCertificate(one->second->der)) {
                found.push_back(issuer);
                wanted.push_back(X509_issuer_name_hash(issuer->x509()));
            }
        }
        bySubject.erase(begin, end); // each once, so that those that issue each other come to an end
    }
    return found;
}

StoreHandle makeStore(const std::vector<CertificatePointer>& chain, const PkiContents& contents)
{
    StoreHandle store(X509_STORE_new());
    if (!store)
        return nullptr;
    for (const CertificatePointer& certificate : possibleIssuers(chain, contents))
        X509_STORE_add_cert(store.get(), certificate->x509());
    for (const CrlHandle& list : contents.revocationLists)
        X509_STORE_add_crl(store.get(), list.get());
    X509_VERIFY_PARAM* const parameters = X509_STORE_get0_param(store.get());
    X509_VERIFY_PARAM_set_flags(parameters, X509_V_FLAG_CRL_CHECK | X509_V_FLAG_CRL_CHECK_ALL |
                                                X509_V_FLAG_CHECK_SS_SIGNATURE);
    X509_VERIFY_PARAM_set_depth(parameters, static_cast<int>(maxChainLength));
    X509_VERIFY_PARAM_set_auth_level(parameters, 0); // what is too weak, the security policy says
    return store;
}

bool isTrusted(const STACK_OF(X509) * chain, const PkiContents& contents)
{
    for (int n = 0; n < sk_X509_num(chain); ++n) {
        const Bytes der = derOf(sk_X509_value(chain, n));
        if (std::ranges::any_of(contents.trusted, [&der](const StoredCertificate& trusted) {
                return !der.empty() && trusted.der == der;
            }))
            return true;
    }
    return false;
}

// What the library says of trust counts only when the folder agrees: it takes a known issuer for trusted, and
// does not take a trusted certificate for enough.
void settleTrust(Findings& findings, bool trusted, const Certificate& own)
{
    const auto isTrust = [](const CertificateFinding& finding) {
        return finding.status == OpcUa_BadCertificateUntrusted;
    };
    const auto told = std::find_if(findings.begin(), findings.end(), isTrust);
    const int error = told != findings.end() ? told->providerError : X509_V_ERR_CERT_UNTRUSTED;
    std::erase_if(findings, isTrust);
    if (!trusted)
        findings.push_back(
            {OpcUa_BadCertificateUntrusted, 0, error, Bytes(own.der().begin(), own.der().end())});
}

// A list that somebody else made revokes nothing.
void dropForeignRevocations(Findings& findings)
{
    const Findings all = findings;
    std::erase_if(findings, [&](const CertificateFinding& finding) {
        return finding.providerError == X509_V_ERR_CERT_REVOKED &&
               std::ranges::any_of(all, [&](const CertificateFinding& other) {
                   return other.providerError == X509_V_ERR_CRL_SIGNATURE_FAILURE &&
                          other.depth == finding.depth;
               });
    });
}

// False when the library could not do its work.
bool verify(const std::vector<CertificatePointer>& chain, const PkiContents& contents, Findings& findings)
{
    const StoreHandle store = makeStore(chain, contents);
    const StoreContext context(X509_STORE_CTX_new());
    const BorrowedStack sent(sk_X509_new_null());
    if (!store || !context || !sent)
        return false;
    for (size_t n = 1; n < chain.size(); ++n)
        if (sk_X509_push(sent.get(), chain[n]->x509()) == 0)
            return false;
    if (X509_STORE_CTX_init(context.get(), store.get(), chain[0]->x509(), sent.get()) != 1)
        return false;
    X509_STORE_CTX_set_app_data(context.get(), &findings);
    X509_STORE_CTX_set_verify_cb(context.get(), collect);
    if (X509_verify_cert(context.get()) != 1)
        return false;
    const STACK_OF(X509)* const built = X509_STORE_CTX_get0_chain(context.get());
    settleTrust(findings, built != nullptr && isTrusted(built, contents), *chain[0]);
    dropForeignRevocations(findings);
    return true;
}

void checkUsage(const Certificate& certificate, Findings& findings)
{
    constexpr std::uint32_t ends = XKU_SSL_SERVER | XKU_SSL_CLIENT | XKU_ANYEKU;
    // both answer with all bits set for a certificate that says nothing
    const bool signs = (X509_get_key_usage(certificate.x509()) & KU_DIGITAL_SIGNATURE) != 0;
    const bool talks = (X509_get_extended_key_usage(certificate.x509()) & ends) != 0;
    if (!signs || !talks)
        findings.push_back({OpcUa_BadCertificateUseNotAllowed, 0, 0,
                            Bytes(certificate.der().begin(), certificate.der().end())});
}

void checkStrength(const Certificate& certificate, const PolicyProfile& profile, Findings& findings)
{
    int digest = NID_undef;
    const bool known = X509_get_signature_info(certificate.x509(), &digest, nullptr, nullptr, nullptr) == 1;
    const bool weak = !known || digest == NID_md5 || digest == NID_sha1;
    const int bits = certificate.rsaBits();
    if (bits < profile.minKeyBits || bits > profile.maxKeyBits || (profile.weakCertificatesDenied && weak))
        findings.push_back({OpcUa_BadCertificatePolicyCheckFailed, 0, 0,
                            Bytes(certificate.der().begin(), certificate.der().end())});
}

} // namespace

std::vector<CertificateFinding> checkCertificate(ByteView chain, const PkiFolders& folders,
                                                 const PolicyProfile* profile)
{
    Findings findings;
    const auto certificates = parseChain(chain);
    if (certificates.empty())
        return {{OpcUa_BadCertificateInvalid, 0, 0, Bytes(chain.begin(), chain.end())}};
    if (!verify(certificates, readPkiFolders(folders), findings))
        findings.push_back({OpcUa_BadCertificateInvalid, 0, X509_V_ERR_UNSPECIFIED, {}});
    checkUsage(*certificates[0], findings);
    if (profile != nullptr)
        checkStrength(*certificates[0], *profile, findings);
    putInOrder(findings);
    ERR_clear_error();
    return findings;
}

OpcUa_StatusCode judgeCertificate(const std::vector<CertificateFinding>& findings, const FindingJudge& judge)
{
    OpcUa_StatusCode result = OpcUa_Good;
    for (const CertificateFinding& finding : findings) {
        const bool accepted = judge && OpcUa_IsGood(judge(finding)) && mayBeOverridden(finding.status);
        if (!accepted && OpcUa_IsGood(result))
            result = finding.status;
    }
    return result;
}

} // namespace opcua
