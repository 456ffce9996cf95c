// SPDX-License-Identifier: Apache-2.0
// The hierarchy over one mesh: leaves of eight triangles along a space-filling curve, and above
// them blocks of eight boxes each. Nothing points anywhere: places follow from numbers.
#pragma once

#include "KYCollisionBase/opcode/MeshInterface.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "opcode/MeshBounds.h"

namespace kycb::opcode {

/// Children of a node, triangles of a leaf. Fixed for every instruction set, so that all walk the
/// same tree in the same order.
inline constexpr std::size_t kWidth = 8;

/// Eight boxes side by side; places not in use hold boxes that meet nothing.
struct alignas(32) Boxes {
    float low[3][kWidth];
    float high[3][kWidth];
};

/// Eight triangles side by side. The corners in places not in use are not numbers, so that every
/// comparison with them fails.
struct alignas(64) Leaf {
    // Corner, axis, triangle. Each triangle starts with the corner opposite its longest edge.
    float vertex[3][3][kWidth];
    // The plane normal . x = offset, and the rounding error of normal . x - offset in single
    // precision for each unit of the largest coordinate.
    float normal[3][kWidth];
    float offset[kWidth];
    float slack[kWidth];
    float id[kWidth];  // the bits of the triangles' numbers, which lanes of floats carry about
    // A direction across the patch that the triangles make, its largest component 1, and between
    // which values along it they lie, up to rounding.
    float patchNormal[3];
    float patchLow;
    float patchHigh;
    bool hasPatch;  // whether they are thin enough along it for a test to pay
};

/// A leaf or a block of boxes, by its level and its number there. Leaves are level 0.
struct TreePlace {
    std::uint32_t level;
    std::uint32_t index;

    bool IsLeaf() const { return level == 0; }
    TreePlace Parent() const { return {level + 1, index / std::uint32_t{kWidth}}; }
    TreePlace Child(unsigned place) const {
        return {level - 1, index * std::uint32_t{kWidth} + place};
    }
};

/// What a model keeps beside its mesh.
///
/// Made by the queries as they go: the bounds when two bounding boxes meet for the first time, the
/// boxes when the bounds do too, and the contents of a leaf when another mesh comes near it. What
/// is made depends on the mesh alone, so the order of a query's results does not depend on the
/// queries before it.
class MeshTree {
  public:
    explicit MeshTree(const Opcode::MeshInterface& mesh);

    const Opcode::MeshInterface& Mesh() const { return *mesh_; }
    const Box& BoundingBox() const { return box_; }
    /// The largest magnitude of a finite coordinate.
    float Reach() const { return reach_; }
    const MeshBounds& Bounds();

    /// Sorts the triangles that can touch anything into leaves, and makes the boxes above them.
    /// Only the first call does anything.
    /// @return whether there are such triangles; nothing below may be called otherwise.
    bool Arrange();

    TreePlace Root() const { return {rootLevel_, 0}; }
    /// The boxes of the children of a place that is no leaf.
    const Boxes& ChildBoxes(TreePlace place) const {
        return blocks_[firstBlock_[place.level] + place.index];
    }

    std::uint32_t LeafCount() const {
        return static_cast<std::uint32_t>((order_.size() + kWidth - 1) / kWidth);
    }
    /// Memory for the leaf; only what `IsFilled` says is filled may be read.
    Leaf& LeafAt(std::uint32_t index) { return leaves_[index]; }
    bool IsFilled(std::uint32_t leaf) const {
        return (filled_[leaf / 64] >> (leaf % 64) & 1U) != 0;
    }
    void SetFilled(std::uint32_t leaf) { filled_[leaf / 64] |= std::uint64_t{1} << (leaf % 64); }
    /// The triangles of a leaf, and how many of them there are.
    const std::uint32_t* TrianglesOf(std::uint32_t leaf) const {
        return order_.data() + std::size_t{leaf} * kWidth;
    }
    std::uint32_t TriangleCount(std::uint32_t leaf) const {
        const std::size_t rest = order_.size() - std::size_t{leaf} * kWidth;
        return static_cast<std::uint32_t>(rest < kWidth ? rest : kWidth);
    }

  private:
    // Leaves, as many levels of blocks as 2^29 leaves need, and the block with the box of the
    // whole.
    static constexpr std::size_t kMostLevels = 12;

    void TakeTriangles();
    void MakeBlocks();

    const Opcode::MeshInterface* mesh_;
    Box box_;
    float reach_;
    bool arranged_ = false;
    std::uint32_t rootLevel_ = 0;
    std::optional<MeshBounds> bounds_;
    std::vector<std::uint32_t> order_;
    std::unique_ptr<Leaf[]> leaves_;
    std::vector<std::uint64_t> filled_;
    // Level by level, the boxes of leaves first.
    std::vector<Boxes> blocks_;
    std::array<std::uint32_t, kMostLevels> firstBlock_{};
};

}  // namespace kycb::opcode
