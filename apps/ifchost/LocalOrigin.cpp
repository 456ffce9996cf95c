// SPDX-License-Identifier: Apache-2.0
#include "LocalOrigin.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace ifchost {
namespace {

constexpr double kRoundingMm = 1000.0;

double RoundToMetres(double value) {
    return std::round(value / kRoundingMm) * kRoundingMm;
}

double MedianOfMiddles(const std::vector<SceneBox>& boxes, std::size_t axis) {
    std::vector<double> middles;
    middles.reserve(boxes.size());
    for (const SceneBox& box : boxes)
        middles.push_back((box.min[axis] + box.max[axis]) / 2.0);
    const auto median = middles.begin() + static_cast<std::ptrdiff_t>(middles.size() / 2);
    std::nth_element(middles.begin(), median, middles.end());
    return *median;
}

double OriginOnAxis(const std::vector<SceneBox>& boxes, std::size_t axis) {
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (const SceneBox& box : boxes) {
        low = std::min(low, box.min[axis]);
        high = std::max(high, box.max[axis]);
    }
    if (std::max(std::abs(low), std::abs(high)) <= kFloatReachMm) return 0.0;
    const double middle = RoundToMetres((low + high) / 2.0);
    if (std::max(high - middle, middle - low) <= kFloatReachMm) return middle;
    return RoundToMetres(MedianOfMiddles(boxes, axis));
}

double LargestCoordinate(const SceneBox& box, const Point3& origin) {
    double largest = 0.0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        largest = std::max({largest, std::abs(box.min[axis] - origin[axis]),
                            std::abs(box.max[axis] - origin[axis])});
    }
    return largest;
}

// The distance between neighbouring single-precision numbers up to `coordinate`.
double FloatStep(double coordinate) {
    if (coordinate == 0.0) return 0.0;
    // Numbers below a power of two keep the step of the range below it.
    int exponent = 0;
    const double mantissa = std::frexp(coordinate, &exponent);
    if (mantissa == 0.5) --exponent;
    return std::ldexp(1.0, exponent - std::numeric_limits<float>::digits);
}

}  // namespace

LocalOrigin ChooseOrigin(const std::vector<SceneBox>& boxes) {
    LocalOrigin result;
    if (boxes.empty()) return result;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        result.origin[axis] = OriginOnAxis(boxes, axis);
        result.moved = result.moved || result.origin[axis] != 0.0;
    }
    double largestLocal = 0.0;
    for (const SceneBox& box : boxes) {
        const double local = LargestCoordinate(box, result.origin);
        largestLocal = std::max(largestLocal, local);
        if (local > kFloatReachMm) ++result.impreciseComponents;
        result.largestCoordinate = std::max(result.largestCoordinate, LargestCoordinate(box, {}));
    }
    result.resolution = FloatStep(largestLocal);
    return result;
}

}  // namespace ifchost
