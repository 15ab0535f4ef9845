#include <uabase/uapkicpp/uapkicertificate.h>

#include <uabase/uapkicpp/uapkiextensions_p.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

static_assert(UaPkiCertificate::NetscapeComment == NID_netscape_comment &&
              UaPkiCertificate::SubjectKeyIdentifier == NID_subject_key_identifier &&
              UaPkiCertificate::KeyUsage == NID_key_usage &&
              UaPkiCertificate::SubjectAltName == NID_subject_alt_name &&
              UaPkiCertificate::BasicConstraints == NID_basic_constraints &&
              UaPkiCertificate::AuthorityKeyIdentifier == NID_authority_key_identifier &&
              UaPkiCertificate::CRLDistributionPoints == NID_crl_distribution_points &&
              UaPkiCertificate::ExtendedKeyUsage == NID_ext_key_usage);

namespace {

UaPkiCertificate decoded(UaPki::Bytes bytes)
{
    UaPkiCertificate certificate;
    if (X509* object = UaPki::decode<X509>(bytes, &d2i_X509, &i2d_X509, &X509_free, certificate))
        UaPkiAccess::set(certificate, object);
    return certificate;
}

// Control characters are written out, but the line ends between the parts of a value stay.
UaString shownLines(std::string_view text)
{
    std::string result;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        result += UaPki::shown(text.substr(start, end - start)).view();
        if (end < text.size())
            result += '\n';
        start = end + 1;
    }
    return UaString(result);
}

} // namespace

UaPkiCertificate UaPkiCertificate::fromDER(const UaByteString& bytes)
{
    return decoded(bytes.bytes());
}

UaPkiCertificate UaPkiCertificate::fromDER(const UaByteArray& bytes)
{
    return decoded(bytes.span());
}

UaPkiCertificate UaPkiCertificate::fromDERFile(const UaString& path)
{
    UaPkiCertificate failed;
    std::vector<unsigned char> bytes;
    return UaPki::readFile(path, bytes, failed) ? decoded(bytes) : failed;
}

UaPkiCertificate UaPkiCertificate::fromPEMFile(const UaString& path)
{
    UaPkiCertificate certificate;
    std::vector<unsigned char> bytes;
    if (!UaPki::readFile(path, bytes, certificate))
        return certificate;
    X509* object = UaPki::readPem<X509>(bytes, &PEM_read_bio_X509);
    if (object == nullptr) {
        certificate.addOpenSSLError("File " + path.toStdString() + " holds no certificate in PEM form");
        return certificate;
    }
    UaPkiAccess::set(certificate, object);
    return certificate;
}

UaByteArray UaPkiCertificate::toDER() const
{
    return UaPki::encode<X509>(m_certificate.get(), &i2d_X509, *this);
}

UaByteString UaPkiCertificate::toByteStringDER() const
{
    const UaByteArray bytes = toDER();
    return bytes.isEmpty() ? UaByteString() : UaByteString(bytes);
}

bool UaPkiCertificate::toDERFile(const UaString& path) const
{
    return UaPki::writeFile(path, toDER(), 0644, *this);
}

bool UaPkiCertificate::toPEMFile(const UaString& path) const
{
    return UaPki::writePemFile<X509>(path, m_certificate.get(), &PEM_write_bio_X509,
                                     "The certificate cannot be encoded", *this);
}

UaPkiCertificateInfo UaPkiCertificate::info() const
{
    UaPkiCertificateInfo info;
    if (isNull())
        return info;
    const UaPki::AlternativeNamesPointer names(static_cast<GENERAL_NAMES*>(
        X509_get_ext_d2i(m_certificate.get(), NID_subject_alt_name, nullptr, nullptr)));
    UaPki::readAlternativeNames(names.get(), info);
    if (ASN1_INTEGER_get_int64(&info.serialNumber, X509_get0_serialNumber(m_certificate.get())) != 1)
        info.serialNumber = 0;
    info.validFrom = validFrom();
    info.validTo = validTo();
    info.validTime = info.validFrom.msecsTo(info.validTo) / 1000;
    ERR_clear_error();
    return info;
}

UaPkiIdentity UaPkiCertificate::subject() const
{
    return UaPki::fromName(isNull() ? nullptr : X509_get_subject_name(m_certificate.get()));
}

UaPkiIdentity UaPkiCertificate::issuer() const
{
    return UaPki::fromName(isNull() ? nullptr : X509_get_issuer_name(m_certificate.get()));
}

UaString UaPkiCertificate::commonName() const
{
    return subject().commonName;
}

UaString UaPkiCertificate::serialNumber() const
{
    if (isNull())
        return UaString();
    const ASN1_INTEGER* number = X509_get0_serialNumber(m_certificate.get());
    std::string text = ASN1_STRING_type(number) == V_ASN1_NEG_INTEGER ? "-" : "";
    std::array<char, 4> pair{};
    const std::string_view bytes = UaPki::viewOf(number);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::snprintf(pair.data(), pair.size(), i == 0 ? "%02X" : ":%02X",
                      static_cast<unsigned char>(bytes[i]));
        text += pair.data();
    }
    return UaString(text);
}

UaDateTime UaPkiCertificate::validFrom() const
{
    return isNull() ? UaDateTime() : UaPki::dateTimeOf(X509_get0_notBefore(m_certificate.get()));
}

UaDateTime UaPkiCertificate::validTo() const
{
    return isNull() ? UaDateTime() : UaPki::dateTimeOf(X509_get0_notAfter(m_certificate.get()));
}

bool UaPkiCertificate::isValid() const
{
    return UaPki::isNowWithin(validFrom(), validTo());
}

bool UaPkiCertificate::isSelfSigned() const
{
    const bool result = !isNull() && X509_self_signed(m_certificate.get(), 1) == 1;
    ERR_clear_error();
    return result;
}

bool UaPkiCertificate::isIssuedBy(const UaPkiCertificate& issuer) const
{
    return !isNull() && !issuer.isNull() &&
           X509_check_issued(issuer.m_certificate.get(), m_certificate.get()) == X509_V_OK;
}

bool UaPkiCertificate::isCA() const
{
    // the library's other answers are guesses about certificates that do not say it
    return !isNull() && X509_check_ca(m_certificate.get()) == 1;
}

bool UaPkiCertificate::verifySignature(const UaPkiPublicKey& publicKey) const
{
    const bool result = !isNull() && !publicKey.isNull() &&
                        X509_verify(m_certificate.get(), UaPkiAccess::get(publicKey)) == 1;
    ERR_clear_error();
    return result;
}

UaPkiCertificate::SignatureAlgorithm UaPkiCertificate::signatureAlgorithm() const
{
    int digest = NID_undef;
    if (isNull() || X509_get_signature_info(m_certificate.get(), &digest, nullptr, nullptr, nullptr) != 1)
        return UnknownSignatureAlgorithm;
    switch (digest) {
    case NID_sha1:
        return Sha1;
    case NID_sha256:
        return Sha256;
    case NID_sha384:
        return Sha384;
    case NID_sha512:
        return Sha512;
    default:
        return UnknownSignatureAlgorithm;
    }
}

UaString UaPkiCertificate::signatureTypeString() const
{
    const int nid = signatureTypeNID();
    return nid != NID_undef ? UaString(OBJ_nid2ln(nid)) : UaString();
}

int UaPkiCertificate::signatureTypeNID() const
{
    return isNull() ? NID_undef : X509_get_signature_nid(m_certificate.get());
}

bool UaPkiCertificate::hasExtension(Extension extension) const
{
    return !isNull() && X509_get_ext_by_NID(m_certificate.get(), extension, -1) >= 0;
}

UaString UaPkiCertificate::extensionValue(Extension extension) const
{
    const int index = isNull() ? -1 : X509_get_ext_by_NID(m_certificate.get(), extension, -1);
    const UaPki::BioPointer memory = UaPki::newMemory();
    if (index < 0 || memory == nullptr)
        return UaString();
    X509V3_EXT_print(memory.get(), X509_get_ext(m_certificate.get(), index), X509V3_EXT_DUMP_UNKNOWN, 0);
    ERR_clear_error();
    char* text = nullptr;
    const long length = BIO_get_mem_data(memory.get(), &text);
    return shownLines({text, static_cast<std::size_t>(length)});
}

std::vector<UaPkiCertificate::Extension> UaPkiCertificate::extensions() const
{
    std::vector<Extension> result;
    const int count = isNull() ? 0 : X509_get_ext_count(m_certificate.get());
    for (int i = 0; i < count; ++i) {
        const X509_EXTENSION* extension = X509_get_ext(m_certificate.get(), i);
        const int nid = OBJ_obj2nid(X509_EXTENSION_get_object(const_cast<X509_EXTENSION*>(extension)));
        result.push_back(static_cast<Extension>(nid));
    }
    return result;
}

OpcUa_UInt32 UaPkiCertificate::subjectNameHash() const
{
    return isNull() ? 0 : static_cast<OpcUa_UInt32>(X509_subject_name_hash(m_certificate.get()));
}

UaByteString UaPkiCertificate::thumbPrint() const
{
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    if (isNull() || X509_digest(m_certificate.get(), EVP_sha1(), digest.data(), &length) != 1)
        return UaByteString();
    return UaByteString(static_cast<OpcUa_Int32>(length), digest.data());
}

UaPkiPublicKey UaPkiCertificate::publicKey() const
{
    UaPkiPublicKey key;
    ERR_clear_error();
    EVP_PKEY* object = isNull() ? nullptr : X509_get_pubkey(m_certificate.get());
    if (object == nullptr) {
        key.addOpenSSLError("The certificate holds no usable public key");
        return key;
    }
    UaPkiAccess::set(key, object);
    return key;
}

bool operator==(const UaPkiCertificate& left, const UaPkiCertificate& right)
{
    if (left.isNull() || right.isNull())
        return left.isNull() == right.isNull();
    return X509_cmp(left.m_certificate.get(), right.m_certificate.get()) == 0;
}
