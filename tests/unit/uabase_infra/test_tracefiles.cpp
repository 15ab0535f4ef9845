#include <tests/unit/uabase_infra/tracetest.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastring.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

namespace {

// The disk seems full once a file has this size.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_signal = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signal);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_before{};
    void (*m_signal)(int) = nullptr;
};

} // namespace

TEST_F(TraceTest, HeaderTellsVersionAndDate)
{
    UaTrace::addTraceHeaderEntry("System: one\nline");
    ASSERT_EQ(start(UaTrace::Info), 0);
    const std::vector<std::string> lines = TemporaryFolder::lines(trace);
    ASSERT_THAT(lines, SizeIs(5));
    const std::string today = lines[3].substr(std::string("** Date: ").size());
    EXPECT_THAT(today, ::testing::MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}"));
    EXPECT_THAT(lines, ElementsAre(StartsWith("** " + today + "T"), "** Product version: 1.4.2",
                                   "** System: one\\nline", "** Date: " + today, "**"));
    EXPECT_THAT(lines[0], ::testing::EndsWith(": start trace"));
}

TEST_F(TraceTest, BackupNamesKeepTheWholeName)
{
    EXPECT_EQ(UaTrace::buildBackupFileName("trace.log", 1), UaString("trace.log_1.log"));
    EXPECT_EQ(UaTrace::buildBackupFileName("trace", 12), UaString("trace_12.log"));
    EXPECT_EQ(UaTrace::buildBackupFileName("/home/u/.config/trace", 1),
              UaString("/home/u/.config/trace_1.log"));
    EXPECT_EQ(UaTrace::buildBackupFileName("/home/u/.config/a.b.txt", 2),
              UaString("/home/u/.config/a.b.txt_2.txt"));
}

TEST_F(TraceTest, AFullFileBecomesBackupOne)
{
    ASSERT_EQ(start(UaTrace::Info, 1000, 3), 0);
    for (int i = 1; i <= 997; ++i)
        UaTrace::tInfo("record %d", i);
    EXPECT_THAT(folder.names(), ElementsAre("trace.log"));
    UaTrace::tInfo("record 998");
    EXPECT_THAT(records(trace), IsEmpty());
    EXPECT_THAT(TemporaryFolder::lines(trace), Not(IsEmpty()));
    const std::vector<std::string> full = texts(trace + "_1.log");
    ASSERT_THAT(full, SizeIs(998));
    EXPECT_EQ(full.back(), "record 998");

    for (int i = 999; i <= 5 * 998; ++i)
        UaTrace::tInfo("record %d", i);
    EXPECT_THAT(folder.names(), ::testing::UnorderedElementsAre("trace.log", "trace.log_1.log",
                                                                "trace.log_2.log", "trace.log_3.log"));
    EXPECT_EQ(texts(trace + "_1.log").front(), "record 3993");
    EXPECT_EQ(texts(trace + "_3.log").front(), "record 1997");
}

TEST_F(TraceTest, TheFileOfTheRunBeforeBecomesABackup)
{
    ASSERT_EQ(start(UaTrace::Info), 0);
    EXPECT_THAT(folder.names(), ElementsAre("trace.log")) << "there was nothing to save";
    EXPECT_EQ(start(UaTrace::Info), -1) << "it is open";
    UaTrace::tInfo("first run");
    UaTrace::closeTrace();
    ASSERT_EQ(start(UaTrace::Info), 0);
    EXPECT_THAT(texts(trace + "_1.log"), ElementsAre("first run"));
    EXPECT_THAT(records(trace), IsEmpty());
}

TEST_F(TraceTest, ChangingMovesToTheNewFileOrKeepsTheOld)
{
    const std::string other = folder.file("other.log");
    EXPECT_EQ(UaTrace::changeTrace(UaTrace::Info, 1000, 3, UaString(other)), -1) << "none is open";
    ASSERT_EQ(start(UaTrace::Info), 0);
    UaTrace::tInfo("one");
    EXPECT_EQ(UaTrace::changeTrace(UaTrace::Data, 1000, 3, UaString(folder.file("missing/trace.log"))), -1);
    UaTrace::tInfo("two");
    UaTrace::tData("still too fine");
    EXPECT_EQ(UaTrace::changeTrace(UaTrace::Data, 1000, 3, UaString(other)), 0);
    UaTrace::tData("three");
    EXPECT_THAT(texts(trace), ElementsAre("one", "two"));
    EXPECT_THAT(texts(other), ElementsAre("three"));
}

TEST_F(TraceTest, PipesAndMissingFoldersAreRefused)
{
    const std::string pipe = folder.file("pipe.log");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(UaTrace::initTrace(UaTrace::Info, 1000, 3, UaString(pipe), "tavelin"), -1);
    EXPECT_EQ(UaTrace::initTrace(UaTrace::Info, 1000, 3, UaString(folder.path()), "tavelin"), -1);
    EXPECT_EQ(UaTrace::initTrace(UaTrace::Info, 1000, 3, UaString(folder.file("no/trace.log")), "tavelin"),
              -1);
    EXPECT_EQ(UaTrace::traceLevel(), UaTrace::NoTrace);
}

TEST_F(TraceTest, AFullDiskTurnsTheFileOffAndTellsOnce)
{
    RecordingHook errors;
    ASSERT_EQ(start(UaTrace::Info, 0), 0);
    UaTrace::setErrorTraceHook(&errors);
    {
        const FileSizeLimit limit(4096);
        for (int i = 0; i < 100; ++i)
            UaTrace::tInfo("a record of some length, so that the file soon is full: %d", i);
    }
    EXPECT_TRUE(UaTrace::traceFileName().isNull());
    std::vector<std::string> told = errors.take();
    EXPECT_THAT(told, SizeIs(101)) << "the records themselves and one notice";
    EXPECT_THAT(told, Contains(HasSubstr(trace + " was turned off: File too large")).Times(1));
    EXPECT_THAT(texts(trace), Not(IsEmpty()));
}

TEST_F(TraceTest, AFullDiskLosesNothingWhenFilesChange)
{
    const std::string before(10000, 'b');
    TemporaryFolder::write(trace, before);
    const FileSizeLimit limit(4096);
    EXPECT_EQ(start(UaTrace::Info), -1) << "the old file could not be saved";
    EXPECT_EQ(TemporaryFolder::read(trace), before);
    EXPECT_THAT(folder.names(), ElementsAre("trace.log"));
}

TEST_F(TraceTest, ASecondInstanceLeavesTheFileToTheFirst)
{
    ASSERT_EQ(start(UaTrace::Info), 0);
    UaTrace::tInfo("of the first");
    ::setenv("TAVELIN_SECOND_TRACE", trace.c_str(), 1);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::execl("/proc/self/exe", "test_trace", "--gtest_filter=SecondInstance.DISABLED_Traces",
                "--gtest_also_run_disabled_tests", "--gtest_brief=1", nullptr);
        ::_exit(99);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    UaTrace::tInfo("of the first again");
    EXPECT_THAT(texts(trace), ElementsAre("of the first", "of the first again"));
    EXPECT_THAT(texts(folder.file("trace-2.log")), ElementsAre("of the second"));
}

// Runs in the process that the test above starts.
TEST(SecondInstance, DISABLED_Traces)
{
    const char* name = std::getenv("TAVELIN_SECOND_TRACE");
    ASSERT_NE(name, nullptr);
    ASSERT_EQ(UaTrace::initTrace(UaTrace::Info, 1000, 3, name, "tavelin"), 0);
    UaTrace::tInfo("of the second");
    EXPECT_THAT(UaTrace::traceFileName().toStdString(), ::testing::EndsWith("/trace-2.log"));
    UaTrace::closeTrace();
}
