// SPDX-License-Identifier: Apache-2.0
// From recorded clashes to result items.
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>

#include "support/CheckedScene.h"
#include "support/Kinds.h"
#include "support/PriorityScope.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using KYCOLLISION::RESULT::CExistingHole;
using KYCOLLISION::RESULT::KyResultItem;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using Attributes = std::map<std::wstring, std::wstring>;
using ItemPtr = std::unique_ptr<KyResultItem>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const BoundingBox3d kCube(0, 0, 0, 1000, 1000, 1000);

class FloorResults : public ::testing::Test {
  protected:
    // Ranks of the kinds of these tests: duct, drain, wall; all others have 1000.
    PriorityScope priorities_{{{L"暖通/风管/送风管", 1},
                               {L"给排水/管道/污水管", 2},
                               {L"土建/墙/砼内墙", 3},
                               {L"Tekla/钢结构/钢梁", 50},
                               {L"Tekla/混凝土/混凝土嵌板", 60}}};
    SceneBuilder scene_;
    std::unique_ptr<FakeDataSource> source_;
    std::unique_ptr<WorkSetModelInfo> model_;

    void Build() {
        source_ = std::make_unique<FakeDataSource>(scene_);
        model_ = scene_.BuildModel();
    }

    ObjectModelInfo& Object(const std::wstring& guid) { return *ObjectOf(*model_, guid); }
    ObjectModelInfo& Part(const std::wstring& guid, const AttCategory& kind) {
        const auto& objects = FloorOf(*model_)->GetCategories().at(PathOf(kind))->GetObjects();
        return *objects.find(guid)->second;
    }

    static void Record(ObjectModelInfo& a, ObjectModelInfo& b, const CQNIMPosition& point = {},
                       int offsetA = 0, int offsetB = 0) {
        a.AppendCollisionObj({&b, point, offsetA, offsetB});
        b.AppendCollisionObj({&a, point, offsetB, offsetA});
    }
    void Record(const std::wstring& a, const std::wstring& b, const CQNIMPosition& point = {},
                int offsetA = 0, int offsetB = 0) {
        Record(Object(a), Object(b), point, offsetA, offsetB);
    }

    void RecordDuctAndDrainAtAWall() {
        scene_.Add(L"duct", kDuct, kCube);
        scene_.Add(L"wall", kWall, kCube);
        scene_.Add(L"drain", kDrain, kCube);
        Build();
        Record(L"duct", L"wall");
        Record(L"wall", L"drain");
    }

    std::vector<ItemPtr> Results(int projectId = 1, const std::wstring& floorName = L"1F") {
        std::vector<KyResultItem*> items;
        model_->GetFloorCollisionResult(source_.get(), {projectId, floorName}, items);
        return {items.begin(), items.end()};
    }

    // "A>B" per result.
    static std::vector<std::wstring> PairsOf(const std::vector<ItemPtr>& items) {
        std::vector<std::wstring> pairs;
        for (const ItemPtr& item : items) {
            pairs.push_back(item->GetObjGuidA() + L">" + item->GetObjGuidB());
        }
        return pairs;
    }

    // The main component of a clash between components of two kinds with these names.
    std::wstring MainOf(const AttCategory& kindA, const std::wstring& nameA,
                        const AttCategory& kindB, const std::wstring& nameB) {
        scene_ = SceneBuilder();
        scene_.Add(L"a", kindA, kCube).Name(nameA);
        scene_.Add(L"b", kindB, kCube).Name(nameB);
        Build();
        Record(L"a", L"b");
        const auto items = Results();
        EXPECT_EQ(items.size(), 1U);
        return items.at(0)->GetObjGuidA();
    }
};

TEST_F(FloorResults, FillEveryFieldOfAnItem) {
    scene_.At(1, L"1F").Add(L"duct", kDuct, kCube).Name(L"SF-1").Syscode(L"SF").attributes = {
        {L"heighttype", L"1"}, {L"oneheight", L"2800.4"}};
    scene_.At(2, L"2F").Add(L"wall", kWall, kCube).Name(L"Q1").Syscode(L"none").attributes = {
        {L"heighttype", L"2"}, {L"underheight", L"0"}, {L"topheight", L"3000"}};
    Build();
    source_->AddAxis({L"1", 0, -100000, 0, 100000});
    source_->AddAxis({L"A", -100000, 0, 100000, 0});
    Record(L"duct", L"wall", {1000.004, 2000.006, -0.5}, 200, 0);
    const auto items = Results();
    ASSERT_EQ(items.size(), 1U);
    const KyResultItem& item = *items[0];
    EXPECT_EQ(item.GetResultId().size(), 32U);
    EXPECT_EQ(item.GetProjectA(), 1);
    EXPECT_EQ(item.GetFloorA(), L"1F");
    EXPECT_EQ(item.GetObjGuidA(), L"duct");
    EXPECT_EQ(item.GetProjectB(), 2);
    EXPECT_EQ(item.GetFloorB(), L"2F");
    EXPECT_EQ(item.GetObjGuidB(), L"wall");
    EXPECT_EQ(item.GetPosition(), L"1000.00,2000.01,-0.50");
    EXPECT_EQ(item.GetClashModel(), L"200,0");
    EXPECT_EQ(item.GetSpecialtyA(), L"暖通");
    EXPECT_EQ(item.GetCategoryA(), L"风管");
    EXPECT_EQ(item.GetSubcategoryA(), L"送风管");
    EXPECT_EQ(item.GetNameA(), L"SF-1");
    EXPECT_EQ(item.GetAttInfoA().SysCode, L"SF");
    EXPECT_EQ(item.GetSubcategoryB(), L"砼内墙");
    EXPECT_EQ(item.GetNameB(), L"Q1");
    EXPECT_EQ(item.GetAttInfoB().SysCode, L"none");
    EXPECT_EQ(item.GetHeightA(), L"2800");
    EXPECT_EQ(item.GetHeightB(), L"0~3000");
    EXPECT_EQ(item.GetAxisPos(), L"1(+1000mm) / A(+2000mm)");
    EXPECT_EQ(item.GetDisposeState(), 0);
    const auto axisCalls = source_->CallsOf(HostCall::kAxes);
    ASSERT_EQ(axisCalls.size(), 1U);
    EXPECT_EQ(axisCalls[0].projectId, 1);
    EXPECT_EQ(axisCalls[0].floorName, L"1F");
}

TEST_F(FloorResults, AreNoneWithoutClashes) {
    scene_.Add(L"a", kWall, kCube);
    Build();
    EXPECT_THAT(Results(), IsEmpty());
    EXPECT_EQ(source_->CallsOf(HostCall::kAxes).size(), 1U);
    EXPECT_EQ(source_->CallsOf(HostCall::kAttributes).size(), 1U);  // its height is read first
}

TEST_F(FloorResults, AreAppendedToWhatTheCallerHas) {
    scene_.Add(L"a", kWall, kCube);
    scene_.Add(L"b", kDuct, kCube);
    Build();
    Record(L"a", L"b");
    std::vector<KyResultItem*> items = {nullptr};
    model_->GetFloorCollisionResult(source_.get(), {1, L"1F"}, items);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0], nullptr);
    delete items[1];
}

TEST_F(FloorResults, HaveTheComponentOfHigherPriorityAsTheMainOne) {
    EXPECT_EQ(MainOf(kDuct, L"", kWall, L""), L"a");
    EXPECT_EQ(MainOf(kWall, L"", kDrain, L""), L"b");
    EXPECT_EQ(MainOf(kBox, L"", kWall, L""), L"b");  // unlisted: 1000
}

TEST_F(FloorResults, HaveTheLesserCategoryPathAsTheMainOneOfEqualPriority) {
    // Both unlisted. U+7535 (电) is before U+88C5 (装).
    EXPECT_EQ(MainOf(kBox, L"", kFurniture, L""), L"a");
    EXPECT_EQ(MainOf(kFurniture, L"", kBox, L""), L"b");
    // The order is that of the characters themselves, though code page 936 has U+4E00 after U+4E01.
    EXPECT_EQ(MainOf({L"\u4E01", L"x", L""}, L"", {L"\u4E00", L"x", L""}, L""), L"b");
}

TEST_F(FloorResults, CompareCharactersOutsideTheCodePageAsQuestionMarks) {
    // Thai letters: both paths are "?/x/", so the components' own ranks decide, here by name.
    EXPECT_EQ(MainOf({L"\u0E01", L"x", L""}, L"2", {L"\u0E02", L"x", L""}, L"1"), L"b");
    EXPECT_EQ(MainOf({L"\u0E02", L"x", L""}, L"1", {L"\u0E01", L"x", L""}, L"2"), L"a");
    EXPECT_EQ(MainOf(kTeklaBeam, L"\u0E02", kTeklaBeam, L"\u0E01"), L"a");  // names tie, GUIDs not
}

TEST_F(FloorResults, AskForTheRankOfComponentsOfOneKind) {
    const auto mainOfLengths = [&](const wchar_t* a, const wchar_t* b) {
        scene_ = SceneBuilder();
        scene_.Add(L"a", kTray, kCube).Name(L"same").Attribute(L"drawstartendpt", a);
        scene_.Add(L"b", kTray, kCube).Name(L"same").Attribute(L"drawstartendpt", b);
        Build();
        Record(L"a", L"b");
        return Results().at(0)->GetObjGuidA();
    };
    EXPECT_EQ(mainOfLengths(L"0,0,0,1,0,0", L"0,0,0,9,0,0"), L"b");
    EXPECT_EQ(mainOfLengths(L"0,0,0,9,0,0", L"0,0,0,1,0,0"), L"a");
}

TEST_F(FloorResults, HaveATeklaComponentAsTheMainOneWhateverThePriorities) {
    EXPECT_EQ(MainOf(kDuct, L"", kTeklaBeam, L""), L"b");
    EXPECT_EQ(MainOf(kTeklaPanel, L"", kDuct, L""), L"a");
}

TEST_F(FloorResults, OrderTwoTeklaComponentsByNameThenGuid) {
    EXPECT_EQ(MainOf(kTeklaBeam, L"2", kTeklaPanel, L"1"), L"b");
    EXPECT_EQ(MainOf(kTeklaBeam, L"1", kTeklaPanel, L"2"), L"a");
    EXPECT_EQ(MainOf(kTeklaPanel, L"same", kTeklaBeam, L"same"), L"a");
    EXPECT_EQ(MainOf(kTeklaBeam, L"\u4E01", kTeklaBeam, L"\u4E00"), L"b");
}

TEST_F(FloorResults, ShowTheMajorCategoryOfATeklaSideInsteadOfItsOffset) {
    scene_.Add(L"beam", kTeklaBeam, kCube);
    scene_.Add(L"wall", kWall, kCube);
    scene_.Add(L"panel", kTeklaPanel, kCube).Name(L"a");
    Build();
    Record(L"wall", L"beam", {}, -5, -7);
    Record(L"panel", L"beam", {}, 1, 2);
    const auto items = Results();
    ASSERT_THAT(PairsOf(items), ElementsAre(L"beam>wall", L"panel>beam"));
    EXPECT_EQ(items[0]->GetClashModel(), L"钢结构,-5");
    EXPECT_EQ(items[1]->GetClashModel(), L"混凝土,钢结构");
}

TEST_F(FloorResults, StandInTheOrderOfTheirGuids) {
    scene_.Add(L"b", kDuct, kCube);
    scene_.Add(L"a2", kDrain, kCube);
    scene_.Add(L"a", kWall, kCube);
    scene_.Add(L"c", kBox, kCube);
    Build();
    Record(L"b", L"c");
    Record(L"b", L"a");
    Record(L"a2", L"c");
    Record(L"a", L"c");
    // Keys: "a&c" before "a2&c", because "&" comes before digits.
    EXPECT_THAT(PairsOf(Results()), ElementsAre(L"a>c", L"a2>c", L"b>a", L"b>c"));
}

TEST_F(FloorResults, TakeEachPairOutOfTheSecondComponentsRecordsOnly) {
    RecordDuctAndDrainAtAWall();
    EXPECT_EQ(Results().size(), 2U);
    EXPECT_EQ(Object(L"duct").GetCollisionObjs().size(), 1U);
    EXPECT_EQ(Object(L"drain").GetCollisionObjs().size(), 1U);
    EXPECT_THAT(Object(L"wall").GetCollisionObjs(), IsEmpty());
}

TEST_F(FloorResults, AreTheSameWhenTheyAreAskedForAgain) {
    RecordDuctAndDrainAtAWall();
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(model_->GetFloorResultTempNum(source_.get(), {1, L"1F"}), 2);
        EXPECT_THAT(PairsOf(Results()), ElementsAre(L"drain>wall", L"duct>wall"));
    }
}

TEST_F(FloorResults, LeaveRecordsWhoseOwnerIsNotTheMainComponent) {
    scene_.At(1, L"1F").Add(L"wall", kWall, kCube);
    scene_.At(1, L"2F").Add(L"duct", kDuct, kCube);
    Build();
    Record(L"wall", L"duct");
    EXPECT_THAT(Results(1, L"1F"), IsEmpty());
    EXPECT_EQ(Object(L"wall").GetCollisionObjs().size(), 1U);
    EXPECT_THAT(PairsOf(Results(1, L"2F")), ElementsAre(L"duct>wall"));
}

TEST_F(FloorResults, KeepTheTeklaResultOfTheSmallerPrioritySumWhereverItLies) {
    const auto keptKind = [&](const std::wstring& firstKind, const std::wstring& secondKind) {
        // Of the two parts under one GUID, "混凝土" (U+6DF7) is walked before "钢结构" (U+94A2).
        const PriorityScope ranks({{PathOf(kTeklaPanel), firstKind == L"better" ? 50 : 60},
                                   {PathOf(kTeklaBeam), secondKind == L"better" ? 50 : 60}});
        scene_ = SceneBuilder();
        scene_.Add(L"part", kTeklaPanel, kCube);
        scene_.Add(L"part", kTeklaBeam, kCube);
        scene_.Add(L"wall", kWall, kCube);
        Build();
        // The better one lies further from the origin, which must not count.
        Record(Part(L"part", kTeklaPanel), Object(L"wall"),
               {firstKind == L"better" ? 9. : 1., 0, 0});
        Record(Part(L"part", kTeklaBeam), Object(L"wall"),
               {secondKind == L"better" ? 9. : 1., 0, 0});
        const auto items = Results();
        EXPECT_EQ(items.size(), 1U);
        return items.at(0)->GetSubcategoryA();
    };
    EXPECT_EQ(keptKind(L"better", L"worse"), L"混凝土嵌板");
    EXPECT_EQ(keptKind(L"worse", L"better"), L"钢梁");
}

TEST_F(FloorResults, AddThePrioritiesOfATeklaPairWithoutOverflow) {
    constexpr int kLargest = std::numeric_limits<int>::max();
    const PriorityScope ranks(
        {{PathOf(kTeklaPanel), 0}, {PathOf(kTeklaBeam), 1}, {PathOf(kWall), kLargest}});
    scene_.Add(L"part", kTeklaPanel, kCube);
    scene_.Add(L"part", kTeklaBeam, kCube);
    scene_.Add(L"wall", kWall, kCube);
    Build();
    Record(Part(L"part", kTeklaPanel), Object(L"wall"));
    Record(Part(L"part", kTeklaBeam), Object(L"wall"));
    const auto items = Results();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->GetSubcategoryA(), L"混凝土嵌板");
}

TEST_F(FloorResults, TakeAPairOutOfTheSecondComponentsRecordsEvenWhenItsItemLost) {
    scene_.Add(L"part", kTeklaBeam, kCube);
    scene_.Add(L"part", kTeklaPanel, kCube);
    scene_.Add(L"wall", kWall, kCube);
    Build();
    // The panel's second item loses to its first, which is nearer; the beam's then beats that.
    Record(Part(L"part", kTeklaPanel), Object(L"wall"));
    Record(Part(L"part", kTeklaPanel), Object(L"wall"), {1, 0, 0});
    Record(Part(L"part", kTeklaBeam), Object(L"wall"));
    EXPECT_EQ(Results().size(), 1U);
    EXPECT_THAT(Object(L"wall").GetCollisionObjs(), IsEmpty());
    EXPECT_EQ(Part(L"part", kTeklaPanel).GetCollisionObjs().size(), 2U);
}

TEST_F(FloorResults, KeepTheTeklaResultNearerTheOriginOfEqualSums) {
    const auto keptPoint = [&](double first, double second) {
        scene_ = SceneBuilder();
        scene_.Add(L"part", kTeklaBeam, kCube);
        scene_.Add(L"part", kTeklaBeam, kCube);
        scene_.Add(L"wall", kWall, kCube);
        Build();
        const auto range = FloorOf(*model_)
                               ->GetCategories()
                               .at(PathOf(kTeklaBeam))
                               ->GetObjects()
                               .equal_range(L"part");
        Record(*range.first->second, Object(L"wall"), {first, 0, 0}, 1);
        Record(*std::next(range.first)->second, Object(L"wall"), {0, second, 0}, 2);
        const auto items = Results();
        EXPECT_EQ(items.size(), 1U);
        return items.at(0)->GetPosition();
    };
    EXPECT_EQ(keptPoint(500, 400), L"0.00,400.00,0.00");
    EXPECT_EQ(keptPoint(400, 500), L"400.00,0.00,0.00");
    EXPECT_EQ(keptPoint(400, 400), L"400.00,0.00,0.00");  // an exact tie: the earlier one stays
    // The stored point is read back from its text: 400.004 is 400.00 there.
    EXPECT_EQ(keptPoint(400.004, 400.001), L"400.00,0.00,0.00");
}

TEST_F(FloorResults, KeepTheLaterOfTwoOfOnePairWithoutTekla) {
    scene_.Add(L"duct", kDuct, kCube);
    scene_.Add(L"duct", kDuct, kCube);
    scene_.Add(L"wall", kWall, kCube);
    Build();
    const auto range =
        FloorOf(*model_)->GetCategories().at(PathOf(kDuct))->GetObjects().equal_range(L"duct");
    Record(*range.first->second, Object(L"wall"), {1, 0, 0});
    Record(*std::next(range.first)->second, Object(L"wall"), {900, 0, 0});
    const auto items = Results();
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->GetPosition(), L"900.00,0.00,0.00");
}

TEST_F(FloorResults, ShowTheHostsNameOfARevitSecondComponentOnly) {
    scene_.Add(L"duct", kDuct, kCube);
    scene_.At(2, L"2F").Add(L"wall", kRevitWall, kCube);
    scene_.At(1, L"1F").Add(L"main", kRevitWall, kCube);
    scene_.Add(L"box", {L"Z", L"z", L"z"}, kCube);
    Build();
    Record(L"duct", L"wall");
    Record(L"main", L"box");
    const auto items = Results();
    ASSERT_THAT(PairsOf(items), ElementsAre(L"duct>wall", L"main>box"));
    EXPECT_EQ(items[0]->GetSubcategoryB(), L"显示wall");
    EXPECT_EQ(items[0]->GetCategoryB(), L"墙");
    EXPECT_EQ(items[1]->GetSubcategoryA(), L"墙");
    EXPECT_EQ(items[1]->GetSubcategoryB(), L"z");
    const auto calls = source_->CallsOf(HostCall::kXiaoLeiName);
    ASSERT_EQ(calls.size(), 1U);
    EXPECT_EQ(calls[0].projectId, 2);
    EXPECT_EQ(calls[0].floorName, L"2F");
    EXPECT_EQ(calls[0].id, L"wall");
}

TEST_F(FloorResults, GiveTheSecondComponentTheMinorCategoryThatThisFloorKnowsItsGuidUnder) {
    // Under "送风管" the second component would rank first; under "污水管" it has no listed path.
    scene_.At(1, L"1F").Add(L"wall", kWall, kCube);
    scene_.Add(L"x", kDrain, kCube);
    scene_.At(1, L"2F").Add(L"x", kDuct, kCube);
    Build();
    ObjectModelInfo& duct = *FloorOf(*model_, 1, L"2F")->GetObjectModelInfo(L"x");
    Record(Object(L"wall"), duct);
    const auto items = Results();
    ASSERT_THAT(PairsOf(items), ElementsAre(L"wall>x"));
    EXPECT_EQ(items[0]->GetSpecialtyB(), L"暖通");
    EXPECT_EQ(items[0]->GetCategoryB(), L"风管");
    EXPECT_EQ(items[0]->GetSubcategoryB(), L"污水管");
}

TEST_F(FloorResults, GiveTheSecondComponentTheMinorCategoryOfTheFirstKindThatKnowsItsGuid) {
    const auto minorCategoryOfB = [&](const std::wstring& firstMinorCategory) {
        scene_ = SceneBuilder();
        scene_.At(1, L"1F").Add(L"main", kDuct, kCube);
        scene_.Add(L"x", kDrain, kCube);
        // "电气" (U+7535) is walked before "给排水" (U+7ED9).
        scene_.Add(L"x", {L"电气", L"配电设备", firstMinorCategory}, kCube);
        scene_.At(1, L"2F").Add(L"x", kWall, kCube);
        Build();
        Record(Object(L"main"), *FloorOf(*model_, 1, L"2F")->GetObjectModelInfo(L"x"));
        return Results().at(0)->GetSubcategoryB();
    };
    EXPECT_EQ(minorCategoryOfB(L"配电箱"), L"配电箱");
    EXPECT_EQ(minorCategoryOfB(L""), kWall.xiaolei);  // an empty one replaces nothing
}

TEST_F(FloorResults, AreCountedWithoutThatSubstitution) {
    scene_.At(1, L"1F").Add(L"wall", kWall, kCube);
    scene_.Add(L"x", kDrain, kCube);
    scene_.At(1, L"2F").Add(L"x", kDuct, kCube);
    Build();
    Record(Object(L"wall"), *FloorOf(*model_, 1, L"2F")->GetObjectModelInfo(L"x"));
    // The duct outranks the wall as long as it keeps its own minor category.
    EXPECT_EQ(model_->GetFloorResultTempNum(source_.get(), {1, L"1F"}), 0);
    EXPECT_EQ(Results().size(), 1U);
}

TEST_F(FloorResults, AskTheHostForAxesThenForEachHeightAndLastForTheNameOfAMainPair) {
    scene_.Add(L"duct", kDuct, kCube);
    scene_.Add(L"revit", kRevitWall, kCube);
    Build();
    Record(L"duct", L"revit");
    EXPECT_EQ(Results().size(), 1U);
    std::vector<HostCall> kinds;
    std::vector<std::wstring> ids;
    for (const RecordedCall& call : source_->calls) {
        kinds.push_back(call.call);
        ids.push_back(call.id);
    }
    // "Revit" is walked before "暖通": from there the duct is the main component, so that nothing
    // but the heights is asked for.
    EXPECT_THAT(kinds,
                ElementsAre(HostCall::kAxes, HostCall::kAttributes, HostCall::kAttributes,
                            HostCall::kAttributes, HostCall::kAttributes, HostCall::kXiaoLeiName));
    EXPECT_THAT(ids, ElementsAre(L"", L"obj:1", L"obj:0", L"obj:0", L"obj:1", L"revit"));
}

TEST_F(FloorResults, WalkTheRecordsThatAComponentHadAtItsTurn) {
    scene_.Add(L"a", kTray, kCube).Attribute(L"drawstartendpt", L"0,0,0,9,0,0");
    scene_.Add(L"b", kBox, kCube);
    scene_.Add(L"c", kBox, kCube);
    Build();
    // A record of a component with itself leaves the list that is walked.
    Object(L"a").AppendCollisionObj({&Object(L"a"), {}, 0, 0});
    Record(L"a", L"b");
    Record(L"a", L"c");
    EXPECT_THAT(PairsOf(Results()), ElementsAre(L"a>a", L"a>b", L"a>c"));
    ASSERT_EQ(Object(L"a").GetCollisionObjs().size(), 2U);
    EXPECT_EQ(Object(L"a").GetCollisionObjs()[0].other, &Object(L"b"));
}

TEST_F(FloorResults, BelongToProjectMinusOneWithoutAProject) {
    FloorModelInfo floor(L"1F");
    ObjectModelInfo* a = NewObject(L"a", kCube);
    ObjectModelInfo* b = NewObject(L"b", kCube);
    floor.AppendObject(kDuct.specialty, kDuct.dalei, kDuct.xiaolei, a);
    floor.AppendObject(kWall.specialty, kWall.dalei, kWall.xiaolei, b);
    Record(*a, *b);
    std::vector<KyResultItem*> items;
    floor.GetFloorCollisionResult(nullptr, items);
    ASSERT_EQ(items.size(), 1U);
    const ItemPtr item(items[0]);
    EXPECT_EQ(item->GetProjectA(), -1);
    EXPECT_EQ(item->GetProjectB(), -1);
    EXPECT_EQ(item->GetHeightA(), L"");
    EXPECT_EQ(item->GetAxisPos(), L"其他位置");
}

TEST_F(FloorResults, AreCountedBeforehandWithoutChangingAnything) {
    scene_.Add(L"part", kTeklaBeam, kCube);
    scene_.Add(L"part", kTeklaPanel, kCube);
    scene_.Add(L"wall", kWall, kCube);
    scene_.Add(L"duct", kDuct, kCube);
    Build();
    Record(Part(L"part", kTeklaPanel), Object(L"wall"));
    Record(Part(L"part", kTeklaBeam), Object(L"wall"));
    Record(L"wall", L"duct");
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(model_->GetFloorResultTempNum(source_.get(), {1, L"1F"}), 3);
    }
    EXPECT_EQ(Object(L"wall").GetCollisionObjs().size(), 3U);
    EXPECT_EQ(Results().size(), 2U);  // the two of one Tekla component collapse
}

TEST_F(FloorResults, AreNotAppendedAndNotLeakedWhenTheHostFails) {
    for (const HostCall call : {HostCall::kAxes, HostCall::kAttributes, HostCall::kXiaoLeiName}) {
        scene_ = SceneBuilder();
        scene_.Add(L"a", kDuct, kCube);
        scene_.Add(L"b", kWall, kCube);
        scene_.Add(L"c", kRevitWall, kCube);
        Build();
        source_->AddAxis({L"1", 0, -100, 0, 100});
        Record(L"a", L"b");
        Record(L"a", L"c");
        source_->ThrowAt(call, call == HostCall::kAttributes ? 3 : 1);
        std::vector<KyResultItem*> items;
        EXPECT_THROW(model_->GetFloorCollisionResult(source_.get(), {1, L"1F"}, items),
                     std::runtime_error);
        EXPECT_THAT(items, IsEmpty());
    }
}

TEST_F(FloorResults, PassTheConversionErrorOfAHeightThrough) {
    scene_.Add(L"a", kDuct, kCube);
    scene_.Add(L"b", kWall, kCube).attributes = {{L"heighttype", L"1"}, {L"oneheight", L"high"}};
    Build();
    Record(L"a", L"b");
    std::vector<KyResultItem*> items;
    EXPECT_THROW(model_->GetFloorCollisionResult(source_.get(), {1, L"1F"}, items),
                 std::invalid_argument);
    EXPECT_THAT(items, IsEmpty());
}

TEST_F(FloorResults, PassRecordsOfNobodyOver) {
    scene_.Add(L"a", kDuct, kCube);
    Build();
    Object(L"a").AppendCollisionObj({nullptr, {}, 0, 0});
    EXPECT_EQ(model_->GetFloorResultTempNum(source_.get(), {1, L"1F"}), 0);
    EXPECT_THAT(Results(), IsEmpty());
}

TEST(FloorHoles, AreThoseOfAllComponentsInTheOrderOfTheWalk) {
    const Attributes complete = {
        {L"holeshape", L"1"}, {L"holecenter", L""}, {L"holeelev", L""}, {L"parentid", L""}};
    SceneBuilder scene;
    scene.Add(L"w", {L"土建", L"门.窗.洞", L"窗"}, kCube).attributes = complete;
    scene.Add(L"d2", kDoor, kCube).attributes = complete;
    scene.Add(L"d1", kDoor, kCube).attributes = complete;
    scene.Add(L"broken", kDoor, kCube);
    scene.Add(L"wall", kWall, kCube).attributes = complete;
    FakeDataSource source(scene);
    const auto model = scene.BuildModel();
    std::vector<std::shared_ptr<CExistingHole>> holes;
    model->GetFloorExistingHoles(&source, {1, L"1F"}, holes);
    ASSERT_EQ(holes.size(), 3U);
    // U+7A97 (窗) is before U+95E8 (门).
    EXPECT_EQ(holes[0]->objGuid, L"w");
    EXPECT_EQ(holes[1]->objGuid, L"d1");
    EXPECT_EQ(holes[2]->objGuid, L"d2");
}

}  // namespace
