#include <bench/codecyardsticks.h>

#include <opcua/opcua.h>

#include <cstring>
#include <span>
#include <utility>

namespace opcua::bench {

namespace {

constexpr size_t valueSize = 26; // mask, type, value, two timestamps
constexpr OpcUa_Byte valueMask = 0x0D;

} // namespace

bool takeValues(ByteView message, std::span<FlatValue> values)
{
    if (message.size() < values.size() * valueSize + 4)
        return false;
    const OpcUa_Byte* const end = message.data() + message.size();
    const OpcUa_Byte* at = end - values.size() * valueSize - 4; // behind them a null array
    for (FlatValue& value : values) {
        if (static_cast<size_t>(end - at) < valueSize || at[0] != valueMask || at[1] != OpcUaType_Double)
            return false;
        std::memcpy(&value.value, at + 2, 8);
        std::memcpy(&value.source, at + 10, 8);
        std::memcpy(&value.server, at + 18, 8);
        at += valueSize;
    }
    return true;
}

bool placeValues(std::span<const FlatValue> values, MutableByteView out)
{
    OpcUa_Byte* at = out.data();
    const OpcUa_Byte* const end = at + out.size();
    for (const FlatValue& value : values) {
        if (static_cast<size_t>(end - at) < valueSize)
            return false;
        at[0] = valueMask;
        at[1] = OpcUaType_Double;
        std::memcpy(at + 2, &value.value, 8);
        std::memcpy(at + 10, &value.source, 8);
        std::memcpy(at + 18, &value.server, 8);
        at += valueSize;
    }
    return true;
}

// ---- references

namespace {

constexpr std::ptrdiff_t longestNodeId = 7;

const OpcUa_Byte* takeNodeId(const OpcUa_Byte* at, const OpcUa_Byte* end, OpcUa_UInt16& space,
                             OpcUa_UInt32& id)
{
    constexpr std::ptrdiff_t sizes[] = {2, 4, longestNodeId};
    if (end - at < longestNodeId && (at == end || at[0] > 2 || end - at < sizes[at[0]]))
        return nullptr;
    if (at[0] == 0) {
        space = 0;
        id = at[1];
        return at + 2;
    }
    if (at[0] == 1) {
        OpcUa_UInt16 number = 0;
        std::memcpy(&number, at + 2, sizeof number);
        space = at[1];
        id = number;
        return at + 4;
    }
    std::memcpy(&space, at + 1, sizeof space);
    std::memcpy(&id, at + 3, sizeof id);
    return at + longestNodeId;
}

OpcUa_Byte* placeNodeId(OpcUa_Byte* at, const OpcUa_Byte* end, OpcUa_UInt16 space, OpcUa_UInt32 id)
{
    if (at == nullptr || end - at < longestNodeId)
        return nullptr;
    if (space == 0 && id <= UINT8_MAX) {
        at[0] = 0;
        at[1] = static_cast<OpcUa_Byte>(id);
        return at + 2;
    }
    if (space <= UINT8_MAX && id <= UINT16_MAX) {
        const auto number = static_cast<OpcUa_UInt16>(id);
        at[0] = 1;
        at[1] = static_cast<OpcUa_Byte>(space);
        std::memcpy(at + 2, &number, sizeof number);
        return at + 4;
    }
    at[0] = 2;
    std::memcpy(at + 1, &space, sizeof space);
    std::memcpy(at + 3, &id, sizeof id);
    return at + longestNodeId;
}

const OpcUa_Byte* takeText(const OpcUa_Byte* at, const OpcUa_Byte* end, char*& arena, const char*& text,
                           OpcUa_Int32& length)
{
    if (at == nullptr || end - at < 4)
        return nullptr;
    std::memcpy(&length, at, sizeof length);
    at += 4;
    if (length < 0 || end - at < length)
        return nullptr;
    const auto size = static_cast<size_t>(length);
    std::memcpy(arena, at, size);
    arena[size] = 0;
    text = arena;
    arena += size + 1;
    return at + size;
}

OpcUa_Byte* placeText(OpcUa_Byte* at, const OpcUa_Byte* end, const char* text, OpcUa_Int32 length)
{
    if (at == nullptr || end - at < 4 + std::ptrdiff_t{length})
        return nullptr;
    std::memcpy(at, &length, sizeof length);
    std::memcpy(at + 4, text, static_cast<size_t>(length));
    return at + 4 + length;
}

const OpcUa_Byte* takeReference(const OpcUa_Byte* at, const OpcUa_Byte* end, char*& arena, FlatReference& to)
{
    at = takeNodeId(at, end, to.namespaces[0], to.referenceType);
    if (at == nullptr || end - at < 1)
        return nullptr;
    to.forward = *at++ != 0;
    at = takeNodeId(at, end, to.namespaces[1], to.node);
    if (at == nullptr || end - at < 2)
        return nullptr;
    std::memcpy(&to.namespaces[2], at, 2);
    at = takeText(at + 2, end, arena, to.browseName, to.browseNameLength);
    if (at == nullptr || end - at < 1 || *at != 0x02)
        return nullptr;
    at = takeText(at + 1, end, arena, to.displayName, to.displayNameLength);
    if (at == nullptr || end - at < 4)
        return nullptr;
    std::memcpy(&to.nodeClass, at, 4);
    return takeNodeId(at + 4, end, to.namespaces[3], to.typeDefinition);
}

OpcUa_Byte* placeReference(OpcUa_Byte* at, const OpcUa_Byte* end, const FlatReference& from)
{
    at = placeNodeId(at, end, from.namespaces[0], from.referenceType);
    if (at == nullptr || at == end)
        return nullptr;
    *at++ = from.forward ? 1 : 0;
    at = placeNodeId(at, end, from.namespaces[1], from.node);
    if (at == nullptr || end - at < 2)
        return nullptr;
    std::memcpy(at, &from.namespaces[2], 2);
    at = placeText(at + 2, end, from.browseName, from.browseNameLength);
    if (at == nullptr || at == end)
        return nullptr;
    *at++ = 0x02;
    at = placeText(at, end, from.displayName, from.displayNameLength);
    if (at == nullptr || end - at < 4)
        return nullptr;
    std::memcpy(at, &from.nodeClass, 4);
    return placeNodeId(at + 4, end, from.namespaces[3], from.typeDefinition);
}

} // namespace

std::unique_ptr<char[]> takeReferences(ByteView message, size_t count)
{
    // response header, number of results, status and continuation point of the one, number of references
    constexpr size_t start = 8 + 4 + 4 + 1 + 4 + 3 + 4 + 4 + 4 + 4;
    if (message.size() < start)
        return nullptr;
    const size_t records = count * sizeof(FlatReference);
    std::unique_ptr<char[]> block(new char[records + message.size()]);
    auto* const references = reinterpret_cast<FlatReference*>(block.get());
    char* arena = block.get() + records;
    const OpcUa_Byte* at = message.data() + start;
    const OpcUa_Byte* const end = message.data() + message.size();
    for (size_t i = 0; i < count && at != nullptr; ++i)
        at = takeReference(at, end, arena, references[i]);
    return at != nullptr ? std::move(block) : nullptr;
}

bool placeReferences(std::span<const FlatReference> references, MutableByteView out)
{
    OpcUa_Byte* at = out.data();
    const OpcUa_Byte* const end = at + out.size();
    for (const FlatReference& reference : references) {
        at = placeReference(at, end, reference);
        if (at == nullptr)
            return false;
    }
    return true;
}

} // namespace opcua::bench
