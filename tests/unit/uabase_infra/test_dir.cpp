#include <tests/support/temporaryfolder.h>
#include <uabase/system/uadir.h>
#include <uabase/values/uastring.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

namespace {

std::span<const unsigned char> bytesOf(const std::string& text)
{
    return {reinterpret_cast<const unsigned char*>(text.data()), text.size()};
}

class Home
{
public:
    explicit Home(const char* value)
    {
        if (const char* before = std::getenv("HOME"))
            m_before = before;
        value != nullptr ? ::setenv("HOME", value, 1) : ::unsetenv("HOME");
    }
    ~Home() { m_before ? ::setenv("HOME", m_before->c_str(), 1) : ::unsetenv("HOME"); }
    Home(const Home&) = delete;
    Home& operator=(const Home&) = delete;

private:
    std::optional<std::string> m_before;
};

unsigned int modeOf(const std::string& path)
{
    struct stat info;
    return ::stat(path.c_str(), &info) == 0 ? info.st_mode & 07777u : 0;
}

} // namespace

TEST(UaDir, ApplicationDataPathFollowsHome)
{
    {
        const Home home("/home/someone");
        EXPECT_EQ(UaDir::applicationDataPath(), UaString("/home/someone/.config"));
    }
    {
        const Home home(nullptr);
        EXPECT_EQ(UaDir::applicationDataPath(), UaString("/.config"));
    }
    const std::string longHome(4092, 'h');
    const Home home(longHome.c_str());
    EXPECT_EQ(UaDir::applicationDataPath(), UaString(longHome + "/.c")) << "cut at 4095 bytes";
}

TEST(UaDir, WritingReplacesTheWholeFileWithTheGivenRights)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("key.pem");
    const mode_t mask = ::umask(077);
    EXPECT_FALSE(uaWriteFileAtomically(UaString(path), bytesOf("first, and longer"), 0644));
    EXPECT_EQ(modeOf(path), 0644u);
    ::umask(0);
    EXPECT_FALSE(uaWriteFileAtomically(UaString(path), bytesOf("second"), 0600));
    ::umask(mask);
    EXPECT_EQ(TemporaryFolder::read(path), "second");
    EXPECT_EQ(modeOf(path), 0600u);
    EXPECT_THAT(folder.names(), ElementsAre("key.pem"));
}

TEST(UaDir, WritingFollowsALinkAndTakesTheLongestName)
{
    const TemporaryFolder folder;
    TemporaryFolder::write(folder.file("real"), "old");
    std::filesystem::create_symlink("real", folder.file("link"));
    EXPECT_FALSE(uaWriteFileAtomically(UaString(folder.file("link")), bytesOf("new")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.file("link")));
    EXPECT_EQ(TemporaryFolder::read(folder.file("real")), "new");
    const std::string longest(255, 'n');
    EXPECT_FALSE(uaWriteFileAtomically(UaString(folder.file(longest)), bytesOf("x")));
    EXPECT_EQ(uaWriteFileAtomically(UaString(folder.file(longest + "n")), bytesOf("x")),
              std::errc::filename_too_long);
    EXPECT_THAT(folder.names(), UnorderedElementsAre("real", "link", longest));
}

TEST(UaDir, AFailedWriteLeavesTheOldFile)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("project.uap");
    EXPECT_EQ(uaWriteFileAtomically(UaString(folder.file("missing/x")), bytesOf("x")),
              std::errc::no_such_file_or_directory);
    using namespace std::string_view_literals;
    EXPECT_EQ(uaWriteFileAtomically(UaString("/tmp/a\0b"sv), bytesOf("x")), std::errc::invalid_argument);
    // a folder cannot be replaced by a file: what fails is the very last step
    std::filesystem::create_directories(path + "/inside");
    EXPECT_TRUE(uaWriteFileAtomically(UaString(path), bytesOf("x")));
    EXPECT_THAT(folder.names(), ElementsAre("project.uap"));
    EXPECT_TRUE(UaDir::isDirectory(UaString(path)));
}

TEST(UaDir, AKilledWriterLeavesOldOrNew)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("store");
    const std::string first(300000, '1');
    const std::string second(300000, '2');
    ASSERT_FALSE(uaWriteFileAtomically(UaString(path), bytesOf(first)));
    for (int round = 0; round < 20; ++round) {
        int ready[2];
        ASSERT_EQ(::pipe(ready), 0);
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (;;) {
                (void)!::write(ready[1], "x", 1);
                (void)!uaWriteFileAtomically(UaString(path), bytesOf(second));
                (void)!uaWriteFileAtomically(UaString(path), bytesOf(first));
            }
        }
        char byte = 0;
        ASSERT_EQ(::read(ready[0], &byte, 1), 1); // it is at work now
        for (int spin = 0; spin < round * 20000; ++spin)
            asm volatile("");
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        ::close(ready[0]);
        ::close(ready[1]);
        const std::string found = TemporaryFolder::read(path);
        ASSERT_TRUE(found == first || found == second) << "round " << round;
    }
}

TEST(UaDir, ReadingIsBoundedAndNeverBlocks)
{
    const TemporaryFolder folder;
    std::vector<unsigned char> bytes;
    TemporaryFolder::write(folder.file("ten"), "0123456789");
    EXPECT_FALSE(uaReadFile(UaString(folder.file("ten")), 10, bytes));
    EXPECT_EQ(bytes.size(), 10u);
    EXPECT_EQ(uaReadFile(UaString(folder.file("ten")), 9, bytes), std::errc::file_too_large);
    EXPECT_TRUE(bytes.empty());
    ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
    EXPECT_EQ(uaReadFile(UaString(folder.file("pipe")), 10, bytes), std::errc::invalid_argument);
    EXPECT_EQ(uaReadFile(UaString(folder.path()), 10, bytes), std::errc::invalid_argument);
    EXPECT_EQ(uaReadFile("/dev/zero", 10, bytes), std::errc::invalid_argument);
    std::filesystem::create_symlink("self", folder.file("self"));
    EXPECT_EQ(uaReadFile(UaString(folder.file("self")), 10, bytes), std::errc::too_many_symbolic_link_levels);
}

TEST(UaDir, FoldersAreListedAndFilesCopied)
{
    const TemporaryFolder folder;
    const UaString deep(folder.file("a/b/c"));
    EXPECT_FALSE(UaDir::mkpath(deep));
    EXPECT_FALSE(UaDir::mkpath(deep)) << "it is there already";
    TemporaryFolder::write(folder.file("z.der"), "z");
    TemporaryFolder::write(folder.file("b.der"), "b");
    EXPECT_TRUE(UaDir::mkpath(UaString(folder.file("z.der/x"))));
    ::mkfifo(folder.file("p.der").c_str(), 0600);
    std::filesystem::create_symlink("self.der", folder.file("self.der"));
    std::vector<std::string> names;
    for (const UaString& name : UaDir::fileNames(UaString(folder.path())))
        names.push_back(name.toStdString());
    EXPECT_THAT(names, ElementsAre("b.der", "z.der"));
    EXPECT_EQ(UaDir::fileNames(UaString(folder.path()), 1).size(), 1u);

    const UaString copy(folder.file("copy"));
    EXPECT_FALSE(UaDir::copy(UaString(folder.file("b.der")), copy));
    EXPECT_TRUE(UaDir::copy(UaString(folder.file("missing")), copy));
    EXPECT_TRUE(UaDir::copy(UaString(folder.file("p.der")), copy));
    EXPECT_EQ(TemporaryFolder::read(folder.file("copy")), "b");
    EXPECT_TRUE(UaDir::isFile(copy));
    EXPECT_FALSE(UaDir::remove(copy));
    EXPECT_FALSE(UaDir::exists(copy));
    EXPECT_TRUE(UaDir::remove(deep)) << "a folder";
}
