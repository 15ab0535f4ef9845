// Changes inputs of the decoder's fuzz target in a way of its own.
#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/messagecodec.h>
#include <stack/encoding/nametables.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

// A changed type id hits none of the few hundred types by chance; now and then the input becomes another
// type's null value, from which the engine's own changes go on.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed)
{
    std::minstd_rand random(seed);
    if (random() % 64 != 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    const OpcUa_EncodeableType* const type = opcua_typesByBinaryId[random() % opcua_typesByBinaryIdCount];
    void* object = OpcUa_EncodeableObject_Create(type);
    std::vector<OpcUa_Byte> bytes;
    if (object == nullptr || OpcUa_IsBad(opcua::encodeMessage(*type, object, {}, bytes)))
        bytes.clear();
    if (object != nullptr)
        OpcUa_EncodeableObject_Delete(type, &object);
    const std::size_t length = std::min(bytes.size(), maxSize);
    std::copy_n(bytes.begin(), length, data);
    return LLVMFuzzerMutate(data, length, maxSize);
}
