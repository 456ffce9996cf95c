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
    return static_cast<float>(std::clamp(value, -kLargest, kLargest));
}

// A number whose order is that of the floats.
std::uint32_t OrderOf(float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value + 0.0F);  // one zero only
    return (bits >> 31U) != 0 ? ~bits : bits | 0x80000000U;
}

}  // namespace

/// The strips of one set of boxes, one behind the other.
struct BoxSweep::Table {
    std::array<std::vector<float>, 3> low;
    std::array<std::vector<float>, 3> high;
    std::vector<std::uint32_t> numbers;
    std::vector<std::uint32_t> begins;
    std::vector<std::size_t> starts;
    std::vector<std::size_t> ends;

    SweepStrip Strip(std::size_t index) const {
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
};

void BoxSweep::Add(const BoundingBox3d& box, Role role) {
    const auto number = static_cast<std::uint32_t>(boxes_.size());
    boxes_.push_back({{Rounded(box.GetMinX()), Rounded(box.GetMinY()), Rounded(box.GetMinZ())},
                      {Rounded(box.GetMaxX()), Rounded(box.GetMaxY()), Rounded(box.GetMaxZ())}});
    if (!box.IsNull()) (role == Role::kAsking ? asking_ : answering_).push_back(number);
}

std::size_t BoxSweep::Bands::Of(float value) const {
    const float cell = (value - low) * perUnit;
    const auto last = static_cast<float>(count - 1);
    return cell > 0.0F ? static_cast<std::size_t>(std::min(cell, last)) : 0;
}

// By three passes over eleven bits each.
std::vector<std::uint32_t> BoxSweep::SortedAlongX(const std::vector<std::uint32_t>& numbers) const {
    constexpr unsigned kBits = 11;
    constexpr std::size_t kDigits = std::size_t{1} << kBits;
    struct Entry {
        std::uint32_t order;
        std::uint32_t number;
    };
    std::array<std::vector<std::uint32_t>, 3> places;
    places.fill(std::vector<std::uint32_t>(kDigits + 1));
    std::vector<Entry> entries;
    entries.reserve(numbers.size());
    const auto digit = [](std::uint32_t order, std::size_t pass) {
        return order >> (kBits * pass) & (kDigits - 1);
    };
    for (const std::uint32_t number : numbers) {
        const std::uint32_t order = OrderOf(boxes_[number].low[0]);
        entries.push_back({order, number});
        for (std::size_t pass = 0; pass < places.size(); ++pass) {
            ++places[pass][digit(order, pass) + 1];
        }
    }
    std::vector<Entry> sorted(entries.size());
    for (std::size_t pass = 0; pass < places.size(); ++pass) {
        auto& place = places[pass];
        for (std::size_t i = 1; i < kDigits; ++i) {
            place[i] += place[i - 1];
        }
        for (const Entry& entry : entries) {
            sorted[place[digit(entry.order, pass)]++] = entry;
        }
        entries.swap(sorted);
    }
    std::vector<std::uint32_t> result;
    result.reserve(entries.size());
    for (const Entry& entry : entries) {
        result.push_back(entry.number);
    }
    return result;
}

BoxSweep::Spread BoxSweep::EstimateSpread(std::size_t axis) const {
    const std::size_t step = asking_.size() / kSampleSize + 1;
    std::vector<double> middles;
    std::vector<double> extents;
    for (std::size_t i = 0; i < asking_.size(); i += step) {
        const auto low = static_cast<double>(boxes_[asking_[i]].low[axis]);
        const auto high = static_cast<double>(boxes_[asking_[i]].high[axis]);
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
    bands.count = static_cast<std::size_t>(spread.width / width);
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
    const double left = open * shareOf(y, width);
    if (left <= kCrowd * kComparisonsPerBox) return;
    const double layers = widest / static_cast<double>(across_.count);
    const double height = z.width * kComparisonsPerBox / left - z.extent;
    upward_ = BandsOf(z, std::max({height, z.extent, z.width / layers}));
}

template <class Visitor>
void BoxSweep::VisitStripsOf(const FloatBox& box, const Visitor& visit) const {
    const std::size_t firstBand = across_.Of(box.low[1]);
    const std::size_t lastBand = across_.Of(box.high[1]);
    const std::size_t firstLayer = upward_.Of(box.low[2]);
    const std::size_t lastLayer = upward_.Of(box.high[2]);
    for (std::size_t layer = firstLayer; layer <= lastLayer; ++layer) {
        for (std::size_t band = firstBand; band <= lastBand; ++band) {
            const std::uint32_t begins = (band == firstBand ? SweepStrip::kBeginsAcross : 0U) |
                                         (layer == firstLayer ? SweepStrip::kBeginsUpward : 0U);
            visit(layer * across_.count + band, begins);
        }
    }
}

void BoxSweep::Fill(Table& table, const std::vector<std::uint32_t>& numbers) const {
    const std::size_t strips = across_.count * upward_.count;
    table.ends.assign(strips, 0);
    for (const std::uint32_t number : numbers) {
        VisitStripsOf(boxes_[number],
                      [&](std::size_t strip, std::uint32_t) { ++table.ends[strip]; });
    }
    std::size_t room = 0;
    for (std::size_t& end : table.ends) {
        table.starts.push_back(room);
        room += std::exchange(end, room) + SweepStrip::kSpareLanes;
    }
    table.low.fill(std::vector<float>(room, std::numeric_limits<float>::infinity()));
    table.high.fill(std::vector<float>(room));
    table.numbers.resize(room);
    table.begins.resize(room);
    for (const std::uint32_t number : numbers) {
        const FloatBox& box = boxes_[number];
        VisitStripsOf(box, [&](std::size_t strip, std::uint32_t begins) {
            const std::size_t place = table.ends[strip]++;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                table.low[axis][place] = box.low[axis];
                table.high[axis][place] = box.high[axis];
            }
            table.numbers[place] = number;
            table.begins[place] = begins;
        });
    }
}

void BoxSweep::FindPairs() {
    if (asking_.empty()) return;
    asking_ = SortedAlongX(asking_);
    answering_ = SortedAlongX(answering_);
    ChooseBands();
    Table asking;
    Table answering;
    Fill(asking, asking_);
    Fill(answering, answering_);
    for (std::size_t i = 0; i < asking.starts.size(); ++i) {
        const SweepStrip strip = asking.Strip(i);
        const SweepStrip others = answering.Strip(i);
        SweepWithin(strip, inset_, within);
        if (others.count > 0) SweepAcross(strip, others, inset_, across);
    }
}

}  // namespace kycb::model
