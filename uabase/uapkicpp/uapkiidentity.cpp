#include <uabase/uapkicpp/uapkiidentity.h>

#include <uabase/uapkicpp/uapki_p.h>
#include <uabase/uapkicpp/uapkierrors.h>

#include <array>
#include <string>

namespace {

struct Part
{
    const char* type;
    int nid;
    UaString UaPkiIdentity::*text;
};

// In the order in which a name holds them.
constexpr std::array<Part, 7> parts{{{"DC", NID_domainComponent, &UaPkiIdentity::domainComponent},
                                     {"C", NID_countryName, &UaPkiIdentity::country},
                                     {"ST", NID_stateOrProvinceName, &UaPkiIdentity::state},
                                     {"L", NID_localityName, &UaPkiIdentity::locality},
                                     {"O", NID_organizationName, &UaPkiIdentity::organization},
                                     {"OU", NID_organizationalUnitName, &UaPkiIdentity::organizationUnit},
                                     {"CN", NID_commonName, &UaPkiIdentity::commonName}}};

UaString textOf(const ASN1_STRING* value)
{
    unsigned char* utf8 = nullptr;
    const int length = ASN1_STRING_to_UTF8(&utf8, value);
    if (length < 0) {
        ERR_clear_error();
        return UaPki::shown(UaPki::viewOf(value)); // not what it claims to be: its bytes as they are
    }
    const UaString text =
        UaPki::shown({reinterpret_cast<const char*>(utf8), static_cast<std::size_t>(length)});
    OPENSSL_free(utf8);
    return text;
}

UaString joined(const X509_NAME* name, int nid)
{
    UaString text;
    for (int i = X509_NAME_get_index_by_NID(name, nid, -1); i >= 0;
         i = X509_NAME_get_index_by_NID(name, nid, i)) {
        const UaString value = textOf(X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, i)));
        if (text.isNull()) {
            text = value;
        } else {
            text += ", ";
            text += value;
        }
    }
    return text;
}

} // namespace

bool UaPkiIdentity::isEmpty() const
{
    for (const Part& part : parts)
        if (!(this->*part.text).isEmpty())
            return false;
    return true;
}

namespace UaPki {

NamePointer toName(const UaPkiIdentity& identity, const UaPkiErrors& errors)
{
    ERR_clear_error();
    NamePointer name(X509_NAME_new());
    if (name == nullptr) {
        errors.addOpenSSLError("No name could be created");
        return nullptr;
    }
    for (const Part& part : parts) {
        const UaString& text = identity.*part.text;
        if (text.isEmpty())
            continue;
        const auto* bytes = reinterpret_cast<const unsigned char*>(text.toUtf8());
        const int length = static_cast<int>(text.size());
        if (X509_NAME_add_entry_by_NID(name.get(), part.nid, MBSTRING_UTF8, bytes, length, -1, 0) != 1) {
            errors.addOpenSSLError("The name's part " + std::string(part.type) + " is not allowed: \"" +
                                   shown(text.view()).toStdString() + '"');
            return nullptr;
        }
    }
    return name;
}

UaPkiIdentity fromName(const X509_NAME* name)
{
    UaPkiIdentity identity;
    if (name != nullptr)
        for (const Part& part : parts)
            identity.*part.text = joined(name, part.nid);
    return identity;
}

} // namespace UaPki
