#include <stack/core/secret.h>

#include <openssl/crypto.h>

namespace opcua {

void wipe(Bytes& bytes)
{
    OPENSSL_cleanse(bytes.data(), bytes.size());
    bytes.clear();
}

void Secret::truncate(size_t size)
{
    if (size >= m_bytes.size())
        return;
    OPENSSL_cleanse(m_bytes.data() + size, m_bytes.size() - size);
    m_bytes.resize(size);
}

} // namespace opcua
