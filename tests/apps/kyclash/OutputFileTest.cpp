// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandRunner.h"
#include "kyclash/OutputFile.h"
#include "support/ChildProcess.h"

namespace kyclash {
namespace {

using ::testing::HasSubstr;
using testing::ReadAll;
using testing::TemporaryFolder;
namespace fs = std::filesystem;

TEST(OutputFile, ReplacesTheWholeFile) {
    const TemporaryFolder folder;
    const auto file = folder.Write("a.csv", "a long old text");
    EXPECT_FALSE(ReplaceFile(file, "new"));
    EXPECT_EQ(ReadAll(file), "new");
    EXPECT_EQ(folder.CountFiles(), 1U);
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
    const int failed = kycbtest::InChildOnFullDisk(
        1000, [&file] { return ReplaceFile(file, std::string(5000, 'x')) ? 1 : 0; });
    EXPECT_EQ(failed, 1);
    EXPECT_EQ(ReadAll(file), "old");
    EXPECT_FALSE(fs::exists(folder.Path() / "a.csv.saving"));
}

TEST(OutputFile, IsWholeWheneverTheWriterIsKilled) {
    using kycbtest::Saved;
    const TemporaryFolder folder;
    const auto file = folder.Path() / "a.csv";
    const std::string small(100000, 's');
    const std::string large(300000, 'l');
    const auto save = [&](Saved content) {
        return !ReplaceFile(file, content == Saved::kSmall ? small : large);
    };
    const auto found = [&] { return kycbtest::WhichOf(ReadAll(file), small, large); };
    kycbtest::ExpectWholeWheneverKilled(save, found);
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
