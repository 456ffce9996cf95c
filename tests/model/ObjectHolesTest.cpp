// SPDX-License-Identifier: Apache-2.0
// Existing openings, and the walls that can hold them.
#include "KYCollisionBase/model/IsHoleWall.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/result/CExistingHole.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "model/HoleKind.h"
#include "support/FakeDataSource.h"
#include "support/Kinds.h"
#include "support/SceneBuilder.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using KYCOLLISION::RESULT::CExistingHole;
using Attributes = std::map<std::wstring, std::wstring>;
using HolePtr = std::shared_ptr<CExistingHole>;

const Attributes kComplete = {{L"holeshape", L"1"},
                              {L"holecenter", L"1,2,3"},
                              {L"holeelev", L"+0.900"},
                              {L"parentid", L"wall-9"}};

Attributes CompleteWith(const wchar_t* key, const wchar_t* value) {
    Attributes attributes = kComplete;
    attributes[key] = value;
    return attributes;
}

SceneBuilder SceneWith(const Attributes& attributes, const AttCategory& kind) {
    SceneBuilder scene;
    SceneComponent& door = scene.At(4, L"2F").Add(L"door-1", kind, {0, 0, 0, 1, 1, 1});
    door.Name(L"M1021").Syscode(L"code").attributes = attributes;
    return scene;
}

// The record of a component, and how often the host was asked for it.
struct Read {
    HolePtr hole;
    std::size_t callCount = 0;
};

Read ReadHole(const Attributes& attributes, const AttCategory& kind = kDoor) {
    const SceneBuilder scene = SceneWith(attributes, kind);
    FakeDataSource source(scene);
    const auto model = scene.BuildModel();
    HolePtr hole = ObjectOf(*model, L"door-1")->GetExistingHole(&source);
    return {std::move(hole), source.calls.size()};
}

HolePtr HoleOf(const Attributes& attributes, const AttCategory& kind = kDoor) {
    return ReadHole(attributes, kind).hole;
}

TEST(ExistingHole, StartsWithDefaultsAndIsCopiedWhole) {
    CExistingHole hole;
    EXPECT_EQ(hole.projId, -1);
    EXPECT_EQ(hole.holeType, -1);
    EXPECT_EQ(hole.holeShape, -1);
    EXPECT_EQ(hole.holeSize, 0);
    EXPECT_EQ(hole.holeWidth, 0);
    EXPECT_EQ(hole.holeHeight, 0);
    EXPECT_EQ(hole.parentId, L"");
    hole.projId = 3;
    hole.holeElev = L"x";
    const CExistingHole copy = hole;
    EXPECT_EQ(copy.projId, 3);
    EXPECT_EQ(copy.holeElev, L"x");
}

TEST(ExistingHole, HoldsEverythingThatIsKnownOfAnOpening) {
    const Read read = ReadHole(kComplete);
    ASSERT_TRUE(read.hole);
    const CExistingHole& hole = *read.hole;
    EXPECT_EQ(hole.projId, 4);
    EXPECT_EQ(hole.floorName, L"2F");
    EXPECT_EQ(hole.objGuid, L"door-1");
    EXPECT_EQ(hole.attInfo.Specialty, L"土建");
    EXPECT_EQ(hole.attInfo.Category, L"门.窗.洞");
    EXPECT_EQ(hole.attInfo.Subcategory, L"门");
    EXPECT_EQ(hole.attInfo.Name, L"M1021");
    EXPECT_EQ(hole.attInfo.SysCode, L"code");
    EXPECT_EQ(hole.holeType, 104);
    EXPECT_EQ(hole.holeShape, 1);
    EXPECT_EQ(hole.holeCenter, L"1,2,3");
    EXPECT_EQ(hole.holeElev, L"+0.900");
    EXPECT_EQ(hole.parentId, L"wall-9");
    EXPECT_EQ(hole.holeSize, 0);
    EXPECT_EQ(hole.holeWidth, 0);
    EXPECT_EQ(hole.holeHeight, 0);
    EXPECT_EQ(read.callCount, 5U);
}

TEST(ExistingHole, IsNoneOfAnyOtherKindAndAsksNothing) {
    const Read read = ReadHole(kComplete, {L"土建", L"门.窗.洞", L"洞"});
    EXPECT_FALSE(read.hole);
    EXPECT_EQ(read.callCount, 0U);
}

TEST(ExistingHole, IsNoneOutsideATree) {
    const ObjectModelInfo obj(boost::any(1));
    EXPECT_FALSE(obj.GetExistingHole(nullptr));
}

TEST(ExistingHole, NeedsShapeCentreElevationAndParentInThisOrder) {
    std::size_t calls = 1;
    for (const wchar_t* missing : {L"holeshape", L"holecenter", L"holeelev", L"parentid"}) {
        Attributes attributes = kComplete;
        attributes.erase(missing);
        const Read read = ReadHole(attributes);
        EXPECT_FALSE(read.hole);
        EXPECT_EQ(read.callCount, calls++);
    }
}

TEST(ExistingHole, IsNoneWithAShapeThatIsNoInteger) {
    for (const wchar_t* shape : {L"", L"round", L"99999999999"}) {
        EXPECT_FALSE(HoleOf(CompleteWith(L"holeshape", shape)));
    }
    const HolePtr hole = HoleOf(CompleteWith(L"holeshape", L" 2nd"));
    ASSERT_TRUE(hole);
    EXPECT_EQ(hole->holeShape, 2);
}

TEST(ExistingHole, ReportsAShapeThatDoesNotConvertAsMinusOne) {
    const SceneBuilder scene = SceneWith(CompleteWith(L"holeshape", L"round"), kDoor);
    FakeDataSource source(scene);
    const auto model = scene.BuildModel();
    int shape = 8;
    EXPECT_FALSE(ObjectOf(*model, L"door-1")->GetExistingHoleShape(&source, shape));
    EXPECT_EQ(shape, -1);
    shape = 8;
    EXPECT_FALSE(ObjectOf(*model, L"door-1")->GetExistingHoleShape(nullptr, shape));
    EXPECT_EQ(shape, -1);
}

TEST(ExistingHole, HasOneSizeOrWidthAndHeight) {
    const HolePtr one = HoleOf(CompleteWith(L"holesize", L"800"));
    EXPECT_EQ(one->holeSize, 800);
    EXPECT_EQ(one->holeWidth, 0);
    for (const wchar_t* text : {L"1000,2100", L"1000,2100,5"}) {
        const HolePtr two = HoleOf(CompleteWith(L"holesize", text));
        EXPECT_EQ(two->holeSize, 0);
        EXPECT_EQ(two->holeWidth, 1000);
        EXPECT_EQ(two->holeHeight, 2100);
    }
    const HolePtr none = HoleOf(CompleteWith(L"holesize", L""));
    EXPECT_EQ(none->holeSize, 0);
}

TEST(ExistingHole, ThrowsForASizeThatIsNoInteger) {
    for (const wchar_t* size : {L"wide", L",2100", L"1000,,5"}) {
        try {
            HoleOf(CompleteWith(L"holesize", size));
            FAIL() << "no exception";
        } catch (const std::invalid_argument& error) {
            EXPECT_STREQ(error.what(), "invalid stoi argument");
        }
    }
    try {
        HoleOf(CompleteWith(L"holesize", L"99999999999"));
        FAIL() << "no exception";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "stoi argument out of range");
    }
}

TEST(ExistingHole, PassesAFailureOfTheHostThrough) {
    for (int nth = 1; nth <= 5; ++nth) {
        const SceneBuilder scene = SceneWith(kComplete, kDoor);
        FakeDataSource source(scene);
        source.ThrowAt(HostCall::kAttributes, nth);
        const auto model = scene.BuildModel();
        EXPECT_THROW(ObjectOf(*model, L"door-1")->GetExistingHole(&source), std::runtime_error);
    }
}

struct KindCode {
    AttCategory category;
    int code;
};

TEST(HoleKind, KnowsEveryRowOfItsTable) {
    const KindCode rows[] = {
        {{L"土建", L"门.窗.洞", L"门"}, 104},   {{L"土建", L"门.窗.洞", L"窗"}, 105},
        {{L"土建", L"门.窗.洞", L"飘窗"}, 105}, {{L"土建", L"门.窗.洞", L"墙洞"}, 101},
        {{L"土建", L"板.楼梯", L"板洞"}, 103},  {{L"钢筋", L"墙", L"洞"}, 101},
        {{L"钢筋", L"墙", L"门洞"}, 104},       {{L"钢筋", L"墙", L"窗洞"}, 105},
        {{L"钢筋", L"墙", L"飘窗"}, 105},       {{L"钢筋", L"板", L"板洞"}, 103},
        {{L"土建", L"门.窗.洞", L"洞"}, -1},    {{L"钢筋", L"墙", L"门"}, -1},
        {{L"土建", L"墙", L"洞"}, -1},          {{L"Revit", L"门.窗.洞", L"门"}, -1},
        {{L"土建", L"门.窗.洞", L"门 "}, -1},   {{L"", L"", L""}, -1},
    };
    for (const KindCode& row : rows) {
        EXPECT_EQ(kycb::model::HoleKind(row.category), row.code);
    }
}

TEST(IsHoleWall, HoldsForWallsAndWallLikeBeamsOnly) {
    EXPECT_TRUE(IsHoleWall(L"土建", L"墙", L"砼内墙"));
    EXPECT_TRUE(IsHoleWall(L"土建", L"墙", L""));
    EXPECT_TRUE(IsHoleWall(L"土建", L"几何构件", L"几何墙"));
    EXPECT_FALSE(IsHoleWall(L"土建", L"几何构件", L"几何梁"));
    for (const wchar_t* xiaolei :
         {L"剪力墙", L"砖墙", L"人防墙", L"连梁", L"人防门楣梁", L"人防门槛梁", L"暗梁", L"过梁"}) {
        EXPECT_TRUE(IsHoleWall(L"钢筋", L"墙", xiaolei));
    }
    EXPECT_FALSE(IsHoleWall(L"钢筋", L"墙", L"飘窗"));
    EXPECT_FALSE(IsHoleWall(L"钢筋", L"墙", L""));
    EXPECT_TRUE(IsHoleWall(L"Revit", L"墙", L"墙"));
    EXPECT_FALSE(IsHoleWall(L"Revit", L"墙", L"砖墙"));
    EXPECT_TRUE(IsHoleWall(L"Tekla", L"混凝土", L"混凝土嵌板"));
    EXPECT_FALSE(IsHoleWall(L"Tekla", L"混凝土", L"墙"));
    EXPECT_FALSE(IsHoleWall(L"revit", L"墙", L"墙"));
    EXPECT_FALSE(IsHoleWall(L"暖通", L"墙", L"墙"));
}

}  // namespace
