// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <optional>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandRunner.h"
#include "kyclash/ResultOutput.h"
#include "support/ChildProcess.h"

namespace kyclash {
namespace {

using KYCOLLISION::RESULT::KyResultItem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::ReadAll;
using ::testing::SizeIs;
using testing::TemporaryFolder;
namespace fs = std::filesystem;

const ifchost::IfcWorkset& EmptyWorkset() {
    static const ifchost::IfcWorkset workset({}, ifchost::Classification::Default());
    return workset;
}

TrackedClash Clash(const std::wstring& guid, ClashStatus status, int state = 0) {
    auto item = std::make_unique<KyResultItem>();
    item->SetBaseInfo(1, L"F1", guid, 1, L"F1", L"other", L"1.00,2.00,3.00");
    item->SetDisposeState(state);
    return {std::move(item), status};
}

std::vector<TrackedClash> List(TrackedClash first) {
    std::vector<TrackedClash> list;
    list.push_back(std::move(first));
    return list;
}

std::string FileName(const fs::path& path) {
    return path.filename().string();
}

std::vector<std::string> Write(const fs::path& folder, const std::vector<TrackedClash>& clashes,
                               bool hasHistory) {
    std::ostringstream errors;
    const auto written = WriteResults(folder, {clashes, {}, EmptyWorkset(), hasHistory}, errors);
    EXPECT_EQ(errors.str(), "");
    std::vector<std::string> names;
    for (const std::string& file : written.value_or(std::vector<std::string>()))
        names.push_back(FileName(file));
    return names;
}

std::vector<ResultItemPtr> Read(const fs::path& file) {
    std::string error;
    auto items = ReadResultFile(file, error);
    EXPECT_TRUE(items) << error;
    return items ? std::move(*items) : std::vector<ResultItemPtr>();
}

TEST(ResultOutput, WritesResultsAndTables) {
    const TemporaryFolder folder;
    EXPECT_THAT(Write(folder.Path() / "new", List(Clash(L"a", ClashStatus::New)), false),
                ElementsAre("results.xml", "results.csv", "openings.csv"));
    EXPECT_THAT(Read(folder.Path() / "new/results.xml"), SizeIs(1));
    EXPECT_THAT(ReadAll(folder.Path() / "new/results.csv"),
                HasSubstr("\r\nnew,F1,F1,,\"1.00,2.00"));
}

TEST(ResultOutput, WritesGoneClashesApart) {
    const TemporaryFolder folder;
    auto clashes = List(Clash(L"a", ClashStatus::StillOpen));
    clashes.push_back(Clash(L"b", ClashStatus::NotRetested));
    clashes.push_back(Clash(L"c", ClashStatus::Gone));
    EXPECT_THAT(Write(folder.Path(), clashes, true),
                ElementsAre("results-gone.xml", "results-gone.csv", "results.xml", "results.csv",
                            "openings.csv"));
    EXPECT_THAT(Read(folder.Path() / "results.xml"), SizeIs(2));
    const auto gone = Read(folder.Path() / "results-gone.xml");
    ASSERT_THAT(gone, SizeIs(1));
    EXPECT_EQ(gone[0]->GetObjGuidA(), L"c");
    EXPECT_THAT(ReadAll(folder.Path() / "results-gone.csv"), HasSubstr("\r\ngone,F1"));
}

TEST(ResultOutput, RemovesGoneListsOfAnotherRun) {
    const TemporaryFolder folder;
    folder.Write("results-gone.xml", "<r/>");
    folder.Write("results-gone.csv", "old");
    Write(folder.Path(), List(Clash(L"a", ClashStatus::New)), false);
    EXPECT_FALSE(fs::exists(folder.Path() / "results-gone.xml"));
    EXPECT_FALSE(fs::exists(folder.Path() / "results-gone.csv"));
}

TEST(ResultOutput, NamesTheFileThatCannotBeWritten) {
    const TemporaryFolder folder;
    fs::create_directories(folder.Path() / "results.xml");
    const auto clashes = List(Clash(L"a", ClashStatus::New));
    std::ostringstream errors;
    EXPECT_FALSE(WriteResults(folder.Path(), {clashes, {}, EmptyWorkset(), false}, errors));
    EXPECT_THAT(errors.str(), HasSubstr("results.xml"));
}

TEST(ResultOutput, KeepsWhatTheUserDidUnlessItIsCarriedOver) {
    const TemporaryFolder folder;
    EXPECT_FALSE(WhyNotReplace(folder.Path(), {}));
    Write(folder.Path(), List(Clash(L"a", ClashStatus::New)), false);
    EXPECT_FALSE(WhyNotReplace(folder.Path(), {}));
    Write(folder.Path(), List(Clash(L"a", ClashStatus::New, 2)), false);
    const auto reason = WhyNotReplace(folder.Path(), {});
    ASSERT_TRUE(reason);
    EXPECT_THAT(*reason, HasSubstr("--previous"));
    EXPECT_FALSE(WhyNotReplace(folder.Path(), folder.Path() / "results.xml"));
    EXPECT_TRUE(WhyNotReplace(folder.Path(), folder.Path() / "other.xml"));
}

TEST(ResultOutput, KeepsWhatTheUserDidAboutGoneClashes) {
    const TemporaryFolder folder;
    Write(folder.Path(), List(Clash(L"a", ClashStatus::Gone, 2)), true);
    EXPECT_TRUE(WhyNotReplace(folder.Path(), {}));
}

TEST(ResultOutput, DoesNotReplaceWhatIsNoResultFile) {
    const TemporaryFolder folder;
    folder.Write("results.xml", "my own notes");
    const auto reason = WhyNotReplace(folder.Path(), {});
    ASSERT_TRUE(reason);
    EXPECT_THAT(*reason, HasSubstr("no result file"));
}

std::vector<TrackedClash> Clashes(std::size_t count) {
    std::vector<TrackedClash> clashes;
    for (std::size_t i = 0; i < count; ++i)
        clashes.push_back(Clash(std::to_wstring(i), ClashStatus::StillOpen, 1));
    return clashes;
}

// How many rows a table has, without its heading; a table that is cut short has none.
std::size_t RowsOf(const fs::path& file) {
    const std::string table = ReadAll(file);
    const auto lines = static_cast<std::size_t>(std::count(table.begin(), table.end(), '\n'));
    return table.ends_with("\r\n") ? lines - 1 : 0;
}

TEST(ResultOutput, LeavesWholeFilesWhenKilledAtAnyMoment) {
    using kycbtest::Saved;
    const TemporaryFolder folder;
    const auto small = Clashes(30);
    const auto large = Clashes(300);
    std::ostringstream errors;
    const auto save = [&](Saved content) {
        const auto& clashes = content == Saved::kSmall ? small : large;
        return WriteResults(folder.Path(), {clashes, {}, EmptyWorkset(), true}, errors).has_value();
    };
    // A kill between two files may leave one of each run, but both whole.
    const auto found = [&]() -> std::optional<Saved> {
        const std::size_t rows = RowsOf(folder.Path() / "results.csv");
        const std::size_t items = Read(folder.Path() / "results.xml").size();
        if (rows != small.size() && rows != large.size()) return std::nullopt;
        if (items == small.size()) return Saved::kSmall;
        if (items == large.size()) return Saved::kLarge;
        return std::nullopt;
    };
    kycbtest::ExpectWholeWheneverKilled(save, found);
    EXPECT_EQ(errors.str(), "");
}

}  // namespace
}  // namespace kyclash
