// What a server may answer over HTTP. The first byte chooses the limits, the second the pieces in which the
// rest arrives. However it ends, every request ends once, in order, and nothing grows beyond the limits.
#include <stack/core/httppipeline.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace opcua;
using namespace std::chrono_literals;

constexpr OpcUa_UInt32 requests = 5;
const TimePoint start{1000s};

void check(bool holds)
{
    if (!holds)
        std::abort();
}

class Listener final : public HttpPipelineListener
{
public:
    explicit Listener(size_t maxBodySize) : m_maxBodySize(maxBodySize) {}

    void onResponse(OpcUa_UInt32 id, Bytes&& body) override
    {
        check(body.size() <= m_maxBodySize);
        ended(id);
    }
    void onRequestFailed(OpcUa_UInt32 id, OpcUa_StatusCode status, const std::string& reason) override
    {
        check((status & 0x80000000u) != 0);
        check(reason.size() < 300);
        ended(id);
    }
    OpcUa_UInt32 count = 0;

private:
    void ended(OpcUa_UInt32 id) { check(id == ++count); }

    size_t m_maxBodySize;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const size_t maxBodySize = size_t{16} << data[0] % 12;
    const size_t slice = 1 + size_t{data[1]} * 8;
    Listener listener(maxBodySize);
    HttpPipeline pipeline(httpRequestHead("host:4840", "/path", ""), maxBodySize, listener);
    for (OpcUa_UInt32 n = 0; n < requests; ++n)
        static_cast<void>(pipeline.send(Bytes{1}, start + 10s, start));
    for (ByteView rest(data + 2, size - 2); !rest.empty();) {
        const ByteView part = rest.first(std::min(slice, rest.size()));
        rest = rest.subspan(part.size());
        pipeline.receive(part, start);
    }
    check(pipeline.waiting() ==
          (pipeline.state() == HttpPipeline::State::Open ? requests - listener.count : 0));
    pipeline.advance(start + 10s);
    check(listener.count == requests && pipeline.waiting() == 0 && pipeline.nextDeadline() == never);
    pipeline.end(HttpPipeline::State::Broken, 0x80000000u);
    check(listener.count == requests);
    return 0;
}
