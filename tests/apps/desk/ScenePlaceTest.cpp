// SPDX-License-Identifier: Apache-2.0
// Where the sample's clashes and openings are; its coordinates are the scene's as they are.
#include "KYCollisionBase/result/CExistingHole.h"

#include <gmock/gmock.h>

#include "SampleSession.h"
#include "desk/core/ScenePlace.h"
#include "ifchost/IfcWorkset.h"

using desk::PlaceOf;
using desk::ScenePoint;

namespace {

class ScenePlaceTest : public SampleSession {
  protected:
    std::wstring NameOf(std::optional<std::size_t> component) const {
        return component ? session_->Workset()->Components()[*component].name : std::wstring();
    }

    desk::Session::Item& PipeThroughColumn() { return Clash(L"Column F2 3/C", L"SP test line F2"); }
};

}  // namespace

TEST_F(ScenePlaceTest, HoldsTheComponentsAndThePointOfAClash) {
    Open();
    Check(WholeRequest());
    const auto place = PlaceOf(*session_, PipeThroughColumn());
    ASSERT_TRUE(place);
    EXPECT_EQ(NameOf(place->main), L"Column F2 3/C");
    EXPECT_EQ(NameOf(place->second), L"SP test line F2");
    // Axes 3 and C meet at 12000, 8000, the storey goes from 3600 to 7200; the column is 500 wide.
    EXPECT_NEAR(place->point[0], 12000, 250);
    EXPECT_NEAR(place->point[1], 8000, 250);
    EXPECT_GT(place->point[2], 3600);
    EXPECT_LT(place->point[2], 7200);
}

TEST_F(ScenePlaceTest, IsNowhereForAPositionThatIsNoPoint) {
    Open();
    Check(WholeRequest());
    desk::Session::Item& clash = PipeThroughColumn();
    clash.SetBaseInfo(clash.GetProjectA(), clash.GetFloorA(), clash.GetObjGuidA(),
                      clash.GetProjectB(), clash.GetFloorB(), clash.GetObjGuidB(), L"x,y,z");
    EXPECT_FALSE(PlaceOf(*session_, clash));
}

TEST_F(ScenePlaceTest, LacksComponentsOfModelsThatAreNotOpen) {
    Open();
    Check(WholeRequest());
    desk::Session::Item& clash = PipeThroughColumn();
    clash.SetBaseInfo(clash.GetProjectA(), clash.GetFloorA(), clash.GetObjGuidA(), 99,
                      clash.GetFloorB(), clash.GetObjGuidB(), L"1,2,3");
    const auto place = PlaceOf(*session_, clash);
    ASSERT_TRUE(place);
    EXPECT_EQ(NameOf(place->main), L"Column F2 3/C");
    EXPECT_FALSE(place->second);
    EXPECT_EQ(place->point, (ScenePoint{1, 2, 3}));
}

TEST_F(ScenePlaceTest, IsNowhereWithoutModels) {
    Open();
    Check(WholeRequest());
    const auto file = scratch_.Path() / "r.xml";
    std::string error;
    ASSERT_TRUE(session_->SaveResults(file, error)) << error;
    session_ = NewSession();
    ASSERT_TRUE(OpenResults(file).succeeded);
    EXPECT_FALSE(PlaceOf(*session_, PipeThroughColumn()));
}

TEST_F(ScenePlaceTest, HoldsTheBoxOfAnOpening) {
    Open();
    for (const auto& opening : session_->Openings()) {
        const auto place = PlaceOf(*session_, *opening);
        ASSERT_TRUE(place);
        EXPECT_EQ(NameOf(place->component), opening->attInfo.Name);
        const auto& box = session_->Workset()->Components()[place->component].box;
        EXPECT_EQ(place->min, box.min);
        EXPECT_EQ(place->max, box.max);
    }
    desk::Session::Hole elsewhere = *session_->Openings().front();
    elsewhere.projId = 99;
    EXPECT_FALSE(PlaceOf(*session_, elsewhere));
}

TEST(OpeningPlace, HasItsMiddleBetweenItsCorners) {
    const desk::OpeningPlace place{0, {0, -2, 10}, {4, 2, 11}};
    EXPECT_EQ(place.Middle(), (ScenePoint{2, 0, 10.5}));
}
