// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMCurve.h"

namespace QNIM::ALGORITHM {

/// Questions about curves. Only line segments and bounded arcs are known; any other kind of curve
/// gives false or no hit.
class KYCB_API CQNIMCurveAlgorithm {
  public:
    using CQNIMCurve = GeometryPrimitiveResource::CQNIMCurve;
    using CQNIMPosition = GeometryPrimitiveResource::CQNIMPosition;

    /// The point of `curve` nearest to `point` (3-D, mm). False when the curve kind is not known.
    static bool GetClosePtOnCurve(const CQNIMPosition& point, const CQNIMCurve& curve,
                                  CQNIMPosition& closest);

    /// True when two line segments are parallel or opposed: the sine of their angle is at most
    /// `tolerance`. False for arcs. With `sameDirectionOnly`, opposed segments do not count.
    static bool IsCurveParallel(const CQNIMCurve& a, const CQNIMCurve& b, double tolerance,
                                bool sameDirectionOnly);

    /// The number of points that two curves share in the xy plane, both taken at their own bounds
    /// stretched by `tolerance` (mm): 0, 1 or 2, with the points in `first` and `second`; a higher
    /// number when they share a whole stretch. The two flags are kept for the interface's sake.
    static int IntersectTwoCurve(const CQNIMCurve& a, const CQNIMCurve& b, CQNIMPosition& first,
                                 CQNIMPosition& second, int flagA, int flagB, double tolerance);
};

}  // namespace QNIM::ALGORITHM
