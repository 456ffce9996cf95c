// SPDX-License-Identifier: Apache-2.0

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SceneBuilder.h"
#include "ifchost/BodyStore.h"

namespace ifchost {
namespace {

using testing::BoxMesh;
using ::testing::HasSubstr;
using testing::PlainMesh;
using testing::SceneBuilder;
using testing::TemporaryFolder;

constexpr std::size_t kPlenty = std::size_t{1} << 30;
constexpr double kSlack = 1e-6;

class Bodies : public ::testing::Test {
  protected:
    const IfcWorkset& Make(const SceneBuilder& builder) {
        std::vector<WorksetInput> inputs;
        inputs.push_back({"f.ifc", builder.Open(folder_)});
        workset_.emplace(std::move(inputs), Classification::Default());
        return *workset_;
    }
    static void ExpectBox(const BodyMesh& mesh, const Point3& low, const Point3& high) {
        const BodyBox box = BoundingBox(mesh);
        EXPECT_NEAR(box.min.x, low[0], kSlack);
        EXPECT_NEAR(box.min.y, low[1], kSlack);
        EXPECT_NEAR(box.min.z, low[2], kSlack);
        EXPECT_NEAR(box.max.x, high[0], kSlack);
        EXPECT_NEAR(box.max.y, high[1], kSlack);
        EXPECT_NEAR(box.max.z, high[2], kSlack);
    }
    /// Turned by a quarter about z, scaled along the mesh's x axis, then moved by (5000, 0, 0).
    static std::array<double, 16> Placing(double scale) {
        return {0, -1, 0, 5000, scale, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    }

    TemporaryFolder folder_;
    std::optional<IfcWorkset> workset_;
};

TEST_F(Bodies, AreGrownAndShrunkInWorldCoordinates) {
    SceneBuilder builder;
    builder.Add("IfcWall").Mesh(BoxMesh({0, 0, 0}, {1000, 200, 300}), Placing(1));
    BodyStore store(Make(builder), kPlenty);
    ExpectBox(store.Body(0, 0), {4800, 0, 0}, {5000, 1000, 300});
    ExpectBox(store.Body(0, 50), {4750, -50, -50}, {5050, 1050, 350});
    ExpectBox(store.Body(0, -2), {4802, 2, 2}, {4998, 998, 298});
    EXPECT_TRUE(store.Notes().empty());
}

TEST_F(Bodies, ShareTheWorkOnOneShapeThatIsPlacedOftenWithoutScaling) {
    SceneBuilder builder;
    builder.Add("IfcWall");
    const auto shape = builder.AddGeometry(BoxMesh({0, 0, 0}, {1000, 200, 300}));
    builder.Instance(shape, testing::Identity());
    builder.Add("IfcWall").Instance(shape, Placing(1));
    BodyStore store(Make(builder), kPlenty);
    ExpectBox(store.Body(0, 10), {-10, -10, -10}, {1010, 210, 310});
    ExpectBox(store.Body(1, 10), {4790, -10, -10}, {5010, 1010, 310});
    EXPECT_EQ(store.MadeBodies(), 1U);
    store.Body(1, 0);
    EXPECT_EQ(store.MadeBodies(), 2U);
}

TEST_F(Bodies, AreOffsetAfterScaling) {
    SceneBuilder builder;
    builder.Add("IfcWall");
    const auto shape = builder.AddGeometry(BoxMesh({0, 0, 0}, {1000, 200, 300}));
    builder.Instance(shape, testing::Identity());
    builder.Add("IfcWall").Instance(shape, Placing(2));
    BodyStore store(Make(builder), kPlenty);
    ExpectBox(store.Body(1, 10), {4790, -10, -10}, {5010, 2010, 310});
    ExpectBox(store.Body(0, 10), {-10, -10, -10}, {1010, 210, 310});
    EXPECT_EQ(store.MadeBodies(), 2U);
}

TEST_F(Bodies, FaceOutwardWhenAShapeIsPlacedMirrored) {
    SceneBuilder builder;
    builder.Add("IfcWall").Mesh(BoxMesh({0, 0, 0}, {1000, 200, 300}),
                                {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    BodyStore store(Make(builder), kPlenty);
    const BodyMesh body = store.Body(0, 10);
    ExpectBox(body, {-1010, -10, -10}, {10, 210, 310});
    EXPECT_NEAR(SignedVolume(body), 1020.0 * 220.0 * 320.0, 1.0);
}

TEST_F(Bodies, JoinAllPiecesOfAProduct) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {100, 100, 100}).Box({500, 0, 0}, {600, 100, 100});
    BodyStore store(Make(builder), kPlenty);
    ExpectBox(store.Body(0, 10), {-10, -10, -10}, {610, 110, 110});
}

TEST_F(Bodies, ForgetTheOldestOnesAboveTheLimit) {
    SceneBuilder builder;
    for (int i = 0; i < 3; ++i)
        builder.Add("IfcWall").Box({0, 0, 0}, {100, 100, 100.0 + i});
    BodyStore store(Make(builder), 1);
    store.Body(0, 0);
    store.Body(0, 0);
    EXPECT_EQ(store.MadeBodies(), 1U);
    const std::size_t one = store.CachedBytes();
    store.Body(1, 0);
    store.Body(2, 0);
    EXPECT_EQ(store.CachedBytes(), one);
    ExpectBox(store.Body(0, 0), {0, 0, 0}, {100, 100, 100});
    EXPECT_EQ(store.MadeBodies(), 4U);
}

TEST_F(Bodies, KeepTheLatestUsedOnesWithinTheLimit) {
    SceneBuilder builder;
    for (int i = 0; i < 3; ++i)
        builder.Add("IfcWall").Box({0, 0, 0}, {100, 100, 100.0 + i});
    const IfcWorkset& workset = Make(builder);
    BodyStore probe(workset, 1);
    probe.Body(0, 0);
    BodyStore store(workset, 2 * probe.CachedBytes());
    store.Body(0, 0);
    store.Body(1, 0);
    store.Body(0, 0);
    store.Body(2, 0);  // pushes out the second wall
    store.Body(0, 0);
    EXPECT_EQ(store.MadeBodies(), 3U);
    store.Body(1, 0);
    EXPECT_EQ(store.MadeBodies(), 4U);
}

TEST_F(Bodies, ReportOpenSurfacesOncePerComponent) {
    PlainMesh open = BoxMesh({0, 0, 0}, {1000, 200, 300});
    open.indices.resize(open.indices.size() - 3);
    SceneBuilder builder;
    builder.Add("IfcWall");
    const auto shape = builder.AddGeometry(open);
    builder.Instance(shape, testing::Identity());
    builder.Add("IfcWall").Instance(shape, Placing(1));
    BodyStore store(Make(builder), kPlenty);
    EXPECT_FALSE(store.Body(0, 0).IsEmpty());
    store.Body(0, 50);
    store.Body(1, 50);
    ASSERT_EQ(store.Notes().size(), 2U);
    EXPECT_EQ(store.Notes()[0].component, 0U);
    EXPECT_EQ(store.Notes()[0].defect, BodyDefect::Open);
    EXPECT_THAT(store.Notes()[0].text, HasSubstr("open at 3 edges"));
    EXPECT_EQ(store.Notes()[1].component, 1U);
}

TEST_F(Bodies, VanishWhenTheyAreThinnerThanTheTolerance) {
    SceneBuilder builder;
    builder.Add("IfcPlate").Box({0, 0, 0}, {1000, 200, 3});
    BodyStore store(Make(builder), kPlenty);
    EXPECT_TRUE(store.Body(0, -2).IsEmpty());
    EXPECT_FALSE(store.Body(0, 0).IsEmpty());
    ASSERT_EQ(store.Notes().size(), 1U);
    EXPECT_EQ(store.Notes()[0].defect, BodyDefect::Vanished);
    EXPECT_THAT(store.Notes()[0].text, HasSubstr("shrunk by 2 mm"));
}

TEST_F(Bodies, AreNothingWithoutATriangleThatHasAnArea) {
    PlainMesh line;
    line.positions = {0, 0, 0, 100, 0, 0, 200, 0, 0};
    line.indices = {0, 1, 2};
    SceneBuilder builder;
    builder.Add("IfcWall").Mesh(line);
    BodyStore store(Make(builder), kPlenty);
    EXPECT_TRUE(store.Body(0, 0).IsEmpty());
    ASSERT_EQ(store.Notes().size(), 1U);
    EXPECT_EQ(store.Notes()[0].defect, BodyDefect::NoVolume);
}

}  // namespace
}  // namespace ifchost
