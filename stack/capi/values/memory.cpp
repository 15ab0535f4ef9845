#include <opcua/opcua_platform.h>
#include <stack/encoding/memory.h>

void* OpcUa_Memory_Alloc(size_t size)
{
    return opcua::allocateMemory(size);
}

void OpcUa_Memory_Free(void* memory)
{
    opcua::freeMemory(memory);
}

void* OpcUa_Memory_AllocArray(size_t count, size_t elementSize)
{
    return opcua::allocateZeroedMemory(count, elementSize);
}
