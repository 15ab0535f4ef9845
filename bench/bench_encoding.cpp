// Bulk answers decoded and encoded, against hand-written passes over the same bytes in the same run, and what
// they take from the heap.
#include <bench/allocationcount.h>
#include <bench/bulkmessages.h>
#include <bench/codecyardsticks.h>
#include <bench/medians.h>
#include <stack/encoding/messagecodec.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace opcua;
using namespace opcua::bench;

namespace {

constexpr int count = 1000;
constexpr size_t typeIdSize = 4; // in front of the body

struct Sample
{
    ReadResponse read;
    BrowseResponse browse;
    Bytes readBytes;
    Bytes browseBytes;

    Sample()
    {
        fill(*read, count);
        fill(*browse, count);
        if (OpcUa_IsBad(encodeMessage(OpcUa_ReadResponse_EncodeableType, &*read, {}, readBytes)) ||
            OpcUa_IsBad(encodeMessage(OpcUa_BrowseResponse_EncodeableType, &*browse, {}, browseBytes)))
            std::abort();
    }
};

Sample& sample()
{
    static Sample made;
    return made;
}

void decode(benchmark::State& state, ByteView bytes)
{
    const EncodingLimits limits;
    for (auto _ : state) {
        DecodedMessage message;
        if (OpcUa_IsBad(decodeMessage(bytes, limits, message)))
            return state.SkipWithError("does not decode");
        benchmark::DoNotOptimize(message.object);
    }
}

void decodeRead(benchmark::State& state)
{
    decode(state, sample().readBytes);
}

void decodeBrowse(benchmark::State& state)
{
    decode(state, sample().browseBytes);
}

// Into a buffer that has its size from the message before.
void encode(benchmark::State& state, const OpcUa_EncodeableType& type, const void* object)
{
    const EncodingLimits limits;
    ByteBuffer out;
    for (auto _ : state) {
        out.clear();
        if (OpcUa_IsBad(encodeMessage(type, object, limits, out)))
            return state.SkipWithError("does not encode");
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

void encodeRead(benchmark::State& state)
{
    encode(state, OpcUa_ReadResponse_EncodeableType, &*sample().read);
}

void encodeBrowse(benchmark::State& state)
{
    encode(state, OpcUa_BrowseResponse_EncodeableType, &*sample().browse);
}

void yardstickDecodeRead(benchmark::State& state)
{
    std::vector<FlatValue> values(count);
    for (auto _ : state) {
        if (!takeValues(sample().readBytes, values))
            return state.SkipWithError("other bytes than expected");
        benchmark::DoNotOptimize(values.data());
        benchmark::ClobberMemory();
    }
}

void yardstickEncodeRead(benchmark::State& state)
{
    std::vector<FlatValue> values(count);
    Bytes out(sample().readBytes.size());
    if (!takeValues(sample().readBytes, values))
        return state.SkipWithError("other bytes than expected");
    for (auto _ : state) {
        if (!placeValues(values, out))
            return state.SkipWithError("no room");
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

void yardstickDecodeBrowse(benchmark::State& state)
{
    const ByteView body = ByteView(sample().browseBytes).subspan(typeIdSize);
    for (auto _ : state) {
        const auto block = takeReferences(body, count);
        if (!block)
            return state.SkipWithError("other bytes than expected");
        benchmark::DoNotOptimize(block.get());
        benchmark::ClobberMemory();
    }
}

void yardstickEncodeBrowse(benchmark::State& state)
{
    const auto block = takeReferences(ByteView(sample().browseBytes).subspan(typeIdSize), count);
    Bytes out(sample().browseBytes.size());
    if (!block)
        return state.SkipWithError("other bytes than expected");
    for (auto _ : state) {
        if (!placeReferences({recordsOf(block), count}, out))
            return state.SkipWithError("no room");
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(yardstickDecodeRead)->Repetitions(repetitions(9))->MinTime(0.05);
BENCHMARK(decodeRead)->Repetitions(repetitions(9))->MinTime(0.05);
BENCHMARK(yardstickEncodeRead)->Repetitions(repetitions(9))->MinTime(0.05);
BENCHMARK(encodeRead)->Repetitions(repetitions(9))->MinTime(0.05);
BENCHMARK(yardstickDecodeBrowse)->Repetitions(repetitions(9))->MinTime(0.05);
BENCHMARK(decodeBrowse)->Repetitions(repetitions(9))->MinTime(0.05);
BENCHMARK(yardstickEncodeBrowse)->Repetitions(repetitions(9))->MinTime(0.05);
BENCHMARK(encodeBrowse)->Repetitions(repetitions(9))->MinTime(0.05);

void printAllocations(const char* name, const Bytes& bytes, double limit)
{
    const size_t before = allocationCount();
    bool decoded = false;
    {
        DecodedMessage message;
        decoded = OpcUa_IsGood(decodeMessage(bytes, {}, message));
    }
    printBudget(name, static_cast<double>(allocationCount() - before), limit, decoded);
}

} // namespace

int main(int argc, char** argv)
{
    Medians medians;
    runInterleaved(argc, argv, medians);
    for (const char* const name :
         {"yardstickDecodeRead", "decodeRead", "yardstickEncodeRead", "encodeRead", "yardstickDecodeBrowse",
          "decodeBrowse", "yardstickEncodeBrowse", "encodeBrowse"})
        std::printf("%s %.2f us\n", name, medians.of(name) / 1000);
    printRatioBudget("decode_read_response_1000_doubles", medians, "decodeRead", "yardstickDecodeRead", 5.0);
    printRatioBudget("decode_browse_response_1000_references", medians, "decodeBrowse",
                     "yardstickDecodeBrowse", 4.0);
    printRatioBudget("encode_read_response_1000_doubles", medians, "encodeRead", "yardstickEncodeRead", 6.0);
    printRatioBudget("encode_browse_response_1000_references", medians, "encodeBrowse",
                     "yardstickEncodeBrowse", 4.0);
    printAllocations("allocations_read_response_1000_doubles", sample().readBytes, 5);
    printAllocations("allocations_browse_response_1000_references", sample().browseBytes, 8);
    return 0;
}
