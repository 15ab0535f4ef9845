// What a peer may send to a channel, in each of its states. The first byte chooses state and role, the second
// the pieces in which the rest arrives. However it ends, every request ends once and nothing piles up.
#include <stack/server/engineprobe.h>
#include <tests/protocol/memorypipe.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace {

using namespace opcua;
using namespace opcua::test;

enum Mode { ClientHello, ClientOpening, ClientOpen, Server, ClientOpenChunks, ModeCount };

constexpr int requests = 3;

ClientChannelConfig smallLimits()
{
    ClientChannelConfig config;
    config.limits = {8192, 8192, 20'000, 8};
    return config;
}

void check(bool holds)
{
    if (!holds)
        std::abort();
}

void bringTo(MemoryPipe& pipe, Mode mode)
{
    pipe.onServerRequest = [](OpcUa_UInt32, const Bytes&) {};
    if (mode == Server)
        return;
    pipe.start();
    if (mode == ClientHello)
        return;
    pipe.toServer(std::exchange(pipe.client.output(), {}));
    pipe.toClient(std::exchange(pipe.server.output(), {}));
    if (mode == ClientOpening)
        return;
    pipe.run();
    for (int n = 0; n < requests; ++n)
        pipe.request({1});
}

// Reads the bytes as well-formed chunks, so that what lies behind the sequence check is reached: chunk type
// and request id in one byte, length in the next.
Bytes chunksFrom(MemoryPipe& pipe, ByteView script)
{
    Bytes stream;
    while (script.size() >= 2) {
        RawChunk chunk;
        chunk.chunk = static_cast<ChunkType>(script[0] % 3);
        chunk.requestId = 2u + script[0] / 3 % 5;
        const size_t length = std::min<size_t>(script[1], script.size() - 2);
        chunk.sequence = pipe.nextServerSequence();
        chunk.body.assign(script.begin() + 2, script.begin() + 2 + static_cast<std::ptrdiff_t>(length));
        script = script.subspan(2 + length);
        const Bytes bytes = chunk.bytes();
        stream.insert(stream.end(), bytes.begin(), bytes.end());
    }
    return stream;
}

void checkClient(MemoryPipe& pipe, int expected)
{
    check(EngineProbe::bufferedBytes(pipe.client) <= 4 * 20'000);
    pipe.pass(Milliseconds{3'600'000});
    check(pipe.completions == expected);
    check(EngineProbe::pendingRequests(pipe.client) == 0);
    pipe.client.close();
    check(pipe.client.nextDeadline() == never);
    check(pipe.completions == expected);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const auto mode = static_cast<Mode>(data[0] % ModeCount);
    const size_t slice = 1 + size_t{data[1]} * 8;
    const ByteView input(data + 2, size - 2);
    MemoryPipe pipe(smallLimits());
    bringTo(pipe, mode);
    Bytes stream = mode == ClientOpenChunks ? chunksFrom(pipe, input) : Bytes(input.begin(), input.end());
    if (mode == Server) {
        pipe.toServer(stream, slice);
        check(EngineProbe::bufferedBytes(pipe.server) <= 4 * size_t{defaultMaxMessageSize});
        return 0;
    }
    pipe.toClient(stream, slice);
    checkClient(pipe, mode == ClientOpen || mode == ClientOpenChunks ? requests : 0);
    return 0;
}
