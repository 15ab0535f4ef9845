#include <uabase/uapkicpp/uapkicsr.h>

#include <uabase/uapkicpp/uapkiextensions_p.h>
#include <uabase/values/uastring.h>

#include <vector>

namespace {

UaPkiCSR decoded(UaPki::Bytes bytes)
{
    UaPkiCSR csr;
    if (X509_REQ* object = UaPki::decode<X509_REQ>(bytes, &d2i_X509_REQ, &i2d_X509_REQ, &X509_REQ_free, csr))
        UaPkiAccess::set(csr, object);
    return csr;
}

} // namespace

UaPkiCSR UaPkiCSR::fromDER(const UaByteArray& bytes)
{
    return decoded(bytes.span());
}

UaPkiCSR UaPkiCSR::fromFile(const UaString& path)
{
    UaPkiCSR csr;
    std::vector<unsigned char> bytes;
    if (!UaPki::readFile(path, bytes, csr))
        return csr;
    if (X509_REQ* object = UaPki::readPem<X509_REQ>(bytes, &PEM_read_bio_X509_REQ)) {
        UaPkiAccess::set(csr, object);
        return csr;
    }
    return decoded(bytes);
}

UaByteArray UaPkiCSR::toDER() const
{
    return UaPki::encode<X509_REQ>(m_request.get(), &i2d_X509_REQ, *this);
}

bool UaPkiCSR::toDERFile(const UaString& path) const
{
    return UaPki::writeFile(path, toDER(), 0644, *this);
}

bool UaPkiCSR::toPEMFile(const UaString& path) const
{
    return UaPki::writePemFile<X509_REQ>(path, m_request.get(), &PEM_write_bio_X509_REQ,
                                         "The request cannot be encoded", *this);
}

UaPkiIdentity UaPkiCSR::subject() const
{
    return UaPki::fromName(isNull() ? nullptr : X509_REQ_get_subject_name(m_request.get()));
}

UaPkiCertificateInfo UaPkiCSR::info() const
{
    UaPkiCertificateInfo info;
    if (isNull())
        return info;
    STACK_OF(X509_EXTENSION)* extensions = X509_REQ_get_extensions(m_request.get());
    const UaPki::AlternativeNamesPointer names(
        static_cast<GENERAL_NAMES*>(X509V3_get_d2i(extensions, NID_subject_alt_name, nullptr, nullptr)));
    UaPki::readAlternativeNames(names.get(), info);
    sk_X509_EXTENSION_pop_free(extensions, &X509_EXTENSION_free);
    ERR_clear_error();
    return info;
}

UaPkiPublicKey UaPkiCSR::publicKey() const
{
    UaPkiPublicKey key;
    ERR_clear_error();
    EVP_PKEY* object = isNull() ? nullptr : X509_REQ_get_pubkey(m_request.get());
    if (object == nullptr) {
        key.addOpenSSLError("The request holds no usable public key");
        return key;
    }
    UaPkiAccess::set(key, object);
    return key;
}

bool UaPkiCSR::verifySignature() const
{
    EVP_PKEY* key = isNull() ? nullptr : X509_REQ_get0_pubkey(m_request.get());
    const bool result = key != nullptr && X509_REQ_verify(m_request.get(), key) == 1;
    ERR_clear_error();
    return result;
}
