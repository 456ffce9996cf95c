// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyFloorResultData.h"

#include <optional>

#include <gtest/gtest.h>

#include "result/ResultBuilder.h"

using kycbtest::AxisSource;
using kycbtest::CountedLine;
using kycbtest::GuidsA;
using kycbtest::KyResultItem;
using kycbtest::NewItem;
using KYCOLLISION::RESULT::KyFloorResultData;

namespace {

using Guids = std::vector<std::wstring>;

KyResultItem* Append(KyFloorResultData& floor, const std::wstring& guid,
                     const std::wstring& position = L"0,0,0") {
    KyResultItem* item = NewItem(1, L"F1", guid, position).release();
    EXPECT_TRUE(floor.AppendResultItem(item));
    return item;
}

Guids All(const KyFloorResultData& floor) {
    std::vector<KyResultItem*> items;
    floor.GetResultItems_byAtt(items);
    return GuidsA(items);
}

Guids Band(const KyFloorResultData& floor, double lower, double upper) {
    std::vector<KyResultItem*> items;
    floor.GetResultItems_byHeight(lower, upper, items);
    return GuidsA(items);
}

}  // namespace

TEST(KyFloorResultData, KeepsItsNameAndTheOrderOfItems) {
    KyFloorResultData floor(L"首层");
    EXPECT_EQ(floor.GetFloorName(), L"首层");
    EXPECT_EQ(All(floor), Guids());
    Append(floor, L"b");
    Append(floor, L"a");
    EXPECT_EQ(All(floor), (Guids{L"b", L"a"}));
}

TEST(KyFloorResultData, RefusesNull) {
    KyFloorResultData floor(L"F1");
    EXPECT_FALSE(floor.AppendResultItem(nullptr));
    EXPECT_EQ(All(floor), Guids());
}

TEST(KyFloorResultData, ListsAnItemAsOftenAsItIsAppendedAndDeletesItOnce) {
    KyFloorResultData floor(L"F1");
    KyResultItem* item = Append(floor, L"a");
    EXPECT_TRUE(floor.AppendResultItem(item));
    EXPECT_EQ(All(floor), (Guids{L"a", L"a"}));
}

TEST(KyFloorResultData, HandsItemsOutInPlaceOfWhatTheListHeld) {
    KyFloorResultData floor(L"F1");
    Append(floor, L"a");
    KyResultItem other;
    std::vector<KyResultItem*> items = {&other};
    floor.GetResultItems_byAtt(items);
    EXPECT_EQ(GuidsA(items), Guids{L"a"});
}

TEST(KyFloorResultData, AHeightBandLeavesOutItsLowerAndHoldsItsUpperBound) {
    KyFloorResultData floor(L"F1");
    Append(floor, L"below", L"9,9,2999.99");
    Append(floor, L"lower", L"9,9,3000.00");
    Append(floor, L"inside", L"9,9,3000.01");
    Append(floor, L"upper", L"9,9,6000.00");
    Append(floor, L"above", L"9,9,6000.01");
    EXPECT_EQ(Band(floor, 3000, 6000), (Guids{L"inside", L"upper"}));
    EXPECT_EQ(Band(floor, 0, 3000), (Guids{L"below", L"lower"}));
    EXPECT_EQ(Band(floor, 6000, 3000), Guids());
}

TEST(KyFloorResultData, AHeightBandAppendsToTheList) {
    KyFloorResultData floor(L"F1");
    Append(floor, L"a", L"0,0,5");
    KyResultItem other;
    std::vector<KyResultItem*> items = {&other};
    floor.GetResultItems_byHeight(0, 10, items);
    EXPECT_EQ(items.size(), 2u);
}

TEST(KyFloorResultData, APositionOfTwoPartsHasHeightZero) {
    KyFloorResultData floor(L"F1");
    Append(floor, L"flat", L"7,8");
    EXPECT_EQ(Band(floor, -1, 0), Guids{L"flat"});
    EXPECT_EQ(Band(floor, 0, 10), Guids());
}

TEST(KyFloorResultData, AMalformedPositionRaisesItsErrorFromTheHeightQuery) {
    KyFloorResultData floor(L"F1");
    Append(floor, L"a", L"1,2,x");
    EXPECT_THROW(Band(floor, 0, 1), std::invalid_argument);
}

TEST(KyFloorResultData, NewResultsReplaceTheOldOnes) {
    KyFloorResultData floor(L"F1");
    Append(floor, L"old");
    floor.AppendNewResults({NewItem(1, L"F1", L"b").release(), NewItem(1, L"F1", L"a").release()});
    EXPECT_EQ(All(floor), (Guids{L"b", L"a"}));
    floor.AppendNewResults({});
    EXPECT_EQ(All(floor), Guids());
}

TEST(KyFloorResultData, NewResultsDropNullEntries) {
    KyFloorResultData floor(L"F1");
    floor.AppendNewResults({nullptr, NewItem(1, L"F1", L"a").release(), nullptr});
    EXPECT_EQ(All(floor), Guids{L"a"});
    EXPECT_EQ(Band(floor, -1, 1), Guids{L"a"});
}

TEST(KyFloorResultData, NewResultsMayHoldItemsOfTheOldOnes) {
    KyFloorResultData floor(L"F1");
    Append(floor, L"gone");
    KyResultItem* kept = Append(floor, L"kept");
    floor.AppendNewResults({kept, NewItem(1, L"F1", L"new").release(), kept});
    EXPECT_EQ(All(floor), (Guids{L"kept", L"new", L"kept"}));
}

TEST(KyFloorResultData, ReleaseEmptiesTheFloorForFurtherUse) {
    KyFloorResultData floor(L"F1");
    Append(floor, L"a");
    floor.ReleaseResults();
    EXPECT_EQ(All(floor), Guids());
    floor.ReleaseResults();
    Append(floor, L"b");
    EXPECT_EQ(All(floor), Guids{L"b"});
}

TEST(KyFloorResultData, ACopySharesTheItems) {
    KyFloorResultData floor(L"F1");
    KyResultItem* item = Append(floor, L"a");
    const KyFloorResultData copy = floor;
    std::vector<KyResultItem*> items;
    copy.GetResultItems_byAtt(items);
    EXPECT_EQ(copy.GetFloorName(), L"F1");
    EXPECT_EQ(items, std::vector<KyResultItem*>{item});
}

TEST(KyFloorResultData, ACopyOutlivesItsSource) {
    std::optional<KyFloorResultData> floor(L"F1");
    Append(*floor, L"a");
    const KyFloorResultData copy = *floor;
    floor.reset();
    EXPECT_EQ(All(copy), Guids{L"a"});
}

TEST(KyFloorResultData, ChangesOfOneCopyLeaveTheOtherItsItems) {
    KyFloorResultData floor(L"F1");
    KyResultItem* shared = Append(floor, L"a");
    KyFloorResultData copy = floor;
    Append(copy, L"b");
    EXPECT_EQ(All(floor), Guids{L"a"});
    floor.AppendNewResults({NewItem(1, L"F1", L"c").release()});
    EXPECT_EQ(All(copy), (Guids{L"a", L"b"}));
    copy.AppendNewResults({shared, NewItem(1, L"F1", L"d").release()});
    EXPECT_EQ(All(copy), (Guids{L"a", L"d"}));
    copy.ReleaseResults();
    EXPECT_EQ(All(floor), Guids{L"c"});
    copy = floor;
    floor.ReleaseResults();
    EXPECT_EQ(All(copy), Guids{L"c"});
}

TEST(KyFloorResultData, ACopyThatReplacesSharedItemsByThemKeepsThem) {
    KyFloorResultData floor(L"F1");
    KyResultItem* first = Append(floor, L"a");
    Append(floor, L"b");
    {
        KyFloorResultData copy = floor;
        copy.AppendNewResults({first, NewItem(1, L"F1", L"c").release()});
        EXPECT_EQ(All(copy), (Guids{L"a", L"c"}));
    }
    EXPECT_EQ(All(floor), (Guids{L"a", L"b"}));
}

TEST(KyFloorResultData, PlacesItsItemsAmongTheAxesOfItsFloor) {
    const AxisSource source;
    KyFloorResultData floor(L"F1");
    const KyResultItem* east = Append(floor, L"a", L"250,0,0");
    const KyResultItem* west = Append(floor, L"b", L"-350,0,0");
    floor.ReCatulateAxisInfo(&source, 7);
    EXPECT_EQ(east->GetAxisPos(), L"7F1(+250mm)");
    EXPECT_EQ(west->GetAxisPos(), L"7F1(-350mm)");
    EXPECT_EQ(source.asked.size(), 1u);
    EXPECT_EQ(CountedLine::living, 0);
}

TEST(KyFloorResultData, WithoutASourceAxisPositionsStay) {
    const AxisSource source;
    KyFloorResultData floor(L"F1");
    const KyResultItem* item = Append(floor, L"a", L"250,0,0");
    floor.ReCatulateAxisInfo(&source, 7);
    floor.ReCatulateAxisInfo(nullptr, 8);
    EXPECT_EQ(item->GetAxisPos(), L"7F1(+250mm)");
}

TEST(KyFloorResultData, AxesAreDeletedWhenAnItemOrTheSourceThrows) {
    AxisSource source;
    KyFloorResultData floor(L"F1");
    Append(floor, L"a", L"nowhere,0,0");
    EXPECT_THROW(floor.ReCatulateAxisInfo(&source, 1), std::invalid_argument);
    EXPECT_EQ(CountedLine::living, 0);
    source.throws = true;
    EXPECT_THROW(floor.ReCatulateAxisInfo(&source, 1), std::runtime_error);
    EXPECT_EQ(CountedLine::living, 0);
}
