// SPDX-License-Identifier: Apache-2.0
// Triangle meshes of simple bodies, grown and shrunk exactly, and the collider's models of them.
#pragma once

#include "KYCollisionBase/opcode/IndexedTriangle.h"
#include "KYCollisionBase/opcode/Point.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace Opcode {
class Model;
}

namespace kycb::test {

using KYTOOLS::GRAPH::BoundingBox3d;

struct TestMesh {
    std::vector<IceMaths::Point> vertices;
    std::vector<IceMaths::IndexedTriangle> triangles;
};

/// What a component looks like at a body offset (mm); nothing when it has no body then.
using Body = std::function<std::optional<TestMesh>(int bodyOffset)>;

/// A solid box of 8 vertices and 12 triangles; each face moves outward by the offset. A box that is
/// shrunk past nothing has no body.
Body BoxBody(const BoundingBox3d& box);

/// An upright prism over a convex polygon, counter-clockwise seen from above; each face moves
/// outward by the offset. `count` corners give 2 * count vertices and 4 * count - 4 triangles.
Body PrismBody(std::vector<std::pair<double, double>> corners, double minZ, double maxZ);

/// The same mesh at every offset.
Body FixedBody(TestMesh mesh);

/// `count` separate triangles beside each other, in planes parallel to xy, from the origin on.
TestMesh LooseTriangles(int count);

/// A collider model of `mesh` as a data source hands it over: model, mesh interface and both arrays
/// belong to the receiver.
Opcode::Model* MakeOpcodeModel(const TestMesh& mesh);

}  // namespace kycb::test
