// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMCurve.h"

namespace QNIM::ALGORITHM {

/// Questions about curves. Only line segments and bounded arcs are known.
///
/// Every operation works in doubles on differences of coordinates, so what it answers is off by a
/// few units in the last place of the coordinates given: 1e-11 mm for axes of 100 m, 1e-7 mm for
/// coordinates of 1000 km. Coordinates that are no numbers give false or no hit.
///
/// Threads: free of state.
class KYCB_API CQNIMCurveAlgorithm {
  public:
    using CQNIMCurve = GeometryPrimitiveResource::CQNIMCurve;
    using CQNIMPosition = GeometryPrimitiveResource::CQNIMPosition;

    /// What IntersectTwoCurve returns for two curves that share a whole stretch.
    static constexpr int kSharedStretch = 3;
    /// What IntersectTwoCurve returns for curve kinds that it does not know.
    static constexpr int kUnknownCurves = -1;

    /// The point of `curve` nearest to `point` (3-D, mm). False, with `closest` untouched, when the
    /// curve kind is not known.
    static bool GetClosePtOnCurve(const CQNIMPosition& point, const CQNIMCurve& curve,
                                  CQNIMPosition& closest);

    /// True when two line segments are parallel or opposed: the sine of their angle in space is at
    /// most `tolerance`. False for arcs and for a segment of no length, which has no direction.
    /// With `sameDirectionOnly`, opposed segments do not count.
    static bool IsCurveParallel(const CQNIMCurve& a, const CQNIMCurve& b, double tolerance,
                                bool sameDirectionOnly);

    /// The number of points that two curves share seen from above: heights play no part, because
    /// the axes of a grid and the points placed among them need not lie at one level.
    ///
    /// Both curves are taken at their own bounds stretched by `tolerance` (mm), and ends that meet
    /// within it touch. The answer is 0, 1 or 2 with the points in `first` and `second`, in the
    /// order in which the segment passes them (`a` where both are segments), inside its bounds and
    /// at its height; kSharedStretch for segments lying on each other, with the ends of the
    /// stretch; kUnknownCurves when neither is a segment or one is of a kind that is not known. The
    /// flags are kept for the interface's sake and must be 0.
    ///
    /// A segment that passes an arc's circle by no more than `tolerance` touches it in one point.
    static int IntersectTwoCurve(const CQNIMCurve& a, const CQNIMCurve& b, CQNIMPosition& first,
                                 CQNIMPosition& second, int flagA, int flagB, double tolerance);
};

}  // namespace QNIM::ALGORITHM
