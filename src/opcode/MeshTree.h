// SPDX-License-Identifier: Apache-2.0
// The hierarchy over one mesh: nodes of eight children, leaves of eight triangles.
#pragma once

#include "KYCollisionBase/opcode/MeshInterface.h"

#include <array>
#include <cstdint>
#include <cstring>
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

/// What a batch of pairs needs of one triangle, in one piece of memory.
struct alignas(16) TriangleRecord {
    // Starting opposite the longest edge. The spare places hold bounds for rounding errors: the
    // largest extent of the triangle's box, and the product of the largest components of the two
    // edges at the first vertex. The last one holds the bits of the triangle's number.
    float corner[3][4];

    static constexpr std::size_t kSpare = 3;
    static constexpr std::size_t kExtent = 0;  // the corner in whose spare place it is
    static constexpr std::size_t kEdges = 1;
    static constexpr std::size_t kId = 2;

    std::uint32_t Id() const {
        std::uint32_t id;
        std::memcpy(&id, &corner[kId][kSpare], sizeof(id));
        return id;
    }
};

struct alignas(64) Leaf {
    float low[4];
    float high[4];
    Boxes boxes;
    float vertex[3][3][kWidth];  // vertex, axis, triangle: for one triangle against eight
    // The plane normal . x = offset, and the rounding error of normal . x - offset in single
    // precision for each unit of the largest coordinate.
    float normal[3][kWidth];
    float offset[kWidth];
    float slack[kWidth];
    TriangleRecord record[kWidth];  // for eight against eight
};

/// A child: another node, a leaf, or a range of triangles that no query has reached yet.
class ChildRef {
  public:
    static ChildRef OfNode(std::uint32_t index) { return ChildRef(index); }
    static ChildRef OfLeaf(std::uint32_t index) { return ChildRef(index | kLeafBit); }
    static ChildRef Pending() { return ChildRef(kPending); }

    ChildRef() = default;
    bool IsPending() const { return value_ == kPending; }
    bool IsLeaf() const { return (value_ & kLeafBit) != 0; }
    std::uint32_t Index() const { return value_ & ~kLeafBit; }

  private:
    static constexpr std::uint32_t kLeafBit = 0x80000000U;
    static constexpr std::uint32_t kPending = 0xFFFFFFFFU;

    explicit ChildRef(std::uint32_t value) : value_(value) {}

    std::uint32_t value_;
};

/// Consecutive places of the tree's triangle order.
struct TriangleRange {
    std::uint32_t begin;
    std::uint32_t count;
};

struct alignas(32) Node {
    Boxes boxes;
    float low[4];
    float high[4];
    std::array<ChildRef, kWidth> child;
    std::array<TriangleRange, kWidth> range;
};

/// Elements that never move, in blocks of one size.
template <class T>
class BlockArray {
  public:
    /// `expected` sizes the blocks: small meshes must not pay for large ones.
    void Reserve(std::size_t expected) {
        shift_ = 0;
        while ((std::size_t{1} << shift_) < expected && shift_ < kLargestShift)
            ++shift_;
    }
    std::uint32_t Add() {
        if (size_ == blocks_.size() << shift_)
            blocks_.emplace_back(new T[std::size_t{1} << shift_]);
        return static_cast<std::uint32_t>(size_++);
    }
    T& operator[](std::uint32_t i) { return blocks_[i >> shift_][i & ((1U << shift_) - 1)]; }

  private:
    static constexpr unsigned kLargestShift = 6;

    std::vector<std::unique_ptr<T[]>> blocks_;
    std::size_t size_ = 0;
    unsigned shift_ = 0;
};

/// What a model keeps beside its mesh.
///
/// Built by the queries as they go: the bounds when two bounding boxes meet for the first time,
/// then node by node where the other mesh is near. What is built depends on the mesh alone, so
/// the order of a query's results does not depend on the queries before it.
class MeshTree {
  public:
    explicit MeshTree(const Opcode::MeshInterface& mesh);

    const Opcode::MeshInterface& Mesh() const { return *mesh_; }
    const Box& BoundingBox() const { return box_; }
    /// The largest magnitude of a finite coordinate.
    float Reach() const { return reach_; }
    const MeshBounds& Bounds();

    /// The triangles that can touch anything, in the order of the tree so far. Taken from the mesh
    /// by the first call.
    std::vector<std::uint32_t>& Order();

    ChildRef root = ChildRef::Pending();
    BlockArray<Node> nodes;
    BlockArray<Leaf> leaves;

  private:
    const Opcode::MeshInterface* mesh_;
    Box box_;
    float reach_;
    std::optional<MeshBounds> bounds_;
    std::vector<std::uint32_t> order_;
    bool ordered_ = false;
};

}  // namespace kycb::opcode
