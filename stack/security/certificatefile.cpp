#include <stack/security/certificatefile.h>

#include <stack/security/certificate.h>

#include <openssl/asn1.h>
#include <openssl/err.h>
#include <openssl/pem.h>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <strings.h>
#include <utility>

namespace opcua {

namespace {

using MemoryHandle = std::unique_ptr<BIO, Freer<BIO_free>>;

// The library gives these three away separately.
class Block
{
public:
    Block() = default;
    ~Block()
    {
        OPENSSL_free(m_name);
        OPENSSL_free(m_header);
        OPENSSL_clear_free(m_content, static_cast<size_t>(m_length)); // a key may stand beside certificates
    }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    [[nodiscard]] bool read(BIO* memory)
    {
        return PEM_read_bio(memory, &m_name, &m_header, &m_content, &m_length) == 1;
    }
    [[nodiscard]] bool isCertificate() const
    {
        const std::string_view name(m_name);
        return name == PEM_STRING_X509 || name == PEM_STRING_X509_OLD || hasTrustSettings();
    }
    // Nothing when the block does not hold what it says.
    [[nodiscard]] std::optional<Bytes> certificate() const
    {
        const ByteView content(m_content, static_cast<size_t>(m_length));
        const auto first = firstOfChain(content);
        if (!first || (first->size() != content.size() && !hasTrustSettings()))
            return std::nullopt;
        return Bytes(first->begin(), first->end());
    }

private:
    // what the library's own tools say about a certificate stands behind it
    [[nodiscard]] bool hasTrustSettings() const
    {
        return std::string_view(m_name) == PEM_STRING_X509_TRUSTED;
    }

    char* m_name = nullptr;
    char* m_header = nullptr;
    unsigned char* m_content = nullptr;
    long m_length = 0;
};

std::vector<Bytes> certificatesOfDer(ByteView content)
{
    std::vector<Bytes> certificates;
    while (!content.empty()) {
        const auto first = firstOfChain(content);
        if (!first)
            return {};
        certificates.emplace_back(first->begin(), first->end());
        content = content.subspan(first->size());
    }
    return certificates;
}

std::vector<Bytes> certificatesOfPem(ByteView content)
{
    if (content.size() > static_cast<size_t>(std::numeric_limits<int>::max()))
        return {};
    const MemoryHandle memory(BIO_new_mem_buf(content.data(), static_cast<int>(content.size())));
    if (!memory)
        return {};
    std::vector<Bytes> certificates;
    ERR_clear_error();
    for (;;) {
        Block block;
        if (!block.read(memory.get()))
            break;
        if (!block.isCertificate())
            continue;
        auto certificate = block.certificate();
        if (!certificate)
            return {};
        certificates.push_back(std::move(*certificate));
    }
    const bool isAtEnd = ERR_GET_REASON(ERR_peek_last_error()) == PEM_R_NO_START_LINE;
    return isAtEnd ? certificates : std::vector<Bytes>();
}

// A name that is not text can be neither shown nor, by its text, opened, moved or deleted.
bool isText(std::string_view name)
{
    const auto* at = reinterpret_cast<const unsigned char*>(name.data());
    unsigned long character = 0;
    for (auto left = static_cast<int>(name.size()); left > 0;) {
        const int length = UTF8_getc(at, left, &character);
        if (length <= 0)
            return false;
        at += length;
        left -= length;
    }
    return true;
}

} // namespace

bool isCertificateName(std::string_view name, CertificateNaming naming)
{
    if (!isText(name))
        return false;
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || naming == CertificateNaming::Dotted)
        return dot != std::string_view::npos;
    constexpr std::array endings = {".der", ".cer", ".crt"};
    const std::string ending(name.substr(dot));
    return std::any_of(endings.begin(), endings.end(),
                       [&](const char* one) { return strcasecmp(ending.c_str(), one) == 0; });
}

std::vector<Bytes> certificatesOfFile(ByteView content)
{
    auto certificates = certificatesOfDer(content);
    if (certificates.empty())
        certificates = certificatesOfPem(content);
    ERR_clear_error();
    return certificates;
}

} // namespace opcua
