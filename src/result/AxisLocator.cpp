// SPDX-License-Identifier: Apache-2.0
#include "result/AxisLocator.h"

#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMCurveAlgorithm.h"
#include "KYCollisionBase/platform/CQNIMGeoModelConfig.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "platform/Text.h"

namespace kycb {

const wchar_t* const kOtherPosition = L"其他位置";

namespace {

using KYCOLLISION::LOGIC::SQNGIAxisItem;
using KYTOOLS::GRAPH::BoundingBox2d;
using QNIM::CQNIMGeoModelConfig;
using QNIM::ALGORITHM::CQNIMCurveAlgorithm;
using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMCurve;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using QNIM::GeometryPrimitiveResource::CQNIMVector;

// An axis farther away than this says nothing about a point (mm).
constexpr double kReach = 5000.0;
// Length of the probe rays, and the distance of an axis that none has met yet (mm).
constexpr double kRayLength = 1e6;
constexpr double kNoAxisYet = 1e10;

// A ray and an axis closer to parallel than this do not cross anywhere useful (sine).
constexpr double kParallelTolerance = 0.001;

// Bounds between the directions of an axis and its turn towards +y (radians): pi/4, 3pi/4, 5pi/4,
// 7pi/4 and 2pi as floats. Their excess over the exact values is what keeps the diagonals, whose
// angles carry the rounding of doubles only, on one side.
constexpr double kEighthTurn = 0.7853981852531433;
constexpr double kThreeEighths = 2.356194496154785;
constexpr double kFiveEighths = 3.9269909858703613;
constexpr double kSevenEighths = 5.4977874755859375;
constexpr double kFullTurn = 6.2831854820251465;
constexpr double kRightAngle = 1.5707963705062866;

// Distances that differ by less are one distance (mm). The arithmetic on 100 m axes is off by
// 1e-11 mm, on coordinates of 1000 km by 1e-7 mm. Not wider than that calls for: axes that meet the
// raster at a slight angle have true distances of 0.9999995 mm.
constexpr double kSettled = 2e-7;

// A distance off a whole millimetre by no more than rounding is that millimetre: 1249.9999999999998
// must neither print as 1249 nor count as nearer than 1250.
double Settle(double distance) {
    const double whole = std::nearbyint(distance);
    return std::abs(distance - whole) <= kSettled ? whole : distance;
}

// Strictly, with equal distances not told apart by their rounding.
bool IsNearer(double distance, double other) {
    return distance < other - kSettled;
}

std::vector<SQNGIAxisItem*> FindCandidates(const CQNIMPosition& p, const AxisTree& tree) {
    std::vector<SQNGIAxisItem*> candidates;
    tree.Query(
        BoundingBox2d(p.GetX() - kReach, p.GetY() - kReach, p.GetX() + kReach, p.GetY() + kReach),
        candidates);
    std::erase_if(candidates, [](const SQNGIAxisItem* axis) { return !axis || !axis->axisCurve; });
    return candidates;
}

struct NearestAxis {
    const CQNIMCurve* curve = nullptr;
    CQNIMPosition closest;
    double distance = kNoAxisYet;
};

NearestAxis FindNearest(const CQNIMPosition& p, const std::vector<SQNGIAxisItem*>& candidates) {
    NearestAxis nearest;
    for (const SQNGIAxisItem* axis : candidates) {
        CQNIMPosition closest;
        if (!CQNIMCurveAlgorithm::GetClosePtOnCurve(p, *axis->axisCurve, closest)) continue;
        const double distance = Settle(p.DistToPt(closest));
        if (IsNearer(distance, nearest.distance)) {
            nearest = {axis->axisCurve.get(), closest, distance};
        }
    }
    return nearest;
}

CQNIMVector DirectionOf(const NearestAxis& nearest) {
    CQNIMVector direction;
    if (nearest.curve->GetKind() == CQNIMCurve::Kind::kLineSegment) {
        const auto& segment = static_cast<const CQNIMLineSegment&>(*nearest.curve);
        direction = segment.GetEndPt() - segment.GetStartPt();
    } else if (nearest.curve->GetKind() == CQNIMCurve::Kind::kBoundArc) {
        direction =
            static_cast<const CQNIMBoundArc&>(*nearest.curve).GetTangentPtDir(nearest.closest);
    }
    direction.Normalise();
    return direction;
}

// Of `direction` and its three right-angle turns the one that points closest to +y.
CQNIMVector TurnedTowardsY(const CQNIMVector& direction) {
    const double angle = CQNIMVector::XAxis.GetRotateAngle(direction, CQNIMVector::ZAxis);
    if ((angle >= 0.0 && angle < kEighthTurn) || (angle >= kSevenEighths && angle <= kFullTurn)) {
        return direction.RotateByAxis(kRightAngle, CQNIMVector::ZAxis);
    }
    if (angle >= kEighthTurn && angle < kThreeEighths) return direction;
    if (angle >= kThreeEighths && angle < kFiveEighths) {
        return direction.RotateByAxis(-kRightAngle, CQNIMVector::ZAxis);
    }
    if (angle >= kFiveEighths && angle < kSevenEighths) return -direction;
    return {};
}

// A ray from the point, with the nearest axis that it has met so far.
struct Probe {
    Probe(const CQNIMPosition& from, const CQNIMVector& direction)
        : ray(from, from + direction * kRayLength) {}

    void Try(const SQNGIAxisItem& axis) {
        if (CQNIMCurveAlgorithm::IsCurveParallel(ray, *axis.axisCurve, kParallelTolerance, false)) {
            return;
        }
        const std::optional<double> hit = HitDistance(*axis.axisCurve);
        if (hit && IsNearer(*hit, distance)) {
            distance = *hit;
            nearest = &axis;
        }
    }

    CQNIMLineSegment ray;
    double distance = kRayLength;
    const SQNGIAxisItem* nearest = nullptr;

  private:
    std::optional<double> HitDistance(const CQNIMCurve& curve) const {
        const CQNIMPosition& from = ray.GetStartPt();
        CQNIMPosition first;
        CQNIMPosition second;
        const int hits = CQNIMCurveAlgorithm::IntersectTwoCurve(ray, curve, first, second, 0, 0,
                                                                CQNIMGeoModelConfig::getabs());
        if (hits < 1) return std::nullopt;
        if (hits == 1) return Settle(from.DistToPt(first));
        if (hits == 2) return Settle(std::min(from.DistToPt(first), from.DistToPt(second)));
        return 0.0;  // ray and axis share a stretch, which holds the point
    }
};

std::wstring Part(const Probe& probe, const wchar_t* sign) {
    return probe.nearest->axisName + sign + text::FromInt(static_cast<int>(probe.distance)) +
           L"mm)";
}

// What one pair of opposite rays found. `plusSide` is the ray that leads from the plus side of an
// axis to the axis; it wins a tie.
std::wstring DescribePair(const Probe& plusSide, const Probe& minusSide) {
    if (!IsNearer(minusSide.distance, plusSide.distance)) {
        return plusSide.distance < kReach ? Part(plusSide, L"(+") : std::wstring();
    }
    return minusSide.distance < kReach ? Part(minusSide, L"(-") : std::wstring();
}

}  // namespace

std::wstring LocateAmongAxes(const CQNIMPosition& point, const AxisTree& tree) {
    const std::vector<SQNGIAxisItem*> candidates = FindCandidates(point, tree);
    const NearestAxis nearest = FindNearest(point, candidates);
    if (!nearest.curve || nearest.distance >= kReach) return kOtherPosition;

    // The right angle is stated as a float, which is 4e-8 rad more than a right angle. Rays tilted
    // by that much would meet a slanting axis up to half a micrometre off, and the two sides of a
    // symmetrical grid at different distances; RotateByAxis turns by the right angle that is meant.
    const CQNIMVector up = TurnedTowardsY(DirectionOf(nearest));
    const CQNIMVector left = up.RotateByAxis(kRightAngle, CQNIMVector::ZAxis);
    std::array<Probe, 4> probes = {Probe(point, left), Probe(point, -left), Probe(point, up),
                                   Probe(point, -up)};
    for (const SQNGIAxisItem* axis : candidates) {
        for (Probe& probe : probes)
            probe.Try(*axis);
    }

    const std::wstring across = DescribePair(probes[0], probes[1]);
    const std::wstring along = DescribePair(probes[3], probes[2]);
    if (!across.empty() && !along.empty()) return across + L" / " + along;
    if (across.empty() && along.empty()) return kOtherPosition;
    return across.empty() ? along : across;
}

}  // namespace kycb
