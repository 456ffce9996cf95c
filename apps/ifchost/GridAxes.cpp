// SPDX-License-Identifier: Apache-2.0
#include "GridAxes.h"

#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <utility>

#include "HostText.h"

namespace ifchost {
namespace {

using KYCOLLISION::LOGIC::SQNGIAxisItem;
using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMCurve;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

constexpr double kFullTurn = 2.0 * std::numbers::pi;
// Ends closer than this (mm) are one point.
constexpr double kSamePoint = 1e-3;

double Turn(double from, double to) {
    const double turn = std::fmod(to - from, kFullTurn);
    return turn < 0.0 ? turn + kFullTurn : turn;
}

double AngleOf(const Point3& centre, const Point3& point) {
    return std::atan2(point[1] - centre[1], point[0] - centre[0]);
}

double PlanDistance(const Point3& a, const Point3& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1]);
}

std::unique_ptr<CQNIMCurve> Line(const Point3& start, const Point3& end) {
    if (PlanDistance(start, end) < kSamePoint) return nullptr;
    return std::make_unique<CQNIMLineSegment>(CQNIMPosition(start[0], start[1], 0.0),
                                              CQNIMPosition(end[0], end[1], 0.0));
}

// Arcs run counter-clockwise, so one that runs the other way starts at its end.
std::unique_ptr<CQNIMCurve> Arc(const Point3& centre, double radius, const Point3& start,
                                const Point3& middle, const Point3& end) {
    if (radius < kSamePoint) return nullptr;
    const CQNIMPosition position(centre[0], centre[1], 0.0);
    const double from = AngleOf(centre, start);
    const double to = AngleOf(centre, end);
    if (PlanDistance(start, end) < kSamePoint && PlanDistance(start, middle) > kSamePoint) {
        return std::make_unique<CQNIMBoundArc>(position, radius, from, kFullTurn);
    }
    const bool forward = Turn(from, AngleOf(centre, middle)) <= Turn(from, to);
    const double sweep = forward ? Turn(from, to) : Turn(to, from);
    if (sweep * radius < kSamePoint) return nullptr;
    return std::make_unique<CQNIMBoundArc>(position, radius, forward ? from : to, sweep);
}

std::unique_ptr<CQNIMCurve> CurveOf(const IfcWorkset& workset, const SceneAxisSegment& segment) {
    const Point3 start = workset.ToLocal(segment.start);
    const Point3 end = workset.ToLocal(segment.end);
    if (segment.kind == SceneAxisSegment::Kind::Line) return Line(start, end);
    return Arc(workset.ToLocal(segment.center), segment.radius, start,
               workset.ToLocal(segment.middle), end);
}

// The storey whose grids serve the height: kNoIndex for grids of no storey. Precondition: the
// package has grids.
std::int32_t ServingStorey(const ScenePackage& package, std::int32_t storey, double under) {
    const auto has = [&package](std::int32_t wanted) {
        return std::any_of(package.Grids().begin(), package.Grids().end(),
                           [wanted](const SceneGrid& grid) { return grid.storey == wanted; });
    };
    if (storey != kNoIndex && has(storey)) return storey;
    if (has(kNoIndex)) return kNoIndex;
    std::int32_t nearest = kNoIndex;
    double best = std::numeric_limits<double>::infinity();
    for (const SceneGrid& grid : package.Grids()) {
        const auto& other = package.Storeys()[static_cast<std::size_t>(grid.storey)];
        const double distance = std::abs(other.baseZ - under);
        if (distance < best) {
            best = distance;
            nearest = grid.storey;
        }
    }
    return nearest;
}

const WorksetProject* FirstWithGrids(const IfcWorkset& workset) {
    for (const WorksetProject& project : workset.Projects()) {
        if (!project.package.Grids().empty()) return &project;
    }
    return nullptr;
}

}  // namespace

std::vector<std::unique_ptr<SQNGIAxisItem>> AxesOfFloor(const IfcWorkset& workset, int projectId,
                                                        std::wstring_view floorName) {
    std::vector<std::unique_ptr<SQNGIAxisItem>> items;
    const WorksetProject* project = workset.Project(projectId);
    if (project == nullptr) return items;
    const auto floor =
        std::find_if(project->floors.begin(), project->floors.end(),
                     [floorName](const WorksetFloor& f) { return f.name == floorName; });
    if (floor == project->floors.end()) return items;
    const bool own = !project->package.Grids().empty();
    const WorksetProject* source = own ? project : FirstWithGrids(workset);
    if (source == nullptr) return items;
    const std::int32_t storey =
        ServingStorey(source->package, own ? floor->storey : kNoIndex, floor->under);
    for (const SceneGrid& grid : source->package.Grids()) {
        if (grid.storey != storey) continue;
        for (const SceneGridAxis& axis : grid.axes) {
            for (const SceneAxisSegment& segment : axis.segments) {
                auto curve = CurveOf(workset, segment);
                if (!curve) continue;
                items.push_back(std::make_unique<SQNGIAxisItem>());
                items.back()->axisName = FromUtf8(axis.name);
                items.back()->axisCurve = std::move(curve);
            }
        }
    }
    return items;
}

}  // namespace ifchost
