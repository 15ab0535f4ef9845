// What servers send as their certificate, and what lies in the folders of a store: a chain, a revocation list
// or a request. The first byte chooses which; the check runs against a store of the corpus's own authority.
#include <opcua/opcua_crypto.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkicsr.h>
#include <uabase/uapkicpp/uapkirevocationlist.h>
#include <uabase/values/uabytestring.h>
#include <uaclientsdk/sessionsecurityinfo.h>

#include <cstdint>
#include <cstdlib>
#include <span>

namespace {

constexpr std::size_t maxChain = 10;

void check(bool holds)
{
    if (!holds)
        std::abort();
}

OpcUa_StatusCode accept(const OpcUa_CertificateValidation* validation, void* context)
{
    ++*static_cast<int*>(context);
    check(OpcUa_IsBad(validation->Status) && validation->Depth >= 0);
    return OpcUa_Good;
}

OpcUa_StatusCode verify(std::span<const std::uint8_t> chain, OpcUa_Certificate_PfnVerify callback,
                        int& findings)
{
    const OpcUa_ByteString bytes{static_cast<OpcUa_Int32>(chain.size()),
                                 const_cast<OpcUa_Byte*>(chain.data())};
    const OpcUa_PkiConfiguration pki{TAVELIN_FUZZ_STORE "/trusted", TAVELIN_FUZZ_STORE "/trusted-crl",
                                     nullptr, nullptr};
    return OpcUa_Certificate_Verify(&bytes, &pki, OpcUa_SecurityPolicy_Basic256Sha256, callback, &findings);
}

void readEverything(const UaPkiCertificate& certificate)
{
    const UaPkiCertificateInfo info = certificate.info();
    check(certificate.thumbPrint().length() == 20);
    static_cast<void>(info);
    static_cast<void>(certificate.subject());
    static_cast<void>(certificate.issuer());
    static_cast<void>(certificate.commonName());
    static_cast<void>(certificate.serialNumber());
    static_cast<void>(certificate.isValid());
    static_cast<void>(certificate.isSelfSigned());
    static_cast<void>(certificate.isCA());
    static_cast<void>(certificate.signatureTypeString());
    static_cast<void>(certificate.publicKey());
    for (const UaPkiCertificate::Extension extension : certificate.extensions())
        static_cast<void>(certificate.extensionValue(extension));
}

// Two readers of the same bytes must see the same certificates, or the one that was judged would not be the
// one that is used.
void tryCheck(std::span<const std::uint8_t> bytes)
{
    UaByteStringArray split;
    const bool readable =
        UaClientSdk::SessionSecurityInfo::splitCertificateChain(UaByteString(bytes), split).isGood();
    int findings = 0;
    const OpcUa_StatusCode status = verify(bytes, accept, findings);
    check(OpcUa_IsGood(status) || findings > 0);
    check(readable || OpcUa_IsBad(status));
    if (!readable)
        return;
    check(split.length() >= 1 && split.length() <= maxChain);
    std::size_t length = 0;
    for (OpcUa_UInt32 n = 0; n < split.length(); ++n)
        length += static_cast<std::size_t>(split[n].Length);
    check(length == bytes.size());
}

void tryFields(std::span<const std::uint8_t> bytes)
{
    const UaPkiCertificateCollection chain = UaPkiCertificateCollection::fromDERChain(UaByteString(bytes));
    for (int n = 0; n < chain.size(); ++n)
        readEverything(chain[n]);
}

void tryRevocationList(std::span<const std::uint8_t> bytes)
{
    const auto list = UaPkiRevocationList::fromDER(UaByteString(bytes).toByteArray());
    if (list.isNull())
        return;
    static_cast<void>(list.crlNumber());
    static_cast<void>(list.isValid());
    static_cast<void>(list.issuer());
    check(list.revokedCount() >= 0);
}

void tryRequest(std::span<const std::uint8_t> bytes)
{
    const auto request = UaPkiCSR::fromDER(UaByteString(bytes).toByteArray());
    if (request.isNull())
        return;
    static_cast<void>(request.subject());
    static_cast<void>(request.info());
    static_cast<void>(request.publicKey());
    static_cast<void>(request.verifySignature());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::span<const std::uint8_t> bytes(data + 1, size - 1);
    switch (data[0] % 4) {
    case 0:
        tryRevocationList(bytes);
        break;
    case 1:
        tryRequest(bytes);
        break;
    case 2:
        tryCheck(bytes);
        break;
    default:
        tryFields(bytes);
    }
    return 0;
}
