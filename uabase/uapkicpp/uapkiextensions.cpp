#include <uabase/uapkicpp/uapkiextensions_p.h>

#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <arpa/inet.h>
#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace UaPki {

namespace {

struct Entry
{
    int nid;
    const char* value; // null: the authority key identifier, which depends on the issuer
};

constexpr Entry applicationBegin[] = {
    {NID_basic_constraints, "critical, CA:FALSE"},
    {NID_netscape_comment, "\"Generated with Korvanda UA Base Library using OpenSSL\""},
    {NID_subject_key_identifier, "hash"},
    {NID_authority_key_identifier, nullptr}};
constexpr Entry selfSignedUsage[] = {
    {NID_key_usage,
     "critical, nonRepudiation, digitalSignature, keyEncipherment, dataEncipherment, keyCertSign"}};
// only an authority may sign other certificates
constexpr Entry issuedUsage[] = {
    {NID_key_usage, "critical, nonRepudiation, digitalSignature, keyEncipherment, dataEncipherment"}};
constexpr Entry extendedUsage[] = {{NID_ext_key_usage, "critical, serverAuth,clientAuth"}};
constexpr Entry authorityAll[] = {
    {NID_basic_constraints, "critical, CA:TRUE"},
    {NID_netscape_comment, "\"CA certificate generated with Korvanda UA Base Library using OpenSSL\""},
    {NID_key_usage, "critical, nonRepudiation, digitalSignature, keyEncipherment, keyCertSign, cRLSign"},
    {NID_ext_key_usage, "critical, serverAuth,clientAuth"},
    {NID_subject_key_identifier, "hash"}};
// one that signs nothing but certificates of applications
constexpr Entry issuingAuthority[] = {{NID_basic_constraints, "critical, CA:TRUE, pathlen:0"},
                                      {NID_key_usage, "critical, digitalSignature, keyCertSign, cRLSign"},
                                      {NID_subject_key_identifier, "hash"}};
constexpr Entry requested[] = {{NID_basic_constraints, "critical, CA:FALSE"}};

std::vector<Entry> entriesOf(Role role)
{
    std::vector<Entry> entries;
    const auto add = [&entries](std::span<const Entry> more) {
        entries.insert(entries.end(), more.begin(), more.end());
    };
    if (role == Role::Authority) {
        add(authorityAll);
        return entries;
    }
    if (role == Role::IssuingAuthority) {
        add(issuingAuthority);
        return entries;
    }
    add(applicationBegin);
    add(role == Role::SelfSignedApplication ? std::span<const Entry>(selfSignedUsage)
                                            : std::span<const Entry>(issuedUsage));
    add(extendedUsage);
    return entries;
}

ExtensionPointer fromText(X509* certificate, X509* issuer, int nid, const char* value)
{
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    return ExtensionPointer(X509V3_EXT_nconf_nid(nullptr, &context, nid, value));
}

// ---- alternative names

bool addText(GENERAL_NAMES* names, int type, const UaString& text)
{
    Pointer<GENERAL_NAME, &GENERAL_NAME_free> name(GENERAL_NAME_new());
    Pointer<ASN1_IA5STRING, &ASN1_IA5STRING_free> value(ASN1_IA5STRING_new());
    if (name == nullptr || value == nullptr || text.view().find('\0') != std::string_view::npos ||
        ASN1_STRING_set(value.get(), text.toUtf8(), static_cast<int>(text.size())) != 1)
        return false;
    GENERAL_NAME_set0_value(name.get(), type, value.release());
    if (sk_GENERAL_NAME_push(names, name.get()) <= 0)
        return false;
    (void)name.release();
    return true;
}

bool addAddress(GENERAL_NAMES* names, const UaString& text)
{
    Pointer<GENERAL_NAME, &GENERAL_NAME_free> name(GENERAL_NAME_new());
    Pointer<ASN1_OCTET_STRING, &ASN1_OCTET_STRING_free> value(a2i_IPADDRESS(text.toUtf8()));
    if (name == nullptr || value == nullptr)
        return false;
    GENERAL_NAME_set0_value(name.get(), GEN_IPADD, value.release());
    if (sk_GENERAL_NAME_push(names, name.get()) <= 0)
        return false;
    (void)name.release();
    return true;
}

// The name that cannot be added, or null when all are in.
UaString addNames(GENERAL_NAMES* names, const UaPkiCertificateInfo& info)
{
    if (!info.URI.isEmpty() && !addText(names, GEN_URI, info.URI))
        return info.URI;
    for (const OpcUa_String& text : info.DNSNames) {
        const UaString name(text);
        if (!name.isEmpty() && !addText(names, GEN_DNS, name))
            return name;
    }
    for (const OpcUa_String& text : info.IPAddresses) {
        const UaString address(text);
        if (!address.isEmpty() && !addAddress(names, address))
            return address;
    }
    return info.eMail.isEmpty() || addText(names, GEN_EMAIL, info.eMail) ? UaString() : info.eMail;
}

// Built from its parts and not from text, so that a comma in a name stays a comma.
AlternativeNamesPointer makeNames(const UaPkiCertificateInfo& info, const UaPkiErrors& errors)
{
    ERR_clear_error();
    AlternativeNamesPointer names(GENERAL_NAMES_new());
    if (names == nullptr) {
        errors.addOpenSSLError("The alternative names could not be created");
        return nullptr;
    }
    const UaString wrong = addNames(names.get(), info);
    if (!wrong.isNull()) {
        errors.addOpenSSLError("The alternative name \"" + shown(wrong.view()).toStdString() +
                               "\" is not allowed");
        return nullptr;
    }
    return names;
}

UaString addressText(std::string_view bytes)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (bytes.size() == 4 || bytes.size() == 16) {
        const int family = bytes.size() == 4 ? AF_INET : AF_INET6;
        return UaString(::inet_ntop(family, bytes.data(), text.data(), text.size()));
    }
    const auto* data = reinterpret_cast<const OpcUa_Byte*>(bytes.data());
    return UaByteString(static_cast<OpcUa_Int32>(bytes.size()), data).toHex(":");
}

void readName(const GENERAL_NAME* name, UaPkiCertificateInfo& info)
{
    int type = 0;
    const auto* value = static_cast<const ASN1_STRING*>(GENERAL_NAME_get0_value(name, &type));
    switch (type) {
    case GEN_URI:
        info.URI = info.URI.isNull() ? shown(viewOf(value)) : info.URI;
        break;
    case GEN_EMAIL:
        info.eMail = info.eMail.isNull() ? shown(viewOf(value)) : info.eMail;
        break;
    case GEN_DNS:
        static_cast<void>(info.DNSNames.append(*shown(viewOf(value)).get())); // without memory one name less
        break;
    case GEN_IPADD:
        static_cast<void>(info.IPAddresses.append(*addressText(viewOf(value)).get()));
        break;
    default:
        break;
    }
}

} // namespace

ExtensionPointer authorityKeyIdentifier(X509* certificate, X509* issuer, EVP_PKEY* issuerKey)
{
    if (issuer != nullptr) {
        // "always", because the library leaves the key identifier out of self-signed certificates otherwise
        const bool identified = X509_get_ext_by_NID(issuer, NID_subject_key_identifier, -1) >= 0;
        return fromText(certificate, issuer, NID_authority_key_identifier,
                        identified ? "keyid:always, issuer:always" : "issuer:always");
    }
    const UaByteArray identifier = keyIdentifier(issuerKey);
    const Pointer<AUTHORITY_KEYID, &AUTHORITY_KEYID_free> value(AUTHORITY_KEYID_new());
    if (identifier.isEmpty() || value == nullptr)
        return nullptr;
    value->keyid = ASN1_OCTET_STRING_new();
    if (value->keyid == nullptr ||
        ASN1_OCTET_STRING_set(value->keyid, identifier.rawData(), static_cast<int>(identifier.size())) != 1)
        return nullptr;
    return ExtensionPointer(X509V3_EXT_i2d(NID_authority_key_identifier, 0, value.get()));
}

bool addExtensions(X509* certificate, Role role, X509* issuer, EVP_PKEY* issuerKey, const UaPkiErrors& errors)
{
    for (const Entry& entry : entriesOf(role)) {
        ERR_clear_error();
        const ExtensionPointer extension = entry.value != nullptr
                                               ? fromText(certificate, issuer, entry.nid, entry.value)
                                               : authorityKeyIdentifier(certificate, issuer, issuerKey);
        if (extension == nullptr || X509_add_ext(certificate, extension.get(), -1) != 1) {
            errors.addOpenSSLError(std::string("The extension ") + OBJ_nid2sn(entry.nid) +
                                   " could not be added");
            return false;
        }
    }
    return true;
}

bool addAlternativeNames(X509* certificate, const UaPkiCertificateInfo& info, const UaPkiErrors& errors)
{
    const AlternativeNamesPointer names = makeNames(info, errors);
    if (names == nullptr)
        return false;
    if (sk_GENERAL_NAME_num(names.get()) > 0 &&
        X509_add1_ext_i2d(certificate, NID_subject_alt_name, names.get(), 0, X509V3_ADD_DEFAULT) != 1) {
        errors.addOpenSSLError("The alternative names could not be added");
        return false;
    }
    return true;
}

bool addExtensions(X509_REQ* request, const UaPkiCertificateInfo& info, const UaPkiErrors& errors)
{
    const AlternativeNamesPointer names = makeNames(info, errors);
    if (names == nullptr)
        return false;
    const auto release = [](STACK_OF(X509_EXTENSION) * list) {
        sk_X509_EXTENSION_pop_free(list, &X509_EXTENSION_free);
    };
    std::unique_ptr<STACK_OF(X509_EXTENSION), decltype(release)> list(sk_X509_EXTENSION_new_null(), release);
    const auto add = [&list](ExtensionPointer extension) {
        if (extension == nullptr || sk_X509_EXTENSION_push(list.get(), extension.get()) <= 0)
            return false;
        (void)extension.release();
        return true;
    };
    bool complete = list != nullptr;
    for (const std::span<const Entry> entries :
         {std::span<const Entry>(requested), std::span<const Entry>(issuedUsage),
          std::span<const Entry>(extendedUsage)})
        for (const Entry& entry : entries)
            complete = complete && add(fromText(nullptr, nullptr, entry.nid, entry.value));
    if (complete && sk_GENERAL_NAME_num(names.get()) > 0)
        complete = add(ExtensionPointer(X509V3_EXT_i2d(NID_subject_alt_name, 0, names.get())));
    if (!complete || X509_REQ_add_extensions(request, list.get()) != 1) {
        errors.addOpenSSLError("The extensions of the request could not be added");
        return false;
    }
    return true;
}

void readAlternativeNames(const GENERAL_NAMES* names, UaPkiCertificateInfo& info)
{
    for (int i = 0; names != nullptr && i < sk_GENERAL_NAME_num(names); ++i)
        readName(sk_GENERAL_NAME_value(names, i), info);
}

} // namespace UaPki
