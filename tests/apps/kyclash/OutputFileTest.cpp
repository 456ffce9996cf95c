// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandRunner.h"
#include "kyclash/OutputFile.h"

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
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()), 1);
}

TEST(OutputFile, NamesTheFileThatCannotBeWritten) {
    const TemporaryFolder folder;
    const auto error = ReplaceFile(folder.Path() / "missing" / "a.csv", "new");
    ASSERT_TRUE(error);
    EXPECT_THAT(*error, HasSubstr("a.csv"));
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

TEST(OutputFile, RefusesAFolderWhereAFileIs) {
    const TemporaryFolder folder;
    const auto file = folder.Write("a", "text");
    const auto error = MakeFolder(file);
    ASSERT_TRUE(error);
    EXPECT_THAT(*error, HasSubstr(file.string()));
}

}  // namespace
}  // namespace kyclash
