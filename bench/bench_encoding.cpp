// Decoding of bulk answers, against one hand-written pass over the same bytes in the same run.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <bench/medians.h>
#include <benchmark/benchmark.h>
#include <opcua/opcua.h>

namespace {

constexpr int count = 1000;

OpcUa_ByteString encodeReadResponse()
{
    OpcUa_ReadResponse response;
    OpcUa_ReadResponse_Initialize(&response);
    response.NoOfResults = count;
    response.Results = static_cast<OpcUa_DataValue*>(OpcUa_Memory_AllocArray(count, sizeof(OpcUa_DataValue)));
    for (int i = 0; i < count; ++i) {
        OpcUa_DataValue& value = response.Results[i];
        OpcUa_DataValue_Initialize(&value);
        value.Value.Datatype = OpcUaType_Double;
        value.Value.Value.Double = i * 0.5;
        value.SourceTimestamp = 132000000000000000 + i;
        value.ServerTimestamp = value.SourceTimestamp + 1;
    }
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    OpcUa_EncodeableObject_EncodeBinary(&OpcUa_ReadResponse_EncodeableType, &response, &bytes);
    OpcUa_ReadResponse_Clear(&response);
    return bytes;
}

OpcUa_ByteString encodeBrowseResponse()
{
    OpcUa_BrowseResponse response;
    OpcUa_BrowseResponse_Initialize(&response);
    response.NoOfResults = 1;
    response.Results =
        static_cast<OpcUa_BrowseResult*>(OpcUa_Memory_AllocArray(1, sizeof(OpcUa_BrowseResult)));
    OpcUa_EncodeableObject_Initialize(&OpcUa_BrowseResult_EncodeableType, response.Results);
    response.Results[0].NoOfReferences = count;
    response.Results[0].References = static_cast<OpcUa_ReferenceDescription*>(
        OpcUa_Memory_AllocArray(count, sizeof(OpcUa_ReferenceDescription)));
    for (int i = 0; i < count; ++i) {
        OpcUa_ReferenceDescription& reference = response.Results[0].References[i];
        OpcUa_EncodeableObject_Initialize(&OpcUa_ReferenceDescription_EncodeableType, &reference);
        const std::string name = "Variable " + std::to_string(100000 + i);
        reference.ReferenceTypeId.Identifier.Numeric = OpcUaId_Organizes;
        reference.NodeId.NodeId.NamespaceIndex = 1;
        reference.NodeId.NodeId.Identifier.Numeric = 100000u + static_cast<OpcUa_UInt32>(i);
        OpcUa_String_Assign(&reference.BrowseName.Name, name.c_str(), -1);
        OpcUa_String_Assign(&reference.DisplayName.Text, name.c_str(), -1);
        reference.NodeClass = OpcUa_NodeClass_Variable;
        reference.TypeDefinition.NodeId.Identifier.Numeric = OpcUaId_BaseDataVariableType;
    }
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    OpcUa_EncodeableObject_EncodeBinary(&OpcUa_BrowseResponse_EncodeableType, &response, &bytes);
    OpcUa_BrowseResponse_Clear(&response);
    return bytes;
}

void decode(benchmark::State& state, const OpcUa_EncodeableType& type, const OpcUa_ByteString& bytes)
{
    std::vector<OpcUa_Byte> object(type.AllocationSize);
    for (auto _ : state) {
        const OpcUa_StatusCode status = OpcUa_EncodeableObject_DecodeBinary(
            &type, bytes.Data, static_cast<size_t>(bytes.Length), object.data(), nullptr);
        if (OpcUa_IsBad(status)) {
            state.SkipWithError("does not decode");
            break;
        }
        OpcUa_EncodeableObject_Clear(&type, object.data());
    }
    state.SetBytesProcessed(state.iterations() * bytes.Length);
}

void decodeRead(benchmark::State& state)
{
    OpcUa_ByteString bytes = encodeReadResponse();
    decode(state, OpcUa_ReadResponse_EncodeableType, bytes);
    OpcUa_ByteString_Clear(&bytes);
}

void decodeBrowse(benchmark::State& state)
{
    OpcUa_ByteString bytes = encodeBrowseResponse();
    decode(state, OpcUa_BrowseResponse_EncodeableType, bytes);
    OpcUa_ByteString_Clear(&bytes);
}

// What any decoder must do at the least: one bounds check and three loads a value into a flat array.
void yardstickRead(benchmark::State& state)
{
    OpcUa_ByteString bytes = encodeReadResponse();
    struct Value
    {
        double value;
        OpcUa_Int64 source;
        OpcUa_Int64 server;
    };
    std::vector<Value> values(count);
    constexpr size_t size = 26; // mask, type, value, two timestamps
    const size_t start = static_cast<size_t>(bytes.Length) - count * size - 4;
    for (auto _ : state) {
        const OpcUa_Byte* at = bytes.Data + start;
        const OpcUa_Byte* end = bytes.Data + bytes.Length;
        for (Value& value : values) {
            if (static_cast<size_t>(end - at) < size || at[0] != 0x0D || at[1] != OpcUaType_Double) {
                state.SkipWithError("other bytes than expected");
                break;
            }
            std::memcpy(&value.value, at + 2, 8);
            std::memcpy(&value.source, at + 10, 8);
            std::memcpy(&value.server, at + 18, 8);
            at += size;
        }
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * bytes.Length);
    OpcUa_ByteString_Clear(&bytes);
}

// A reference as the yardstick keeps it: texts as places in the message's one block.
struct FlatReference
{
    OpcUa_UInt32 referenceType;
    OpcUa_UInt32 node;
    OpcUa_UInt32 typeDefinition;
    OpcUa_UInt32 nodeClass;
    OpcUa_UInt16 namespaces[4];
    bool forward;
    const char* browseName;
    const char* displayName;
};

const OpcUa_Byte* takeNodeId(const OpcUa_Byte* at, const OpcUa_Byte* end, OpcUa_UInt16& space,
                             OpcUa_UInt32& id)
{
    constexpr std::ptrdiff_t sizes[] = {2, 4, 7};
    if (end - at < 7 && (at == end || at[0] > 2 || end - at < sizes[at[0]]))
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
    return at + 7;
}

const OpcUa_Byte* takeText(const OpcUa_Byte* at, const OpcUa_Byte* end, char*& arena, const char*& text)
{
    OpcUa_Int32 length = 0;
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
    at = takeText(at + 2, end, arena, to.browseName);
    if (at == nullptr || end - at < 1 || *at != 0x02)
        return nullptr;
    at = takeText(at + 1, end, arena, to.displayName);
    if (at == nullptr || end - at < 4)
        return nullptr;
    std::memcpy(&to.nodeClass, at, 4);
    return takeNodeId(at + 4, end, to.namespaces[3], to.typeDefinition);
}

// One pass and one block of memory for each message: the records first, the texts behind them.
void yardstickBrowse(benchmark::State& state)
{
    OpcUa_ByteString bytes = encodeBrowseResponse();
    // response header, number of results, status and continuation point of the one, number of references
    constexpr size_t start = 8 + 4 + 4 + 1 + 4 + 3 + 4 + 4 + 4 + 4;
    for (auto _ : state) {
        const size_t records = count * sizeof(FlatReference);
        const std::unique_ptr<char[]> block(new char[records + static_cast<size_t>(bytes.Length)]);
        auto* const references = reinterpret_cast<FlatReference*>(block.get());
        char* arena = block.get() + records;
        const OpcUa_Byte* at = bytes.Data + start;
        const OpcUa_Byte* const end = bytes.Data + bytes.Length;
        for (int i = 0; i < count && at != nullptr; ++i)
            at = takeReference(at, end, arena, references[i]);
        if (at == nullptr) {
            state.SkipWithError("other bytes than expected");
            break;
        }
        benchmark::DoNotOptimize(block.get());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * bytes.Length);
    OpcUa_ByteString_Clear(&bytes);
}

BENCHMARK(yardstickRead)->Repetitions(9);
BENCHMARK(yardstickBrowse)->Repetitions(9);
BENCHMARK(decodeRead)->Repetitions(9);
BENCHMARK(decodeBrowse)->Repetitions(9);

} // namespace

int main(int argc, char** argv)
{
    Medians medians;
    runInterleaved(argc, argv, medians);
    std::printf("yardstick %.2f us, ReadResponse %.2f us, BrowseResponse %.2f us\n",
                medians.of("yardstickRead") / 1000, medians.of("decodeRead") / 1000,
                medians.of("decodeBrowse") / 1000);
    printRatioBudget("decode_read_response_1000_doubles", medians, "decodeRead", "yardstickRead", 5.0);
    printRatioBudget("decode_browse_response_1000_references", medians, "decodeBrowse", "yardstickBrowse",
                     4.0);
    return 0;
}
