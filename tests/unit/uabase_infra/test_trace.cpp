#include <tests/unit/uabase_infra/tracetest.h>
#include <uabase/system/uatrace.h>
#include <uabase/system/uatracehook.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <future>
#include <string>
#include <thread>
#include <vector>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

namespace {

std::string clockTime(std::time_t time)
{
    char text[6];
    std::tm parts{};
    ::gmtime_r(&time, &parts);
    std::strftime(text, sizeof(text), "%H:%M", &parts);
    return text;
}

} // namespace

TEST_F(TraceTest, RecordsHaveTheirFourForms)
{
    ::setenv("TZ", "TAV-05:30", 1); // five and a half hours ahead
    ::tzset();
    ASSERT_EQ(start(UaTrace::Data), 0);
    const std::time_t begin = std::time(nullptr);
    UaTrace::tError("%s %d", "utc", 1);
    UaTrace::setPrintDateInTrace(true);
    UaTrace::tData("utc date");
    UaTrace::setLocalTimeOutput(true);
    UaTrace::tIfCall("local date");
    UaTrace::setPrintDateInTrace(false);
    UaTrace::tCtor("local");
    const std::time_t end = std::time(nullptr);
    ::unsetenv("TZ");
    ::tzset();

    const std::vector<std::string> lines = records(trace);
    const std::string id = "\\|[0-9A-F]{4,}\\* ";
    const std::string time = "[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}";
    const std::string date = "[0-9]{4}-[0-9]{2}-[0-9]{2}T";
    ASSERT_THAT(lines, SizeIs(4));
    EXPECT_THAT(lines[0], MatchesRegex(time + "\\|1" + id + "utc 1"));
    EXPECT_THAT(lines[1], MatchesRegex(date + time + "Z\\|7" + id + "utc date"));
    EXPECT_THAT(lines[2], MatchesRegex(date + time + "%\\|4" + id + "local date"));
    EXPECT_THAT(lines[3], MatchesRegex(time + "\\|5" + id + "local"));

    constexpr std::time_t linesAhead = 5 * 3600 + 30 * 60;
    EXPECT_THAT(lines[0].substr(0, 5), ::testing::AnyOf(clockTime(begin), clockTime(end)));
    EXPECT_THAT(lines[3].substr(0, 5),
                ::testing::AnyOf(clockTime(begin + linesAhead), clockTime(end + linesAhead)));
}

TEST_F(TraceTest, LevelsDecideWhatIsWritten)
{
    const auto writeAll = [] {
        UaTrace::tError("1");
        UaTrace::tWarning("2");
        UaTrace::tInfo("3");
        UaTrace::tIfCall("4");
        UaTrace::tCtor("5");
        UaTrace::tInOut("6");
        UaTrace::tData("7");
    };
    ASSERT_EQ(start(UaTrace::InterfaceCall), 0);
    writeAll();
    UaTrace::traceOutput(UaTrace::Data, "forced", 0, true);
    EXPECT_THAT(texts(trace), ElementsAre("1", "2", "3", "4", "forced"));
    EXPECT_EQ(UaTrace::changeTrace(UaTrace::Errors, 1000, 3, UaString(trace)), 0);
    writeAll();
    EXPECT_THAT(texts(trace), ElementsAre("1", "2", "3", "4", "forced", "1"));
    UaTrace::closeTrace();
    writeAll();
    EXPECT_THAT(texts(trace), SizeIs(6));
}

TEST_F(TraceTest, ErrorHookAndErrorFileDoNotDependOnTheLevel)
{
    RecordingHook hook;
    RecordingHook errorHook;
    UaTrace::setErrorTraceHook(&errorHook);
    UaTrace::tError("no file at all");
    EXPECT_THAT(errorHook.take(), ElementsAre("1 0 no file at all"));

    UaTrace::setTraceHook(&hook);
    const std::string errors = folder.file("error.log");
    TemporaryFolder::write(errors, "of the run before\n");
    ASSERT_EQ(UaTrace::initErrorTrace(UaString(errors), "tavelin"), 0);
    ASSERT_EQ(start(UaTrace::Errors), 0);
    UaTrace::traceOutput(UaTrace::Errors, "error", 5);
    UaTrace::tInfo("info");
    UaTrace::tIfCall("call");
    EXPECT_THAT(hook.take(), ElementsAre("1 5 error"));
    EXPECT_THAT(errorHook.take(), ElementsAre("1 5 error", "3 0 info"));
    EXPECT_THAT(texts(trace), ElementsAre("error"));
    EXPECT_THAT(texts(errors), ElementsAre("error", "info"));
    EXPECT_EQ(TemporaryFolder::read(errors + ".bak"), "of the run before\n");
}

TEST_F(TraceTest, TextIsNeverAFormatAndStaysOneLine)
{
    ASSERT_EQ(start(UaTrace::Info), 0);
    UaTrace::traceOutput(UaTrace::Errors, "%s%n%d\r\n2026|1|0001* forged\x1B[2J\x7F\t\xC2\x9B end", 0);
    EXPECT_THAT(texts(trace), ElementsAre("%s%n%d\\r\\n2026|1|0001* forged\\x1B[2J\\x7F\\t\\x9B end"));
}

TEST_F(TraceTest, LongRecordsAreCutBetweenCharacters)
{
    ASSERT_EQ(start(UaTrace::Info), 0);
    std::string text(3000, 'x');
    UaTrace::traceOutput(UaTrace::Info, text.c_str(), 0);
    for (std::size_t i = 0; i + 2 < text.size(); i += 3)
        text.replace(i, 3, "\xE2\x82\xAC"); // the euro sign
    for (int shift = 0; shift < 3; ++shift) {
        UaTrace::traceOutput(UaTrace::Info,
                             (std::string(static_cast<std::size_t>(shift), '-') + text).c_str(), 0);
    }
    const std::vector<std::string> lines = records(trace);
    ASSERT_THAT(lines, SizeIs(4));
    EXPECT_EQ(lines[0].size(), 1998u); // 2000 with the line end and the terminator
    for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_GE(lines[i].size(), 1996u);
        EXPECT_TRUE(UaString(lines[i]).isValidUtf8()) << i;
    }
}

TEST_F(TraceTest, PreFileModeKeepsTheNewestRecords)
{
    UaTrace::setMaxPreFileTraceEntries(3);
    UaTrace::setPreFileTrace(true, UaTrace::Info);
    for (int i = 1; i <= 5; ++i) {
        UaTrace::tInfo("record %d", i);
        UaTrace::tData("too fine");
    }
    std::vector<std::string> kept;
    for (const UaString& record : UaTrace::getPreFileTraces())
        kept.push_back(record.toStdString());
    EXPECT_THAT(kept, ElementsAre(MatchesRegex(".*\\|3\\|.* record 3"), MatchesRegex(".* record 4"),
                                  MatchesRegex(".* record 5")));

    ASSERT_EQ(start(UaTrace::Info), 0);
    UaTrace::tInfo("to the file");
    EXPECT_THAT(UaTrace::getPreFileTraces(), SizeIs(3)) << "the file ends the mode, not what was kept";
    EXPECT_THAT(texts(trace), ElementsAre("to the file"));
    UaTrace::clearPreFileTraces();
    EXPECT_THAT(UaTrace::getPreFileTraces(), IsEmpty());
}

TEST_F(TraceTest, AHookMayTraceAndTakeItselfAway)
{
    class Nested : public UaTraceHook
    {
    public:
        void traceOutput(UaTrace::TraceLevel, const char*, int) override
        {
            ++calls;
            UaTrace::tError("from the hook");
            UaTrace::setErrorTraceHook(nullptr);
        }
        int calls = 0;
    };
    Nested hook;
    ASSERT_EQ(start(UaTrace::Info), 0);
    UaTrace::setErrorTraceHook(&hook);
    UaTrace::tError("first");
    UaTrace::tError("second");
    EXPECT_EQ(hook.calls, 1);
    EXPECT_THAT(texts(trace), ElementsAre("first", "from the hook", "second"));
}

TEST_F(TraceTest, AHookThatIsTakenAwayHasLeft)
{
    class Slow : public UaTraceHook
    {
    public:
        void traceOutput(UaTrace::TraceLevel, const char*, int) override
        {
            entered.set_value();
            release.get_future().wait();
            left = true;
        }
        std::promise<void> entered;
        std::promise<void> release;
        std::atomic<bool> left{false};
    };
    Slow hook;
    UaTrace::setErrorTraceHook(&hook);
    std::thread tracing([] { UaTrace::tError("slow"); });
    hook.entered.get_future().wait();
    std::future<bool> removed = std::async(std::launch::async, [&hook] {
        UaTrace::setErrorTraceHook(nullptr);
        return hook.left.load();
    });
    EXPECT_EQ(removed.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    hook.release.set_value();
    EXPECT_TRUE(removed.get());
    tracing.join();
}

TEST_F(TraceTest, ThreadsLoseNoRecordWhileFilesRotateAndHooksChange)
{
    constexpr int threadCount = 4;
    constexpr int recordCount = 500;
    RecordingHook hook;
    ASSERT_EQ(start(UaTrace::Info, 302, 9), 0); // 300 records a file
    std::vector<std::thread> threads;
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([thread, &hook] {
            for (int i = 0; i < recordCount; ++i) {
                UaTrace::tInfo("record %d", thread * recordCount + i);
                if (i % 50 == 0)
                    UaTrace::setTraceHook(i % 100 == 0 ? &hook : nullptr);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    UaTrace::setTraceHook(nullptr);
    UaTrace::closeTrace();

    std::vector<int> seen;
    for (const std::string& name : folder.names())
        for (const std::string& text : texts(folder.file(name)))
            seen.push_back(std::stoi(text.substr(text.find(' '))));
    std::sort(seen.begin(), seen.end());
    ASSERT_THAT(seen, SizeIs(threadCount * recordCount));
    for (int i = 0; i < threadCount * recordCount; ++i)
        ASSERT_EQ(seen[static_cast<std::size_t>(i)], i);
}
