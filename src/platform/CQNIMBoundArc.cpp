// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMBoundArc.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace QNIM::GeometryPrimitiveResource {

namespace {

constexpr double kFullTurn = 2.0 * std::numbers::pi;

// `angle` brought into [0, 2 pi).
double Wrapped(double angle) {
    const double rest = std::fmod(angle, kFullTurn);
    return rest < 0.0 ? rest + kFullTurn : rest;
}

}  // namespace

CQNIMBoundArc::CQNIMBoundArc(const CQNIMPosition& centre, double radius, double startAngle,
                             double sweepAngle)
    : CQNIMCurve(Kind::kBoundArc),
      centre_(centre),
      radius_(radius > 0.0 ? radius : 0.0),
      startAngle_(startAngle),
      sweepAngle_(sweepAngle > 0.0 ? std::min(sweepAngle, kFullTurn) : 0.0) {}

CQNIMPosition CQNIMBoundArc::GetPtAt(double angle) const {
    return centre_ + CQNIMVector(std::cos(angle), std::sin(angle), 0.0) * radius_;
}

bool CQNIMBoundArc::IsInSweep(double dx, double dy, double angleTolerance) const {
    if (dx == 0.0 && dy == 0.0) return true;
    const double fromStart = Wrapped(std::atan2(dy, dx) - startAngle_);
    return fromStart <= sweepAngle_ + angleTolerance || fromStart >= kFullTurn - angleTolerance;
}

CQNIMPosition CQNIMBoundArc::GetClosePt(const CQNIMPosition& point) const {
    const double dx = point.GetX() - centre_.GetX();
    const double dy = point.GetY() - centre_.GetY();
    const double distance = std::hypot(dx, dy);
    if (distance == 0.0) return GetStartPt();
    if (IsInSweep(dx, dy, 0.0)) {
        return centre_ + CQNIMVector(dx / distance, dy / distance, 0.0) * radius_;
    }
    const CQNIMPosition start = GetStartPt();
    const CQNIMPosition end = GetEndPt();
    return point.DistToPt(end) < point.DistToPt(start) ? end : start;
}

CQNIMVector CQNIMBoundArc::GetTangentPtDir(const CQNIMPosition& point) const {
    CQNIMVector outward = GetClosePt(point) - centre_;
    outward.Normalise();
    return {-outward.GetY(), outward.GetX(), 0.0};
}

CQNIMBoundingBox CQNIMBoundArc::GetBoundingBox() const {
    const CQNIMPosition start = GetStartPt();
    const CQNIMPosition end = GetEndPt();
    double minX = std::min(start.GetX(), end.GetX());
    double maxX = std::max(start.GetX(), end.GetX());
    double minY = std::min(start.GetY(), end.GetY());
    double maxY = std::max(start.GetY(), end.GetY());
    if (IsInSweep(1.0, 0.0, 0.0)) maxX = centre_.GetX() + radius_;
    if (IsInSweep(-1.0, 0.0, 0.0)) minX = centre_.GetX() - radius_;
    if (IsInSweep(0.0, 1.0, 0.0)) maxY = centre_.GetY() + radius_;
    if (IsInSweep(0.0, -1.0, 0.0)) minY = centre_.GetY() - radius_;
    return {{minX, minY, centre_.GetZ()}, {maxX, maxY, centre_.GetZ()}};
}

}  // namespace QNIM::GeometryPrimitiveResource
