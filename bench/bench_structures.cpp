// Structure values decoded through a definition, against the same bytes by a type table in the same run; and
// copies of scalar variants, which must not allocate.
#include <bench/medians.h>
#include <opcua/opcua.h>
#include <uabase/structures/uagenericstructurevalue.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <new>
#include <string>
#include <vector>

namespace {

std::size_t allocations = 0; // one thread runs here; an atomic would slow one side of the comparison

} // namespace

[[gnu::noinline]] void* operator new(std::size_t size)
{
    ++allocations;
    if (void* block = std::malloc(size))
        return block;
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* block) noexcept
{
    std::free(block);
}

[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

namespace {

constexpr int valuesPerRun = 1000; // as often as it takes; the ratio is the same for a million

// Ten scalar fields, as a generated table describes them.
struct TenFields
{
    OpcUa_Boolean Running;
    OpcUa_Byte State;
    OpcUa_Int16 Offset;
    OpcUa_UInt16 Channel;
    OpcUa_Int32 Count;
    OpcUa_UInt32 Serial;
    OpcUa_Int64 Total;
    OpcUa_Float Speed;
    OpcUa_Double Position;
    OpcUa_DateTime Changed;
};

constexpr OpcUa_FieldDescriptor fieldOf(const char* name, OpcUa_BuiltInType type, std::size_t offset)
{
    return {name,    static_cast<OpcUa_Byte>(type),  0, 0, static_cast<OpcUa_UInt32>(offset), 0,
            nullptr, static_cast<OpcUa_UInt32>(type)};
}

const OpcUa_FieldDescriptor tenFields[] = {
    fieldOf("Running", OpcUaType_Boolean, offsetof(TenFields, Running)),
    fieldOf("State", OpcUaType_Byte, offsetof(TenFields, State)),
    fieldOf("Offset", OpcUaType_Int16, offsetof(TenFields, Offset)),
    fieldOf("Channel", OpcUaType_UInt16, offsetof(TenFields, Channel)),
    fieldOf("Count", OpcUaType_Int32, offsetof(TenFields, Count)),
    fieldOf("Serial", OpcUaType_UInt32, offsetof(TenFields, Serial)),
    fieldOf("Total", OpcUaType_Int64, offsetof(TenFields, Total)),
    fieldOf("Speed", OpcUaType_Float, offsetof(TenFields, Speed)),
    fieldOf("Position", OpcUaType_Double, offsetof(TenFields, Position)),
    fieldOf("Changed", OpcUaType_DateTime, offsetof(TenFields, Changed)),
};

const OpcUa_EncodeableType tenFieldsType = {"TenFields", 1,           0, 0,  sizeof(TenFields), tenFields, 10,
                                            OpcUa_False, OpcUa_False, 0, 42, OpcUa_True};

UaByteString body()
{
    const TenFields value{OpcUa_True,  3,         -5,   7,     -100000,
                          4000000000u, 1LL << 40, 1.5f, -2.25, 132000000000000000};
    OpcUa_ByteString bytes;
    OpcUa_ByteString_Initialize(&bytes);
    // out of memory shows at once: there is nothing to decode
    static_cast<void>(OpcUa_EncodeableObject_EncodeBinary(&tenFieldsType, &value, &bytes));
    UaByteString result;
    result.attach(&bytes);
    return result;
}

UaStructureDefinition definition()
{
    UaStructureDefinition made("TenFields", UaNodeId(1, 2), UaNodeId(2, 2));
    for (const OpcUa_FieldDescriptor& field : tenFields)
        made.addField(UaStructureField(field.Name, UaNodeId(field.DataTypeId),
                                       static_cast<OpcUa_BuiltInType>(field.Kind)));
    return made;
}

void decodeByTable(benchmark::State& state)
{
    const UaByteString bytes = body();
    for (auto _ : state) {
        for (int i = 0; i < valuesPerRun; ++i) {
            void* value = OpcUa_EncodeableObject_Create(&tenFieldsType);
            if (OpcUa_IsBad(OpcUa_EncodeableObject_DecodeBinary(
                    &tenFieldsType, bytes.data(), static_cast<size_t>(bytes.length()), value, nullptr)))
                state.SkipWithError("does not decode");
            benchmark::DoNotOptimize(value);
            OpcUa_EncodeableObject_Delete(&tenFieldsType, &value);
        }
    }
}

void decodeByDefinition(benchmark::State& state)
{
    const UaByteString bytes = body();
    const UaStructureDefinition made = definition();
    for (auto _ : state) {
        for (int i = 0; i < valuesPerRun; ++i) {
            UaGenericStructureValue value;
            if (value.decode(bytes, made).isBad())
                state.SkipWithError("does not decode");
            benchmark::DoNotOptimize(value);
        }
    }
}

BENCHMARK(decodeByTable)->Repetitions(repetitions(9));
BENCHMARK(decodeByDefinition)->Repetitions(repetitions(9));

// Allocations of a thousand copies of each scalar of fixed size; strings and the like share their content.
std::size_t allocationsOfCopies()
{
    const UaVariant scalars[] = {
        UaVariant(true),
        UaVariant(static_cast<OpcUa_SByte>(-1)),
        UaVariant(static_cast<OpcUa_Byte>(1)),
        UaVariant(OpcUa_Int16{1}),
        UaVariant(OpcUa_UInt16{1}),
        UaVariant(OpcUa_Int32{1}),
        UaVariant(OpcUa_UInt32{}),
        UaVariant(OpcUa_Int64{1}),
        UaVariant(OpcUa_UInt64{1}),
        UaVariant(1.0f),
        UaVariant(1.0),
        UaVariant(UaDateTime::now()),
        UaVariant(UaGuid()),
        UaVariant(UaStatusCode(0)),
        UaVariant("a text that is shared"),
    };
    const std::size_t before = allocations;
    for (int i = 0; i < 1000; ++i)
        for (const UaVariant& scalar : scalars) {
            const UaVariant copy(scalar);
            benchmark::DoNotOptimize(&copy);
        }
    return allocations - before;
}

} // namespace

int main(int argc, char** argv)
{
    Medians medians;
    runInterleaved(argc, argv, medians);
    std::printf("1000 values by table %.2f us, by definition %.2f us\n", medians.of("decodeByTable") / 1000,
                medians.of("decodeByDefinition") / 1000);
    printRatioBudget("decode_structure_by_definition", medians, "decodeByDefinition", "decodeByTable", 3.0);
    printBudget("variant_scalar_copy_allocations", static_cast<double>(allocationsOfCopies()), 0.0, true);
    return 0;
}
