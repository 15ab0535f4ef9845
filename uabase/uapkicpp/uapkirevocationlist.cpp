#include <uabase/uapkicpp/uapkirevocationlist.h>

#include <uabase/uapkicpp/uapkiextensions_p.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkiprivatekey.h>
#include <uabase/uapkicpp/uapkipublickey.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <ctime>
#include <vector>

namespace {

constexpr long version2 = 1; // the field counts from 0

UaPkiRevocationList decoded(UaPki::Bytes bytes)
{
    UaPkiRevocationList list;
    if (X509_CRL* object = UaPki::decode<X509_CRL>(bytes, &d2i_X509_CRL, &i2d_X509_CRL, &X509_CRL_free, list))
        UaPkiAccess::set(list, object);
    return list;
}

bool setTimes(X509_CRL* list, OpcUa_Int64 validTime)
{
    const std::time_t now = std::time(nullptr);
    const UaPki::TimePointer from(ASN1_TIME_set(nullptr, now));
    const UaPki::TimePointer next(ASN1_TIME_new());
    return from != nullptr && next != nullptr && UaPki::setTime(next.get(), now, validTime) &&
           X509_CRL_set1_lastUpdate(list, from.get()) == 1 && X509_CRL_set1_nextUpdate(list, next.get()) == 1;
}

bool setNumber(X509_CRL* list, OpcUa_Int64 number)
{
    const UaPki::IntegerPointer value(ASN1_INTEGER_new());
    return value != nullptr && ASN1_INTEGER_set_int64(value.get(), number) == 1 &&
           X509_CRL_add1_ext_i2d(list, NID_crl_number, value.get(), 0, X509V3_ADD_REPLACE) == 1;
}

bool setKeyIdentifier(X509_CRL* list, EVP_PKEY* key)
{
    const int place = X509_CRL_get_ext_by_NID(list, NID_authority_key_identifier, -1);
    if (place >= 0)
        UaPki::ExtensionPointer(X509_CRL_delete_ext(list, place));
    const UaPki::ExtensionPointer identifier = UaPki::authorityKeyIdentifier(nullptr, nullptr, key);
    return identifier != nullptr && X509_CRL_add_ext(list, identifier.get(), place) == 1;
}

UaPki::Pointer<X509_REVOKED, &X509_REVOKED_free> makeEntry(const X509* certificate, const UaDateTime& time)
{
    UaPki::Pointer<X509_REVOKED, &X509_REVOKED_free> entry(X509_REVOKED_new());
    const UaPki::TimePointer when(ASN1_TIME_set(nullptr, time.toTime_t()));
    const UaPki::IntegerPointer serial(ASN1_INTEGER_dup(X509_get0_serialNumber(certificate)));
    if (entry == nullptr || when == nullptr || serial == nullptr ||
        X509_REVOKED_set_serialNumber(entry.get(), serial.get()) != 1 ||
        X509_REVOKED_set_revocationDate(entry.get(), when.get()) != 1)
        entry.reset();
    return entry;
}

} // namespace

UaPkiRevocationList::UaPkiRevocationList(OpcUa_Int64 validTime, const UaPkiIdentity& issuer,
                                         OpcUa_Int64 crlNumber)
{
    const UaPki::NamePointer name = UaPki::toName(issuer, *this);
    if (name == nullptr)
        return;
    ERR_clear_error();
    UaPki::ListPointer list(X509_CRL_new());
    if (list == nullptr || X509_CRL_set_version(list.get(), version2) != 1 ||
        X509_CRL_set_issuer_name(list.get(), name.get()) != 1 || !setTimes(list.get(), validTime) ||
        !setNumber(list.get(), crlNumber)) {
        addOpenSSLError("The revocation list could not be created");
        return;
    }
    UaPkiAccess::set(*this, list.release());
}

UaPkiRevocationList UaPkiRevocationList::fromFile(const UaString& path)
{
    UaPkiRevocationList list;
    std::vector<unsigned char> bytes;
    if (!UaPki::readFile(path, bytes, list))
        return list;
    if (X509_CRL* object = UaPki::readPem<X509_CRL>(bytes, &PEM_read_bio_X509_CRL)) {
        UaPkiAccess::set(list, object);
        return list;
    }
    return decoded(bytes);
}

UaPkiRevocationList UaPkiRevocationList::fromDER(const UaByteArray& bytes)
{
    return decoded(bytes.span());
}

UaByteArray UaPkiRevocationList::toDER() const
{
    return UaPki::encode<X509_CRL>(m_list.get(), &i2d_X509_CRL, *this);
}

bool UaPkiRevocationList::toDERFile(const UaString& path) const
{
    return UaPki::writeFile(path, toDER(), 0644, *this);
}

bool UaPkiRevocationList::toPEMFile(const UaString& path) const
{
    return UaPki::writePemFile<X509_CRL>(path, m_list.get(), &PEM_write_bio_X509_CRL,
                                         "The revocation list cannot be encoded", *this);
}

bool UaPkiRevocationList::makeUnique()
{
    if (isNull()) {
        addError("There is no revocation list");
        return false;
    }
    if (m_list.use_count() == 1)
        return true;
    ERR_clear_error();
    X509_CRL* copy = X509_CRL_dup(m_list.get());
    if (copy == nullptr) {
        addOpenSSLError("The revocation list cannot be copied");
        return false;
    }
    UaPkiAccess::set(*this, copy);
    return true;
}

bool UaPkiRevocationList::addRevoked(const UaPkiCertificate& certificate, const UaDateTime& time)
{
    if (certificate.isNull() || !makeUnique()) {
        addError("Nothing was revoked");
        return false;
    }
    const X509* revoked = UaPkiAccess::get(certificate);
    if (X509_NAME_cmp(X509_get_issuer_name(revoked), X509_CRL_get_issuer(m_list.get())) != 0) {
        addError("The certificate is not of the list's issuer");
        return false;
    }
    if (isRevoked(certificate))
        return true;
    ERR_clear_error();
    auto entry = makeEntry(revoked, time);
    if (entry == nullptr || X509_CRL_add0_revoked(m_list.get(), entry.get()) != 1) {
        addOpenSSLError("The certificate could not be revoked");
        return false;
    }
    (void)entry.release(); // belongs to the list now
    return true;
}

bool UaPkiRevocationList::sign(const UaPkiPrivateKey& privateKey)
{
    if (privateKey.isNull() || !makeUnique()) {
        addError("The revocation list could not be signed");
        return false;
    }
    ERR_clear_error();
    EVP_PKEY* key = UaPkiAccess::get(privateKey);
    if (!setKeyIdentifier(m_list.get(), key) || X509_CRL_sort(m_list.get()) != 1 ||
        X509_CRL_sign(m_list.get(), key, EVP_sha256()) <= 0) {
        addOpenSSLError("The revocation list could not be signed");
        return false;
    }
    return true;
}

bool UaPkiRevocationList::verify(const UaPkiPrivateKey& privateKey) const
{
    return verify(privateKey.publicKey());
}

bool UaPkiRevocationList::verify(const UaPkiPublicKey& publicKey) const
{
    const bool result =
        !isNull() && !publicKey.isNull() && X509_CRL_verify(m_list.get(), UaPkiAccess::get(publicKey)) == 1;
    ERR_clear_error();
    return result;
}

OpcUa_Int64 UaPkiRevocationList::crlNumber() const
{
    OpcUa_Int64 number = -1;
    if (!isNull()) {
        const UaPki::IntegerPointer value(
            static_cast<ASN1_INTEGER*>(X509_CRL_get_ext_d2i(m_list.get(), NID_crl_number, nullptr, nullptr)));
        if (value == nullptr || ASN1_INTEGER_get_int64(&number, value.get()) != 1)
            number = -1;
    }
    ERR_clear_error();
    return number;
}

UaDateTime UaPkiRevocationList::validFrom() const
{
    return isNull() ? UaDateTime() : UaPki::dateTimeOf(X509_CRL_get0_lastUpdate(m_list.get()));
}

UaDateTime UaPkiRevocationList::nextUpdate() const
{
    return isNull() ? UaDateTime() : UaPki::dateTimeOf(X509_CRL_get0_nextUpdate(m_list.get()));
}

bool UaPkiRevocationList::isValid() const
{
    return UaPki::isNowWithin(validFrom(), nextUpdate());
}

UaPkiIdentity UaPkiRevocationList::issuer() const
{
    return UaPki::fromName(isNull() ? nullptr : X509_CRL_get_issuer(m_list.get()));
}

int UaPkiRevocationList::revokedCount() const
{
    return isNull() ? 0 : std::max(sk_X509_REVOKED_num(X509_CRL_get_REVOKED(m_list.get())), 0);
}

bool UaPkiRevocationList::isRevoked(const UaPkiCertificate& certificate) const
{
    if (isNull() || certificate.isNull())
        return false;
    X509* object = UaPkiAccess::get(certificate);
    X509_REVOKED* entry = nullptr;
    constexpr int listed = 1; // 2 would mean that it was taken off the list again
    return X509_NAME_cmp(X509_get_issuer_name(object), X509_CRL_get_issuer(m_list.get())) == 0 &&
           X509_CRL_get0_by_cert(m_list.get(), &entry, object) == listed;
}
