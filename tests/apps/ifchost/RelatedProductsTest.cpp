// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SceneBuilder.h"
#include "ifchost/RelatedProducts.h"

namespace ifchost {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::SceneBuilder;
using testing::TemporaryFolder;

class Related : public ::testing::Test {
  protected:
    const ScenePackage& Open(const SceneBuilder& builder) {
        package_.emplace(builder.Open(folder_));
        return *package_;
    }
    TemporaryFolder folder_;
    std::optional<ScenePackage> package_;
};

TEST_F(Related, AreAFillingItsOpeningAndItsHost) {
    SceneBuilder builder;
    builder.Add("IfcWall").Add("IfcOpeningElement").As("opening").Add("IfcDoor").Add("IfcWall");
    builder.Relate("voids", 1, 0).Relate("fills", 1, 2);
    const RelatedProducts related(Open(builder));
    EXPECT_THAT(related.Objects(0), ElementsAre(1, 2));
    EXPECT_THAT(related.Objects(2), ElementsAre(0, 1));
    EXPECT_THAT(related.Objects(3), IsEmpty());
    EXPECT_EQ(related.HostOf(2), 0);
    EXPECT_EQ(related.HostOf(1), 0);
    EXPECT_EQ(related.HostOf(0), kNoIndex);
    EXPECT_EQ(related.OpeningOf(2), 1);
    EXPECT_EQ(related.OpeningOf(1), kNoIndex);
}

TEST_F(Related, ArePartsOfOneAssemblyAndWhatTheyArePartOf) {
    SceneBuilder builder;
    builder.Add("IfcElementAssembly").Add("IfcBeam").PartOf(0).Add("IfcPlate").PartOf(0);
    builder.Add("IfcFastener").PartOf(1).Add("IfcBeam");
    const RelatedProducts related(Open(builder));
    EXPECT_THAT(related.Objects(1), ElementsAre(0, 2));
    EXPECT_THAT(related.Objects(3), ElementsAre(0, 1));
    EXPECT_THAT(related.Objects(4), IsEmpty());
}

TEST_F(Related, IncludeThePartsOfAHost) {
    SceneBuilder builder;
    builder.Add("IfcWall").Add("IfcBuildingElementPart").PartOf(0);
    builder.Add("IfcOpeningElement").As("opening").Add("IfcDoor");
    builder.Add("IfcPlate").PartOf(3);
    builder.Relate("voids", 2, 0).Relate("fills", 2, 3);
    const RelatedProducts related(Open(builder));
    EXPECT_THAT(related.Objects(3), ElementsAre(0, 1, 2));
    // The door's parts belong with the wall's layers as the door does with the wall.
    EXPECT_THAT(related.Objects(4), ElementsAre(0, 1, 2, 3));
}

TEST_F(Related, AreCoveringsAndWhatTheyCover) {
    SceneBuilder builder;
    builder.Add("IfcDuctSegment").Add("IfcCovering");
    builder.Relate("coverings", 0, 1);
    const RelatedProducts related(Open(builder));
    EXPECT_THAT(related.Objects(0), ElementsAre(1));
    EXPECT_THAT(related.Objects(1), ElementsAre(0));
    EXPECT_THAT(related.CoveringsOf(0), ElementsAre(1));
    EXPECT_THAT(related.CoveringsOf(1), IsEmpty());
}

TEST_F(Related, AreJoinedWallsAsObjectsAndConnectedRunsAsFittings) {
    SceneBuilder builder;
    builder.Add("IfcWall").Add("IfcWall");
    builder.Add("IfcPipeSegment").Add("IfcPipeFitting").Add("IfcPipeSegment").Add("IfcFastener");
    builder.Connect(0, 1, "path").Connect(2, 3, "port").Connect(3, 4, "element");
    builder.Connect(4, 5, "realizing");
    const RelatedProducts related(Open(builder));
    EXPECT_THAT(related.Objects(0), ElementsAre(1));
    EXPECT_THAT(related.Fittings(0), IsEmpty());
    EXPECT_THAT(related.Fittings(3), ElementsAre(2, 4));
    EXPECT_THAT(related.Fittings(4), ElementsAre(3, 5));
    EXPECT_THAT(related.Objects(3), IsEmpty());
}

TEST_F(Related, KnowThePortsOfAProduct) {
    SceneBuilder builder;
    builder.Add("IfcPipeSegment").Add("IfcDistributionPort").As("port").PartOf(0);
    builder.Port(1, 0);
    const RelatedProducts related(Open(builder));
    EXPECT_THAT(related.PortsOf(0), ElementsAre(1));
    // A port is no part of the body.
    EXPECT_THAT(related.Objects(0), IsEmpty());
}

TEST_F(Related, SurviveAssembliesThatGoInACircle) {
    SceneBuilder builder;
    builder.Add("IfcBeam").With("parent", 1).Add("IfcBeam").With("parent", 0);
    builder.Add("IfcBeam");
    builder.Connect(0, 2, "element");
    const RelatedProducts related(Open(builder));
    EXPECT_THAT(related.Objects(0), ElementsAre(1));
    EXPECT_THAT(related.Fittings(2), ElementsAre(0, 1));
}

}  // namespace
}  // namespace ifchost
