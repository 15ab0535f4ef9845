// What the files of this folder share; declared in uapki_p.h.
#include <opcua/opcua_crypto.h>
#include <uabase/system/uadir.h>
#include <uabase/system/uaescape.h>
#include <uabase/uapkicpp/uapki_p.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkierrors.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <array>
#include <cstddef>
#include <ctime>
#include <string_view>
#include <system_error>
#include <vector>

namespace UaPki {

bool isOneElement(Bytes bytes, const UaPkiErrors& errors)
{
    if (bytes.size() > UaPkiCertificate::maximumBytes) {
        errors.addError("The data is larger than 1 MB");
        return false;
    }
    const std::size_t length = OpcUa_Certificate_GetFirstLength(bytes.data(), bytes.size());
    if (length == 0) {
        errors.addError("The data is cut short or not DER at all");
        return false;
    }
    if (length != bytes.size()) {
        errors.addError("More data follows");
        return false;
    }
    return true;
}

BioPointer newMemory()
{
    return BioPointer(BIO_new(BIO_s_secmem()));
}

BioPointer readMemory(Bytes bytes)
{
    return BioPointer(BIO_new_mem_buf(bytes.data(), static_cast<int>(bytes.size())));
}

UaByteArray contentOf(BIO* memory)
{
    char* data = nullptr;
    const long length = BIO_get_mem_data(memory, &data);
    return UaByteArray(static_cast<OpcUa_Int32>(length), reinterpret_cast<const OpcUa_Byte*>(data));
}

int noPassword(char* /*buffer*/, int /*size*/, int /*writing*/, void* /*userData*/)
{
    return -1;
}

bool readFile(const UaString& path, std::vector<unsigned char>& bytes, const UaPkiErrors& errors)
{
    if (const std::error_code error = uaReadFile(path, UaPkiCertificate::maximumBytes, bytes)) {
        errors.addError("File " + path.toStdString() + " cannot be read: " + error.message());
        return false;
    }
    return true;
}

bool writeFile(const UaString& path, const UaByteArray& bytes, unsigned int mode, const UaPkiErrors& errors)
{
    if (bytes.isEmpty())
        return false; // the encoding has failed and told why
    if (const std::error_code error = uaWriteFileAtomically(path, bytes.span(), mode)) {
        errors.addError("File " + path.toStdString() + " cannot be written: " + error.message());
        return false;
    }
    return true;
}

std::vector<UaByteString> certificatesOfFile(Bytes content)
{
    std::vector<UaByteString> certificates;
    const auto take = [](const OpcUa_ByteString* der, void* context) {
        static_cast<std::vector<UaByteString>*>(context)->emplace_back(der->Length, der->Data);
    };
    if (OpcUa_IsBad(OpcUa_CertificateFile_Read(content.data(), content.size(), take, &certificates)))
        certificates.clear();
    return certificates;
}

const EVP_MD* digestOf(UaPkiCertificate::SignatureAlgorithm algorithm)
{
    switch (algorithm) {
    case UaPkiCertificate::Sha256:
        return EVP_sha256();
    case UaPkiCertificate::Sha384:
        return EVP_sha384();
    case UaPkiCertificate::Sha512:
        return EVP_sha512();
    default:
        return EVP_sha1();
    }
}

UaDateTime dateTimeOf(const ASN1_TIME* time)
{
    std::tm parts{};
    if (time == nullptr || ASN1_TIME_to_tm(time, &parts) != 1)
        return UaDateTime();
    return UaDateTime::fromTime_t(::timegm(&parts));
}

bool isNowWithin(const UaDateTime& from, const UaDateTime& to)
{
    const UaDateTime now = UaDateTime::now();
    return !from.isNull() && from <= now && now <= to;
}

bool setTime(ASN1_TIME* time, std::time_t now, OpcUa_Int64 seconds)
{
    constexpr OpcUa_Int64 secondsOfDay = 86400;
    constexpr OpcUa_Int64 maximumDays = 10000 * OpcUa_Int64(366); // further away than any date
    const OpcUa_Int64 days = seconds / secondsOfDay;
    if (days > maximumDays || days < -maximumDays)
        return false;
    return ASN1_TIME_adj(time, now, static_cast<int>(days), static_cast<long>(seconds % secondsOfDay)) !=
           nullptr;
}

UaString shown(std::string_view text)
{
    return UaString(uaEscapeControls(text));
}

std::string_view viewOf(const ASN1_STRING* text)
{
    return text != nullptr ? std::string_view(reinterpret_cast<const char*>(ASN1_STRING_get0_data(text)),
                                              static_cast<std::size_t>(ASN1_STRING_length(text)))
                           : std::string_view();
}

UaByteArray keyIdentifier(EVP_PKEY* key)
{
    X509_PUBKEY* info = nullptr;
    if (X509_PUBKEY_set(&info, key) != 1)
        return UaByteArray();
    const Pointer<X509_PUBKEY, &X509_PUBKEY_free> owner(info);
    const unsigned char* bits = nullptr;
    int length = 0;
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    if (X509_PUBKEY_get0_param(nullptr, &bits, &length, nullptr, info) != 1 ||
        EVP_Digest(bits, static_cast<std::size_t>(length), digest.data(), &size, EVP_sha1(), nullptr) != 1)
        return UaByteArray();
    return UaByteArray(static_cast<OpcUa_Int32>(size), digest.data());
}

} // namespace UaPki
