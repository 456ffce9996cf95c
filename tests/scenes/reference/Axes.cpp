// SPDX-License-Identifier: Apache-2.0
#include "scenes/reference/Axes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "scenes/reference/Plan.h"

namespace kycb::scenes::reference {

namespace {

constexpr double kReach = 5000.0;    // mm, of the search and of a usable distance
constexpr double kRayLength = 1e6;   // mm
constexpr double kTolerance = 1e-6;  // mm, within which points count as one
constexpr double kParallelSine = 1e-3;

// Distances (mm) closer than this are equal: points stand on a raster of 0.01 mm and axes run in
// simple directions, so real arithmetic makes two distances equal or tells them further apart.
constexpr double kRounding = 1e-7;

bool IsLess(double a, double b) {
    return a < b - kRounding;
}

struct Flat {
    double x = 0.0;
    double y = 0.0;
};

Flat operator+(const Flat& a, const Flat& b) {
    return {a.x + b.x, a.y + b.y};
}

Flat operator-(const Flat& a, const Flat& b) {
    return {a.x - b.x, a.y - b.y};
}

Flat operator*(double s, const Flat& a) {
    return {s * a.x, s * a.y};
}

double Dot(const Flat& a, const Flat& b) {
    return a.x * b.x + a.y * b.y;
}

double Cross(const Flat& a, const Flat& b) {
    return a.x * b.y - a.y * b.x;
}

double Length(const Flat& a) {
    return std::hypot(a.x, a.y);
}

Flat TurnedLeft(const Flat& a) {
    return {-a.y, a.x};
}

Flat TurnedRight(const Flat& a) {
    return {a.y, -a.x};
}

// An angle from 0 up to a whole turn.
double Normalised(double angle) {
    constexpr double turn = 2.0 * std::numbers::pi;
    const double rest = std::fmod(angle, turn);
    return rest < 0.0 ? rest + turn : rest;
}

Flat OnArc(const SceneAxis& arc, double angle) {
    return {arc.x0 + *arc.radius * std::cos(angle), arc.y0 + *arc.radius * std::sin(angle)};
}

double AngleOnArc(const SceneAxis& arc, const Flat& p) {
    return std::atan2(p.y - arc.y0, p.x - arc.x0);
}

// Whether a point of an arc's circle lies on the arc, whose ends reach `tolerance` mm further.
bool IsInSweep(const SceneAxis& arc, const Flat& p, double tolerance) {
    const double past = Normalised(AngleOnArc(arc, p) - arc.startAngle);
    if (past <= arc.sweepAngle) return true;
    return Length(p - OnArc(arc, arc.startAngle)) <= tolerance ||
           Length(p - OnArc(arc, arc.startAngle + arc.sweepAngle)) <= tolerance;
}

Flat ClosestOnLine(const SceneAxis& line, const Flat& p) {
    const Flat start{line.x0, line.y0};
    const Flat along = Flat{line.x1, line.y1} - start;
    const double t = Dot(p - start, along) / Dot(along, along);
    return start + std::clamp(t, 0.0, 1.0) * along;
}

// Seen from its centre all of an arc is equally near; its start stands for it.
Flat ClosestOnArc(const SceneAxis& arc, const Flat& p) {
    const Flat start = OnArc(arc, arc.startAngle);
    if (p.x == arc.x0 && p.y == arc.y0) return start;
    const Flat onCircle = OnArc(arc, AngleOnArc(arc, p));
    if (IsInSweep(arc, onCircle, 0.0)) return onCircle;
    const Flat end = OnArc(arc, arc.startAngle + arc.sweepAngle);
    return Length(end - p) < Length(start - p) ? end : start;
}

Flat ClosestOn(const SceneAxis& axis, const Flat& p) {
    return axis.radius ? ClosestOnArc(axis, p) : ClosestOnLine(axis, p);
}

Flat DirectionAt(const SceneAxis& axis, const Flat& point) {
    if (axis.radius) {
        const double angle = AngleOnArc(axis, point);
        return {-std::sin(angle), std::cos(angle)};
    }
    const Flat along{axis.x1 - axis.x0, axis.y1 - axis.y0};
    return (1.0 / Length(along)) * along;
}

// The one of the four right-angle turns of `d` that points closest to +y. The bounds are right
// angles and their halves in single precision.
Flat UpwardTurnOf(const Flat& d) {
    const double angle = Normalised(std::atan2(d.y, d.x));
    if (angle < 0.7853981852531433 || angle >= 5.4977874755859375) return TurnedLeft(d);
    if (angle < 2.356194496154785) return d;
    if (angle < 3.9269909858703613) return TurnedRight(d);
    return -1.0 * d;
}

// Distances along a ray at which it meets an axis, the nearest first.
std::vector<double> HitsOnLine(const Flat& p, const Flat& direction, const SceneAxis& line) {
    const Flat start{line.x0, line.y0};
    const Flat along = Flat{line.x1, line.y1} - start;
    const double sine = Cross(direction, along) / Length(along);
    if (std::abs(sine) <= kParallelSine) return {};
    const double distance = Cross(start - p, along) / Cross(direction, along);
    const double alongLine = Cross(start - p, direction) / Cross(direction, along) * Length(along);
    if (alongLine < -kTolerance || alongLine > Length(along) + kTolerance) return {};
    if (distance < -kTolerance) return {};
    return {std::max(distance, 0.0)};
}

std::vector<double> HitsOnArc(const Flat& p, const Flat& direction, const SceneAxis& arc) {
    const Flat toCentre = Flat{arc.x0, arc.y0} - p;
    const double middle = Dot(toCentre, direction);
    const double aside = std::abs(Cross(toCentre, direction));
    if (aside > *arc.radius + kTolerance) return {};
    const double half = std::sqrt(std::max(0.0, *arc.radius * *arc.radius - aside * aside));
    std::vector<double> hits;
    for (const double distance : {middle - half, middle + half}) {
        if (distance < -kTolerance) continue;
        if (!IsInSweep(arc, p + distance * direction, kTolerance)) continue;
        hits.push_back(std::max(distance, 0.0));
    }
    return hits;
}

std::vector<double> Hits(const Flat& p, const Flat& direction, const SceneAxis& axis) {
    return axis.radius ? HitsOnArc(p, direction, axis) : HitsOnLine(p, direction, axis);
}

// The nearest axis that a ray meets.
struct RayHit {
    double distance = kRayLength;
    std::wstring name;
};

RayHit Probe(const Flat& p, const Flat& direction, const std::vector<SceneAxis>& candidates) {
    RayHit best;
    for (const SceneAxis& axis : candidates) {
        for (const double distance : Hits(p, direction, axis)) {
            if (IsLess(distance, best.distance)) best = {distance, axis.name};
        }
    }
    return best;
}

std::wstring Part(const RayHit& hit, wchar_t sign) {
    return hit.name + L"(" + sign + std::to_wstring(static_cast<int>(hit.distance + kRounding)) +
           L"mm)";
}

// `plus` is the ray that leaves the point on the positive side of the axis it meets.
std::wstring PartOf(const RayHit& plus, const RayHit& minus) {
    const bool isMinusNearer = IsLess(minus.distance, plus.distance);
    if (!isMinusNearer && IsLess(plus.distance, kReach)) return Part(plus, L'+');
    if (isMinusNearer && IsLess(minus.distance, kReach)) return Part(minus, L'-');
    return L"";
}

Rect PlanOf(const SceneAxis& axis) {
    if (!axis.radius) {
        return {std::min(axis.x0, axis.x1), std::min(axis.y0, axis.y1), std::max(axis.x0, axis.x1),
                std::max(axis.y0, axis.y1)};
    }
    Rect rect;
    const auto add = [&](const Flat& p) { rect.Add({p.x, p.y, p.x, p.y}); };
    add(OnArc(axis, axis.startAngle));
    add(OnArc(axis, axis.startAngle + axis.sweepAngle));
    const double r = *axis.radius;
    for (const Flat& p : {Flat{r, 0.0}, Flat{0.0, r}, Flat{-r, 0.0}, Flat{0.0, -r}}) {
        const Flat onCircle = Flat{axis.x0, axis.y0} + p;
        if (IsInSweep(axis, onCircle, 0.0)) add(onCircle);
    }
    return rect;
}

std::vector<SceneAxis> CandidatesAround(const Flat& p, const std::vector<SceneAxis>& axes) {
    Rect root;
    std::vector<Rect> boxes;
    for (const SceneAxis& axis : axes) {
        boxes.push_back(PlanOf(axis));
        root.Add(boxes.back());
    }
    const Rect search{p.x - kReach, p.y - kReach, p.x + kReach, p.y + kReach};
    std::vector<SceneAxis> candidates;
    for (const std::size_t index : FindInPlan(root, boxes, search)) {
        candidates.push_back(axes[index]);
    }
    return candidates;
}

const SceneAxis* NearestTo(const Flat& p, const std::vector<SceneAxis>& candidates) {
    const SceneAxis* nearest = nullptr;
    double best = 1e10;
    for (const SceneAxis& axis : candidates) {
        const double distance = Length(ClosestOn(axis, p) - p);
        if (!IsLess(distance, best)) continue;
        best = distance;
        nearest = &axis;
    }
    return IsLess(best, kReach) ? nearest : nullptr;
}

}  // namespace

std::wstring AxisPosition(double x, double y, const std::vector<SceneAxis>& axes) {
    const Flat p{x, y};
    const std::vector<SceneAxis> candidates = CandidatesAround(p, axes);
    const SceneAxis* nearest = NearestTo(p, candidates);
    if (!nearest) return L"其他位置";
    const Flat u = UpwardTurnOf(DirectionAt(*nearest, ClosestOn(*nearest, p)));
    const Flat v = TurnedLeft(u);
    const std::wstring first = PartOf(Probe(p, v, candidates), Probe(p, -1.0 * v, candidates));
    const std::wstring second = PartOf(Probe(p, -1.0 * u, candidates), Probe(p, u, candidates));
    if (!first.empty() && !second.empty()) return first + L" / " + second;
    return first.empty() && second.empty() ? L"其他位置" : first + second;
}

}  // namespace kycb::scenes::reference
