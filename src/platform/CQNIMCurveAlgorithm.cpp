// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMCurveAlgorithm.h"

#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"

#include <algorithm>
#include <cmath>

namespace QNIM::ALGORITHM {

using GeometryPrimitiveResource::CQNIMBoundArc;
using GeometryPrimitiveResource::CQNIMCurve;
using GeometryPrimitiveResource::CQNIMLineSegment;
using GeometryPrimitiveResource::CQNIMPosition;
using GeometryPrimitiveResource::CQNIMVector;

namespace {

// A displacement seen from above.
struct Plan {
    double x;
    double y;
};

Plan Between(const CQNIMPosition& from, const CQNIMPosition& to) {
    return {to.GetX() - from.GetX(), to.GetY() - from.GetY()};
}

double Cross(Plan a, Plan b) {
    return a.x * b.y - a.y * b.x;
}
double Dot(Plan a, Plan b) {
    return a.x * b.x + a.y * b.y;
}
double Length(Plan a) {
    return CQNIMVector(a.x, a.y, 0.0).Length();
}

// A segment seen from above, as a start, a unit direction and a length.
struct Track {
    explicit Track(const CQNIMLineSegment& segment) : start(segment.GetStartPt()) {
        const Plan span = Between(start, segment.GetEndPt());
        length = Length(span);
        if (length > 0.0) direction = {span.x / length, span.y / length};
    }

    CQNIMPosition At(double distance) const {
        const double inside = std::clamp(distance, 0.0, length);
        return start + CQNIMVector(direction.x * inside, direction.y * inside, 0.0);
    }
    bool Reaches(double distance, double tolerance) const {
        return distance >= -tolerance && distance <= length + tolerance;
    }

    CQNIMPosition start;
    Plan direction{0.0, 0.0};
    double length = 0.0;
};

// What two curves share, as IntersectTwoCurve reports it.
struct Hits {
    int count = 0;
    CQNIMPosition first;
    CQNIMPosition second;

    void Add(const CQNIMPosition& point) { (count++ == 0 ? first : second) = point; }
};

// One hit, `hit`, when `point` lies on the track.
Hits MeetAtPoint(const Track& track, const CQNIMPosition& point, const CQNIMPosition& hit,
                 double tolerance) {
    const Plan toPoint = Between(track.start, point);
    const CQNIMPosition nearest = track.At(Dot(toPoint, track.direction));
    Hits hits;
    if (Length(Between(nearest, point)) <= tolerance) hits.Add(hit);
    return hits;
}

// Both tracks run in one direction or opposite ones to within the tolerance over their lengths.
Hits MeetAlongside(const Track& a, const Track& b, double tolerance) {
    Hits hits;
    const Plan offset = Between(a.start, b.start);
    if (!(std::abs(Cross(a.direction, offset)) <= tolerance)) return hits;
    const double from = Dot(offset, a.direction);
    const double to = from + Dot(a.direction, b.direction) * b.length;
    const double low = std::max(0.0, std::min(from, to));
    const double high = std::min(a.length, std::max(from, to));
    if (!(high >= low - tolerance)) return hits;
    hits.Add(a.At(low));
    if (high - low <= tolerance) return hits;
    hits.second = a.At(high);
    hits.count = CQNIMCurveAlgorithm::kSharedStretch;
    return hits;
}

Hits Meet(const Track& a, const Track& b, double tolerance) {
    if (a.length <= tolerance) return MeetAtPoint(b, a.start, a.start, tolerance);
    if (b.length <= tolerance) {
        const double along = Dot(Between(a.start, b.start), a.direction);
        return MeetAtPoint(a, b.start, a.At(along), tolerance);
    }
    const double sine = Cross(a.direction, b.direction);
    if (std::abs(sine) * std::max(a.length, b.length) <= tolerance) {
        return MeetAlongside(a, b, tolerance);
    }
    const Plan offset = Between(a.start, b.start);
    const double alongA = Cross(offset, b.direction) / sine;
    const double alongB = Cross(offset, a.direction) / sine;
    Hits hits;
    if (a.Reaches(alongA, tolerance) && b.Reaches(alongB, tolerance)) hits.Add(a.At(alongA));
    return hits;
}

Hits MeetPointAndArc(const CQNIMPosition& point, const CQNIMBoundArc& arc, double tolerance) {
    Hits hits;
    if (Length(Between(point, arc.GetClosePt(point))) <= tolerance) hits.Add(point);
    return hits;
}

Hits Meet(const Track& track, const CQNIMBoundArc& arc, double tolerance) {
    if (track.length <= tolerance) return MeetPointAndArc(track.start, arc, tolerance);
    const double radius = arc.GetRadius();
    const Plan fromCentre = Between(arc.GetCentrePt(), track.start);
    const double middle = -Dot(fromCentre, track.direction);
    const double passing = std::abs(Cross(fromCentre, track.direction));
    Hits hits;
    if (!(passing <= radius + tolerance)) return hits;
    // The product of sum and difference keeps the digits that the difference of squares loses when
    // the track only just cuts the circle.
    const double half = std::sqrt(std::max(0.0, (radius - passing) * (radius + passing)));
    const auto addAt = [&](double distance) {
        const Plan toHit = {fromCentre.x + track.direction.x * distance,
                            fromCentre.y + track.direction.y * distance};
        if (track.Reaches(distance, tolerance) &&
            arc.IsInSweep(toHit.x, toHit.y, tolerance / radius)) {
            hits.Add(track.At(distance));
        }
    };
    if (half <= tolerance) {
        addAt(middle);
    } else {
        addAt(middle - half);
        addAt(middle + half);
    }
    return hits;
}

const CQNIMLineSegment* AsSegment(const CQNIMCurve& curve) {
    return curve.GetKind() == CQNIMCurve::Kind::kLineSegment
               ? static_cast<const CQNIMLineSegment*>(&curve)
               : nullptr;
}

const CQNIMBoundArc* AsArc(const CQNIMCurve& curve) {
    return curve.GetKind() == CQNIMCurve::Kind::kBoundArc
               ? static_cast<const CQNIMBoundArc*>(&curve)
               : nullptr;
}

CQNIMPosition ClosestOnSegment(const CQNIMPosition& point, const CQNIMLineSegment& segment) {
    CQNIMVector direction = segment.GetEndPt() - segment.GetStartPt();
    const double length = direction.Length();
    direction.Normalise();
    const double along = direction.Dot(point - segment.GetStartPt());
    // An end is handed out as it was given, without the rounding of start + length * direction.
    if (!(along > 0.0)) return segment.GetStartPt();
    if (along >= length) return segment.GetEndPt();
    return segment.GetStartPt() + direction * along;
}

}  // namespace

bool CQNIMCurveAlgorithm::GetClosePtOnCurve(const CQNIMPosition& point, const CQNIMCurve& curve,
                                            CQNIMPosition& closest) {
    if (const CQNIMLineSegment* segment = AsSegment(curve)) {
        closest = ClosestOnSegment(point, *segment);
        return true;
    }
    if (const CQNIMBoundArc* arc = AsArc(curve)) {
        closest = arc->GetClosePt(point);
        return true;
    }
    return false;
}

bool CQNIMCurveAlgorithm::IsCurveParallel(const CQNIMCurve& a, const CQNIMCurve& b,
                                          double tolerance, bool sameDirectionOnly) {
    const CQNIMLineSegment* segmentA = AsSegment(a);
    const CQNIMLineSegment* segmentB = AsSegment(b);
    if (!segmentA || !segmentB) return false;
    CQNIMVector directionA = segmentA->GetEndPt() - segmentA->GetStartPt();
    CQNIMVector directionB = segmentB->GetEndPt() - segmentB->GetStartPt();
    directionA.Normalise();
    directionB.Normalise();
    const double cosine = directionA.Dot(directionB);
    if (cosine == 0.0 || (sameDirectionOnly && cosine < 0.0)) return false;
    return directionA.Cross(directionB).Length() <= tolerance;
}

int CQNIMCurveAlgorithm::IntersectTwoCurve(const CQNIMCurve& a, const CQNIMCurve& b,
                                           CQNIMPosition& first, CQNIMPosition& second,
                                           [[maybe_unused]] int flagA, [[maybe_unused]] int flagB,
                                           double tolerance) {
    const CQNIMLineSegment* segment = AsSegment(a);
    const CQNIMCurve& other = segment ? b : a;
    if (!segment) segment = AsSegment(b);
    if (!segment) return kUnknownCurves;

    Hits hits;
    if (const CQNIMLineSegment* otherSegment = AsSegment(other)) {
        hits = Meet(Track(*segment), Track(*otherSegment), tolerance);
    } else if (const CQNIMBoundArc* arc = AsArc(other)) {
        hits = Meet(Track(*segment), *arc, tolerance);
    } else {
        return kUnknownCurves;
    }
    if (hits.count >= 1) first = hits.first;
    if (hits.count >= 2) second = hits.second;
    return hits.count;
}

}  // namespace QNIM::ALGORITHM
