#include <uabase/uapkicpp/uapkierrors.h>

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/x509_vfy.h>

#include <array>
#include <utility>

void UaPkiErrors::addError(std::string_view text) const
{
    m_errors.emplace_back(text);
}

void UaPkiErrors::addOpenSSLError(std::string_view text) const
{
    addError(text);
    std::array<char, 256> reason{};
    while (const unsigned long code = ERR_get_error()) {
        ERR_error_string_n(code, reason.data(), reason.size());
        addError(reason.data());
    }
}

void UaPkiErrors::addErrors(const std::vector<UaString>& errors) const
{
    m_errors.insert(m_errors.end(), errors.begin(), errors.end());
}

std::vector<UaString> UaPkiErrors::getErrors() const
{
    return std::exchange(m_errors, {});
}

UaString UaPkiErrors::libraryVersion()
{
    return UaString(OpenSSL_version(OPENSSL_VERSION_STRING));
}

UaString UaPkiErrors::verificationErrorText(int error)
{
    return UaString(X509_verify_cert_error_string(error));
}
