// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandRunner.h"
#include "kyclash/ClashHistory.h"

namespace kyclash {
namespace {

using KYCOLLISION::RESULT::KyResultItem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TemporaryFolder;

struct Side {
    int project = 1;
    std::wstring floor = L"F1";
    std::wstring guid;
};

ResultItemPtr Clash(const Side& a, const Side& b, const std::wstring& position = L"1,2,3") {
    auto item = std::make_unique<KyResultItem>();
    item->InitResultId(L"");
    item->SetBaseInfo(a.project, a.floor, a.guid, b.project, b.floor, b.guid, position);
    return item;
}

ResultItemPtr Clash(const std::wstring& a, const std::wstring& b,
                    const std::wstring& position = L"1,2,3") {
    return Clash(Side{.guid = a}, Side{.guid = b}, position);
}

ResultItemPtr Handled(ResultItemPtr item, int state, const std::wstring& remark = L"") {
    item->SetDisposeState(state);
    item->SetRemark(remark);
    return item;
}

template <class... Items>
std::vector<ResultItemPtr> List(Items... items) {
    std::vector<ResultItemPtr> list;
    (list.push_back(std::move(items)), ...);
    return list;
}

PreviousResults Previous(std::vector<ResultItemPtr> open, std::vector<ResultItemPtr> gone = {}) {
    PreviousResults previous;
    previous.open = std::move(open);
    previous.gone = std::move(gone);
    return previous;
}

const RunScope kFirstFloor = {{{1, L"F1"}}, true};

std::vector<ClashStatus> StatusesOf(const std::vector<TrackedClash>& clashes) {
    std::vector<ClashStatus> statuses;
    for (const TrackedClash& clash : clashes)
        statuses.push_back(clash.status);
    return statuses;
}

TEST(ClashHistory, CallsEverythingNewWithoutAnEarlierRun) {
    const auto clashes = TrackClashes(List(Clash(L"a", L"b")), {}, kFirstFloor);
    EXPECT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::New));
}

TEST(ClashHistory, CarriesTheHandlingOverToTheSameClash) {
    auto before = Handled(Clash(L"a", L"b", L"9,9,9"), 3, L"see drawing 7");
    before->SetViewport(L"view");
    before->SetPicture(L"uuid", L"md5", 12);
    const auto clashes =
        TrackClashes(List(Clash(L"a", L"b")), Previous(List(std::move(before))), kFirstFloor);
    ASSERT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::StillOpen));
    const KyResultItem& item = *clashes[0].item;
    EXPECT_EQ(item.GetDisposeState(), 3);
    EXPECT_EQ(item.GetRemark(), L"see drawing 7");
    EXPECT_EQ(item.GetViewport(), L"view");
    EXPECT_EQ(item.GetPicuuid(), L"uuid");
    EXPECT_EQ(item.GetPicmd5(), L"md5");
    EXPECT_EQ(item.GetPicsize(), 12);
    EXPECT_EQ(item.GetPosition(), L"1,2,3");
}

TEST(ClashHistory, KnowsAPairWhoseSidesHaveSwapped) {
    const auto clashes = TrackClashes(List(Clash(L"b", L"a")),
                                      Previous(List(Handled(Clash(L"a", L"b"), 3))), kFirstFloor);
    ASSERT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::StillOpen));
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 3);
    EXPECT_EQ(clashes[0].item->GetObjGuidA(), L"b");
}

TEST(ClashHistory, KnowsAPairThatMovedToAnotherFloor) {
    const auto clashes = TrackClashes(
        List(Clash({1, L"F1", L"a"}, {1, L"F1", L"b"})),
        Previous(List(Handled(Clash({1, L"F2", L"a"}, {1, L"F1", L"b"}), 3))), kFirstFloor);
    ASSERT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::StillOpen));
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 3);
}

TEST(ClashHistory, KnowsAPairWhenTheModelsComeInAnotherOrder) {
    const auto clashes =
        TrackClashes(List(Clash({2, L"F1", L"a"}, {1, L"F1", L"b"})),
                     Previous(List(Handled(Clash({1, L"F1", L"a"}, {2, L"F1", L"b"}), 3))),
                     {{{1, L"F1"}, {2, L"F1"}}, true});
    ASSERT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::StillOpen));
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 3);
}

TEST(ClashHistory, PrefersTheSameProjectsAmongEqualGuids) {
    auto first = Handled(Clash({2, L"F1", L"a"}, {2, L"F1", L"b"}), 2);
    auto second = Handled(Clash({1, L"F1", L"a"}, {1, L"F1", L"b"}), 1);
    const auto clashes = TrackClashes(
        List(Clash({1, L"F1", L"a"}, {1, L"F1", L"b"}), Clash({2, L"F1", L"a"}, {2, L"F1", L"b"})),
        Previous(List(std::move(first), std::move(second))), kFirstFloor);
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 1);
    EXPECT_EQ(clashes[1].item->GetDisposeState(), 2);
}

TEST(ClashHistory, DoesNotGuessAmongSeveralCopiesOfAModel) {
    const auto clashes =
        TrackClashes(List(Clash({3, L"F1", L"a"}, {3, L"F1", L"b"})),
                     Previous(List(Handled(Clash({1, L"F1", L"a"}, {1, L"F1", L"b"}), 1),
                                   Handled(Clash({2, L"F1", L"a"}, {2, L"F1", L"b"}), 2))),
                     kFirstFloor);
    EXPECT_EQ(clashes[0].status, ClashStatus::New);
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 0);
}

TEST(ClashHistory, PrefersTheSamePlaceAmongEqualPairs) {
    const auto clashes = TrackClashes(List(Clash(L"a", L"b", L"5,5,5")),
                                      Previous(List(Handled(Clash(L"a", L"b", L"1,1,1"), 1),
                                                    Handled(Clash(L"a", L"b", L"5.05,5,5"), 2))),
                                      {{}, true});
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 2);
}

TEST(ClashHistory, CallsWhatWasLookedAtAndNotFoundGone) {
    const auto clashes =
        TrackClashes({}, Previous(List(Handled(Clash(L"a", L"b"), 3))), kFirstFloor);
    ASSERT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::Gone));
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 3);
}

TEST(ClashHistory, NeverCallsOtherFloorsGone) {
    const auto clashes = TrackClashes({},
                                      Previous(List(Clash({1, L"F2", L"a"}, {1, L"F1", L"b"}),
                                                    Clash({1, L"F1", L"c"}, {1, L"F2", L"d"}),
                                                    Clash({2, L"F1", L"e"}, {2, L"F1", L"f"}))),
                                      kFirstFloor);
    EXPECT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::NotRetested, ClashStatus::NotRetested,
                                                 ClashStatus::NotRetested));
}

TEST(ClashHistory, LooksAtTheFloorThatAComponentStandsOnNow) {
    const RunScope scope = {
        {{1, L"F1"}}, true, {{L"a", {1, L"F2"}}, {L"b", {1, L"F1"}}, {L"c", {1, L"F1"}}}};
    const auto clashes =
        TrackClashes({},
                     Previous(List(Clash({1, L"F1", L"a"}, {1, L"F1", L"b"}),
                                   Clash({1, L"old name", L"b"}, {1, L"old name", L"c"}))),
                     scope);
    ASSERT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::NotRetested, ClashStatus::Gone));
    EXPECT_EQ(clashes[0].item->GetObjGuidA(), L"a");
}

TEST(ClashHistory, CallsAClashWhoseComponentWasRemovedGone) {
    const RunScope scope = {{{1, L"F1"}}, true, {{L"a", {1, L"F1"}}}};
    const auto clashes = TrackClashes({}, Previous(List(Clash(L"a", L"removed"))), scope);
    EXPECT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::Gone));
}

TEST(ClashHistory, NeverCallsTheClashesOfAModelGoneThatWasNotGiven) {
    // The second model of the earlier run, alone: it is project 1 now.
    const RunScope scope = {{{1, L"F1"}}, true, {{L"duct", {1, L"F1"}}}};
    const auto clashes =
        TrackClashes({},
                     Previous(List(Clash({1, L"F1", L"beam"}, {1, L"F1", L"wall"}),
                                   Clash({1, L"F1", L"beam"}, {2, L"F1", L"duct"}))),
                     scope);
    EXPECT_THAT(StatusesOf(clashes),
                ElementsAre(ClashStatus::NotRetested, ClashStatus::NotRetested));
}

TEST(ClashHistory, KnowsWhatIsGoneWhenTheModelsComeInAnotherOrder) {
    const RunScope scope = {
        {{1, L"F1"}, {2, L"E1"}}, true, {{L"beam", {2, L"E1"}}, {L"duct", {1, L"F1"}}}};
    const auto clashes =
        TrackClashes({},
                     Previous(List(Clash({1, L"E1", L"beam"}, {2, L"F1", L"duct"}),
                                   Clash({1, L"E1", L"beam"}, {1, L"E1", L"removed"}))),
                     scope);
    EXPECT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::Gone, ClashStatus::Gone));
}

TEST(ClashHistory, NeverCallsAnythingGoneAfterAStoppedRun) {
    const auto clashes = TrackClashes({}, Previous(List(Clash(L"a", L"b"))), {{{1, L"F1"}}, false});
    EXPECT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::NotRetested));
}

TEST(ClashHistory, CallsAGoneClashThatIsFoundAgainReturned) {
    const auto clashes =
        TrackClashes(List(Clash(L"b", L"a")),
                     Previous({}, List(Handled(Clash(L"a", L"b"), 4, L"moved"))), kFirstFloor);
    ASSERT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::Returned));
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 4);
    EXPECT_EQ(clashes[0].item->GetRemark(), L"moved");
}

TEST(ClashHistory, KeepsWhatStaysGone) {
    const auto clashes = TrackClashes(
        List(Clash(L"a", L"b")),
        Previous(List(Clash(L"c", L"d"), Clash(L"a", L"b")), List(Clash(L"e", L"f"))), kFirstFloor);
    ASSERT_THAT(StatusesOf(clashes),
                ElementsAre(ClashStatus::StillOpen, ClashStatus::Gone, ClashStatus::Gone));
    EXPECT_EQ(clashes[1].item->GetObjGuidA(), L"c");
    EXPECT_EQ(clashes[2].item->GetObjGuidA(), L"e");
}

TEST(ClashHistory, DoesNotKeepAClashAmongTheGoneThatIsOpen) {
    const auto clashes = TrackClashes(
        List(Clash(L"a", L"b")),
        Previous(List(Handled(Clash(L"a", L"b"), 1)), List(Handled(Clash(L"a", L"b"), 2))),
        kFirstFloor);
    ASSERT_THAT(StatusesOf(clashes), ElementsAre(ClashStatus::StillOpen));
    EXPECT_EQ(clashes[0].item->GetDisposeState(), 1);
}

TEST(ClashHistory, CountsStatuses) {
    const auto clashes = TrackClashes(
        List(Clash(L"a", L"b"), Clash(L"x", L"y")),
        Previous(List(Clash(L"c", L"d"), Clash(L"a", L"b")), List(Clash(L"e", L"f"))), kFirstFloor);
    EXPECT_THAT(CountStatuses(clashes), ElementsAre(1U, 1U, 0U, 2U, 0U));
}

TEST(ClashHistory, TakesPositionsThatAreNoneForAnotherPlace) {
    const auto a = Clash(L"a", L"b", L"x,y,z");
    EXPECT_FALSE(IsSamePlace(*a, *a));
    EXPECT_TRUE(IsSamePlace(*Clash(L"a", L"b"), *Clash(L"a", L"b")));
}

TEST(ClashHistory, TellsHandledItemsFromOthers) {
    EXPECT_FALSE(IsHandled(*Clash(L"a", L"b")));
    EXPECT_TRUE(IsHandled(*Handled(Clash(L"a", L"b"), 1)));
    EXPECT_TRUE(IsHandled(*Handled(Clash(L"a", L"b"), 0, L"x")));
}

TEST(ClashHistory, ReadsTheGoneOnesBesideAResultFile) {
    const TemporaryFolder folder;
    const std::string item = R"(<p project="1"><f floor="F1"><i resultId="1" projectA="1"
        floorA="F1" objectA="a" projectB="1" floorB="F1" objectB="b" dispose="2" picsize="0"/>
        </f></p>)";
    const auto file = folder.Write("results.xml", "<r/>");
    folder.Write("results-gone.xml", "<r>" + item + "</r>");
    std::string error;
    const auto previous = ReadPreviousResults(file, error);
    ASSERT_TRUE(previous) << error;
    EXPECT_THAT(previous->open, IsEmpty());
    ASSERT_THAT(previous->gone, SizeIs(1));
    EXPECT_EQ(previous->gone[0]->GetDisposeState(), 2);
}

TEST(ClashHistory, NamesTheFileThatCannotBeRead) {
    const TemporaryFolder folder;
    std::string error;
    EXPECT_FALSE(ReadPreviousResults(folder.Path() / "none.xml", error));
    EXPECT_THAT(error, HasSubstr("none.xml"));
    const auto file = folder.Write("results.xml", "<r/>");
    folder.Write("results-gone.xml", "<r>");
    EXPECT_FALSE(ReadPreviousResults(file, error));
    EXPECT_THAT(error, HasSubstr("results-gone.xml"));
}

TEST(ClashHistory, NamesTheItemWithABrokenNumber) {
    const TemporaryFolder folder;
    const auto file = folder.Write("results.xml",
                                   "<r><p><f><i projectA=\"one\" projectB=\"1\" dispose=\"0\" "
                                   "picsize=\"0\"/></f></p></r>");
    std::string error;
    EXPECT_FALSE(ReadPreviousResults(file, error));
    EXPECT_THAT(error, HasSubstr("item 1"));
    EXPECT_THAT(error, HasSubstr("projectA=\"one\""));
}

}  // namespace
}  // namespace kyclash
