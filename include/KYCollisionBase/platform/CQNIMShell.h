// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMPosition.h"

#include <vector>

namespace QNIM::GeometryPrimitiveResource {

/// A shell of polygons over shared points.
class CQNIMShell {
  public:
    /// Appends a point (mm); points are numbered from 0 in the order of the calls.
    void AddPts(const CQNIMPosition& point) { points_.push_back(point); }

    /// Appends one number of the face list: the corner count of a face, then its point numbers.
    void AddFaceIndex(int index) { faceIndices_.push_back(index); }

    const std::vector<CQNIMPosition>& GetPts() const { return points_; }
    const std::vector<int>& GetFaceIndices() const { return faceIndices_; }

  private:
    std::vector<CQNIMPosition> points_;
    std::vector<int> faceIndices_;
};

}  // namespace QNIM::GeometryPrimitiveResource
