// SPDX-License-Identifier: Apache-2.0
#include "MovedSurface.h"

#include <array>
#include <utility>
#include <vector>

#include "BoxTree.h"
#include "DisjointSets.h"
#include "InsideQuery.h"
#include "OffsetPieces.h"
#include "SolidSurface.h"

namespace ifchost {
namespace {

/// How far a recomputed corner may be off one of its moved planes: rounding of the input, plus a
/// share of the offset for facets whose directions are known no better.
constexpr double kPlaneMissMm = 0.05;
constexpr double kPlaneMissShare = 5e-4;

/// Directions in which the planes at a vertex hold it this much less (squared) than in the firmest
/// one are free; the vertex does not move along them.
constexpr double kFreeShare = 1e-8;

/// Edges and triangles below this size say nothing by turning over.
constexpr double kTinyMm = 0.01;

/// Edges and heights that come out below this have collapsed.
constexpr double kCollapsedMm = 1e-6;

/// Surfaces that come nearer than this are taken as crossing, which only costs a rebuild.
constexpr double kTouchMm = 1e-7;

/// How far from a face its two sides are looked at.
constexpr double kProbeMm = 1e-4;

struct Eigen3 {
    std::array<double, 3> values{};
    std::array<Vec3, 3> vectors{Vec3{1, 0, 0}, Vec3{0, 1, 0}, Vec3{0, 0, 1}};
};

/// Cyclic Jacobi rotations (Golub and Van Loan, Matrix Computations, section 8.5).
Eigen3 SymmetricEigen(std::array<std::array<double, 3>, 3> m) {
    constexpr int kSweeps = 12;
    Eigen3 result;
    for (int sweep = 0; sweep < kSweeps; ++sweep) {
        for (const auto& [p, q] : {std::pair<std::size_t, std::size_t>{0, 1}, {0, 2}, {1, 2}}) {
            if (m[p][q] == 0.0) continue;
            const double theta = (m[q][q] - m[p][p]) / (2.0 * m[p][q]);
            const double root = std::abs(theta) + std::sqrt(theta * theta + 1.0);
            const double t = (theta >= 0.0 ? 1.0 : -1.0) / root;
            const double c = 1.0 / std::sqrt(t * t + 1.0);
            const double s = t * c;
            for (std::size_t k = 0; k < 3; ++k) {
                const double kp = m[k][p];
                const double kq = m[k][q];
                m[k][p] = c * kp - s * kq;
                m[k][q] = s * kp + c * kq;
            }
            for (std::size_t k = 0; k < 3; ++k) {
                const double pk = m[p][k];
                const double qk = m[q][k];
                m[p][k] = c * pk - s * qk;
                m[q][k] = s * pk + c * qk;
            }
            const Vec3 vp = result.vectors[p];
            const Vec3 vq = result.vectors[q];
            result.vectors[p] = vp * c - vq * s;
            result.vectors[q] = vp * s + vq * c;
        }
    }
    result.values = {m[0][0], m[1][1], m[2][2]};
    return result;
}

/// The smallest displacement that moves a point by `offset` along each of the unit normals, in the
/// least-squares sense when they ask for too much.
Vec3 Displacement(const std::vector<Vec3>& normals, double offset) {
    std::array<std::array<double, 3>, 3> m{};
    Vec3 sum;
    for (const Vec3& n : normals) {
        const std::array<double, 3> row{n.x, n.y, n.z};
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j)
                m[i][j] += row[i] * row[j];
        }
        sum = sum + n;
    }
    const Eigen3 eigen = SymmetricEigen(m);
    const double firmest = std::max({eigen.values[0], eigen.values[1], eigen.values[2]});
    Vec3 displacement;
    for (std::size_t i = 0; i < 3; ++i) {
        if (eigen.values[i] <= firmest * kFreeShare) continue;
        const Vec3& v = eigen.vectors[i];
        displacement = displacement + v * (offset * Dot(v, sum) / eigen.values[i]);
    }
    return displacement;
}

std::vector<std::vector<std::uint32_t>> FacesAtVertices(const SolidSurface& surface) {
    const BodyMesh& mesh = surface.Mesh();
    std::vector<std::vector<std::uint32_t>> faces(mesh.positions.size());
    for (std::uint32_t t = 0; t < mesh.triangles.size(); ++t) {
        for (const std::uint32_t v : mesh.triangles[t]) {
            std::vector<std::uint32_t>& known = faces[v];
            const std::uint32_t face = surface.FaceOf(t);
            if (std::find(known.begin(), known.end(), face) == known.end()) known.push_back(face);
        }
    }
    return faces;
}

/// Moves all vertices; false when a vertex cannot follow all its planes or goes too far.
bool MoveVertices(const SolidSurface& surface, double offset, BodyMesh& moved) {
    const double missLimit = kPlaneMissMm + kPlaneMissShare * std::abs(offset);
    const auto faces = FacesAtVertices(surface);
    std::vector<Vec3> normals;
    for (std::size_t v = 0; v < faces.size(); ++v) {
        normals.clear();
        for (const std::uint32_t face : faces[v])
            normals.push_back(surface.Plane(face).normal);
        const Vec3 displacement = Displacement(normals, offset);
        if (Length(displacement) > kMitreLimit * std::abs(offset)) return false;
        for (const Vec3& n : normals) {
            if (std::abs(Dot(n, displacement) - offset) > missLimit) return false;
        }
        moved.positions[v] = moved.positions[v] + displacement;
    }
    return true;
}

bool EdgeTurns(const SolidSurface& surface, const BodyMesh& moved, std::uint32_t h) {
    const BodyMesh& mesh = surface.Mesh();
    const std::uint32_t from = EdgeStart(mesh, h);
    const std::uint32_t to = EdgeEnd(mesh, h);
    const Vec3 after = moved.positions[to] - moved.positions[from];
    return surface.Kind(h) != EdgeKind::Flat && Dot(surface.Direction(h), after) <= kCollapsedMm;
}

double LongestEdge(const BodyMesh& mesh, std::size_t t) {
    return std::max({Length(mesh.Corner(t, 1) - mesh.Corner(t, 0)),
                     Length(mesh.Corner(t, 2) - mesh.Corner(t, 1)),
                     Length(mesh.Corner(t, 0) - mesh.Corner(t, 2))});
}

/// Twice the area of a triangle seen against `normal`.
double AreaAgainst(const BodyMesh& mesh, std::size_t t, const Vec3& normal) {
    const Vec3 a = mesh.Corner(t, 0);
    return Dot(normal, Cross(mesh.Corner(t, 1) - a, mesh.Corner(t, 2) - a));
}

bool TriangleTurns(const SolidSurface& surface, const BodyMesh& moved, std::uint32_t t) {
    const Vec3& normal = surface.PlaneOfTriangle(t).normal;
    const BodyMesh& mesh = surface.Mesh();
    const bool tiny = AreaAgainst(mesh, t, normal) <= kTinyMm * LongestEdge(mesh, t);
    return !tiny && AreaAgainst(moved, t, normal) <= kCollapsedMm * LongestEdge(moved, t);
}

bool AnythingTurns(const SolidSurface& surface, const BodyMesh& moved) {
    for (std::uint32_t t = 0; t < moved.triangles.size(); ++t) {
        if (TriangleTurns(surface, moved, t)) return true;
        for (std::uint32_t h = t * 3; h < t * 3 + 3; ++h) {
            if (EdgeTurns(surface, moved, h)) return true;
        }
    }
    return false;
}

/// Whether the segment p-q passes through the triangle or comes too near to tell.
bool SegmentMeets(const Vec3& p, const Vec3& q, const std::array<Vec3, 3>& triangle) {
    const Vec3 normal = Normalized(Cross(triangle[1] - triangle[0], triangle[2] - triangle[0]));
    const double dp = Dot(normal, p - triangle[0]);
    const double dq = Dot(normal, q - triangle[0]);
    if ((dp > kTouchMm && dq > kTouchMm) || (dp < -kTouchMm && dq < -kTouchMm)) return false;
    // Overlaps within one plane show where the border of one passes through a neighbour.
    if (std::abs(dp - dq) <= kTouchMm) return false;
    const Vec3 on = p + (q - p) * std::clamp(dp / (dp - dq), 0.0, 1.0);
    for (std::size_t k = 0; k < 3; ++k) {
        const Vec3 edge = Normalized(triangle[(k + 1) % 3] - triangle[k]);
        if (Dot(Cross(normal, edge), on - triangle[k]) < -kTouchMm) return false;
    }
    return true;
}

std::array<Vec3, 3> Corners(const BodyMesh& mesh, std::uint32_t t) {
    return {mesh.Corner(t, 0), mesh.Corner(t, 1), mesh.Corner(t, 2)};
}

/// Whether an edge of triangle `a` passes through triangle `b`; edges that start or end at a
/// common vertex meet anyway and are left out.
bool EdgesMeet(const BodyMesh& mesh, std::uint32_t a, std::uint32_t b) {
    const BodyTriangle& other = mesh.triangles[b];
    const auto shared = [&](std::uint32_t v) {
        return std::find(other.begin(), other.end(), v) != other.end();
    };
    const std::array<Vec3, 3> triangle = Corners(mesh, b);
    for (std::uint32_t h = a * 3; h < a * 3 + 3; ++h) {
        const std::uint32_t from = EdgeStart(mesh, h);
        const std::uint32_t to = EdgeEnd(mesh, h);
        if (shared(from) || shared(to)) continue;
        if (SegmentMeets(mesh.positions[from], mesh.positions[to], triangle)) return true;
    }
    return false;
}

bool TrianglesCross(const BodyMesh& mesh, std::uint32_t a, std::uint32_t b) {
    return EdgesMeet(mesh, a, b) || EdgesMeet(mesh, b, a);
}

/// Whether triangles cross that did not before the move.
bool NewCrossing(const BodyMesh& before, const BodyMesh& after) {
    std::vector<BodyBox> boxes(after.triangles.size());
    for (std::uint32_t t = 0; t < boxes.size(); ++t) {
        for (const Vec3& p : Corners(after, t))
            boxes[t].Add(p);
    }
    const BoxTree tree(boxes);
    bool found = false;
    for (std::uint32_t a = 0; a < boxes.size() && !found; ++a) {
        tree.VisitMeeting(boxes[a], [&](std::uint32_t b) {
            found = b < a && TrianglesCross(after, a, b) && !TrianglesCross(before, a, b);
            return !found;
        });
    }
    return found;
}

/// Whether some shell has other surroundings than before, as when a hollow has outgrown the solid
/// around it without their surfaces crossing any more.
bool SurroundingsChange(const BodyMesh& before, const BodyMesh& after) {
    DisjointSets shells(before.positions.size());
    for (const BodyTriangle& t : before.triangles) {
        shells.Unite(t[0], t[1]);
        shells.Unite(t[1], t[2]);
    }
    const InsideQuery queryBefore(before);
    const InsideQuery queryAfter(after);
    const auto probe = [](const BodyMesh& mesh, const InsideQuery& query, std::uint32_t t,
                          double distance) {
        const auto [a, b, c] = Corners(mesh, t);
        const Vec3 normal = Normalized(Cross(b - a, c - a));
        return query.WindingNumber((a + b + c) * (1.0 / 3.0) + normal * distance);
    };
    std::vector<bool> probed(before.positions.size(), false);
    for (std::uint32_t t = 0; t < before.triangles.size(); ++t) {
        const std::uint32_t shell = shells.Find(before.triangles[t][0]);
        if (probed[shell]) continue;
        probed[shell] = true;
        for (const double distance : {kProbeMm, -kProbeMm}) {
            if (probe(before, queryBefore, t, distance) != probe(after, queryAfter, t, distance)) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace

std::optional<BodyMesh> MoveSurface(const BodyMesh& solid, double offset) {
    const SolidSurface surface(solid);
    BodyMesh moved = solid;
    if (!MoveVertices(surface, offset, moved)) return std::nullopt;
    if (AnythingTurns(surface, moved)) return std::nullopt;
    // Growing parts may grow into one another: the union is what counts and loses nothing. What
    // shrinks through itself would leave surface where there is no body.
    if (offset < 0.0 && (NewCrossing(solid, moved) || SurroundingsChange(solid, moved))) {
        return std::nullopt;
    }
    return moved;
}

}  // namespace ifchost
