// SPDX-License-Identifier: Apache-2.0
#include "scenes/reference/Plan.h"

#include <cmath>
#include <optional>
#include <string>

namespace kycb::scenes::reference {

namespace {

constexpr double kMinNodeSize = 500.0;       // mm
constexpr double kCentreTolerance = 0.0001;  // mm

// The quarters are numbered in the order of the search, so that the paths of places sort in it.
constexpr char kUpperRight = '1';
constexpr char kLowerRight = '2';
constexpr char kUpperLeft = '3';
constexpr char kLowerLeft = '4';

double CentreX(const Rect& node) {
    return (node.minX + node.maxX) / 2.0;
}

double CentreY(const Rect& node) {
    return (node.minY + node.maxY) / 2.0;
}

bool LiesOutside(const Rect& c, const Rect& node) {
    constexpr double e = kCentreTolerance;
    return c.minX - node.maxX > e || c.minY - node.maxY > e || node.minX - c.maxX > e ||
           node.minY - c.maxY > e;
}

// The quarter of `node` that a box goes to, or none when it stays.
std::optional<char> QuarterFor(const Rect& c, const Rect& node) {
    constexpr double e = kCentreTolerance;
    if (std::abs(node.maxX - node.minX) < kMinNodeSize) return std::nullopt;
    if (std::abs(node.maxY - node.minY) < kMinNodeSize) return std::nullopt;
    if (LiesOutside(c, node)) return std::nullopt;
    const double mx = CentreX(node);
    const double my = CentreY(node);
    if (c.minX - mx > e) {
        if (c.minY - my > e) return kUpperRight;
        if (my - c.maxY > e) return kLowerRight;
    } else if (mx - c.maxX > e) {
        if (c.minY - my > e) return kUpperLeft;
        if (my - c.maxY > e) return kLowerLeft;
    }
    return std::nullopt;
}

Rect QuarterOf(const Rect& node, char quarter) {
    Rect part = node;
    const bool isRight = quarter == kUpperRight || quarter == kLowerRight;
    const bool isUpper = quarter == kUpperRight || quarter == kUpperLeft;
    (isRight ? part.minX : part.maxX) = CentreX(node);
    (isUpper ? part.minY : part.maxY) = CentreY(node);
    return part;
}

// A box with the quarters that lead to it, and whether the search box meets all of them.
struct Place {
    std::string path;
    bool isReached = true;
    std::size_t index = 0;
};

Place PlaceOf(const Rect& root, const Rect& box, const Rect& search) {
    Place place;
    Rect node = root;
    place.isReached = search.Meets(node);
    for (auto quarter = QuarterFor(box, node); quarter; quarter = QuarterFor(box, node)) {
        node = QuarterOf(node, *quarter);
        place.path += *quarter;
        place.isReached = place.isReached && search.Meets(node);
    }
    return place;
}

}  // namespace

std::vector<std::size_t> FindInPlan(const Rect& root, const std::vector<Rect>& boxes,
                                    const Rect& search) {
    std::vector<Place> places;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        Place place = PlaceOf(root, boxes[i], search);
        place.index = i;
        if (place.isReached && boxes[i].Meets(search)) places.push_back(place);
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const Place& a, const Place& b) { return a.path < b.path; });
    std::vector<std::size_t> found;
    for (const Place& place : places) {
        found.push_back(place.index);
    }
    return found;
}

}  // namespace kycb::scenes::reference
