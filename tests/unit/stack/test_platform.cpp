// Helpers of the platform layer, through the shared library.
#include <opcua/opcua.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

namespace {

template <typename... Arguments>
std::string format(size_t size, const char* text, Arguments... arguments)
{
    std::string buffer(size, '#');
    const int written = OpcUa_StringA_snprintf(buffer.data(), size, text, arguments...);
    EXPECT_EQ(buffer[static_cast<size_t>(written)], '\0');
    return buffer.substr(0, static_cast<size_t>(written));
}

} // namespace

TEST(Platform, FormatsLikePrintfAndLeavesTheRestAlone)
{
    EXPECT_EQ(format(64, "%04d-%02d %s %04X", 7, 3, "text", 0xABu), "0007-03 text 00AB");
    EXPECT_EQ(format(64, "%03d%|%d|%-4s|%5.2f|%%", 5, 6, "a", 1.5), "005%|6|a   | 1.50|%");
    EXPECT_EQ(format(64, "%*d %lld", 4, 12, 5'000'000'000LL), "  12 5000000000");
    EXPECT_EQ(format(64, "100 %"), "100 %");
    EXPECT_EQ(format(64, "%n"), "%n") << "nothing is written where the caller did not ask for it";
    EXPECT_EQ(format(5, "%s", "longer"), "long");
    EXPECT_EQ(format(1, "x"), "");
    char untouched = '#';
    EXPECT_EQ(OpcUa_StringA_snprintf(&untouched, 0, "x"), 0);
    EXPECT_EQ(untouched, '#');
}

TEST(Platform, VersionHasItsSixFields)
{
    for (const char* text : {OpcUa_P_GetVersion(), OpcUa_ProxyStub_GetVersion()}) {
        const std::string version = text;
        EXPECT_EQ(std::count(version.begin(), version.end(), '\\'), 5) << version;
        EXPECT_EQ(version.find("\\\\"), std::string::npos) << "an empty field: " << version;
    }
    EXPECT_NE(std::string(OpcUa_P_GetConfigString()).find(':'), std::string::npos);
}

TEST(Platform, ThreadsHaveSmallIdsOfTheirOwn)
{
    const OpcUa_UInt32 mine = OpcUa_Thread_GetCurrentThreadId();
    OpcUa_UInt32 other = mine;
    std::thread([&] { other = OpcUa_Thread_GetCurrentThreadId(); }).join();
    EXPECT_NE(other, mine);
    EXPECT_EQ(OpcUa_Thread_GetCurrentThreadId(), mine);
    EXPECT_LT(std::max(mine, other), 0x10000u);
}

TEST(Platform, ClockCountsFrom1601)
{
    const auto since1970 = std::chrono::system_clock::now().time_since_epoch();
    const auto ticks = std::chrono::duration_cast<std::chrono::nanoseconds>(since1970).count() / 100;
    constexpr OpcUa_DateTime start1970 = 116'444'736'000'000'000;
    const OpcUa_DateTime difference = OpcUa_DateTime_UtcNow() - (start1970 + ticks);
    EXPECT_GE(difference, 0);
    EXPECT_LT(difference, 10'000'000) << "more than a second apart";
    const OpcUa_UInt64 first = OpcUa_GetTickCount();
    EXPECT_GE(OpcUa_GetTickCount(), first);
}
