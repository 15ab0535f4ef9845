#include <uabase/uapkicpp/uapkicertificatestore.h>

#include <opcua/opcua_crypto.h>
#include <uabase/system/uadir.h>
#include <uabase/uapkicpp/uapki_p.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <array>
#include <optional>
#include <vector>

namespace {

// Into the next element of a DER structure, or behind it. False on a fault.
bool step(UaPki::Bytes& rest, bool enter)
{
    constexpr int storeFault = 0x81; // not readable, or without a length
    const unsigned char* at = rest.data();
    long length = 0;
    int tag = 0;
    int kind = 0;
    if (rest.empty() ||
        (ASN1_get_object(&at, &length, &tag, &kind, static_cast<long>(rest.size())) & storeFault) != 0)
        return false;
    const UaPki::Bytes element(at, rest.data() + rest.size());
    const auto size = static_cast<std::size_t>(length);
    rest = enter ? element.first(size) : element.subspan(size);
    return true;
}

// The hash of the subject; nothing when the bytes do not look like a certificate.
std::optional<unsigned long> subjectHashOf(UaPki::Bytes rest)
{
    if (!step(rest, true) || !step(rest, true))
        return std::nullopt;
    const bool hasVersion = !rest.empty() && (rest[0] & 0xC0u) == 0x80;
    const int before = hasVersion ? 5 : 4; // then serial number, algorithm, issuer, validity
    for (int element = 0; element < before; ++element)
        if (!step(rest, false))
            return std::nullopt;
    const unsigned char* at = rest.data();
    const UaPki::NamePointer name(d2i_X509_NAME(nullptr, &at, static_cast<long>(rest.size())));
    return name != nullptr ? std::optional(X509_NAME_hash_ex(name.get(), nullptr, nullptr, nullptr))
                           : std::nullopt;
}

UaByteString digestOf(UaPki::Bytes bytes)
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, EVP_sha1(), nullptr) != 1)
        return UaByteString();
    return UaByteString(static_cast<OpcUa_Int32>(length), digest.data());
}

} // namespace

void UaPkiCertificateStore::add(const UaPkiCertificate& certificate)
{
    if (!certificate.isNull()) {
        m_bySubject.emplace(X509_subject_name_hash(UaPkiAccess::get(certificate)),
                            certificate.toByteStringDER());
    }
}

std::set<UaByteString> UaPkiCertificateStore::addFolder(const UaString& folder)
{
    std::set<UaByteString> digests;
    std::vector<unsigned char> bytes;
    for (const UaString& name : UaDir::fileNames(folder, OPCUA_MAXIMUM_STORE_FILES)) {
        if (OpcUa_CertificateFile_IsName(name.toUtf8(), OpcUa_CertificateNaming_Endings) == OpcUa_False ||
            uaReadFile(folder + UaString("/") + name, UaPkiCertificate::maximumBytes, bytes))
            continue;
        for (const UaByteString& der : UaPki::certificatesOfFile(bytes)) {
            if (const auto subject = subjectHashOf(der.bytes())) {
                digests.insert(digestOf(der.bytes()));
                m_bySubject.emplace(*subject, der);
            }
        }
    }
    ERR_clear_error();
    return digests;
}

UaPkiCertificate UaPkiCertificateStore::issuerOf(const UaPkiCertificate& certificate) const
{
    if (certificate.isNull() || certificate.isIssuedBy(certificate))
        return UaPkiCertificate();
    UaPkiCertificate found;
    const auto hash = X509_issuer_name_hash(UaPkiAccess::get(certificate));
    const auto [begin, end] = m_bySubject.equal_range(hash);
    for (auto one = begin; one != end; ++one) {
        const UaPkiCertificate candidate = UaPkiCertificate::fromDER(one->second);
        if (!certificate.isIssuedBy(candidate))
            continue;
        if (candidate.isValid())
            return candidate;
        if (found.isNull())
            found = candidate;
    }
    return found;
}
