// SPDX-License-Identifier: Apache-2.0
// Tells how often a closed mesh winds around a point.
#pragma once

#include "BodyMesh.h"
#include "BoxTree.h"

namespace ifchost {

/// Winding numbers of one mesh at many points, each by a ray through a box tree. Borrows the mesh,
/// which must outlive it unchanged and be closed as a set; cracks and overlaps of rounding size do
/// no harm. Queries only read.
class InsideQuery {
  public:
    explicit InsideQuery(const BodyMesh& mesh);

    /// 0 outside; 1 inside a body that faces outward, -1 inside one that faces inward. A point on
    /// the surface may get either neighbour's answer.
    int WindingNumber(const Vec3& point) const;

    /// True when the winding number is not 0.
    bool Contains(const Vec3& point) const { return WindingNumber(point) != 0; }

  private:
    const BodyMesh& mesh_;
    BodyBox box_;
    BoxTree tree_;
};

}  // namespace ifchost
