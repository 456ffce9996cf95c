// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/opcode/Model.h"

#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "opcode/TestMesh.h"

namespace kycb::opcode::test {
namespace {

TEST(MeshInterface, ReportsWhetherBothPointersAreSet) {
    const Point vertex;
    const IndexedTriangle triangle;
    Opcode::MeshInterface mesh;
    EXPECT_TRUE(mesh.SetPointers(&triangle, &vertex));
    EXPECT_FALSE(mesh.SetPointers(nullptr, &vertex));
    EXPECT_FALSE(mesh.SetPointers(&triangle, nullptr));
    EXPECT_EQ(mesh.GetTris(), &triangle);
    EXPECT_EQ(mesh.GetVerts(), nullptr);
}

TEST(Model, HasNoMeshAndNoTreeBeforeItIsBuilt) {
    const Opcode::Model model;
    EXPECT_EQ(model.GetMeshInterface(), nullptr);
    EXPECT_EQ(model.GetTree(), nullptr);
}

TEST(Model, HasMeshAndTreeOnceBuilt) {
    const BuiltMesh box(MakeBox({0, 0, 0}, {1, 1, 1}));
    EXPECT_TRUE(box.Accepted());
    EXPECT_EQ(box.Model().GetMeshInterface(), &box.Mesh());
    EXPECT_NE(box.Model().GetTree(), nullptr);
}

TEST(Model, AcceptsAMeshWithoutTrianglesButGivesItNoTree) {
    const BuiltMesh empty(MeshData{});
    EXPECT_TRUE(empty.Accepted());
    EXPECT_EQ(empty.Model().GetTree(), nullptr);
}

TEST(Model, RefusesAnIndexOutsideTheVertexArrayButKeepsTheMeshForItsOwner) {
    MeshData data = MakeBox({0, 0, 0}, {1, 1, 1});
    data.triangles.back().mVRef[2] = 8;
    const BuiltMesh bad(data);
    EXPECT_FALSE(bad.Accepted());
    EXPECT_EQ(bad.Model().GetTree(), nullptr);
    EXPECT_EQ(bad.Model().GetMeshInterface(), &bad.Mesh());
}

TEST(Model, RefusesNoMesh) {
    Opcode::Model model;
    EXPECT_FALSE(model.Build(Opcode::OPCODECREATE{}));
    EXPECT_EQ(model.GetMeshInterface(), nullptr);
}

TEST(Model, RefusesMissingArrays) {
    const Point vertices[3];
    const IndexedTriangle triangle(0, 1, 2);
    Opcode::MeshInterface mesh;
    Opcode::OPCODECREATE create;
    create.mIMesh = &mesh;
    Opcode::Model model;
    mesh.SetNbTriangles(1);
    mesh.SetNbVertices(3);
    mesh.SetPointers(nullptr, vertices);
    EXPECT_FALSE(model.Build(create));
    mesh.SetPointers(&triangle, nullptr);
    EXPECT_FALSE(model.Build(create));
    mesh.SetPointers(&triangle, vertices);
    EXPECT_TRUE(model.Build(create));
}

TEST(Model, LosesItsTreeWhenARebuildIsRefused) {
    MeshData data = MakeBox({0, 0, 0}, {1, 1, 1});
    Opcode::MeshInterface mesh;
    mesh.SetPointers(data.triangles.data(), data.vertices.data());
    mesh.SetNbTriangles(12);
    mesh.SetNbVertices(8);
    Opcode::OPCODECREATE create;
    create.mIMesh = &mesh;
    Opcode::Model model;
    ASSERT_TRUE(model.Build(create));
    mesh.SetNbVertices(7);
    EXPECT_FALSE(model.Build(create));
    EXPECT_EQ(model.GetTree(), nullptr);
}

TEST(Model, IsDestroyedAfterItsMesh) {
    auto* triangles = new IndexedTriangle[1]{{0, 1, 2}};
    auto* vertices = new Point[3]{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    auto mesh = std::make_unique<Opcode::MeshInterface>();
    mesh->SetPointers(triangles, vertices);
    mesh->SetNbTriangles(1);
    mesh->SetNbVertices(3);
    Opcode::OPCODECREATE create;
    create.mIMesh = mesh.get();
    auto model = std::make_unique<Opcode::Model>();
    ASSERT_TRUE(model->Build(create));
    Opcode::BVTCache cache;
    cache.Model0 = model.get();
    cache.Model1 = model.get();
    Opcode::AABBTreeCollider collider;
    ASSERT_TRUE(collider.Collide(cache));
    EXPECT_EQ(collider.GetNbPairs(), 1U);
    delete[] model->GetMeshInterface()->GetTris();
    delete[] model->GetMeshInterface()->GetVerts();
    mesh.reset();
    model.reset();
}

TEST(Model, TakesVerticesThatAreNotFiniteAsTrianglesThatTouchNothing) {
    MeshData data = MakeBox({0, 0, 0}, {1, 1, 1});
    for (Point& p : data.vertices)
        p.x = std::numeric_limits<float>::quiet_NaN();
    const BuiltMesh broken(data);
    EXPECT_TRUE(broken.Accepted());
    EXPECT_NE(broken.Model().GetTree(), nullptr);
    EXPECT_TRUE(Query(broken, broken).pairs.empty());
}

}  // namespace
}  // namespace kycb::opcode::test
