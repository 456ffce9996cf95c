// SPDX-License-Identifier: Apache-2.0
#include "model/BoxSweep.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace kycb::model {

namespace {

using KYTOOLS::GRAPH::BoundingBox3d;

// How many boxes tell how all of them lie.
constexpr std::size_t kSampleSize = 128;
// One in so many of the sample may lie far off at either end without stretching the strips.
constexpr std::size_t kStraggling = 32;
// How many boxes a box is compared with, on average, at the width that strips are given: below it,
// standing in more strips costs more than is saved.
constexpr double kComparisonsPerBox = 40.0;
// Layers are added where narrow strips alone leave so many times as many comparisons.
constexpr double kCrowd = 4.0;
// Bounds the room for strips on odd floors.
constexpr double kLeastBoxesPerStrip = 8.0;

// Nearest in single precision; what is beyond it counts as its largest number.
float Rounded(double value) {
    constexpr auto kLargest = static_cast<double>(std::numeric_limits<float>::max());
    return static_cast<float>(std::max(-kLargest, std::min(value, kLargest)));
}

// A number whose order is that of the floats.
std::uint32_t OrderOf(float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value + 0.0F);  // one zero only
    return (bits >> 31U) != 0 ? ~bits : bits | 0x80000000U;
}

}  // namespace

// The strips begin one behind the other, each with room for as many boxes as `ends` says, and for
// the spare lanes. From then on `ends` tells where the next box of each goes.
void BoxSweep::Table::MakeRoom() {
    starts.clear();
    std::size_t room = 0;
    for (std::size_t& end : ends) {
        starts.push_back(room);
        room += std::exchange(end, room) + SweepStrip::kSpareLanes;
    }
    if (numbers.size() >= room) return;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis].resize(room);
        high[axis].resize(room);
    }
    numbers.resize(room);
    begins.resize(room);
}

void BoxSweep::Table::Place(const FloatBox& box, std::uint32_t number, std::size_t strip,
                            std::uint32_t begun) {
    const std::size_t place = ends[strip]++;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis][place] = box.low[axis];
        high[axis][place] = box.high[axis];
    }
    numbers[place] = number;
    begins[place] = begun;
}

SweepStrip BoxSweep::Table::Strip(std::size_t index) const {
    const std::size_t start = starts[index];
    SweepStrip strip{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        strip.low[axis] = low[axis].data() + start;
        strip.high[axis] = high[axis].data() + start;
    }
    strip.numbers = numbers.data() + start;
    strip.begins = begins.data() + start;
    strip.count = ends[index] - start;
    return strip;
}

void BoxSweep::Begin(double inset) {
    inset_ = static_cast<float>(inset);
    boxes_.clear();
    asking_.clear();
    answering_.clear();
    for (PairBuffer* pairs : {&within.sure, &within.inDoubt, &across.sure, &across.inDoubt}) {
        pairs->Shrink(0);
    }
}

void BoxSweep::Add(const BoundingBox3d& box, Role role) {
    const auto number = static_cast<std::uint32_t>(boxes_.size());
    boxes_.push_back({{Rounded(box.GetMinX()), Rounded(box.GetMinY()), Rounded(box.GetMinZ())},
                      {Rounded(box.GetMaxX()), Rounded(box.GetMaxY()), Rounded(box.GetMaxZ())}});
    if (box.IsNull()) return;
    (role == Role::kAsking ? asking_ : answering_)
        .push_back({OrderOf(boxes_.back().low[0]), number});
}

std::uint32_t BoxSweep::Bands::Of(float value) const {
    const float cell = (value - low) * perUnit;
    const auto last = static_cast<float>(count - 1);
    return cell > 0.0F ? static_cast<std::uint32_t>(std::min(cell, last)) : 0;
}

BoxSweep::Spread BoxSweep::EstimateSpread(std::size_t axis) const {
    const std::size_t step = asking_.size() / kSampleSize + 1;
    std::vector<double> middles;
    std::vector<double> extents;
    for (std::size_t i = 0; i < asking_.size(); i += step) {
        const auto low = static_cast<double>(boxes_[asking_[i].number].low[axis]);
        const auto high = static_cast<double>(boxes_[asking_[i].number].high[axis]);
        middles.push_back(low / 2.0 + high / 2.0);
        extents.push_back(high - low);
    }
    std::sort(middles.begin(), middles.end());
    const std::size_t off = middles.size() / kStraggling;
    Spread spread;
    spread.low = middles[off];
    spread.width = middles[middles.size() - 1 - off] - spread.low;
    for (const double extent : extents) {
        spread.extent += std::min(extent, spread.width) / static_cast<double>(extents.size());
    }
    return spread;
}

BoxSweep::Bands BoxSweep::BandsOf(const Spread& spread, double width) {
    Bands bands;
    if (!(width > 0.0 && width < spread.width)) return bands;
    bands.count = static_cast<std::uint32_t>(spread.width / width);
    bands.low = Rounded(spread.low);
    bands.perUnit = Rounded(static_cast<double>(bands.count) / spread.width);
    return bands;
}

void BoxSweep::ChooseBands() {
    const Spread x = EstimateSpread(0);
    const Spread y = EstimateSpread(1);
    const Spread z = EstimateSpread(2);
    const auto count = static_cast<double>(asking_.size() + answering_.size());
    const double widest = count / kLeastBoxesPerStrip;
    // How many boxes begin while an average one lasts, anywhere in the plan.
    const double open = x.width > 0.0 ? count * std::min(1.0, x.extent / x.width) : count;
    const auto shareOf = [](const Spread& spread, double width) {
        return spread.width > 0.0 ? std::min(1.0, (width + spread.extent) / spread.width) : 1.0;
    };
    // A strip narrower than its boxes would hold every box several times.
    const double wanted = y.width * kComparisonsPerBox / open - y.extent;
    const double width = std::max({wanted, y.extent, y.width / widest});
    across_ = BandsOf(y, width);
    upward_ = Bands();
    const double left = open * shareOf(y, width);
    if (left <= kCrowd * kComparisonsPerBox) return;
    const double layers = widest / static_cast<double>(across_.count);
    const double height = z.width * kComparisonsPerBox / left - z.extent;
    upward_ = BandsOf(z, std::max({height, z.extent, z.width / layers}));
}

BoxSweep::Stand BoxSweep::StandOf(const FloatBox& box) const {
    return {across_.Of(box.low[1]), across_.Of(box.high[1]), upward_.Of(box.low[2]),
            upward_.Of(box.high[2])};
}

template <class Visitor>
void BoxSweep::VisitStrips(const Stand& stand, const Visitor& visit) const {
    for (std::uint32_t layer = stand.firstLayer; layer <= stand.lastLayer; ++layer) {
        for (std::uint32_t band = stand.firstBand; band <= stand.lastBand; ++band) {
            const std::uint32_t begins =
                (band == stand.firstBand ? SweepStrip::kBeginsAcross : 0U) |
                (layer == stand.firstLayer ? SweepStrip::kBeginsUpward : 0U);
            visit(std::size_t{layer} * across_.count + band, begins);
        }
    }
}

void BoxSweep::Fill(Table& table, const std::vector<SortEntry>& alongX) {
    table.ends.assign(std::size_t{across_.count} * upward_.count, 0);
    stands_.resize(alongX.size());
    for (std::size_t i = 0; i < alongX.size(); ++i) {
        stands_[i] = StandOf(boxes_[alongX[i].number]);
        VisitStrips(stands_[i], [&](std::size_t strip, std::uint32_t) { ++table.ends[strip]; });
    }
    table.MakeRoom();
    for (std::size_t i = 0; i < alongX.size(); ++i) {
        const std::uint32_t number = alongX[i].number;
        VisitStrips(stands_[i], [&](std::size_t strip, std::uint32_t begun) {
            table.Place(boxes_[number], number, strip, begun);
        });
    }
    // The spare lanes of one strip stand before the next strip's boxes.
    for (const std::size_t end : table.ends) {
        std::fill_n(table.low[0].data() + end, SweepStrip::kSpareLanes,
                    std::numeric_limits<float>::infinity());
    }
}

void BoxSweep::FindPairs() {
    if (asking_.empty()) return;
    RadixSort(asking_, sortRoom_);
    RadixSort(answering_, sortRoom_);
    ChooseBands();
    Fill(askingTable_, asking_);
    Fill(answeringTable_, answering_);
    for (std::size_t i = 0; i < askingTable_.starts.size(); ++i) {
        const SweepStrip strip = askingTable_.Strip(i);
        const SweepStrip others = answeringTable_.Strip(i);
        SweepWithin(strip, inset_, within);
        if (others.count > 0) SweepAcross(strip, others, inset_, across);
    }
}

}  // namespace kycb::model
