#include <stack/security/pkifolders.h>

#include <openssl/err.h>
#include <openssl/pem.h>

#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace opcua {

namespace {

constexpr off_t maxFileSize = 1024 * 1024;
constexpr size_t maxFiles = OPCUA_MAXIMUM_STORE_FILES;

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

// A file that wants a password must not ask for it on the terminal.
int noPassword(char*, int, int, void*)
{
    return 0;
}

void readCertificates(const std::string& path, CertificateNaming naming,
                      std::vector<StoredCertificate>& certificates)
{
    readFolder(
        path,
        [&](int folder, const char* name) {
            if (!isCertificateName(name, naming))
                return;
            for (Bytes& der : certificatesOfFile(File(folder, name).content()))
                if (const auto subject = subjectHashOf(der))
                    certificates.push_back({std::move(der), *subject});
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
    readCertificates(folders.trustedCertificates, folders.naming, contents.trusted);
    readCertificates(folders.issuerCertificates, folders.naming, contents.issuers);
    readRevocationLists(folders.trustedRevocationLists, contents.revocationLists);
    readRevocationLists(folders.issuerRevocationLists, contents.revocationLists);
    ERR_clear_error();
    return contents;
}

} // namespace opcua
