#include <uabase/uapkicpp/uapkicertificatecollection.h>

#include <opcua/opcua_crypto.h>
#include <uabase/uapkicpp/uapki_p.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>

#include <cassert>
#include <cstddef>
#include <span>
#include <vector>

UaPkiCertificateCollection UaPkiCertificateCollection::fromDERChain(const UaByteString& bytes)
{
    UaPkiCertificateCollection chain;
    UaPki::Bytes rest = bytes.bytes();
    while (!rest.empty()) {
        if (chain.m_certificates.size() >= maximumChain) {
            chain.addError("The chain has too many certificates");
            break;
        }
        const std::size_t length = OpcUa_Certificate_GetFirstLength(rest.data(), rest.size());
        const UaPki::Bytes part = rest.first(length != 0 ? length : rest.size());
        const UaPkiCertificate certificate =
            UaPkiCertificate::fromDER(UaByteString(std::span<const OpcUa_Byte>(part)));
        if (!chain.addCertificate(certificate)) {
            chain.addErrors(certificate.getErrors());
            break;
        }
        rest = rest.subspan(part.size());
    }
    return chain;
}

UaPkiCertificateCollection UaPkiCertificateCollection::fromFile(const UaString& path)
{
    UaPkiCertificateCollection found;
    std::vector<unsigned char> content;
    if (!UaPki::readFile(path, content, found))
        return found;
    const auto parts = UaPki::certificatesOfFile(content);
    if (parts.empty())
        found.addError("File " + path.toStdString() + " holds no certificates, or something else with them");
    for (const UaByteString& part : parts) {
        const UaPkiCertificate certificate = UaPkiCertificate::fromDER(part);
        if (!found.addCertificate(certificate))
            found.addErrors(certificate.getErrors());
    }
    return found;
}

bool UaPkiCertificateCollection::addCertificate(const UaPkiCertificate& certificate)
{
    if (certificate.isNull())
        return false;
    m_certificates.push_back(certificate);
    return true;
}

const UaPkiCertificate& UaPkiCertificateCollection::operator[](int index) const
{
    assert(index >= 0 && index < size());
    return m_certificates[static_cast<std::size_t>(index)];
}

UaPkiCertificate UaPkiCertificateCollection::certificate(int index) const
{
    return index >= 0 && index < size() ? (*this)[index] : UaPkiCertificate();
}
