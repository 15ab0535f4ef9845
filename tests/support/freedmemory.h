// Finds secrets in memory that is given back. Included by one source of a test program, for it stands in the
// way of free() where no sanitizer does.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstring>
#include <malloc.h>
#include <string_view>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#    define FREEDMEMORY_HAS_HOOKS
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, std::size_t),
                                                         void (*onFree)(const volatile void*));
#endif
#ifdef __SANITIZE_ADDRESS__
extern "C" int __asan_address_is_poisoned(const volatile void* address);
#endif

/// Counts the blocks that are freed during its life with the secret still in them. One at a time.
class FreedMemory
{
public:
    /// The bytes have to outlive the object; how long the secret is decides how much chance can find it.
    explicit FreedMemory(std::string_view secret)
    {
#ifdef FREEDMEMORY_HAS_HOOKS
        static const int isInstalled = __sanitizer_install_malloc_and_free_hooks(ignore, look);
        static_cast<void>(isInstalled);
#endif
        s_found = 0;
        s_size = secret.size();
        s_secret = secret.data();
    }
    ~FreedMemory()
    {
        s_secret = nullptr;
    }
    FreedMemory(const FreedMemory&) = delete;
    FreedMemory& operator=(const FreedMemory&) = delete;

    [[nodiscard]] int findings() const
    {
        return s_found;
    }

    /// Called for each block before it is freed; allocates nothing.
    static void look(const volatile void* block)
    {
        const char* const secret = s_secret;
        if (!secret || !block)
            return;
        const auto* const bytes = static_cast<const char*>(const_cast<const void*>(block));
        if (memmem(bytes, sizeOf(bytes), secret, s_size))
            ++s_found;
    }

private:
    static void ignore(const volatile void*, std::size_t) {}
#ifdef __SANITIZE_ADDRESS__
    static std::size_t sizeOf(const char* bytes)
    {
        constexpr std::size_t enough = 64 * 1024; // no secret lies in a larger block
        // at this point the block has no size any more, only an end
        std::size_t size = 0;
        while (size < enough && !__asan_address_is_poisoned(bytes + size))
            ++size;
        return size;
    }
#else
    static std::size_t sizeOf(const char* bytes)
    {
        return malloc_usable_size(const_cast<char*>(bytes));
    }
#endif

    inline static std::atomic<const char*> s_secret = nullptr;
    inline static std::atomic<std::size_t> s_size = 0;
    inline static std::atomic<int> s_found = 0;
};

#ifndef FREEDMEMORY_HAS_HOOKS
extern "C" void __libc_free(void* block);

extern "C" void free(void* block)
{
    FreedMemory::look(block);
    __libc_free(block);
}
#endif
