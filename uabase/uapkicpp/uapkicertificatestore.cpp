#include <uabase/uapkicpp/uapkicertificatestore.h>

#include <strings.h>

#include <uabase/uadir.h>
#include <uabase/uapkicpp/uapki_p.h>

namespace {

bool isCertificateName(std::string_view name)
{
    const std::size_t dot = name.rfind('.');
    const std::string ending(dot == std::string_view::npos ? std::string_view() : name.substr(dot));
    return ::strcasecmp(ending.c_str(), ".der") == 0 || ::strcasecmp(ending.c_str(), ".cer") == 0;
}

} // namespace

void UaPkiCertificateStore::add(const UaPkiCertificate& certificate)
{
    if (!certificate.isNull()) {
        m_bySubject.emplace(certificate.subjectNameHash(), certificate);
    }
}

std::set<UaByteString> UaPkiCertificateStore::addFolder(const UaString& folder)
{
    std::set<UaByteString> thumbprints;
    for (const UaString& name : UaDir::fileNames(folder)) {
        if (!isCertificateName(name.view())) {
            continue;
        }
        const auto certificate = UaPkiCertificate::fromDERFile(folder + UaString("/") + name);
        if (!certificate.isNull()) {
            thumbprints.insert(certificate.thumbPrint());
            add(certificate);
        }
    }
    return thumbprints;
}

UaPkiCertificate UaPkiCertificateStore::issuerOf(const UaPkiCertificate& certificate) const
{
    if (certificate.isNull() || certificate.isIssuedBy(certificate)) {
        return UaPkiCertificate();
    }
    UaPkiCertificate found;
    const X509_NAME* name = X509_get_issuer_name(UaPkiAccess::get(certificate));
    const auto hash = static_cast<OpcUa_UInt32>(X509_NAME_hash_ex(name, nullptr, nullptr, nullptr));
    const auto [begin, end] = m_bySubject.equal_range(hash);
    for (auto candidate = begin; candidate != end; ++candidate) {
        if (!certificate.isIssuedBy(candidate->second)) {
            continue;
        }
        if (candidate->second.isValid()) {
            return candidate->second;
        }
        if (found.isNull()) {
            found = candidate->second;
        }
    }
    return found;
}
