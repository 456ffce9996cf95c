// SPDX-License-Identifier: Apache-2.0
// The cheap tests of whole meshes that most pairs of a building never get past.
#pragma once

#include "KYCollisionBase/opcode/MeshInterface.h"

#include <array>

namespace kycb::opcode {

/// A closed axis-parallel box; empty when a low end exceeds its high end.
struct Box {
    std::array<float, 3> low;
    std::array<float, 3> high;

    bool Meets(const Box& other) const {
        return low[0] <= other.high[0] && other.low[0] <= high[0] && low[1] <= other.high[1] &&
               other.low[1] <= high[1] && low[2] <= other.high[2] && other.low[2] <= high[2];
    }
};

/// A box that meets nothing and that grows to whatever is added.
Box EmptyBox();

/// The box of the finite coordinates of all vertices; empty without any.
Box BoxOf(const Opcode::MeshInterface& mesh);

/// Whether every coordinate of every vertex is finite.
bool AllVerticesFinite(const Opcode::MeshInterface& mesh);

/// Intervals along the diagonals of the axes, and an oriented box.
///
/// Both are taken over the finite vertices. The tests are conservative: they say that meshes are
/// apart only when these are, whatever the rounding.
class MeshBounds {
  public:
    /// `reach` is the largest magnitude of a coordinate.
    MeshBounds(const Opcode::MeshInterface& mesh, double reach);

    /// For meshes whose bounding boxes meet.
    bool IsApartFrom(const MeshBounds& other) const;

  private:
    // x + y, x - y, x + z, x - z, y + z, y - z: walls and runs at 45 degrees, corners that face
    // each other.
    static constexpr std::size_t kDiagonals = 6;
    using Vector = std::array<double, 3>;
    using Frame = std::array<Vector, 3>;

    void TakeDiagonals(const Opcode::MeshInterface& mesh);
    void TakeOrientedBox(const Opcode::MeshInterface& mesh, const Frame& frame);
    bool HasGapAlongDiagonals(const MeshBounds& other) const;
    bool HasGapBetweenOrientedBoxes(const MeshBounds& other) const;

    std::array<double, kDiagonals> low_;
    std::array<double, kDiagonals> high_;
    Frame axes_;  // orthonormal up to rounding
    bool isAxisParallel_;
    Vector centre_;
    Vector half_;  // half the extent along each axis
    double margin_;
};

}  // namespace kycb::opcode
