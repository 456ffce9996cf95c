// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"

#include <numbers>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SceneBuilder.h"
#include "ifchost/GridAxes.h"

namespace ifchost {
namespace {

using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using ::testing::ElementsAre;
using testing::SceneBuilder;
using testing::TemporaryFolder;

class Axes : public ::testing::Test {
  protected:
    IfcWorkset Make(const std::vector<SceneBuilder>& files) {
        std::vector<WorksetInput> inputs;
        for (const SceneBuilder& file : files)
            inputs.push_back({"f.ifc", file.Open(folder_)});
        return IfcWorkset(std::move(inputs), Classification::Default());
    }
    static std::vector<std::wstring> Names(const IfcWorkset& workset, int project,
                                           const wchar_t* floor) {
        std::vector<std::wstring> names;
        for (const auto& item : AxesOfFloor(workset, project, floor))
            names.push_back(item->axisName);
        return names;
    }
    static SceneBuilder Storeys() {
        SceneBuilder builder;
        builder.Storey("E0", 0).Storey("E1", 3000).Storey("E2", 6000);
        return builder;
    }
    static SceneBuilder& Grid(SceneBuilder& builder, int storey, const char* axis) {
        builder.Add("IfcGrid").As("grid");
        return builder.Grid(
            storey,
            SceneBuilder::Json::array({SceneBuilder::LineAxis(axis, {0, 0, 500}, {0, 9000, 500})}));
    }
    static SceneBuilder Arc(const Point3& start, const Point3& middle, const Point3& end) {
        SceneBuilder builder;
        builder.Storey("E0", 0).Add("IfcGrid").As("grid");
        builder.Grid(0, {{{"name", "R"},
                          {"segments",
                           {{{"kind", "arc"},
                             {"start", start},
                             {"end", end},
                             {"middle", middle},
                             {"center", Point3{0, 0, 0}},
                             {"radius", 1000}}}}}});
        return builder;
    }
    CQNIMBoundArc OnlyArc(const SceneBuilder& builder) {
        const IfcWorkset workset = Make({builder});
        const auto items = AxesOfFloor(workset, 1, L"E0");
        EXPECT_EQ(items.size(), 1U);
        return dynamic_cast<const CQNIMBoundArc&>(*items.at(0)->axisCurve);
    }
    TemporaryFolder folder_;
};

TEST_F(Axes, AreThoseOfTheFloorsStorey) {
    SceneBuilder builder = Storeys();
    Grid(Grid(Grid(builder, 0, "A"), 1, "B"), -1, "all");
    const IfcWorkset workset = Make({builder});
    EXPECT_THAT(Names(workset, 1, L"E0"), ElementsAre(L"A"));
    EXPECT_THAT(Names(workset, 1, L"E1"), ElementsAre(L"B"));
}

TEST_F(Axes, AreThoseOfNoStoreyWhereTheFloorHasNone) {
    SceneBuilder builder = Storeys();
    Grid(Grid(builder, 0, "A"), -1, "all");
    EXPECT_THAT(Names(Make({builder}), 1, L"E2"), ElementsAre(L"all"));
}

TEST_F(Axes, AreThoseOfTheNearestStoreyOtherwise) {
    SceneBuilder builder = Storeys();
    Grid(Grid(builder, 0, "A"), 1, "B");
    EXPECT_THAT(Names(Make({builder}), 1, L"E2"), ElementsAre(L"B"));
}

TEST_F(Axes, ComeFromTheFirstFileWithAGridWhereTheOwnHasNone) {
    SceneBuilder services;
    services.Storey("Level 2", 3100);
    SceneBuilder architecture = Storeys();
    Grid(Grid(architecture, 0, "A"), 1, "B");
    SceneBuilder other = Storeys();
    Grid(other, 1, "other");
    const IfcWorkset workset = Make({services, architecture, other});
    EXPECT_THAT(Names(workset, 1, L"Level 2"), ElementsAre(L"B"));
    EXPECT_THAT(Names(workset, 3, L"E0"), ElementsAre(L"other"));
}

TEST_F(Axes, AreNoneForUnknownFloorsAndWithoutGrids) {
    SceneBuilder builder = Storeys();
    EXPECT_TRUE(Names(Make({builder}), 1, L"E0").empty());
    Grid(builder, 0, "A");
    EXPECT_TRUE(Names(Make({builder}), 1, L"E9").empty());
    EXPECT_TRUE(Names(Make({builder}), 2, L"E0").empty());
}

TEST_F(Axes, LieAtHeightZeroRelativeToTheOrigin) {
    SceneBuilder builder = Storeys();
    builder.Add("IfcWall").Box({155000000, 0, 0}, {155002000, 200, 2500});
    builder.Add("IfcGrid").As("grid");
    builder.Grid(0, SceneBuilder::Json::array({SceneBuilder::LineAxis("A", {155001500, -100, 500},
                                                                      {155001500, 9000, 500})}));
    const IfcWorkset workset = Make({builder});
    ASSERT_EQ(workset.Origin().origin, (Point3{155001000, 0, 0}));
    const auto items = AxesOfFloor(workset, 1, L"E0");
    ASSERT_EQ(items.size(), 1U);
    const auto& line = dynamic_cast<const CQNIMLineSegment&>(*items[0]->axisCurve);
    EXPECT_EQ(line.GetStartPt().GetX(), 500.0);
    EXPECT_EQ(line.GetStartPt().GetY(), -100.0);
    EXPECT_EQ(line.GetStartPt().GetZ(), 0.0);
    EXPECT_EQ(line.GetEndPt().GetY(), 9000.0);
}

TEST_F(Axes, LeavePiecesWithoutLengthOut) {
    SceneBuilder builder = Storeys();
    builder.Add("IfcGrid").As("grid");
    builder.Grid(0,
                 SceneBuilder::Json::array({SceneBuilder::LineAxis("A", {1, 2, 0}, {1, 2, 900})}));
    EXPECT_TRUE(Names(Make({builder}), 1, L"E0").empty());
}

TEST_F(Axes, KeepAnArcThatRunsCounterClockwise) {
    const auto arc = OnlyArc(Arc({1000, 0, 0}, {0, 1000, 0}, {-1000, 0, 0}));
    EXPECT_EQ(arc.GetRadius(), 1000.0);
    EXPECT_NEAR(arc.GetStartAngle(), 0.0, 1e-12);
    EXPECT_NEAR(arc.GetSweepAngle(), std::numbers::pi, 1e-12);
}

TEST_F(Axes, TurnAnArcThatRunsClockwise) {
    // From the top by way of the right to the bottom.
    const auto arc = OnlyArc(Arc({0, 1000, 0}, {1000, 0, 0}, {0, -1000, 0}));
    EXPECT_NEAR(arc.GetStartAngle(), -std::numbers::pi / 2, 1e-12);
    EXPECT_NEAR(arc.GetSweepAngle(), std::numbers::pi, 1e-12);
}

TEST_F(Axes, TellTheLongWayRoundFromTheShortOne) {
    // Three quarters, counter-clockwise from +x by way of -x to -y.
    const auto arc = OnlyArc(Arc({1000, 0, 0}, {-1000, 1e-9, 0}, {0, -1000, 0}));
    EXPECT_NEAR(arc.GetStartAngle(), 0.0, 1e-12);
    EXPECT_NEAR(arc.GetSweepAngle(), 1.5 * std::numbers::pi, 1e-12);
}

TEST_F(Axes, CloseAWholeCircle) {
    const auto arc = OnlyArc(Arc({1000, 0, 0}, {-1000, 0, 0}, {1000, 0, 0}));
    EXPECT_NEAR(arc.GetSweepAngle(), 2.0 * std::numbers::pi, 1e-12);
}

}  // namespace
}  // namespace ifchost
