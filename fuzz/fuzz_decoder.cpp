// Messages as they come out of a channel. What can be decoded must survive being written and read again.
#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/messagecodec.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const opcua::EncodingLimits limits;
    opcua::DecodedMessage message;
    if (OpcUa_IsBad(opcua::decodeMessage({data, size}, limits, message)))
        return 0;
    std::vector<OpcUa_Byte> bytes;
    opcua::DecodedMessage again;
    if (OpcUa_IsBad(opcua::encodeMessage(*message.type, message.object, limits, bytes)) ||
        OpcUa_IsBad(opcua::decodeMessage(bytes, limits, again)) ||
        OpcUa_EncodeableObject_Compare(message.type, message.object, again.object) != 0)
        std::abort();
    return 0;
}
