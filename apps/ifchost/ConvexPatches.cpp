// SPDX-License-Identifier: Apache-2.0
#include "ConvexPatches.h"

#include <algorithm>
#include <utility>

#include "DisjointSets.h"

namespace ifchost {
namespace {

/// Two edges that turn by less than this (sine) go straight on. A hollow corner below it takes a
/// ten-millionth of the edge's length off the polygon.
constexpr double kStraightSine = 1e-7;

/// Corners of triangles must turn by more than this to be trusted: the direction of a sliver's edge
/// is made of rounding.
constexpr double kFirmSine = 1e-4;

class PatchMaker {
  public:
    explicit PatchMaker(const SolidSurface& surface)
        : surface_(surface), patches_(surface.Mesh().triangles.size()) {
        const auto halfEdges = static_cast<std::uint32_t>(surface.Mesh().triangles.size() * 3);
        for (std::uint32_t h = 0; h < halfEdges; ++h) {
            next_.push_back(NextHalfEdge(h));
            previous_.push_back(NextHalfEdge(NextHalfEdge(h)));
        }
        isInside_.assign(halfEdges, false);
    }

    std::vector<HalfEdgeRing> Run() {
        for (const std::uint32_t h : InnerEdges())
            Join(h);
        return Rings();
    }

  private:
    /// One half-edge of each pair between two triangles of a face, the longest first.
    std::vector<std::uint32_t> InnerEdges() const {
        std::vector<std::pair<double, std::uint32_t>> edges;
        for (std::uint32_t h = 0; h < next_.size(); ++h) {
            const std::uint32_t other = surface_.Opposite(h);
            const bool within = surface_.FaceOf(h / 3) == surface_.FaceOf(other / 3);
            if (h < other && within && IsFirm(h / 3) && IsFirm(other / 3)) {
                edges.emplace_back(LengthOf(h), h);
            }
        }
        std::sort(edges.begin(), edges.end(), [](const auto& a, const auto& b) {
            return a.first != b.first ? a.first > b.first : a.second < b.second;
        });
        std::vector<std::uint32_t> inner;
        for (const auto& [length, h] : edges)
            inner.push_back(h);
        return inner;
    }

    double LengthOf(std::uint32_t h) const {
        const BodyMesh& mesh = surface_.Mesh();
        return Length(mesh.positions[EdgeEnd(mesh, h)] - mesh.positions[EdgeStart(mesh, h)]);
    }

    /// Sine of the angle by which edge `b` turns left of edge `a`, in the plane of a's face.
    double Turn(std::uint32_t a, std::uint32_t b) const {
        const Vec3& normal = surface_.PlaneOfTriangle(a / 3).normal;
        return Dot(normal, Cross(surface_.Direction(a), surface_.Direction(b)));
    }

    bool IsFirm(std::uint32_t triangle) const {
        for (std::uint32_t h = triangle * 3; h < triangle * 3 + 3; ++h) {
            if (Turn(h, NextHalfEdge(h)) < kFirmSine) return false;
        }
        return true;
    }

    /// Whether a polygon may go from edge `a` on to edge `b`.
    bool IsConvexCorner(std::uint32_t a, std::uint32_t b) const {
        const double turn = Turn(a, b);
        if (turn > kStraightSine) return true;
        return turn >= -kStraightSine && Dot(surface_.Direction(a), surface_.Direction(b)) > 0.0;
    }

    void Join(std::uint32_t h) {
        const std::uint32_t other = surface_.Opposite(h);
        if (patches_.Find(h / 3) == patches_.Find(other / 3)) return;
        if (!IsConvexCorner(previous_[h], next_[other])) return;
        if (!IsConvexCorner(previous_[other], next_[h])) return;
        Link(previous_[h], next_[other]);
        Link(previous_[other], next_[h]);
        isInside_[h] = isInside_[other] = true;
        patches_.Unite(h / 3, other / 3);
    }

    void Link(std::uint32_t before, std::uint32_t after) {
        next_[before] = after;
        previous_[after] = before;
    }

    std::vector<HalfEdgeRing> Rings() const {
        std::vector<HalfEdgeRing> rings;
        std::vector<bool> done = isInside_;
        for (std::uint32_t first = 0; first < next_.size(); ++first) {
            if (done[first]) continue;
            HalfEdgeRing& ring = rings.emplace_back();
            for (std::uint32_t h = first; !done[h]; h = next_[h]) {
                done[h] = true;
                ring.push_back(h);
            }
        }
        return rings;
    }

    const SolidSurface& surface_;
    DisjointSets patches_;
    std::vector<std::uint32_t> next_;
    std::vector<std::uint32_t> previous_;
    std::vector<bool> isInside_;  ///< per half-edge: its triangle and the opposite one are joined
};

}  // namespace

std::vector<HalfEdgeRing> ConvexPatches(const SolidSurface& surface) {
    return PatchMaker(surface).Run();
}

}  // namespace ifchost
