// Extensions of certificates, requests and revocation lists.
#pragma once

#include <uabase/uapkicpp/uapki_p.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkierrors.h>

namespace UaPki {

using ExtensionPointer = Pointer<X509_EXTENSION, &X509_EXTENSION_free>;
using AlternativeNamesPointer = Pointer<GENERAL_NAMES, &GENERAL_NAMES_free>;

enum class Role { SelfSignedApplication, IssuedApplication, Authority, IssuingAuthority };

/// Adds what a certificate of this role holds, in its order. issuer is the certificate itself when it signs
/// itself, and null when only the issuer's key is at hand.
[[nodiscard]] bool addExtensions(X509* certificate, Role role, X509* issuer, EVP_PKEY* issuerKey,
                                 const UaPkiErrors& errors);
/// Adds the subject's alternative names; none, and true, when there is nothing to name.
[[nodiscard]] bool addAlternativeNames(X509* certificate, const UaPkiCertificateInfo& info,
                                       const UaPkiErrors& errors);
/// What a request asks for.
[[nodiscard]] bool addExtensions(X509_REQ* request, const UaPkiCertificateInfo& info,
                                 const UaPkiErrors& errors);
[[nodiscard]] ExtensionPointer authorityKeyIdentifier(X509* certificate, X509* issuer, EVP_PKEY* issuerKey);

/// Fills the four kinds of alternative names.
void readAlternativeNames(const GENERAL_NAMES* names, UaPkiCertificateInfo& info);

} // namespace UaPki
