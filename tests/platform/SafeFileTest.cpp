// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "platform/SafeFile.h"
#include "support/ChildProcess.h"
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
    const int failedClearly = kycbtest::InChildOnFullDisk(100000, [&path] {
        const Status status = Save(path, Content('b'));
        return status.text.starts_with(path + L": cannot write this file: ") ? 1 : 0;
    });
    EXPECT_EQ(failedClearly, 1);
    EXPECT_EQ(folder.Read("a.xml"), "old");
    EXPECT_EQ(folder.CountFiles(), 1u);
}

TEST(SafeFile, LeavesAWholeFileWheneverTheProcessIsKilled) {
    using kycbtest::Saved;
    const TempFolder folder;
    const std::wstring path = folder.File("a.xml");
    const auto save = [&](Saved content) {
        return Save(path, Content(content == Saved::kSmall ? 's' : 'l')).IsOk();
    };
    const auto found = [&] {
        return kycbtest::WhichOf(folder.Read("a.xml"), Content('s'), Content('l'));
    };
    kycbtest::ExpectWholeWheneverKilled(save, found);
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
