// The bytes that a server sends as its certificate, cut into single ones, at full speed: nothing is verified
// and no folder read. Takes the inputs of fuzz_certificates, whose first byte chooses what it tries.
#include <uabase/values/uabytestring.h>
#include <uaclientsdk/sessionsecurityinfo.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr OpcUa_UInt32 maxChain = 10;
    if (size == 0)
        return 0;
    const std::span<const std::uint8_t> bytes(data + 1, size - 1);
    UaByteStringArray parts;
    if (UaClientSdk::SessionSecurityInfo::splitCertificateChain(UaByteString(bytes), parts).isBad())
        return 0;
    if (parts.length() < 1 || parts.length() > maxChain)
        std::abort();
    // the parts are the whole, in its order
    std::size_t at = 0;
    for (const OpcUa_ByteString& part : parts) {
        const auto length = static_cast<std::size_t>(part.Length);
        if (length == 0 || length > bytes.size() - at ||
            std::memcmp(bytes.data() + at, part.Data, length) != 0)
            std::abort();
        at += length;
    }
    if (at != bytes.size())
        std::abort();
    return 0;
}
