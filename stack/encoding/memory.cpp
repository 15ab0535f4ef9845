// In a file of its own, so that a test can put a failing allocator in its place.
#include <opcua/opcua_platform.h>

#include <cstdlib>

void* OpcUa_Memory_Alloc(size_t size)
{
    return size == 0 ? nullptr : std::malloc(size);
}

void OpcUa_Memory_Free(void* memory)
{
    std::free(memory);
}

void* OpcUa_Memory_AllocArray(size_t count, size_t elementSize)
{
    return count == 0 || elementSize == 0 ? nullptr : std::calloc(count, elementSize);
}
