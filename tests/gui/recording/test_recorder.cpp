// What a recorder makes of slow disks, full disks, broken files and clocks that jump.
#include <recording/recorder.h>
#include <recording/sqliterecord.h>
#include <tests/gui/recording/recordingtest.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uavariant.h>

#include <QFile>
#include <QString>
#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/mount.h>
#include <sys/resource.h>
#include <thread>
#include <vector>

namespace {

using namespace recording;
using testing::ElementsAre;

class RecorderTest : public RecordingTest
{
protected:
    std::unique_ptr<Recorder> make(const RecorderSettings& wanted, const char* name = "a.sqlite")
    {
        auto recorder = std::make_unique<Recorder>(
            std::make_unique<FaultySink>(std::make_unique<SqliteRecord>(file(name)), faults), wanted,
            surroundings());
        number = recorder->addItem(item("Speed"));
        return recorder;
    }
    bool waitForState(const Recorder& recorder, RecorderState state)
    {
        return waitFor([&] { return recorder.status().state == state; });
    }

    std::shared_ptr<FaultySink::Faults> faults = std::make_shared<FaultySink::Faults>();
    ItemNumber number = 0;
};

TEST_F(RecorderTest, WritingThatFailsLosesNothingAndWritesNothingTwice)
{
    const auto recorder = make(settings());
    faults->opens = 2;
    recorder->start();
    put(*recorder, number, 1);
    ASSERT_TRUE(recorder->flush(20'000));
    faults->commits = 2;
    put(*recorder, number, 2);
    ASSERT_TRUE(waitFor([&] { return faults->commits == 0; }));
    faults->writes = 1;
    put(*recorder, number, 3);
    ASSERT_TRUE(recorder->flush(20'000));
    EXPECT_EQ(recorder->status().records, 3u);
    EXPECT_EQ(recorder->status().lost, 0u);
    EXPECT_EQ(recorder->status().error, QStringLiteral("injected"));
    recorder->stop();
    const Found found = readFile(file("a.sqlite"));
    EXPECT_EQ(found.error, QString());
    EXPECT_THAT(found.values(), ElementsAre("1", "2", "3"));
    const Mark* const trouble = found.find(MarkKind::FileTrouble);
    ASSERT_NE(trouble, nullptr);
    EXPECT_EQ(trouble->text, QStringLiteral("injected"));
    EXPECT_LT(trouble->from, trouble->to);
}

TEST_F(RecorderTest, ASlowDiskHoldsUpNobodyAndWhatIsLostIsToldInItsPlace)
{
    RecorderSettings wanted = settings();
    wanted.queue.capacity = 10;
    const auto recorder = make(wanted);
    recorder->start();
    put(*recorder, number, 1);
    ASSERT_TRUE(recorder->flush(20'000));
    faults->isStuck = true;
    put(*recorder, number, 2);
    ASSERT_TRUE(waitFor([&] { return recorder->status().queued == 0; })); // the thread has it
    for (int value = 3; value <= 22; ++value)
        put(*recorder, number, UaDataValue(UaVariant(OpcUa_Int32(value))), 1000 + value);
    EXPECT_EQ(recorder->status().queued, 10u);
    faults->isStuck = false;
    ASSERT_TRUE(recorder->flush(20'000));
    EXPECT_EQ(recorder->status().lost, 10u);
    recorder->stop();
    const Found found = readFile(file("a.sqlite"));
    ASSERT_EQ(found.records.size(), 12u);
    EXPECT_EQ(found.values()[1], "2");
    EXPECT_EQ(found.values()[2], "13");
    const Mark* const lost = found.find(MarkKind::Lost);
    ASSERT_NE(lost, nullptr);
    EXPECT_EQ(lost->count, 10u);
    EXPECT_EQ(lost->from, 1003);
    EXPECT_EQ(lost->to, 1012);
}

TEST_F(RecorderTest, PausesWhereSpaceEndsAndGoesOn)
{
    RecorderSettings wanted = settings();
    wanted.freeFloor = 1000;
    const auto recorder = make(wanted);
    recorder->start();
    put(*recorder, number, 1);
    ASSERT_TRUE(recorder->flush(20'000));
    freeBytes = 999;
    ASSERT_TRUE(waitForState(*recorder, RecorderState::NoSpace));
    put(*recorder, number, 2);
    EXPECT_FALSE(recorder->flush(50));
    EXPECT_EQ(readFile(file("a.sqlite")).values().size(), 1u);
    freeBytes = 1000;
    ASSERT_TRUE(waitForState(*recorder, RecorderState::Recording));
    recorder->stop();
    const Found found = readFile(file("a.sqlite"));
    EXPECT_THAT(found.values(), ElementsAre("1", "2")); // the queue has kept it
    ASSERT_NE(found.find(MarkKind::Paused), nullptr);
    ASSERT_NE(found.find(MarkKind::Resumed), nullptr);
    EXPECT_LT(found.find(MarkKind::Resumed)->from, found.find(MarkKind::Resumed)->to);
}

TEST_F(RecorderTest, AClockThatIsSetBackIsMarkedWhereItHappened)
{
    const auto recorder = make(settings());
    recorder->start();
    put(*recorder, number, 1);
    ASSERT_TRUE(recorder->flush(20'000));
    clockOffset = -36'000'000'000; // an hour
    put(*recorder, number, 2);
    ASSERT_TRUE(recorder->flush(20'000));
    recorder->stop();
    const Found found = readFile(file("a.sqlite"));
    EXPECT_THAT(found.values(), ElementsAre("1", "2"));
    EXPECT_GT(found.records[0].received, found.records[1].received);
    const Mark* const step = found.find(MarkKind::ClockStep);
    ASSERT_NE(step, nullptr);
    EXPECT_NEAR(static_cast<double>(step->to - step->from), -36e9, 36e6);
}

TEST_F(RecorderTest, AFileThatIsTakenAwayIsFollowedByAnother)
{
    const auto recorder = make(settings());
    recorder->start();
    put(*recorder, number, 1);
    ASSERT_TRUE(recorder->flush(20'000));
    ASSERT_TRUE(QFile::remove(file("a.sqlite")));
    ASSERT_TRUE(waitFor([&] { return recorder->status().path == file("a-2.sqlite"); }));
    put(*recorder, number, 2);
    ASSERT_TRUE(recorder->flush(20'000));
    std::filesystem::resize_file(folder.file("a-2.sqlite"), 100);
    ASSERT_TRUE(waitFor([&] { return recorder->status().path == file("a-3.sqlite"); }));
    put(*recorder, number, 3);
    recorder->stop();
    const Found found = readFile(file("a-3.sqlite"));
    EXPECT_EQ(found.error, QString());
    EXPECT_EQ(found.values().back(), "3");
    ASSERT_NE(found.find(MarkKind::FileTrouble), nullptr);
    EXPECT_TRUE(found.find(MarkKind::FileTrouble)->text.contains(QStringLiteral("a-2.sqlite")));
    EXPECT_EQ(found.records[0].item, 1u); // which the new file knows
}

TEST_F(RecorderTest, ASecondProgramIsKeptOffAFile)
{
    const auto first = make(settings());
    first->start();
    put(*first, number, 1);
    ASSERT_TRUE(first->flush(20'000));
    Recorder second(std::make_unique<SqliteRecord>(file("a.sqlite")), settings(), surroundings());
    second.start();
    ASSERT_TRUE(waitForState(second, RecorderState::Failing));
    EXPECT_TRUE(second.status().error.contains(QStringLiteral("is being recorded to already")))
        << second.status().error.toStdString();
    put(*first, number, 2);
    first->stop();
    ASSERT_TRUE(waitForState(second, RecorderState::Recording)); // now it is free
    second.stop();
    const Found found = readFile(file("a.sqlite"));
    EXPECT_EQ(found.error, QString());
    EXPECT_THAT(found.values(), ElementsAre("1", "2"));
    EXPECT_NE(found.find(MarkKind::Gap), nullptr);
}

TEST_F(RecorderTest, WaitsForAFolderAndLeavesOtherFilesAlone)
{
    const auto recorder = make(settings(), "later/a.sqlite");
    recorder->start();
    put(*recorder, number, 1);
    ASSERT_TRUE(waitForState(*recorder, RecorderState::Failing));
    EXPECT_TRUE(recorder->status().error.contains(QStringLiteral("cannot be written to")));
    std::filesystem::create_directory(folder.file("later"));
    ASSERT_TRUE(recorder->flush(20'000));
    recorder->stop();
    EXPECT_THAT(readFile(file("later/a.sqlite")).values(), ElementsAre("1"));

    TemporaryFolder::write(folder.file("text.sqlite"), "somebody's letter");
    const auto other = make(settings(), "text.sqlite");
    other->start();
    ASSERT_TRUE(waitForState(*other, RecorderState::Failing));
    EXPECT_EQ(TemporaryFolder::read(folder.file("text.sqlite")), "somebody's letter");
    RecordReader reader;
    EXPECT_FALSE(reader.open(file("text.sqlite")));
    EXPECT_TRUE(reader.error().contains(QStringLiteral("is no recording")));
}

// A file system of a megabyte where that may be mounted, else a limit of file sizes, which fails likewise.
class SmallDisk
{
public:
    explicit SmallDisk(const std::string& path) : m_path(path)
    {
        std::filesystem::create_directory(path);
        isMounted = ::mount("tmpfs", path.c_str(), "tmpfs", 0, "size=1m") == 0;
        if (isMounted)
            return;
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit small{1u << 20, m_former.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk()
    {
        if (isMounted)
            ::umount2(m_path.c_str(), MNT_DETACH);
        else
            giveRoom();
    }
    void giveRoom()
    {
        if (isMounted)
            ::mount("tmpfs", m_path.c_str(), "tmpfs", MS_REMOUNT, "size=64m");
        else
            ::setrlimit(RLIMIT_FSIZE, &m_former);
    }

    bool isMounted = false;

private:
    const std::string m_path;
    rlimit m_former{};
};

TEST_F(RecorderTest, AFullDiskIsWaitedForAndNothingIsLost)
{
    SmallDisk disk(folder.file("small"));
    const auto recorder = make(settings(), "small/a.sqlite");
    recorder->start();
    constexpr int count = 300; // of four kilobytes
    for (int value = 0; value < count; ++value)
        put(*recorder, number, UaDataValue(UaVariant(std::string(4000, 'x').c_str())));
    ASSERT_TRUE(waitForState(*recorder, RecorderState::Failing));
    EXPECT_FALSE(recorder->status().error.isEmpty());
    disk.giveRoom();
    ASSERT_TRUE(recorder->flush(20'000));
    recorder->stop();
    const Found found = readFile(file("small/a.sqlite"));
    EXPECT_EQ(found.error, QString());
    EXPECT_EQ(found.records.size(), static_cast<std::size_t>(count));
}

TEST_F(RecorderTest, OldRecordsGoWhenTheFileIsBounded)
{
    RecorderSettings wanted = settings();
    wanted.bounds.bytes = 1 << 20;
    const auto recorder = make(wanted);
    recorder->start();
    constexpr int count = 60'000;
    for (int value = 0; value < count; ++value)
        put(*recorder, number, value);
    ASSERT_TRUE(waitFor([&] { return recorder->status().dropped > 0; }));
    recorder->stop();
    const Found found = readFile(file("a.sqlite"));
    const Mark* const dropped = found.find(MarkKind::OldDropped);
    ASSERT_NE(dropped, nullptr);
    EXPECT_EQ(found.records.size(), count - recorder->status().dropped);
    EXPECT_EQ(found.values().back(), std::to_string(count - 1));
    EXPECT_GE(found.records.front().received, dropped->to);
}

} // namespace
