#include <bench/allocationcount.h>

#include <atomic>

// The C library's own, behind the ones that programs may replace.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
}

namespace {

std::atomic<std::size_t> g_count{0};

void count()
{
    g_count.fetch_add(1, std::memory_order_relaxed);
}

} // namespace

extern "C" void* malloc(std::size_t size)
{
    count();
    return __libc_malloc(size);
}

extern "C" void* calloc(std::size_t elements, std::size_t size)
{
    count();
    return __libc_calloc(elements, size);
}

extern "C" void* realloc(void* block, std::size_t size)
{
    count();
    return __libc_realloc(block, size);
}

std::size_t opcua::bench::allocationCount()
{
    return g_count.load(std::memory_order_relaxed);
}
