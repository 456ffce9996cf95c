// SPDX-License-Identifier: Apache-2.0
// The descent of boxes through a quad tree, compiled once for each instruction set.
#include "opcode/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "model/PlanPaths.cpp"

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "model/PlanPaths.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::model::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Cell = KYTOOLS::GRAPH::QuadTreeCell;
using Tag = hn::CappedTag<double, PathFinder::kMostLanes>;
using PathTag = hn::RebindToUnsigned<Tag>;
using Vector = hn::Vec<Tag>;
using Mask = hn::Mask<Tag>;

constexpr std::size_t kLanes = hn::MaxLanes(Tag());

HWY_INLINE Mask IsBeyond(Vector a, Vector b) {
    return hn::Gt(hn::Sub(a, b), hn::Set(Tag(), Cell::kCentreTolerance));
}

/// The boxes of all lanes along one axis, and the cells that they have come to.
struct Axis {
    Axis(const double* lows, const double* highs, double cellLow, double cellHigh)
        : boxLow(hn::LoadU(Tag(), lows)),
          boxHigh(hn::LoadU(Tag(), highs)),
          low(hn::Set(Tag(), cellLow)),
          high(hn::Set(Tag(), cellHigh)) {}

    HWY_INLINE Mask IsOutside() const {
        return hn::Or(IsBeyond(boxLow, high), IsBeyond(low, boxHigh));
    }

    /// Which lanes go to which half, of those that go.
    HWY_INLINE void Choose() {
        centre = hn::Mul(hn::Add(low, high), hn::Set(Tag(), 0.5));
        isUpper = IsBeyond(boxLow, centre);
        isLower = IsBeyond(centre, boxHigh);
    }
    HWY_INLINE Mask DoGo() const {
        const Mask isSmall =
            hn::Lt(hn::Abs(hn::Sub(high, low)), hn::Set(Tag(), Cell::kMinNodeSize));
        const Mask hasCentre = hn::And(hn::Lt(low, centre), hn::Lt(centre, high));
        return hn::And(hn::AndNot(isSmall, hasCentre), hn::Or(isUpper, isLower));
    }
    HWY_INLINE void Go() {
        low = hn::IfThenElse(isUpper, centre, low);
        high = hn::IfThenElse(isLower, centre, high);
    }

    Vector boxLow, boxHigh, low, high, centre;
    Mask isUpper, isLower;
};

HWY_INLINE hn::Vec<PathTag> BitsWhere(Mask mask, std::uint64_t bits) {
    return hn::IfThenElseZero(hn::RebindMask(PathTag(), mask), hn::Set(PathTag(), bits));
}

HWY_INLINE hn::Vec<PathTag> PathsOf(Axis x, Axis y) {
    hn::Vec<PathTag> paths = hn::Zero(PathTag());
    Mask go = hn::Not(hn::Or(x.IsOutside(), y.IsOutside()));
    for (unsigned level = 0; level < PlanPath::kLevels; ++level) {
        x.Choose();
        y.Choose();
        go = hn::And(go, hn::And(x.DoGo(), y.DoGo()));
        if (hn::AllFalse(Tag(), go)) break;
        const std::uint64_t unit = std::uint64_t{1} << PlanPath::ShiftOf(level);
        paths = hn::Or(paths, BitsWhere(hn::And(go, x.isLower), Cell::kUpperLeft * unit));
        paths = hn::Or(paths, BitsWhere(hn::And(go, y.isLower), Cell::kLowerRight * unit));
        paths = hn::Add(paths, BitsWhere(go, 1));
        x.Go();
        y.Go();
    }
    return paths;
}

using Bounds = std::array<const double*, 2>;

/// `count` is a multiple of kMostLanes.
void Find(const Cell& root, const Bounds& low, const Bounds& high, std::size_t count,
          std::uint32_t* paths) {
    constexpr hn::Rebind<std::uint32_t, PathTag> kNarrow;
    const KYTOOLS::GRAPH::BoundingBox2d& cell = root.GetBoundingBox();
    for (std::size_t i = 0; i < count; i += kLanes) {
        const Axis x(low[0] + i, high[0] + i, cell.GetMinX(), cell.GetMaxX());
        const Axis y(low[1] + i, high[1] + i, cell.GetMinY(), cell.GetMaxY());
        hn::StoreU(hn::TruncateTo(kNarrow, PathsOf(x, y)), kNarrow, paths + i);
    }
}

}  // namespace kycb::model::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kycb::model {

HWY_EXPORT(Find);

PlanPath::Cell PlanPath::End(std::uint32_t path, Cell cell) {
    for (unsigned level = 0; level < kLevels; ++level) {
        cell = cell.Quarter(static_cast<Cell::Quadrant>(path >> ShiftOf(level) & 3U));
    }
    return cell;
}

std::span<const std::uint32_t> PathFinder::FindFrom(const KYTOOLS::GRAPH::QuadTreeCell& root) {
    HWY_DYNAMIC_DISPATCH(Find)
    (root, {low_[0].data(), low_[1].data()}, {high_[0].data(), high_[1].data()}, paths_.size(),
     paths_.data());
    return {paths_.data(), count_};
}

}  // namespace kycb::model
#endif
