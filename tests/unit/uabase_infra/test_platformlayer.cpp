// The stack's start and end, with the stack replaced by a journal.
#include <opcua/opcua_channel.h>
#include <uabase/system/uaplatformlayer.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <string>
#include <utility>
#include <vector>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

constexpr OpcUa_StatusCode badOutOfMemory = 0x80030000u;

std::vector<std::string> g_journal;
OpcUa_StatusCode g_platformResult = 0;
OpcUa_StatusCode g_stubResult = 0;
OpcUa_Trace_PfnHook g_hook = nullptr;

std::vector<std::string> journal()
{
    return std::exchange(g_journal, {});
}

} // namespace

extern "C" {
OpcUa_StatusCode OpcUa_P_Initialize()
{
    g_journal.emplace_back("platform");
    return g_platformResult;
}
void OpcUa_P_Clear()
{
    g_journal.emplace_back("~platform");
}
OpcUa_StatusCode OpcUa_ProxyStub_Initialize(const OpcUa_ProxyStubConfiguration*)
{
    g_journal.emplace_back("stub");
    return g_stubResult;
}
void OpcUa_ProxyStub_Clear()
{
    g_journal.emplace_back("~stub");
}
void OpcUa_Trace_SetHook(OpcUa_Trace_PfnHook hook, void*)
{
    g_journal.emplace_back(hook != nullptr ? "hook" : "~hook");
    g_hook = hook;
}
}

TEST(UaPlatformLayer, StartsOnceAndEndsWithTheLastUser)
{
    EXPECT_EQ(UaPlatformLayer::init(), 0);
    EXPECT_THAT(journal(), ElementsAre("platform", "hook", "stub"));
    EXPECT_EQ(UaPlatformLayer::init(), 0);
    UaPlatformLayer::cleanup();
    EXPECT_THAT(journal(), IsEmpty());
    UaPlatformLayer::cleanup();
    EXPECT_THAT(journal(), ElementsAre("~stub", "~hook", "~platform"));
    UaPlatformLayer::cleanup();
    EXPECT_THAT(journal(), IsEmpty()) << "one call too many";
}

TEST(UaPlatformLayer, AFailureIsToldAndLeavesNothingStarted)
{
    g_platformResult = badOutOfMemory;
    EXPECT_EQ(UaPlatformLayer::init(), static_cast<int>(badOutOfMemory));
    EXPECT_THAT(journal(), ElementsAre("platform"));
    g_platformResult = 0;
    g_stubResult = badOutOfMemory;
    EXPECT_EQ(UaPlatformLayer::init(), static_cast<int>(badOutOfMemory));
    EXPECT_THAT(journal(), ElementsAre("platform", "hook", "stub", "~hook", "~platform"));
    g_stubResult = 0;
    UaPlatformLayer::cleanup();
    EXPECT_THAT(journal(), IsEmpty());
}

TEST(UaPlatformLayer, TheStacksTraceFlowsIntoOurs)
{
    class Hook : public UaTraceHook
    {
    public:
        void traceOutput(UaTrace::TraceLevel level, const char* text, int) override
        {
            records.push_back(std::to_string(level) + ' ' + text);
        }
        std::vector<std::string> records;
    } hook;
    ASSERT_EQ(UaPlatformLayer::init(), 0);
    UaTrace::setTraceHook(&hook);
    UaTrace::setTraceLevel(UaTrace::Errors);
    g_hook(OPCUA_TRACE_LEVEL_ERROR, "error %s", nullptr);
    g_hook(OPCUA_TRACE_LEVEL_WARNING, "warning", nullptr);
    g_hook(OPCUA_TRACE_LEVEL_SYSTEM, "system", nullptr);
    g_hook(OPCUA_TRACE_LEVEL_CONTENT, "content", nullptr);
    UaTrace::setTraceHook(nullptr);
    UaPlatformLayer::cleanup();
    EXPECT_THAT(hook.records, ElementsAre("1 error %s", "2 warning", "3 system", "7 content"));
}
