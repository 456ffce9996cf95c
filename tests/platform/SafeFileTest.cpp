// SPDX-License-Identifier: Apache-2.0
#include <random>

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/SafeFile.h"
#include "support/TempFolder.h"

namespace kycb::platform {
namespace {

using kycbtest::TempFolder;
using testing::HasSubstr;

Status Save(const std::wstring& path, const std::string& bytes) {
    SafeFile file(path);
    file.Write(bytes.data(), bytes.size());
    return file.Commit();
}

/// Large enough to need many writes.
std::string Content(char letter) {
    return std::string(300000, letter);
}

/// Runs `body` in a child process and gives its exit code.
template <class Body>
int InChild(Body body) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(body());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(SafeFile, WritesANewFile) {
    const TempFolder folder;
    EXPECT_EQ(Save(folder.File("a.xml"), Content('a')).text, L"");
    EXPECT_EQ(folder.Read("a.xml"), Content('a'));
    EXPECT_EQ(folder.CountFiles(), 1u);
}

TEST(SafeFile, ReplacesAnOldFileAsAWhole) {
    const TempFolder folder;
    const std::wstring path = folder.Write("a.xml", Content('a') + "rest");
    EXPECT_TRUE(Save(path, "b").IsOk());
    EXPECT_EQ(folder.Read("a.xml"), "b");
}

TEST(SafeFile, LeavesTheOldFileWithoutCommit) {
    const TempFolder folder;
    const std::wstring path = folder.Write("a.xml", "old");
    {
        SafeFile file(path);
        file.Write(Content('b').data(), Content('b').size());
    }
    EXPECT_EQ(folder.Read("a.xml"), "old");
    EXPECT_EQ(folder.CountFiles(), 1u);
}

TEST(SafeFile, LeavesTheOldFileWhenTheDiskIsFull) {
    const TempFolder folder;
    const std::wstring path = folder.Write("a.xml", "old");
    const int failedClearly = InChild([&path] {
        const rlimit limit{100000, 100000};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const Status status = Save(path, Content('b'));
        return status.text.starts_with(path + L": cannot write this file: ") ? 1 : 0;
    });
    EXPECT_EQ(failedClearly, 1);
    EXPECT_EQ(folder.Read("a.xml"), "old");
    EXPECT_EQ(folder.CountFiles(), 1u);
}

TEST(SafeFile, LeavesAWholeFileWheneverTheProcessIsKilled) {
    constexpr int kKills = 200;
    const TempFolder folder;
    const std::wstring path = folder.Write("a.xml", Content('a'));
    std::mt19937 random(1);
    int wholeNewFiles = 0;
    for (int round = 0; round < kKills; ++round) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (char letter = 'b';; letter = letter == 'z' ? 'b' : static_cast<char>(letter + 1)) {
                if (!Save(path, Content(letter)).IsOk()) ::_exit(1);
            }
        }
        ::usleep(static_cast<useconds_t>(random() % 8000));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "a save failed after an earlier kill";
        const std::string now = folder.Read("a.xml");
        ASSERT_EQ(now, Content(now.at(0)));
        wholeNewFiles += now.at(0) != 'a';
    }
    EXPECT_GT(wholeNewFiles, 0);
    EXPECT_TRUE(Save(path, "last").IsOk());
    EXPECT_EQ(folder.CountFiles(), 1u) << "what a killed process left is taken over";
}

TEST(SafeFile, RefusesASecondSaverOfTheSameFile) {
    const TempFolder folder;
    const std::wstring path = folder.File("a.xml");
    SafeFile first(path);
    EXPECT_NE(Save(path, "second").text.find(L"save while another save runs"), std::wstring::npos);
    first.Write("first", 5);
    EXPECT_TRUE(first.Commit().IsOk());
    EXPECT_EQ(folder.Read("a.xml"), "first");
}

TEST(SafeFile, WritesThroughASymbolicLink) {
    const TempFolder folder;
    folder.Write("sub/real.xml", "old");
    std::filesystem::create_symlink("sub/real.xml", folder.Path() / "link.xml");
    EXPECT_TRUE(Save(folder.File("link.xml"), "new").IsOk());
    EXPECT_TRUE(std::filesystem::is_symlink(folder.Path() / "link.xml"));
    EXPECT_EQ(folder.Read("sub/real.xml"), "new");
}

TEST(SafeFile, KeepsTheAccessRightsOfTheOldFile) {
    const TempFolder folder;
    const std::wstring path = folder.Write("a.xml", "old");
    ::chmod((folder.Path() / "a.xml").c_str(), 0640);
    EXPECT_TRUE(Save(path, "new").IsOk());
    struct stat now = {};
    ::stat((folder.Path() / "a.xml").c_str(), &now);
    EXPECT_EQ(now.st_mode & 0777, 0640u);
}

TEST(SafeFile, TellsWhyAFileCannotBeWritten) {
    const TempFolder folder;
    folder.Write("sub/a.xml", "old");
    EXPECT_NE(Save(folder.File("none/a.xml"), "x").text.find(L"No such file or directory"),
              std::wstring::npos);
    EXPECT_NE(Save(folder.File("sub"), "x").text.find(L"Is a directory"), std::wstring::npos);
    EXPECT_FALSE(Save(L"", "x").IsOk());
    EXPECT_FALSE(Save(folder.File("a") + std::wstring(1, L'\0') + L"b", "x").IsOk());
}

TEST(SafeFile, NeverReplacesADevice) {
    EXPECT_FALSE(Save(L"/dev/null", "x").IsOk());
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

}  // namespace
}  // namespace kycb::platform
