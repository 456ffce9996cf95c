// SPDX-License-Identifier: Apache-2.0
// Where a point lies among the grid axes of a floor.
#pragma once

#include "KYCollisionBase/platform/CQNIMPosition.h"
#include "KYCollisionBase/platform/QuadTree.h"

#include <string>

namespace KYCOLLISION::LOGIC {
struct SQNGIAxisItem;
}

namespace kycb {

/// The axes of one floor by their boxes seen from above.
using AxisTree = KYTOOLS::GRAPH::QuadTree<KYCOLLISION::LOGIC::SQNGIAxisItem*>;

/// The text for a point near no axis.
extern const wchar_t* const kOtherPosition;

/// The position of `point` (mm, height as given) relative to the nearest axes of `tree` in the
/// grid's two directions, like "3(+1250mm) / B(-400mm)": the sign tells on which side of the axis
/// the point lies (plus is roughly +x and +y), the number is the distance in whole millimetres,
/// truncated. One part alone when the other direction has no axis within 5 m, kOtherPosition
/// when neither has.
///
/// A point on an axis lies on its plus side at distance 0, and midway between two axes the one on
/// whose plus side the point lies is named. Distances are settled to a millionth of a millimetre
/// before they are compared or truncated, so that neither depends on rounding.
///
/// Null items and items without a curve are passed over.
std::wstring LocateAmongAxes(const QNIM::GeometryPrimitiveResource::CQNIMPosition& point,
                             const AxisTree& tree);

}  // namespace kycb
