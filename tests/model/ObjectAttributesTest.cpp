// SPDX-License-Identifier: Apache-2.0
// What is read from a component's attributes.
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"

#include <map>
#include <stdexcept>

#include <gmock/gmock.h>

#include "support/FakeDataSource.h"
#include "support/Kinds.h"
#include "support/SceneBuilder.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using Attributes = std::map<std::wstring, std::wstring>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// One component of a kind with attributes, in a model, with its host.
struct Described {
    FakeDataSource source;
    std::unique_ptr<WorkSetModelInfo> model;
    const ObjectModelInfo* obj;

    explicit Described(Attributes attributes, const AttCategory& kind = kDrain)
        : Described(SceneWith(std::move(attributes), kind)) {}

  private:
    explicit Described(const SceneBuilder& scene)
        : source(scene), model(scene.BuildModel()), obj(ObjectOf(*model, L"a")) {}

    static SceneBuilder SceneWith(Attributes attributes, const AttCategory& kind) {
        SceneBuilder scene;
        scene.At(7, L"2F").Add(L"a", kind, {0, 0, 0, 1, 1, 1}).attributes = std::move(attributes);
        return scene;
    }
};

std::wstring HeightOf(Attributes attributes, const AttCategory& kind = kDrain) {
    Described described(std::move(attributes), kind);
    return described.obj->GetObjAttHeight(&described.source);
}

std::wstring RoundedHeight(const wchar_t* value) {
    return HeightOf({{L"heighttype", L"1"}, {L"oneheight", value}});
}

const Attributes kDuctHeights = {{L"heighttype", L"3"},
                                 {L"oneheight", L"3000.4"},
                                 {L"sectheight", L"400"},
                                 {L"bwthick", L"50.5"}};

TEST(ObjectAttributes, AsksWithProjectIdAndObjectId) {
    Described described(Attributes{{L"x", L"1"}});
    std::wstring value;
    EXPECT_TRUE(described.obj->GetAttValue(&described.source, L"x", value));
    ASSERT_EQ(described.source.calls.size(), 1U);
    EXPECT_EQ(described.source.calls[0].projectId, 7);
    EXPECT_EQ(described.source.calls[0].id, L"obj:0");
}

TEST(ObjectAttributes, AsksWithProjectIdMinusOneOutsideATree) {
    SceneBuilder scene;
    scene.Add(L"a", kDrain, {0, 0, 0, 1, 1, 1}).Attribute(L"x", L"1");
    FakeDataSource source(scene);
    const std::unique_ptr<ObjectModelInfo> obj(NewObject(scene.Components()[0]));
    std::wstring value;
    EXPECT_TRUE(obj->GetAttValue(&source, L"x", value));
    EXPECT_EQ(source.calls[0].projectId, -1);
}

TEST(ObjectAttributes, AsksAfreshEachTime) {
    Described described(Attributes{{L"heighttype", L"2"}});
    described.obj->GetObjAttHeight(&described.source);
    described.obj->GetObjAttHeight(&described.source);
    EXPECT_EQ(described.source.calls.size(), 2U);
}

TEST(ObjectAttributes, GivesTheTextOfOneAttributeOrLeavesTheOutputAlone) {
    Described described(Attributes{{L"empty", L""}, {L"x", L" 1 "}});
    std::wstring value = L"before";
    EXPECT_FALSE(described.obj->GetAttValue(&described.source, L"X", value));
    EXPECT_EQ(value, L"before");
    EXPECT_TRUE(described.obj->GetAttValue(&described.source, L"x", value));
    EXPECT_EQ(value, L" 1 ");
    EXPECT_TRUE(described.obj->GetAttValue(&described.source, L"empty", value));
    EXPECT_EQ(value, L"");
}

TEST(ObjectAttributes, ReadNothingWithoutADataSource) {
    const Described described(Attributes{{L"heighttype", L"2"}});
    std::wstring text = L"before";
    double number = 5;
    CQNIMPosition point(1, 2, 3);
    std::vector<std::wstring> list = {L"before"};
    EXPECT_EQ(described.obj->GetObjAttHeight(nullptr), L"");
    EXPECT_FALSE(described.obj->GetAttValue(nullptr, L"heighttype", text));
    EXPECT_FALSE(described.obj->GetPipeGCZJ(nullptr, number));
    EXPECT_FALSE(described.obj->GetPipeDuctSupportSEPt(nullptr, point, point));
    EXPECT_FALSE(described.obj->GetPipeDuctSupportSect(nullptr, number, number, number));
    described.obj->GetRelatedObjs(nullptr, list, list);
    EXPECT_EQ(text, L"before");
    EXPECT_EQ(number, 5);
    EXPECT_EQ(point, CQNIMPosition(1, 2, 3));
    EXPECT_THAT(list, ElementsAre(L"before"));
}

TEST(ObjectHeight, IsEmptyWithoutAHeightTypeOrWithAnUnknownOne) {
    EXPECT_EQ(HeightOf({{L"oneheight", L"5"}}), L"");
    for (const wchar_t* type : {L"0", L"6", L"7", L"", L" 1", L"01"}) {
        EXPECT_EQ(HeightOf({{L"heighttype", type},
                            {L"oneheight", L"5"},
                            {L"underheight", L"1"},
                            {L"topheight", L"2"}}),
                  L"");
    }
}

TEST(ObjectHeight, RoundsASingleHeightHalfAwayFromZero) {
    EXPECT_EQ(RoundedHeight(L"2.5"), L"3");
    EXPECT_EQ(RoundedHeight(L"-2.5"), L"-3");
    EXPECT_EQ(RoundedHeight(L"2.4"), L"2");
    EXPECT_EQ(RoundedHeight(L"-2.4"), L"-2");
    EXPECT_EQ(RoundedHeight(L"0"), L"0");
    EXPECT_EQ(RoundedHeight(L"  12.5 mm"), L"13");
    EXPECT_EQ(HeightOf({{L"heighttype", L"1"}}), L"");
}

TEST(ObjectHeight, WritesAHeightBeyondThirtyTwoBitsAsTheNearestThatFits) {
    EXPECT_EQ(RoundedHeight(L"1e300"), L"2147483647");
    EXPECT_EQ(RoundedHeight(L"-1e300"), L"-2147483648");
    EXPECT_EQ(RoundedHeight(L"2147483646.5"), L"2147483647");
    EXPECT_EQ(RoundedHeight(L"-2147483648"), L"-2147483648");
}

TEST(ObjectHeight, ThrowsForAHeightThatIsNotANumber) {
    for (const wchar_t* broken : {L"", L"high", L","}) {
        try {
            RoundedHeight(broken);
            FAIL() << "no exception";
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "invalid stod argument");
        }
    }
    try {
        RoundedHeight(L"1e999");
        FAIL() << "no exception";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "stod argument out of range");
    }
}

TEST(ObjectHeight, ThrowsForABrokenPartEvenWhereItIsNotShown) {
    Attributes heights = kDuctHeights;
    heights[L"bwthick"] = L"thick";
    EXPECT_THROW(HeightOf(heights, kDrain), std::invalid_argument);
}

TEST(ObjectHeight, OfADuctIsItsUndersideFromTheRoundedParts) {
    EXPECT_EQ(HeightOf(kDuctHeights, kDuct), L"2749");
    Attributes halved = kDuctHeights;
    halved[L"sectheight"] = L"401";
    halved[L"bwthick"] = L"0";
    EXPECT_EQ(HeightOf(halved, kDuct), L"2800");  // 3000 - 200.5 rounds up
    halved[L"oneheight"] = L"-3000";
    EXPECT_EQ(HeightOf(halved, kDuct), L"-3201");  // -3200.5 rounds away from zero
}

TEST(ObjectHeight, IsAnUndersideForTraysTrunkingAndDuctsOnly) {
    const auto isUnderside = [](const wchar_t* spec, const wchar_t* dalei, const wchar_t* xiaolei) {
        const std::wstring height = HeightOf(kDuctHeights, {spec, dalei, xiaolei});
        EXPECT_TRUE(height == L"2749" || height == L"3000");
        return height == L"2749";
    };
    EXPECT_TRUE(isUnderside(L"电气", L"电缆桥架", L"桥架"));
    EXPECT_TRUE(isUnderside(L"电气", L"电缆桥架", L"托盘"));
    EXPECT_TRUE(isUnderside(L"电气", L"电缆桥架", L"组合式桥架"));
    EXPECT_FALSE(isUnderside(L"电气", L"电缆桥架", L"母线馈线"));
    EXPECT_TRUE(isUnderside(L"暖通", L"风管", L"柔性风管"));
    EXPECT_FALSE(isUnderside(L"暖通", L"水管", L"热供水管"));
    EXPECT_TRUE(isUnderside(L"弱电", L"线槽桥架", L"线槽"));
    EXPECT_TRUE(isUnderside(L"弱电", L"线槽桥架", L"桥架"));
    EXPECT_FALSE(isUnderside(L"弱电", L"线槽桥架", L"托盘"));
    EXPECT_TRUE(isUnderside(L"Revit", L"风管", L"x"));
    EXPECT_TRUE(isUnderside(L"Revit", L"软风管", L""));
    EXPECT_TRUE(isUnderside(L"Revit", L"电缆桥架", L"x"));
    EXPECT_FALSE(isUnderside(L"Revit", L"管道", L"x"));
    EXPECT_FALSE(isUnderside(L"给排水", L"管道", L"给水管"));
}

TEST(ObjectHeight, OfATrayWithoutInsulationIsItsSingleHeight) {
    for (const wchar_t* missing : {L"bwthick", L"sectheight"}) {
        Attributes heights = kDuctHeights;
        heights.erase(missing);
        EXPECT_EQ(HeightOf(heights, kTray), L"3000");
    }
    Attributes heights = kDuctHeights;
    heights.erase(L"oneheight");
    EXPECT_EQ(HeightOf(heights, kTray), L"");
}

TEST(ObjectHeight, OfAComponentOutsideATreeIsItsSingleHeight) {
    SceneBuilder scene;
    scene.Add(L"a", kDuct, {0, 0, 0, 1, 1, 1}).attributes = kDuctHeights;
    FakeDataSource source(scene);
    const std::unique_ptr<ObjectModelInfo> obj(NewObject(scene.Components()[0]));
    EXPECT_EQ(obj->GetObjAttHeight(&source), L"3000");
}

TEST(ObjectHeight, JoinsBottomAndTopWithTheMarkOfTheType) {
    const auto range = [](const wchar_t* type) {
        return HeightOf({{L"heighttype", type}, {L"underheight", L"99.5"}, {L"topheight", L"-1"}});
    };
    EXPECT_EQ(range(L"2"), L"100~-1");
    EXPECT_EQ(range(L"4"), L"100~-1(斜)");
    EXPECT_EQ(range(L"5"), L"100~-1(工程)");
}

TEST(ObjectHeight, KeepsTheTildeWithoutBottomAndTop) {
    EXPECT_EQ(HeightOf({{L"heighttype", L"2"}}), L"~");
    EXPECT_EQ(HeightOf({{L"heighttype", L"4"}, {L"topheight", L"8"}}), L"~8(斜)");
    EXPECT_EQ(HeightOf({{L"heighttype", L"5"}, {L"underheight", L"8"}}), L"8~(工程)");
}

TEST(PipeDiameter, IsReadFromTheStartOfTheText) {
    const auto diameter = [](const wchar_t* text) {
        Described described(Attributes{{L"pipegczj", text}});
        double value = -1;
        EXPECT_TRUE(described.obj->GetPipeGCZJ(&described.source, value));
        return value;
    };
    EXPECT_EQ(diameter(L"100"), 100);
    EXPECT_EQ(diameter(L" 20.5mm"), 20.5);
    EXPECT_EQ(diameter(L"DN100"), 0);
    EXPECT_EQ(diameter(L""), 0);
}

TEST(PipeDiameter, IsNotReadWhereTheAttributeIsMissing) {
    Described described(Attributes{});
    double value = -1;
    EXPECT_FALSE(described.obj->GetPipeGCZJ(&described.source, value));
    EXPECT_EQ(value, -1);
}

TEST(SupportPoints, NeedExactlySixNumbers) {
    const auto read = [](const wchar_t* text, CQNIMPosition& start, CQNIMPosition& end) {
        Described described(Attributes{{L"drawstartendpt", text}});
        return described.obj->GetPipeDuctSupportSEPt(&described.source, start, end);
    };
    CQNIMPosition start(9, 9, 9);
    CQNIMPosition end(9, 9, 9);
    EXPECT_FALSE(read(L"1,2,3,4,5", start, end));
    EXPECT_FALSE(read(L"1,2,3,4,5,6,7", start, end));
    EXPECT_FALSE(read(L"", start, end));
    EXPECT_EQ(start, CQNIMPosition(9, 9, 9));
    EXPECT_TRUE(read(L"1,2.5,-3,4,,x", start, end));
    EXPECT_EQ(start, CQNIMPosition(1, 2.5, -3));
    EXPECT_EQ(end, CQNIMPosition(4, 0, 0));
    EXPECT_TRUE(read(L"1,2,3,4,5,6,", start, end));  // nothing after the last comma
}

TEST(SupportPoints, AreNotReadWhereTheAttributeIsMissing) {
    Described described(Attributes{});
    CQNIMPosition start;
    CQNIMPosition end;
    EXPECT_FALSE(described.obj->GetPipeDuctSupportSEPt(&described.source, start, end));
}

struct Section {
    double width = -1;
    double height = -1;
    double radius = -1;
    bool isRead;

    explicit Section(Attributes attributes) {
        Described described(std::move(attributes));
        isRead = described.obj->GetPipeDuctSupportSect(&described.source, width, height, radius);
    }
};

TEST(SupportSection, IsWidthAndHeightOrElseARadius) {
    const Section rectangle(Attributes{{L"sectwidthheight", L"200*100.5"}, {L"sectradius", L"7"}});
    EXPECT_TRUE(rectangle.isRead);
    EXPECT_EQ(rectangle.width, 200);
    EXPECT_EQ(rectangle.height, 100.5);
    EXPECT_EQ(rectangle.radius, -1);
    const Section circle(Attributes{{L"sectradius", L"7"}});
    EXPECT_TRUE(circle.isRead);
    EXPECT_EQ(circle.width, -1);
    EXPECT_EQ(circle.radius, 7);
    EXPECT_FALSE(Section(Attributes{}).isRead);
}

TEST(SupportSection, WithAnyOtherCountOfNumbersIsNotReadEvenWithARadius) {
    for (const wchar_t* text : {L"200*", L"200", L"", L"1*2*3"}) {
        const Section section(Attributes{{L"sectwidthheight", text}, {L"sectradius", L"7"}});
        EXPECT_FALSE(section.isRead);
        EXPECT_EQ(section.width, -1);
        EXPECT_EQ(section.radius, -1);
    }
}

TEST(RelatedObjs, AreSplitAtCommasWithoutTrimming) {
    Described described(Attributes{{L"relatedobjs", L"a,,b"}, {L"relatedfits", L"c, d,"}});
    std::vector<std::wstring> objs = {L"old"};
    std::vector<std::wstring> fits;
    described.obj->GetRelatedObjs(&described.source, objs, fits);
    EXPECT_THAT(objs, ElementsAre(L"a", L"", L"b"));
    EXPECT_THAT(fits, ElementsAre(L"c", L" d"));
    EXPECT_EQ(described.source.calls.size(), 1U);
}

TEST(RelatedObjs, OfAnEmptyAttributeAreNone) {
    Described described(Attributes{{L"relatedobjs", L""}});
    std::vector<std::wstring> objs = {L"old"};
    std::vector<std::wstring> fits = {L"old"};
    described.obj->GetRelatedObjs(&described.source, objs, fits);
    EXPECT_THAT(objs, IsEmpty());
    EXPECT_THAT(fits, ElementsAre(L"old"));  // absent: left as it was
}

TEST(ObjectAttributes, PassAFailureOfTheHostThrough) {
    Described described(Attributes{{L"heighttype", L"2"}});
    described.source.ThrowAt(HostCall::kAttributes, 1);
    EXPECT_THROW(described.obj->GetObjAttHeight(&described.source), std::runtime_error);
}

}  // namespace
