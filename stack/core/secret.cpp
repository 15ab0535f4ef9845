#include <stack/core/secret.h>

#include <string.h> // explicit_bzero is not in std

namespace opcua {

void wipe(Bytes& bytes)
{
    if (!bytes.empty()) // explicit_bzero takes no null pointer
        explicit_bzero(bytes.data(), bytes.size());
    bytes.clear();
}

void Secret::truncate(size_t size)
{
    if (size >= m_bytes.size())
        return;
    explicit_bzero(m_bytes.data() + size, m_bytes.size() - size);
    m_bytes.resize(size);
}

} // namespace opcua
