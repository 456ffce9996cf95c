// SPDX-License-Identifier: Apache-2.0
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "CommandRunner.h"
#include "kyclash/OutputFile.h"
#include "support/ChildProcess.h"

namespace kyclash {
namespace {

using ::testing::HasSubstr;
using testing::ReadAll;
using testing::TemporaryFolder;
namespace fs = std::filesystem;

// Runs `body` in a process of its own and gives what it returns.
template <class Body>
int InChild(Body body) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(body());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(OutputFile, ReplacesTheWholeFile) {
    const TemporaryFolder folder;
    const auto file = folder.Write("a.csv", "a long old text");
    EXPECT_FALSE(ReplaceFile(file, "new"));
    EXPECT_EQ(ReadAll(file), "new");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 1);
}

TEST(OutputFile, NamesTheFileThatCannotBeWritten) {
    const TemporaryFolder folder;
    const auto error = ReplaceFile(folder.Path() / "missing" / "a.csv", "new");
    ASSERT_TRUE(error);
    EXPECT_THAT(*error, HasSubstr("a.csv"));
    EXPECT_THAT(*error, HasSubstr("No such file or directory"));
}

TEST(OutputFile, KeepsTheOldFileWhenTheDiskIsFull) {
    const TemporaryFolder folder;
    const auto file = folder.Write("a.csv", "old");
    const int failed = InChild([&file] {
        const rlimit limit{1000, 1000};
        ::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return ReplaceFile(file, std::string(5000, 'x')) ? 1 : 0;
    });
    EXPECT_EQ(failed, 1);
    EXPECT_EQ(ReadAll(file), "old");
    EXPECT_FALSE(fs::exists(folder.Path() / "a.csv.saving"));
}

TEST(OutputFile, IsWholeWheneverTheWriterIsKilled) {
    constexpr int kKills = 200;
    constexpr unsigned kLongestDelay = 8000;  // microseconds
    constexpr std::size_t kSize = 300000;
    const TemporaryFolder folder;
    const auto file = folder.Write("a.csv", std::string(kSize, 'a'));
    std::mt19937 random(3);
    char letter = 'a';
    const auto replaceAgain = [&] {
        letter = letter == 'z' ? 'b' : static_cast<char>(letter + 1);
        return !ReplaceFile(file, std::string(kSize, letter));
    };
    int replaced = 0;
    for (int round = 0; round < kKills; ++round) {
        const auto end =
            kycbtest::RunUntilKilled(replaceAgain, static_cast<unsigned>(random()) % kLongestDelay);
        EXPECT_EQ(end, kycbtest::ChildEnd::kKilled) << "writing failed after an earlier kill";
        const std::string now = ReadAll(file);
        ASSERT_EQ(now, std::string(kSize, now.at(0))) << "round " << round;
        replaced += now.at(0) != 'a';
    }
    EXPECT_GT(replaced, 10);
}

TEST(OutputFile, WritesThroughALink) {
    const TemporaryFolder folder;
    folder.Write("sub/real.csv", "old");
    fs::create_symlink("sub/real.csv", folder.Path() / "link.csv");
    EXPECT_FALSE(ReplaceFile(folder.Path() / "link.csv", "new"));
    EXPECT_TRUE(fs::is_symlink(folder.Path() / "link.csv"));
    EXPECT_EQ(ReadAll(folder.Path() / "sub" / "real.csv"), "new");
}

TEST(OutputFile, LeavesAFolderOfTheNameAlone) {
    const TemporaryFolder folder;
    fs::create_directories(folder.Path() / "a.csv" / "inner");
    EXPECT_TRUE(ReplaceFile(folder.Path() / "a.csv", "new"));
    EXPECT_TRUE(fs::is_directory(folder.Path() / "a.csv" / "inner"));
    EXPECT_FALSE(fs::exists(folder.Path() / "a.csv.saving"));
}

TEST(OutputFile, MakesFoldersOnTheWay) {
    const TemporaryFolder folder;
    EXPECT_FALSE(MakeFolder(folder.Path() / "a" / "b"));
    EXPECT_TRUE(fs::is_directory(folder.Path() / "a" / "b"));
    EXPECT_FALSE(MakeFolder(folder.Path() / "a" / "b"));
}

TEST(OutputFile, LeavesNothingInAFolderThatItTries) {
    const TemporaryFolder folder;
    EXPECT_FALSE(PrepareFolder(folder.Path() / "a"));
    EXPECT_TRUE(fs::is_empty(folder.Path() / "a"));
}

TEST(OutputFile, TellsThatAFolderTakesNoFiles) {
    // The kernel's folders take no files, whoever asks.
    const auto error = PrepareFolder("/proc");
    ASSERT_TRUE(error);
    EXPECT_THAT(*error, HasSubstr("/proc: files cannot be written there: "));
}

TEST(OutputFile, RefusesAFolderWhereAFileIs) {
    const TemporaryFolder folder;
    const auto file = folder.Write("a", "text");
    const auto error = MakeFolder(file);
    ASSERT_TRUE(error);
    EXPECT_THAT(*error, HasSubstr(file.string()));
}

}  // namespace
}  // namespace kyclash
