// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "SceneBuilder.h"
#include "desk/core/FloorSection.h"
#include "ifchost/IfcWorkset.h"
#include "support/TemporaryFolder.h"

using desk::Section;
using desk::SectionAbove;
using ifchost::IfcWorkset;
using ifchost::testing::SceneBuilder;
using kycbtest::TemporaryFolder;

namespace {

// A wall on each of two storeys 3 m apart; the upper one comes first.
SceneBuilder TwoStoreys(double ground) {
    SceneBuilder builder;
    builder.Storey("E1", ground + 3000).Storey("E0", ground);
    builder.Add("IfcWall").Box({0, 0, ground + 3000}, {1000, 200, ground + 6000}).On(0);
    builder.Add("IfcWall").Box({0, 0, ground}, {1000, 200, ground + 3000}).On(1);
    return builder;
}

class FloorSectionTest : public testing::Test {
  protected:
    IfcWorkset Make(const SceneBuilder& builder) {
        std::vector<ifchost::WorksetInput> inputs;
        inputs.push_back({"model.ifc", builder.Open(folder_)});
        return {std::move(inputs), ifchost::Classification::Default()};
    }

    static void ExpectSection(const std::optional<Section>& section, float bottom, float top) {
        ASSERT_TRUE(section);
        EXPECT_EQ(section->bottom, bottom);
        EXPECT_EQ(section->top, top);
    }

    TemporaryFolder folder_;
};

}  // namespace

TEST_F(FloorSectionTest, ReachesFromTheSlabToTheHeightAboveTheFloor) {
    const IfcWorkset workset = Make(TwoStoreys(0));
    ExpectSection(SectionAbove(workset, {{1, L"E1"}}, 2500), 2400, 5500);
    ExpectSection(SectionAbove(workset, {{1, L"E0"}}, 100), -600, 100);
}

TEST_F(FloorSectionTest, FallsBackToTheLowestFloor) {
    const IfcWorkset workset = Make(TwoStoreys(0));
    ExpectSection(SectionAbove(workset, std::nullopt, 1000), -600, 1000);
    ExpectSection(SectionAbove(workset, {{1, L"of another file"}}, 1000), -600, 1000);
}

TEST_F(FloorSectionTest, DoesNotExistForAModelThatIsNotOpen) {
    const IfcWorkset workset = Make(TwoStoreys(0));
    EXPECT_FALSE(SectionAbove(workset, {{2, L"E0"}}, 1000));
}

// The middle of the walls' heights, 2003 m up, is the scene's zero.
TEST_F(FloorSectionTest, CountsFromTheScenesOrigin) {
    const IfcWorkset workset = Make(TwoStoreys(2000000));
    ASSERT_EQ(workset.Origin().origin[2], 2003000);
    ExpectSection(SectionAbove(workset, {{1, L"E0"}}, 2500), -3600, -500);
}
