#include <stack/security/pkifolders.h>

#include <openssl/err.h>
#include <openssl/pem.h>

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string_view>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace opcua {

namespace {

constexpr off_t maxFileSize = 1024 * 1024;
constexpr size_t maxFiles = 20'000;

using FolderHandle = std::unique_ptr<DIR, Freer<closedir>>;
using MemoryHandle = std::unique_ptr<BIO, Freer<BIO_free>>;

class File
{
public:
    // A FIFO must not hold up the open, nor a terminal become ours.
    File(int folder, const char* name)
        : m_descriptor(openat(folder, name, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY))
    {
    }
    ~File()
    {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    // All of it; empty when it is not a regular file, too large or not readable.
    [[nodiscard]] Bytes content() const
    {
        struct stat status = {};
        if (m_descriptor < 0 || fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
            status.st_size > maxFileSize)
            return {};
        Bytes bytes(static_cast<size_t>(status.st_size));
        size_t used = 0;
        while (used < bytes.size()) {
            const ssize_t count = read(m_descriptor, bytes.data() + used, bytes.size() - used);
            if (count <= 0)
                break;
            used += static_cast<size_t>(count);
        }
        bytes.resize(used);
        return bytes;
    }

private:
    int m_descriptor;
};

template <typename Take>
void readFolder(const std::string& path, Take take)
{
    const FolderHandle folder(path.empty() ? nullptr : opendir(path.c_str()));
    if (!folder)
        return;
    for (size_t count = 0; count < maxFiles; ++count) {
        const dirent* const entry = readdir(folder.get());
        if (entry == nullptr)
            return;
        take(dirfd(folder.get()), entry->d_name);
    }
}

bool isCertificateName(std::string_view name)
{
    const auto dot = name.rfind('.');
    const std::string extension(dot == std::string_view::npos ? "" : name.substr(dot));
    return strcasecmp(extension.c_str(), ".der") == 0 || strcasecmp(extension.c_str(), ".cer") == 0;
}

bool isHashedName(std::string_view name)
{
    constexpr std::string_view hexDigits = "0123456789abcdefABCDEF";
    constexpr size_t hashLength = 8;
    return name.size() > hashLength + 1 && name.find_first_not_of(hexDigits) == hashLength &&
           name[hashLength] == '.' &&
           name.find_first_not_of("0123456789", hashLength + 1) == std::string_view::npos;
}

// A file that wants a password must not ask for it on the terminal.
int noPassword(char*, int, int, void*)
{
    return 0;
}

// Of the first certificate in it.
Bytes derOfPem(const Bytes& bytes)
{
    const MemoryHandle memory(BIO_new_mem_buf(bytes.data(), static_cast<int>(bytes.size())));
    const X509Handle certificate(memory ? PEM_read_bio_X509(memory.get(), nullptr, noPassword, nullptr)
                                        : nullptr);
    const int size = certificate ? i2d_X509(certificate.get(), nullptr) : 0;
    Bytes der(static_cast<size_t>(std::max(size, 0)));
    unsigned char* at = der.data();
    if (size > 0)
        i2d_X509(certificate.get(), &at);
    return der;
}

void readCertificates(const std::string& path, bool hashed, std::vector<StoredCertificate>& certificates)
{
    readFolder(
        path,
        [&](int folder, const char* name) {
            if (!(hashed ? isHashedName(name) : isCertificateName(name)))
                return;
            const Bytes bytes = File(folder, name).content();
            const Bytes der = hashed ? derOfPem(bytes) : bytes;
            const auto first = firstOfChain(der);
            const auto subject = first ? subjectHashOf(*first) : std::nullopt;
            if (subject)
                certificates.push_back({Bytes(first->begin(), first->end()), *subject});
        });
}

CrlHandle parseRevocationList(const Bytes& bytes)
{
    const unsigned char* at = bytes.data();
    if (CrlHandle list{d2i_X509_CRL(nullptr, &at, static_cast<long>(bytes.size()))})
        return list;
    const MemoryHandle memory(BIO_new_mem_buf(bytes.data(), static_cast<int>(bytes.size())));
    return CrlHandle(memory ? PEM_read_bio_X509_CRL(memory.get(), nullptr, noPassword, nullptr) : nullptr);
}

void readRevocationLists(const std::string& path, std::vector<CrlHandle>& lists)
{
    readFolder(
        path,
        [&](int folder, const char* name) {
            const Bytes bytes = File(folder, name).content();
            if (bytes.empty())
                return;
            if (CrlHandle list = parseRevocationList(bytes))
                lists.push_back(std::move(list));
        });
}

} // namespace

PkiContents readPkiFolders(const PkiFolders& folders)
{
    PkiContents contents;
    readCertificates(folders.trustedCertificates, folders.hashedNames, contents.trusted);
    readCertificates(folders.issuerCertificates, folders.hashedNames, contents.issuers);
    readRevocationLists(folders.trustedRevocationLists, contents.revocationLists);
    readRevocationLists(folders.issuerRevocationLists, contents.revocationLists);
    ERR_clear_error();
    return contents;
}

} // namespace opcua
