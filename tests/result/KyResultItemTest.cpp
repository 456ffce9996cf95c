// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyResultItem.h"

#include <cstdlib>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "result/AxisGrid.h"
#include "support/PriorityScope.h"

using kycb::test::PriorityScope;
using kycbtest::AxisGrid;
using KYCOLLISION::RESULT::KyResultItem;

namespace {

KyResultItem At(const std::wstring& position) {
    KyResultItem item;
    item.SetBaseInfo(1, L"F1", L"ga", 2, L"F2", L"gb", position);
    return item;
}

KyResultItem Pair(const SObjAttInfo& main, const SObjAttInfo& second, const std::wstring& guidA) {
    KyResultItem item;
    item.SetBaseInfo(1, L"F1", guidA, 1, L"F1", L"gb", L"0,0,0");
    item.SetObjAttInfo_Main(main);
    item.SetObjAttInfo_Second(second);
    return item;
}

bool SortsBefore(KyResultItem a, KyResultItem b) {
    return KyResultItem::PriorityCompareHigh(&a, &b);
}

template <class Exception>
std::string MessageOf(const std::wstring& position) {
    try {
        At(position).GetClashPoint();
    } catch (const Exception& error) {
        return error.what();
    }
    return "no exception";
}

// The priorities of kinds for one test. A kind that is not listed ranks last.
const std::map<std::wstring, int> kSomePriorities = {{L"x/y/z", 1}};

}  // namespace

TEST(KyResultItem, StartsUnplacedAndUnhandled) {
    const KyResultItem item;
    EXPECT_EQ(item.GetProjectA(), -1);
    EXPECT_EQ(item.GetProjectB(), -1);
    EXPECT_EQ(item.GetPosition(), L"-1.00,-1.00,-1.00");
    EXPECT_EQ(item.GetClashPoint(), std::make_tuple(-1.0, -1.0, -1.0));
    EXPECT_EQ(item.GetDisposeState(), 0);
    EXPECT_EQ(item.GetPicsize(), 0);
    for (const std::wstring& text :
         {item.GetResultId(), item.GetFloorA(), item.GetObjGuidA(), item.GetFloorB(),
          item.GetObjGuidB(), item.GetClashModel(), item.GetRemark(), item.GetViewport(),
          item.GetPicuuid(), item.GetPicmd5(), item.GetHeightA(), item.GetHeightB(),
          item.GetAxisPos(), item.GetSpecialtyA(), item.GetSpecialtyB(), item.GetSysCodeA(),
          item.GetSysCodeB()}) {
        EXPECT_EQ(text, L"");
    }
}

TEST(KyResultItem, SetBaseInfoFillsBothSidesAndThePosition) {
    const KyResultItem item = At(L"1,2,3");
    EXPECT_EQ(item.GetProjectA(), 1);
    EXPECT_EQ(item.GetFloorA(), L"F1");
    EXPECT_EQ(item.GetObjGuidA(), L"ga");
    EXPECT_EQ(item.GetProjectB(), 2);
    EXPECT_EQ(item.GetFloorB(), L"F2");
    EXPECT_EQ(item.GetObjGuidB(), L"gb");
    EXPECT_EQ(item.GetPosition(), L"1,2,3");
}

TEST(KyResultItem, SettersSetTheirFieldAlone) {
    KyResultItem item;
    item.SetResultId(L"id");
    item.SetClashModel(L"0,50");
    item.SetDisposeState(-3);
    item.SetRemark(L"备注");
    item.SetHeightA(L"100");
    item.SetHeightB(L"200");
    item.SetViewport(L"view");
    item.SetPicture(L"uuid", L"md5", 5'000'000'000);
    EXPECT_EQ(item.GetResultId(), L"id");
    EXPECT_EQ(item.GetClashModel(), L"0,50");
    EXPECT_EQ(item.GetDisposeState(), -3);
    EXPECT_EQ(item.GetRemark(), L"备注");
    EXPECT_EQ(item.GetHeightA(), L"100");
    EXPECT_EQ(item.GetHeightB(), L"200");
    EXPECT_EQ(item.GetViewport(), L"view");
    EXPECT_EQ(item.GetPicuuid(), L"uuid");
    EXPECT_EQ(item.GetPicmd5(), L"md5");
    EXPECT_EQ(item.GetPicsize(), 5'000'000'000);
}

TEST(KyResultItem, HandsOutTheAttributeSummaries) {
    const KyResultItem item = Pair({L"给排水", L"管", L"给水管", L"DN50", L"J1"},
                                   {L"电气", L"桥架", L"强电", L"200", L"S2"}, L"g");
    EXPECT_EQ(item.GetSpecialtyA(), L"给排水");
    EXPECT_EQ(item.GetCategoryA(), L"管");
    EXPECT_EQ(item.GetSubcategoryA(), L"给水管");
    EXPECT_EQ(item.GetNameA(), L"DN50");
    EXPECT_EQ(item.GetSysCodeA(), L"J1");
    EXPECT_EQ(item.GetAttInfoA().SysCode, L"J1");
    EXPECT_EQ(item.GetSpecialtyB(), L"电气");
    EXPECT_EQ(item.GetCategoryB(), L"桥架");
    EXPECT_EQ(item.GetSubcategoryB(), L"强电");
    EXPECT_EQ(item.GetNameB(), L"200");
    EXPECT_EQ(item.GetSysCodeB(), L"S2");
    EXPECT_EQ(item.GetAttInfoB().SysCode, L"S2");
}

TEST(KyResultItem, SpecialtiesWithoutSystemsStandInForTheSystemCode) {
    for (const wchar_t* specialty : {L"土建", L"钢筋", L"Revit", L"Tekla"}) {
        const SObjAttInfo info{specialty, L"c", L"s", L"n", L"code"};
        const KyResultItem item = Pair(info, info, L"g");
        EXPECT_EQ(item.GetSysCodeA(), specialty);
        EXPECT_EQ(item.GetSysCodeB(), specialty);
        EXPECT_EQ(item.GetAttInfoA().SysCode, L"code");
    }
    for (const wchar_t* specialty : {L"暖通", L"revit", L"土建 ", L"钢结构", L""}) {
        const SObjAttInfo info{specialty, L"c", L"s", L"n", L"code"};
        EXPECT_EQ(Pair(info, info, L"g").GetSysCodeA(), L"code");
    }
}

TEST(KyResultItem, ClashPointHasTwoOrThreeParts) {
    EXPECT_EQ(At(L"10.5,20,-3e2").GetClashPoint(), std::make_tuple(10.5, 20.0, -300.0));
    EXPECT_EQ(At(L"10.5,20").GetClashPoint(), std::make_tuple(10.5, 20.0, 0.0));
}

TEST(KyResultItem, ClashPointOfAnyOtherNumberOfPartsIsTheOrigin) {
    for (const wchar_t* position : {L"", L"5", L"abc", L"1,2,3,4", L"1,2,3,", L",,,"}) {
        EXPECT_EQ(At(position).GetClashPoint(), std::make_tuple(0.0, 0.0, 0.0)) << position;
    }
}

TEST(KyResultItem, ClashPointPartsMayHaveBlanksBeforeAndTextBehind) {
    EXPECT_EQ(At(L" 1mm,\t2 x,  3.5.7").GetClashPoint(), std::make_tuple(1.0, 2.0, 3.5));
}

TEST(KyResultItem, ClashPointRefusesPartsThatAreNoNumbers) {
    for (const wchar_t* position : {L"a,b,c", L"1,,3", L"1,", L",1", L"1,2,", L"1,2,z"}) {
        EXPECT_EQ(MessageOf<std::invalid_argument>(position), "invalid stod argument") << position;
    }
}

TEST(KyResultItem, ClashPointRefusesNumbersOutOfRange) {
    EXPECT_EQ(MessageOf<std::out_of_range>(L"1,2,1e999"), "stod argument out of range");
}

TEST(KyResultItem, ClashPointIsAlsoAPosition) {
    const auto point = At(L"1.5,2.5,3.5").GetClashQNIMPoint();
    EXPECT_EQ(point, (KyResultItem::CQNIMPosition(1.5, 2.5, 3.5)));
    EXPECT_THROW(At(L"x,y").GetClashQNIMPoint(), std::invalid_argument);
}

TEST(KyResultItem, ResultIdsAreUniqueWhateverTheArgument) {
    std::set<std::wstring> ids;
    KyResultItem item;
    for (int i = 0; i < 2000; ++i) {
        item.InitResultId(L"same");
        ids.insert(item.GetResultId());
    }
    EXPECT_EQ(ids.size(), 2000u);
}

TEST(KyResultItem, ResultIdsAreHexWithTheThirdGroupInLowerCase) {
    // Over many ids each place sees letters, so a wrong case shows.
    for (int round = 0; round < 200; ++round) {
        KyResultItem item;
        item.InitResultId(L"");
        const std::wstring id = item.GetResultId();
        ASSERT_EQ(id.size(), 32u);
        for (std::size_t i = 0; i < id.size(); ++i) {
            const bool lower = i >= 12 && i < 16;
            const std::wstring allowed = lower ? L"0123456789abcdef" : L"0123456789ABCDEF";
            EXPECT_NE(allowed.find(id[i]), std::wstring::npos) << "place " << i;
        }
    }
}

TEST(KyResultItem, ThreadsMakeIdsSideBySide) {
    std::vector<std::vector<std::wstring>> made(4);
    std::vector<std::thread> threads;
    for (auto& ids : made) {
        threads.emplace_back([&ids] {
            for (int i = 0; i < 500; ++i) {
                KyResultItem item;
                item.InitResultId(L"");
                ids.push_back(item.GetResultId());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    std::set<std::wstring> distinct;
    for (const auto& ids : made)
        distinct.insert(ids.begin(), ids.end());
    EXPECT_EQ(distinct.size(), 2000u);
}

TEST(KyResultItem, MainInfoComparesBothComponentsSideBySide) {
    const KyResultItem item = At(L"1,2,3");
    KyResultItem same = At(L"7,8,9");
    same.SetRemark(L"other");
    EXPECT_TRUE(item.IsSameResult_MainInfo(&same));

    const auto differs = [&](int projectA, const wchar_t* floorA, const wchar_t* guidA,
                             int projectB, const wchar_t* floorB, const wchar_t* guidB) {
        KyResultItem other;
        other.SetBaseInfo(projectA, floorA, guidA, projectB, floorB, guidB, L"1,2,3");
        return !item.IsSameResult_MainInfo(&other);
    };
    EXPECT_TRUE(differs(9, L"F1", L"ga", 2, L"F2", L"gb"));
    EXPECT_TRUE(differs(1, L"F9", L"ga", 2, L"F2", L"gb"));
    EXPECT_TRUE(differs(1, L"F1", L"g9", 2, L"F2", L"gb"));
    EXPECT_TRUE(differs(1, L"F1", L"ga", 9, L"F2", L"gb"));
    EXPECT_TRUE(differs(1, L"F1", L"ga", 2, L"F9", L"gb"));
    EXPECT_TRUE(differs(1, L"F1", L"ga", 2, L"F2", L"g9"));
}

TEST(KyResultItem, MainInfoTellsAAndBApart) {
    const KyResultItem item = At(L"1,2,3");
    KyResultItem swapped;
    swapped.SetBaseInfo(2, L"F2", L"gb", 1, L"F1", L"ga", L"1,2,3");
    EXPECT_FALSE(item.IsSameResult_MainInfo(&swapped));
}

TEST(KyResultItem, EditInfoComparesStateRemarkViewportAndPictureId) {
    KyResultItem item;
    item.SetPicture(L"uuid", L"md5", 5);
    KyResultItem other = item;
    other.SetPicture(L"uuid", L"another md5", 6);
    EXPECT_TRUE(item.IsSameResult_CanBeEditInfo(&other));
    other.SetPicture(L"uuid2", L"md5", 5);
    EXPECT_FALSE(item.IsSameResult_CanBeEditInfo(&other));
    other = item;
    other.SetDisposeState(1);
    EXPECT_FALSE(item.IsSameResult_CanBeEditInfo(&other));
    other = item;
    other.SetRemark(L"r");
    EXPECT_FALSE(item.IsSameResult_CanBeEditInfo(&other));
    other = item;
    other.SetViewport(L"v");
    EXPECT_FALSE(item.IsSameResult_CanBeEditInfo(&other));
}

TEST(KyResultItem, OtherInfoComparesTheClashModel) {
    KyResultItem item = At(L"1,2,3");
    KyResultItem other = item;
    EXPECT_TRUE(item.IsSameResult_OtherInfo(&other));
    other.SetClashModel(L"0,0");
    EXPECT_FALSE(item.IsSameResult_OtherInfo(&other));
}

TEST(KyResultItem, ClashPointsLessThanATenthApartAreTheSame) {
    const KyResultItem item = At(L"10.00,20.00,30.00");
    for (const wchar_t* near : {L"10.09,20.00,30.00", L"9.91,20.09,29.91", L"10.0999,20,30"}) {
        const KyResultItem other = At(near);
        EXPECT_TRUE(item.IsSameResult_OtherInfo(&other)) << near;
    }
    for (const wchar_t* apart : {L"10.10,20.00,30.00", L"10.00,19.90,30.00", L"10.00,20.00,30.1"}) {
        const KyResultItem other = At(apart);
        EXPECT_FALSE(item.IsSameResult_OtherInfo(&other)) << apart;
    }
}

TEST(KyResultItem, ClashPointsATenthApartDifferWhateverTheRounding) {
    // 0.1 has no exact double: of these differences about half come out below it.
    int below = 0;
    for (int hundredths = -2'000'000; hundredths < 2'000'000; hundredths += 1234) {
        const auto text = [](int value) {
            const std::wstring sign = value < 0 ? L"-" : L"";
            const std::wstring digits = std::to_wstring(std::abs(value) % 100);
            return sign + std::to_wstring(std::abs(value) / 100) + L"." +
                   (digits.size() < 2 ? L"0" : L"") + digits;
        };
        const KyResultItem item = At(text(hundredths) + L",0,0");
        const KyResultItem other = At(text(hundredths + 10) + L",0,0");
        below += std::get<0>(other.GetClashPoint()) - std::get<0>(item.GetClashPoint()) < 0.1;
        EXPECT_FALSE(item.IsSameResult_OtherInfo(&other)) << hundredths;
        const KyResultItem near = At(text(hundredths + 9) + L",0,0");
        EXPECT_TRUE(item.IsSameResult_OtherInfo(&near)) << hundredths;
    }
    EXPECT_GT(below, 500);
}

TEST(KyResultItem, OtherInfoPassesTheErrorsOfAMalformedPosition) {
    const KyResultItem item = At(L"1,2,3");
    const KyResultItem broken = At(L"1,x,3");
    EXPECT_THROW(item.IsSameResult_OtherInfo(&broken), std::invalid_argument);
    EXPECT_THROW(broken.IsSameResult_OtherInfo(&item), std::invalid_argument);
}

TEST(KyResultItem, AllInfoStopsAtTheFirstDifference) {
    const KyResultItem item = At(L"1,2,3");
    KyResultItem other = item;
    EXPECT_TRUE(item.IsSameResult_AllInfo(&other));
    other.SetRemark(L"edited");
    EXPECT_FALSE(item.IsSameResult_AllInfo(&other));
    // The malformed position is not looked at any more.
    KyResultItem broken = At(L"x,y,z");
    broken.SetRemark(L"edited");
    EXPECT_FALSE(item.IsSameResult_AllInfo(&broken));
    broken.SetRemark(L"");
    EXPECT_THROW(item.IsSameResult_AllInfo(&broken), std::invalid_argument);
}

TEST(KyResultItem, NothingIsTheSameAsNull) {
    const KyResultItem item;
    EXPECT_FALSE(item.IsSameResult_MainInfo(nullptr));
    EXPECT_FALSE(item.IsSameResult_CanBeEditInfo(nullptr));
    EXPECT_FALSE(item.IsSameResult_OtherInfo(nullptr));
    EXPECT_FALSE(item.IsSameResult_AllInfo(nullptr));
}

TEST(KyResultItem, AxisPositionComesFromTheClashPointSeenFromAbove) {
    AxisGrid grid;
    grid.Line(L"1", 0, -50000, 0, 50000).Line(L"A", -50000, 0, 50000, 0);
    KyResultItem item = At(L"1000.00,2000.00,9999.00");
    item.ReCatulateAxisInfo(grid.Tree());
    EXPECT_EQ(item.GetAxisPos(), L"1(+1000mm) / A(+2000mm)");
    item.SetBaseInfo(1, L"F1", L"ga", 1, L"F1", L"gb", L"-1250.90,-0.20");
    item.ReCatulateAxisInfo(grid.Tree());
    EXPECT_EQ(item.GetAxisPos(), L"1(-1250mm) / A(-0mm)");
}

TEST(KyResultItem, AMalformedPositionKeepsTheAxisPosition) {
    AxisGrid grid;
    grid.Line(L"1", 0, -50000, 0, 50000);
    KyResultItem item = At(L"10,0,0");
    item.ReCatulateAxisInfo(grid.Tree());
    item.SetBaseInfo(1, L"F1", L"ga", 1, L"F1", L"gb", L"1,?,3");
    EXPECT_THROW(item.ReCatulateAxisInfo(grid.Tree()), std::invalid_argument);
    EXPECT_EQ(item.GetAxisPos(), L"1(+10mm)");
}

TEST(KyResultItem, PriorityIsIrreflexiveAndFalseForNull) {
    const PriorityScope priorities(kSomePriorities);
    KyResultItem item = Pair({L"土建", L"梁", L"框架梁", L"KL1", L""}, {}, L"g");
    EXPECT_FALSE(KyResultItem::PriorityCompareHigh(&item, &item));
    EXPECT_FALSE(KyResultItem::PriorityCompareHigh(&item, nullptr));
    EXPECT_FALSE(KyResultItem::PriorityCompareHigh(nullptr, &item));
    EXPECT_FALSE(KyResultItem::PriorityCompareHigh(nullptr, nullptr));
}

TEST(KyResultItem, SmallerPriorityNumberOfTheMainComponentSortsFirst) {
    const PriorityScope priorities({{L"土建/梁/框架梁", 20}, {L"给排水/管/给水管", 10}});
    const SObjAttInfo beam{L"土建", L"梁", L"框架梁", L"KL1", L""};
    const SObjAttInfo pipe{L"给排水", L"管", L"给水管", L"DN50", L""};
    EXPECT_TRUE(SortsBefore(Pair(pipe, beam, L"z"), Pair(beam, pipe, L"a")));
    EXPECT_FALSE(SortsBefore(Pair(beam, pipe, L"a"), Pair(pipe, beam, L"z")));
}

TEST(KyResultItem, TheSecondComponentDecidesWithinOneMainKind) {
    const PriorityScope priorities({{L"土建/梁/框架梁", 20}, {L"给排水/管/给水管", 10}});
    const SObjAttInfo wall{L"土建", L"墙", L"砼墙", L"Q1", L"one"};
    const SObjAttInfo wallOfOtherSystem{L"土建", L"墙", L"砼墙", L"Q1", L"two"};
    const SObjAttInfo beam{L"土建", L"梁", L"框架梁", L"KL1", L""};
    const SObjAttInfo pipe{L"给排水", L"管", L"给水管", L"DN50", L""};
    EXPECT_TRUE(SortsBefore(Pair(wall, pipe, L"z"), Pair(wallOfOtherSystem, beam, L"a")));
    EXPECT_FALSE(SortsBefore(Pair(wallOfOtherSystem, beam, L"a"), Pair(wall, pipe, L"z")));
}

TEST(KyResultItem, MainComponentsThatDifferInWhatTheKindLeavesOutTieWithoutALookAtTheSecond) {
    const PriorityScope priorities({{L"土建/梁/框架梁", 20}, {L"给排水/管/给水管", 10}});
    // The kind of a Revit component ends after the major category, so both walls are of one kind.
    const SObjAttInfo brick{L"Revit", L"墙", L"砖墙", L"Q1", L""};
    const SObjAttInfo glass{L"Revit", L"墙", L"幕墙", L"Q1", L""};
    const SObjAttInfo beam{L"土建", L"梁", L"框架梁", L"KL1", L""};
    const SObjAttInfo pipe{L"给排水", L"管", L"给水管", L"DN50", L""};
    EXPECT_TRUE(SortsBefore(Pair(brick, beam, L"a"), Pair(glass, pipe, L"b")));
    EXPECT_FALSE(SortsBefore(Pair(glass, pipe, L"b"), Pair(brick, beam, L"a")));
}

TEST(KyResultItem, AListedKindMayRankBelowAllUnlistedOnes) {
    const PriorityScope priorities({{L"土建/梁/框架梁", 1001}, {L"给排水/管/给水管", 999}});
    const SObjAttInfo unlisted{L"电气", L"桥架", L"", L"", L""};
    const SObjAttInfo beam{L"土建", L"梁", L"框架梁", L"KL1", L""};
    const SObjAttInfo pipe{L"给排水", L"管", L"给水管", L"DN50", L""};
    EXPECT_TRUE(SortsBefore(Pair(unlisted, {}, L"z"), Pair(beam, {}, L"a")));
    EXPECT_TRUE(SortsBefore(Pair(pipe, {}, L"z"), Pair(unlisted, {}, L"a")));
}

TEST(KyResultItem, KindsOfEqualPrioritySortByTheCodePage) {
    const PriorityScope priorities(kSomePriorities);
    // 暖 stands before 电 in Unicode (U+6696, U+7535) and after it in GBK (C5AF, B5E7).
    const SObjAttInfo electric{L"电气", L"桥架", L"", L"", L""};
    const SObjAttInfo heating{L"暖通", L"风管", L"", L"", L""};
    ASSERT_LT(std::wstring(L"暖通"), std::wstring(L"电气"));
    EXPECT_TRUE(SortsBefore(Pair(electric, {}, L"z"), Pair(heating, {}, L"a")));
    EXPECT_FALSE(SortsBefore(Pair(heating, {}, L"a"), Pair(electric, {}, L"z")));
}

TEST(KyResultItem, NamesSortByTheCodePage) {
    const PriorityScope priorities(kSomePriorities);
    const SObjAttInfo first{L"土建", L"墙", L"砼墙", L"电", L""};
    const SObjAttInfo second{L"土建", L"墙", L"砼墙", L"暖", L""};
    EXPECT_TRUE(SortsBefore(Pair(first, {}, L"z"), Pair(second, {}, L"a")));
    EXPECT_FALSE(SortsBefore(Pair(second, {}, L"a"), Pair(first, {}, L"z")));
}

TEST(KyResultItem, NamesThatOnlyCharactersOutsideTheCodePageTellApartTie) {
    const PriorityScope priorities(kSomePriorities);
    // Both emoji convert to "?", so the GUID decides.
    const SObjAttInfo smile{L"土建", L"墙", L"砼墙", L"\U0001F600", L""};
    const SObjAttInfo house{L"土建", L"墙", L"砼墙", L"\U0001F3E0", L""};
    EXPECT_TRUE(SortsBefore(Pair(smile, {}, L"a"), Pair(house, {}, L"b")));
    EXPECT_FALSE(SortsBefore(Pair(house, {}, L"b"), Pair(smile, {}, L"a")));
    EXPECT_TRUE(SortsBefore(Pair(house, {}, L"a"), Pair(smile, {}, L"b")));
}

TEST(KyResultItem, KindsThatOnlyCharactersOutsideTheCodePageTellApartNeverSortFirst) {
    const PriorityScope priorities(kSomePriorities);
    const SObjAttInfo smile{L"土建", L"\U0001F600", L"", L"", L""};
    const SObjAttInfo house{L"土建", L"\U0001F3E0", L"", L"", L""};
    EXPECT_FALSE(SortsBefore(Pair(smile, {}, L"a"), Pair(house, {}, L"b")));
    EXPECT_FALSE(SortsBefore(Pair(house, {}, L"b"), Pair(smile, {}, L"a")));
}

TEST(KyResultItem, TiesFallBackToTheGuidOfA) {
    const PriorityScope priorities(kSomePriorities);
    const SObjAttInfo info{L"土建", L"墙", L"砼墙", L"Q1", L""};
    EXPECT_TRUE(SortsBefore(Pair(info, info, L"a"), Pair(info, info, L"b")));
    EXPECT_FALSE(SortsBefore(Pair(info, info, L"b"), Pair(info, info, L"a")));
}

TEST(KyResultItem, HeightOffsetShiftsEveryNumber) {
    EXPECT_EQ(KyResultItem::HeightOffset(L"2800~3100", -100), L"2700~3000");
    EXPECT_EQ(KyResultItem::HeightOffset(L"3.50", 100), L"103.150");
    EXPECT_EQ(KyResultItem::HeightOffset(L"顶标高 2800，底标高 100", 50),
              L"顶标高 2850，底标高 150");
}

TEST(KyResultItem, HeightOffsetTakesAPrecedingMinusAsTheSign) {
    EXPECT_EQ(KyResultItem::HeightOffset(L"1-2", 1), L"2-1");
    EXPECT_EQ(KyResultItem::HeightOffset(L"-50", 50), L"0");
    EXPECT_EQ(KyResultItem::HeightOffset(L"--5", 1), L"--4");
    EXPECT_EQ(KyResultItem::HeightOffset(L"-100~-50", 75), L"-25~25");
}

TEST(KyResultItem, HeightOffsetLeavesTextWithoutNumbersAlone) {
    EXPECT_EQ(KyResultItem::HeightOffset(L"", 5), L"");
    EXPECT_EQ(KyResultItem::HeightOffset(L"-", 5), L"-");
    EXPECT_EQ(KyResultItem::HeightOffset(L"- a -", 5), L"- a -");
}

TEST(KyResultItem, HeightOffsetKnowsTheDigits0To9Only) {
    EXPECT_EQ(KyResultItem::HeightOffset(L"１２ ٣ ²", 5), L"１２ ٣ ²");
}

TEST(KyResultItem, HeightOffsetDropsLeadingZeros) {
    EXPECT_EQ(KyResultItem::HeightOffset(L"007", 0), L"7");
    EXPECT_EQ(KyResultItem::HeightOffset(L"-0", 0), L"0");
}

TEST(KyResultItem, HeightOffsetWritesSumsBeyond32BitsInFull) {
    EXPECT_EQ(KyResultItem::HeightOffset(L"2147483647", 1), L"2147483648");
    EXPECT_EQ(KyResultItem::HeightOffset(L"-2147483648", -2147483647 - 1), L"-4294967296");
}

TEST(KyResultItem, HeightOffsetRefusesNumbersBeyond32Bits) {
    const auto messageOf = [](const std::wstring& text) -> std::string {
        try {
            KyResultItem::HeightOffset(text, 0);
        } catch (const std::out_of_range& error) {
            return error.what();
        }
        return "no exception";
    };
    EXPECT_EQ(messageOf(L"1 2147483648"), "stol argument out of range");
    EXPECT_EQ(messageOf(L"-2147483649"), "stol argument out of range");
    EXPECT_EQ(messageOf(std::wstring(5000, L'9')), "stol argument out of range");
    EXPECT_EQ(messageOf(L"0000000000000000002147483647"), "no exception");
}

TEST(KyResultItem, TheSeparatorIsASlashBetweenBlanks) {
    EXPECT_EQ(KyResultItem::s_strSeparator, L" / ");
}

TEST(KyResultItem, CopiesAreIndependentValues) {
    KyResultItem item = At(L"1,2,3");
    KyResultItem copy = item;
    copy.SetRemark(L"copy");
    EXPECT_EQ(item.GetRemark(), L"");
    item = copy;
    EXPECT_EQ(item.GetRemark(), L"copy");
}
