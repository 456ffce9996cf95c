// SPDX-License-Identifier: Apache-2.0
#include "BodyRepair.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>

#include "BodyEdges.h"
#include "BoxTree.h"
#include "DisjointSets.h"
#include "InsideQuery.h"

namespace ifchost {
namespace {

/// Every pass halves the longest run of vertices on one border edge; more passes than this mean
/// that the stitching itself makes new flaws.
constexpr int kMaxStitchPasses = 32;

bool IsFinite(const Vec3& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

void DropInvalid(BodyMesh& mesh, RepairReport& report) {
    report.invalidTriangles += std::erase_if(mesh.triangles, [&](const BodyTriangle& t) {
        return std::any_of(t.begin(), t.end(), [&](std::uint32_t v) {
            return v >= mesh.positions.size() || !IsFinite(mesh.positions[v]);
        });
    });
}

/// Finds earlier points within the weld tolerance through a hash of cells twice as wide.
class WeldGrid {
  public:
    explicit WeldGrid(const std::vector<Vec3>& points) : points_(points) {}

    /// Index of the first point added within the tolerance of point `index`, or `index` itself,
    /// which is added then.
    std::uint32_t FindOrAdd(std::uint32_t index) {
        const Vec3& p = points_[index];
        std::uint32_t found = index;
        for (const double dx : {-kWeldToleranceMm, kWeldToleranceMm}) {
            for (const double dy : {-kWeldToleranceMm, kWeldToleranceMm}) {
                for (const double dz : {-kWeldToleranceMm, kWeldToleranceMm}) {
                    found = std::min(found, FirstInCell(CellOf(p + Vec3{dx, dy, dz}), p, found));
                }
            }
        }
        if (found == index) cells_.emplace(CellOf(p), index);
        return found;
    }

  private:
    using Key = std::uint64_t;

    /// Cells that share a key by chance only cost a distance test.
    static Key CellOf(const Vec3& p) {
        const auto cell = [](double value) {
            // Beyond 2^52 cells neighbours are no longer told apart, and welding means little.
            const double scaled = std::floor(value / (2.0 * kWeldToleranceMm));
            return static_cast<Key>(static_cast<std::int64_t>(std::clamp(scaled, -4e15, 4e15)));
        };
        return cell(p.x) * 0x9E3779B97F4A7C15ULL ^ cell(p.y) * 0xC2B2AE3D27D4EB4FULL ^
               cell(p.z) * 0x165667B19E3779F9ULL;
    }

    std::uint32_t FirstInCell(Key key, const Vec3& p, std::uint32_t best) const {
        const auto [first, last] = cells_.equal_range(key);
        for (auto it = first; it != last; ++it) {
            const bool near = Length(points_[it->second] - p) <= kWeldToleranceMm;
            if (near && it->second < best) best = it->second;
        }
        return best;
    }

    const std::vector<Vec3>& points_;
    std::unordered_multimap<Key, std::uint32_t> cells_;
};

/// Leaves only vertices that triangles use, each once.
void Weld(BodyMesh& mesh, RepairReport& report) {
    constexpr std::uint32_t kUnseen = ~std::uint32_t{0};
    WeldGrid grid(mesh.positions);
    std::vector<std::uint32_t> newIndex(mesh.positions.size(), kUnseen);
    std::vector<bool> used(mesh.positions.size(), false);
    for (const BodyTriangle& t : mesh.triangles) {
        for (const std::uint32_t v : t)
            used[v] = true;
    }
    std::vector<Vec3> kept;
    for (std::uint32_t v = 0; v < mesh.positions.size(); ++v) {
        if (!used[v]) continue;
        const std::uint32_t first = grid.FindOrAdd(v);
        if (first == v) {
            newIndex[v] = static_cast<std::uint32_t>(kept.size());
            kept.push_back(mesh.positions[v]);
        } else {
            newIndex[v] = newIndex[first];
            ++report.weldedVertices;
        }
    }
    for (BodyTriangle& t : mesh.triangles)
        t = {newIndex[t[0]], newIndex[t[1]], newIndex[t[2]]};
    mesh.positions = std::move(kept);
}

bool HasArea(const BodyMesh& mesh, const BodyTriangle& t) {
    if (t[0] == t[1] || t[1] == t[2] || t[2] == t[0]) return false;
    const Vec3 ab = mesh.positions[t[1]] - mesh.positions[t[0]];
    const Vec3 bc = mesh.positions[t[2]] - mesh.positions[t[1]];
    const Vec3 ca = mesh.positions[t[0]] - mesh.positions[t[2]];
    const double longest = std::max({Length(ab), Length(bc), Length(ca)});
    return Length(Cross(ab, bc)) > kZeroHeightMm * longest;
}

std::size_t DropZeroArea(BodyMesh& mesh) {
    return std::erase_if(mesh.triangles, [&](const BodyTriangle& t) { return !HasArea(mesh, t); });
}

/// Rotated so that the smallest index leads; the sense stays.
BodyTriangle LeadBySmallest(const BodyTriangle& t) {
    if (t[1] < t[0] && t[1] < t[2]) return {t[1], t[2], t[0]};
    if (t[2] < t[0] && t[2] < t[1]) return {t[2], t[0], t[1]};
    return t;
}

/// Triangles on the same three vertices.
struct TriangleStack {
    std::uint32_t first = 0;  ///< the earliest of them in the mesh
    std::size_t size = 0;
    int sense = 0;  ///< how many more turn like the ordered vertices than against them
};

std::vector<TriangleStack> FindStacks(const BodyMesh& mesh) {
    struct Entry {
        BodyTriangle key;
        std::uint32_t index;
        int sense;
    };
    std::vector<Entry> entries;
    entries.reserve(mesh.triangles.size());
    for (std::uint32_t i = 0; i < mesh.triangles.size(); ++i) {
        BodyTriangle key = LeadBySmallest(mesh.triangles[i]);
        const int sense = key[1] < key[2] ? 1 : -1;
        if (sense < 0) std::swap(key[1], key[2]);
        entries.push_back({key, i, sense});
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.key != b.key ? a.key < b.key : a.index < b.index;
    });
    std::vector<TriangleStack> stacks;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i == 0 || entries[i].key != entries[i - 1].key) stacks.push_back({entries[i].index});
        ++stacks.back().size;
        stacks.back().sense += entries[i].sense;
    }
    return stacks;
}

void DropDuplicates(BodyMesh& mesh, RepairReport& report) {
    const std::vector<TriangleStack> stacks = FindStacks(mesh);
    if (stacks.size() == mesh.triangles.size()) return;
    DisjointSets surfaces(mesh.positions.size());
    for (const BodyTriangle& t : mesh.triangles) {
        surfaces.Unite(t[0], t[1]);
        surfaces.Unite(t[1], t[2]);
    }
    const auto surfaceOf = [&](const TriangleStack& stack) {
        return surfaces.Find(mesh.triangles[stack.first][0]);
    };
    std::vector<bool> twoSided(mesh.positions.size(), true);
    for (const TriangleStack& stack : stacks) {
        if (stack.sense != 0) twoSided[surfaceOf(stack)] = false;
    }
    std::vector<bool> keep(mesh.triangles.size(), false);
    for (const TriangleStack& stack : stacks) {
        keep[stack.first] = stack.sense != 0 || twoSided[surfaceOf(stack)];
        BodyTriangle& first = mesh.triangles[stack.first];
        const BodyTriangle led = LeadBySmallest(first);
        const bool turnsAgainst = (led[1] < led[2]) != (stack.sense > 0);
        if (stack.sense != 0 && turnsAgainst) std::swap(first[1], first[2]);
    }
    std::vector<BodyTriangle> kept;
    for (std::size_t i = 0; i < keep.size(); ++i) {
        if (keep[i]) kept.push_back(mesh.triangles[i]);
    }
    report.duplicateTriangles += mesh.triangles.size() - kept.size();
    mesh.triangles = std::move(kept);
}

/// A vertex that lies on a border edge, at a share of the way along the half-edge.
struct EdgeSplit {
    std::uint32_t halfEdge = 0;
    double share = 0.0;
    std::uint32_t vertex = 0;
};

std::vector<std::uint32_t> BorderHalfEdges(const BodyMesh& mesh) {
    std::vector<std::uint32_t> border;
    ForEachEdge(mesh, [&](std::span<const EdgeUse> uses) {
        if (uses.size() == 1) border.push_back(uses[0].halfEdge);
    });
    return border;
}

std::vector<EdgeSplit> FindSplits(const BodyMesh& mesh) {
    const std::vector<std::uint32_t> border = BorderHalfEdges(mesh);
    std::vector<BodyBox> boxes(border.size());
    std::vector<std::uint32_t> vertices;
    const Vec3 margin{kWeldToleranceMm, kWeldToleranceMm, kWeldToleranceMm};
    for (std::size_t i = 0; i < border.size(); ++i) {
        const Vec3& from = mesh.positions[EdgeStart(mesh, border[i])];
        const Vec3& to = mesh.positions[EdgeEnd(mesh, border[i])];
        for (const Vec3& p : {from, to}) {
            boxes[i].Add(p - margin);
            boxes[i].Add(p + margin);
        }
        vertices.push_back(EdgeStart(mesh, border[i]));
        vertices.push_back(EdgeEnd(mesh, border[i]));
    }
    std::sort(vertices.begin(), vertices.end());
    vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
    const BoxTree tree(boxes);
    std::vector<EdgeSplit> splits;
    for (const std::uint32_t vertex : vertices) {
        const Vec3& p = mesh.positions[vertex];
        BodyBox at;
        at.Add(p);
        tree.VisitMeeting(at, [&](std::uint32_t i) {
            const Vec3& from = mesh.positions[EdgeStart(mesh, border[i])];
            const Vec3 along = mesh.positions[EdgeEnd(mesh, border[i])] - from;
            const double share = Dot(p - from, along) / Dot(along, along);
            const double slack = kWeldToleranceMm / Length(along);
            const double away = Length(p - from - along * share);
            if (share > slack && share < 1.0 - slack && away <= kWeldToleranceMm) {
                splits.push_back({border[i], share, vertex});
            }
            return true;
        });
    }
    return splits;
}

/// Splits each triangle at most once, at the middle one of the vertices on its edge, so that a
/// long row of them needs few passes and makes no fans of slivers.
std::size_t SplitTriangles(BodyMesh& mesh) {
    std::vector<EdgeSplit> splits = FindSplits(mesh);
    std::sort(splits.begin(), splits.end(), [](const EdgeSplit& a, const EdgeSplit& b) {
        return a.halfEdge != b.halfEdge ? a.halfEdge < b.halfEdge : a.share < b.share;
    });
    std::size_t done = 0;
    std::uint32_t lastTriangle = ~std::uint32_t{0};
    for (std::size_t first = 0, last = 0; first < splits.size(); first = last) {
        const std::uint32_t halfEdge = splits[first].halfEdge;
        while (last < splits.size() && splits[last].halfEdge == halfEdge)
            ++last;
        if (halfEdge / 3 == lastTriangle) continue;
        lastTriangle = halfEdge / 3;
        const std::uint32_t middle = splits[first + (last - first) / 2].vertex;
        const std::uint32_t a = EdgeStart(mesh, halfEdge);
        const std::uint32_t b = EdgeEnd(mesh, halfEdge);
        const std::uint32_t c = EdgeApex(mesh, halfEdge);
        if (middle == c) continue;
        mesh.triangles[lastTriangle] = {a, middle, c};
        mesh.triangles.push_back({middle, b, c});
        ++done;
    }
    return done;
}

void Stitch(BodyMesh& mesh, RepairReport& report) {
    for (int pass = 0; pass < kMaxStitchPasses; ++pass) {
        report.zeroAreaTriangles += DropZeroArea(mesh);
        const std::size_t split = SplitTriangles(mesh);
        report.splitEdges += split;
        if (split == 0) return;
    }
    report.zeroAreaTriangles += DropZeroArea(mesh);
}

double TriangleArea(const BodyMesh& mesh, std::size_t t) {
    const Vec3 a = mesh.Corner(t, 0);
    return Length(Cross(mesh.Corner(t, 1) - a, mesh.Corner(t, 2) - a)) / 2.0;
}

/// Edges with just two triangles, as pairs of half-edges.
std::vector<std::vector<std::uint32_t>> PlainNeighbours(const BodyMesh& mesh) {
    std::vector<std::vector<std::uint32_t>> neighbours(mesh.triangles.size());
    ForEachEdge(mesh, [&](std::span<const EdgeUse> uses) {
        if (uses.size() != 2) return;
        // The lowest bit tells whether the two triangles run along the edge in the same sense.
        const std::uint32_t same = uses[0].forward == uses[1].forward ? 1 : 0;
        neighbours[uses[0].halfEdge / 3].push_back(uses[1].halfEdge / 3 * 2 + same);
        neighbours[uses[1].halfEdge / 3].push_back(uses[0].halfEdge / 3 * 2 + same);
    });
    return neighbours;
}

/// Gives the triangles that hang together by plain edges one sense: that of the larger part of
/// their area. Returns the patch of each triangle.
std::vector<std::uint32_t> OrientPatches(BodyMesh& mesh) {
    constexpr std::uint32_t kNone = ~std::uint32_t{0};
    const auto neighbours = PlainNeighbours(mesh);
    std::vector<std::uint32_t> patch(mesh.triangles.size(), kNone);
    std::vector<bool> turned(mesh.triangles.size(), false);
    std::uint32_t patchCount = 0;
    for (std::uint32_t seed = 0; seed < mesh.triangles.size(); ++seed) {
        if (patch[seed] != kNone) continue;
        std::vector<std::uint32_t> members{seed};
        patch[seed] = patchCount;
        double balance = 0.0;
        for (std::size_t next = 0; next < members.size(); ++next) {
            const std::uint32_t t = members[next];
            balance += turned[t] ? -TriangleArea(mesh, t) : TriangleArea(mesh, t);
            for (const std::uint32_t coded : neighbours[t]) {
                const std::uint32_t other = coded / 2;
                if (patch[other] != kNone) continue;
                patch[other] = patchCount;
                turned[other] = turned[t] != (coded % 2 == 1);
                members.push_back(other);
            }
        }
        for (const std::uint32_t t : members) {
            if (turned[t] == (balance >= 0.0))
                std::swap(mesh.triangles[t][1], mesh.triangles[t][2]);
        }
        ++patchCount;
    }
    return patch;
}

/// Counts of unbalanced edges within one shell.
struct EdgeFlaws {
    std::size_t open = 0;
    std::size_t nonManifold = 0;

    bool None() const { return open == 0 && nonManifold == 0; }
};

/// Per group of triangles, the edges along which its triangles do not cancel out.
std::vector<EdgeFlaws> FindFlaws(const BodyMesh& mesh, const std::vector<std::uint32_t>& group,
                                 std::size_t groupCount) {
    std::vector<EdgeFlaws> flaws(groupCount);
    ForEachEdge(mesh, [&](std::span<const EdgeUse> uses) {
        std::vector<std::pair<std::uint32_t, int>> senses;
        for (const EdgeUse& use : uses) {
            senses.emplace_back(group[use.halfEdge / 3], use.forward ? 1 : -1);
        }
        std::sort(senses.begin(), senses.end());
        for (std::size_t first = 0, last = 0; first < senses.size(); first = last) {
            int sum = 0;
            for (; last < senses.size() && senses[last].first == senses[first].first; ++last) {
                sum += senses[last].second;
            }
            EdgeFlaws& own = flaws[senses[first].first];
            if (sum != 0) ++(last - first == 1 ? own.open : own.nonManifold);
        }
    });
    return flaws;
}

std::size_t CountOf(const std::vector<std::uint32_t>& labels) {
    return labels.empty() ? 0 : *std::max_element(labels.begin(), labels.end()) + std::size_t{1};
}

/// Joins patches along edges of more than two triangles: where body and empty space alternate
/// around the edge, those with the body between them; and patches that are not closed alone, since
/// together they may be.
DisjointSets JoinAroundEdges(const BodyMesh& mesh, const std::vector<std::uint32_t>& patch) {
    const std::size_t count = CountOf(patch);
    const std::vector<EdgeFlaws> flaws = FindFlaws(mesh, patch, count);
    DisjointSets joined(count);
    ForEachEdge(mesh, [&](std::span<const EdgeUse> uses) {
        if (uses.size() < 3) return;
        std::size_t forward = 0;
        const EdgeUse* previous = nullptr;
        for (const EdgeUse& use : uses) {
            forward += use.forward ? 1 : 0;
            if (flaws[patch[use.halfEdge / 3]].None()) continue;
            if (previous != nullptr) {
                joined.Unite(patch[previous->halfEdge / 3], patch[use.halfEdge / 3]);
            }
            previous = &use;
        }
        if (forward * 2 != uses.size()) return;
        const EdgePairs pairs = PairAroundEdge(mesh, uses);
        if (!pairs.alternating) return;
        for (const auto& [a, b] : pairs.halfEdges)
            joined.Unite(patch[a / 3], patch[b / 3]);
    });
    return joined;
}

/// The shell of each triangle, numbered in input order.
std::vector<std::uint32_t> FindShells(const BodyMesh& mesh,
                                      const std::vector<std::uint32_t>& patch) {
    constexpr std::uint32_t kNone = ~std::uint32_t{0};
    DisjointSets joined = JoinAroundEdges(mesh, patch);
    std::vector<std::uint32_t> newLabel(CountOf(patch), kNone);
    std::uint32_t next = 0;
    std::vector<std::uint32_t> shell;
    shell.reserve(patch.size());
    for (const std::uint32_t p : patch) {
        std::uint32_t& label = newLabel[joined.Find(p)];
        if (label == kNone) label = next++;
        shell.push_back(label);
    }
    return shell;
}

/// The triangles of each label as a mesh with vertices of its own.
std::vector<BodyMesh> SplitByLabel(const BodyMesh& mesh, const std::vector<std::uint32_t>& label) {
    std::vector<BodyMesh> parts(CountOf(label));
    std::vector<std::unordered_map<std::uint32_t, std::uint32_t>> newIndex(parts.size());
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t) {
        BodyMesh& part = parts[label[t]];
        BodyTriangle triangle{};
        for (std::size_t k = 0; k < 3; ++k) {
            const std::uint32_t v = mesh.triangles[t][k];
            const auto [it, isNew] = newIndex[label[t]].try_emplace(
                v, static_cast<std::uint32_t>(part.positions.size()));
            if (isNew) part.positions.push_back(mesh.positions[v]);
            triangle[k] = it->second;
        }
        part.triangles.push_back(triangle);
    }
    return parts;
}

/// Works out which closed shell lies in which, and puts cavities to their solids.
class ShellNest {
  public:
    explicit ShellNest(std::vector<BodyMesh> shells) : shells_(std::move(shells)) {
        for (const BodyMesh& shell : shells_) {
            volumes_.push_back(SignedVolume(shell));
            boxes_.push_back(BoundingBox(shell));
        }
        queries_.resize(shells_.size());
        FindParents();
    }

    std::vector<BodyMesh> MakeSolids(RepairReport& report) {
        for (std::size_t i = 0; i < shells_.size(); ++i) {
            if (volumes_[Root(i)] < 0.0) ++report.turnedShells;
        }
        std::vector<BodyMesh> solids;
        std::vector<std::size_t> solidOf(shells_.size(), kNone);
        for (const std::size_t i : LargestFirst()) {
            if (volumes_[Root(i)] < 0.0) TurnOver(shells_[i]);
            if (!IsCavity(i)) {
                solidOf[i] = solids.size();
                solids.push_back(shells_[i]);
                continue;
            }
            ++report.cavities;
            solidOf[i] = solidOf[parents_[i]];
            Append(solids[solidOf[i]], shells_[i]);
        }
        return solids;
    }

  private:
    static constexpr std::size_t kNone = ~std::size_t{0};

    bool IsCavity(std::size_t i) const { return (volumes_[i] < 0.0) != (volumes_[Root(i)] < 0.0); }

    std::size_t Root(std::size_t i) const {
        while (parents_[i] != kNone)
            i = parents_[i];
        return i;
    }

    /// Parents come before what lies in them; equal sizes keep the input order.
    std::vector<std::size_t> LargestFirst() const {
        std::vector<std::size_t> order(shells_.size());
        for (std::size_t i = 0; i < order.size(); ++i)
            order[i] = i;
        std::stable_sort(order.begin(), order.end(), [this](std::size_t a, std::size_t b) {
            return std::abs(volumes_[a]) > std::abs(volumes_[b]);
        });
        return order;
    }

    void FindParents() {
        parents_.assign(shells_.size(), kNone);
        if (shells_.size() < 2) return;
        const BoxTree tree(boxes_);
        for (std::size_t i = 0; i < shells_.size(); ++i) {
            tree.VisitMeeting(boxes_[i], [&](std::uint32_t j) {
                const bool smaller =
                    parents_[i] == kNone || std::abs(volumes_[j]) < std::abs(volumes_[parents_[i]]);
                if (j != i && smaller && LiesIn(i, j)) parents_[i] = j;
                return true;
            });
        }
    }

    bool LiesIn(std::size_t inner, std::size_t outer) {
        const bool fits = boxes_[outer].Contains(boxes_[inner].min) &&
                          boxes_[outer].Contains(boxes_[inner].max) &&
                          std::abs(volumes_[outer]) > std::abs(volumes_[inner]);
        if (!fits) return false;
        if (!queries_[outer]) queries_[outer] = std::make_unique<InsideQuery>(shells_[outer]);
        // Single vertices may lie on the outer surface; the majority of a few decides.
        const std::vector<Vec3>& points = shells_[inner].positions;
        const std::size_t step = points.size() / 5 + 1;
        int votes = 0;
        for (std::size_t v = 0; v < points.size(); v += step) {
            votes += queries_[outer]->Contains(points[v]) ? 1 : -1;
        }
        return votes > 0;
    }

    std::vector<BodyMesh> shells_;
    std::vector<double> volumes_;
    std::vector<BodyBox> boxes_;
    std::vector<std::unique_ptr<InsideQuery>> queries_;
    std::vector<std::size_t> parents_;
};

}  // namespace

RepairedBody RepairBody(const BodyMesh& input) {
    RepairedBody body;
    BodyMesh mesh = input;
    DropInvalid(mesh, body.report);
    Weld(mesh, body.report);
    body.report.zeroAreaTriangles += DropZeroArea(mesh);
    DropDuplicates(mesh, body.report);
    Stitch(mesh, body.report);
    const std::vector<std::uint32_t> shell = FindShells(mesh, OrientPatches(mesh));
    std::vector<BodyMesh> parts = SplitByLabel(mesh, shell);
    const std::vector<EdgeFlaws> flaws = FindFlaws(mesh, shell, parts.size());
    std::vector<BodyMesh> closed;
    body.report.shells = parts.size();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (flaws[i].None()) {
            closed.push_back(std::move(parts[i]));
            continue;
        }
        ++body.report.openShells;
        body.report.openEdges += flaws[i].open;
        body.report.nonManifoldEdges += flaws[i].nonManifold;
        Append(body.open, parts[i]);
    }
    body.solids = ShellNest(std::move(closed)).MakeSolids(body.report);
    return body;
}

}  // namespace ifchost
