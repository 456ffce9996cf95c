// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <limits>
#include <numeric>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "opcode/HardTriangles.h"
#include "opcode/SpatialOrder.h"

namespace kycb::opcode::test {
namespace {

std::vector<std::uint32_t> Sorted(const std::vector<Point>& points) {
    Middles middles;
    middles.Resize(points.size());
    for (std::size_t i = 0; i < points.size(); ++i)
        middles.Set(i, points[i].x, points[i].y, points[i].z, static_cast<std::uint32_t>(i));
    SortByPlace(middles);
    std::vector<std::uint32_t> order;
    for (std::size_t i = 0; i < points.size(); ++i)
        order.push_back(middles.NumberAt(i));
    return order;
}

std::vector<std::uint32_t> FirstNumbers(std::size_t count) {
    std::vector<std::uint32_t> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0U);
    return numbers;
}

TEST(SpatialOrder, KeepsEveryNumberOnce) {
    Random random(5);
    for (const std::size_t count : {1U, 7U, 8U, 9U, 63U, 65U, 511U, 513U, 5000U}) {
        std::vector<Point> points;
        for (std::size_t i = 0; i < count; ++i)
            points.emplace_back(static_cast<float>(random.In(-9, 9)),
                                static_cast<float>(random.In(0, 1)),
                                static_cast<float>(random.Below(4)));
        std::vector<std::uint32_t> order = Sorted(points);
        std::sort(order.begin(), order.end());
        EXPECT_EQ(order, FirstNumbers(count)) << count;
    }
}

TEST(SpatialOrder, PutsEightThatLieTogetherIntoOneGroup) {
    // Number i lies at the corner i % 8 of a large cube, a little off it.
    std::vector<Point> points;
    for (int i = 0; i < 64; ++i) {
        const auto off = static_cast<float>(i / 8);
        points.emplace_back((i & 1) != 0 ? 1000 + off : off, (i & 2) != 0 ? 1000.0F : 0.0F,
                            (i & 4) != 0 ? 1000 - off : -off);
    }
    const std::vector<std::uint32_t> order = Sorted(points);
    for (std::size_t group = 0; group < 8; ++group) {
        std::set<std::uint32_t> corners;
        for (std::size_t i = 0; i < 8; ++i)
            corners.insert(order[8 * group + i] % 8);
        EXPECT_EQ(corners.size(), 1U) << group;
    }
}

TEST(SpatialOrder, LeavesWhatLiesInOnePlaceInItsOrder) {
    EXPECT_EQ(Sorted(std::vector<Point>(100, Point(1, 2, 3))), FirstNumbers(100));
}

TEST(SpatialOrder, SurvivesDistancesThatNoFloatHolds) {
    constexpr float kLargest = std::numeric_limits<float>::max();
    std::vector<Point> points;
    for (int i = 0; i < 50; ++i)
        points.emplace_back(i % 2 == 0 ? kLargest : -kLargest, 0.0F, 0.0F);
    std::vector<std::uint32_t> order = Sorted(points);
    std::sort(order.begin(), order.end());
    EXPECT_EQ(order, FirstNumbers(50));
}

TEST(SpatialOrder, TellsTheRestApartBesideOneFarOff) {
    std::vector<Point> points;
    for (int i = 0; i < 63; ++i)
        points.emplace_back(static_cast<float>(i * 37 % 63), 0.0F, 0.0F);
    points.emplace_back(1e9F, 0.0F, 0.0F);
    const std::vector<std::uint32_t> order = Sorted(points);
    // Halved four times at the latest, each part is without the one that is far off, but for one.
    std::size_t wide = 0;
    for (std::size_t group = 0; group < 8; ++group) {
        float low = 1e9F;
        float high = 0;
        for (std::size_t i = 0; i < 8; ++i) {
            low = std::min(low, points[order[8 * group + i]].x);
            high = std::max(high, points[order[8 * group + i]].x);
        }
        wide += high - low > 31 ? 1 : 0;
    }
    EXPECT_LE(wide, 2U);
}

}  // namespace
}  // namespace kycb::opcode::test
