// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace IceMaths {

/// A point of a mesh: world coordinates in millimetres, single precision.
///
/// A component that is not finite (NaN or infinite) makes every triangle that uses the point
/// untouchable; it never makes a query fail.
struct Point {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;

    Point() = default;
    Point(float px, float py, float pz) : x(px), y(py), z(pz) {}
};

}  // namespace IceMaths
