// SPDX-License-Identifier: Apache-2.0
// Double-precision vectors, planes and boxes for work on bodies. Lengths are millimetres.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

namespace ifchost {

/// A point (millimetres) or a direction.
struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    friend bool operator==(const Vec3&, const Vec3&) = default;
};

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
inline Vec3 operator-(const Vec3& a) {
    return {-a.x, -a.y, -a.z};
}
inline Vec3 operator*(const Vec3& a, double s) {
    return {a.x * s, a.y * s, a.z * s};
}
inline double Dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
inline Vec3 Cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Vec3& a) {
    return std::sqrt(Dot(a, a));
}

/// The unit vector along `a`, or the null vector when `a` is one.
inline Vec3 Normalized(const Vec3& a) {
    const double length = Length(a);
    return length > 0.0 ? a * (1.0 / length) : Vec3{};
}

/// The half-space Dot(normal, p) <= height. The normal has unit length and points out of it.
struct HalfSpace {
    Vec3 normal;
    double height = 0.0;  ///< millimetres along the normal from the origin

    /// Signed distance of `p` from the boundary; negative inside.
    double Distance(const Vec3& p) const { return Dot(normal, p) - height; }
};

/// Closed axis-aligned box. The default one is empty and grows to exactly the first point added.
struct BodyBox {
    Vec3 min{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(),
             std::numeric_limits<double>::infinity()};
    Vec3 max{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
             -std::numeric_limits<double>::infinity()};

    bool IsEmpty() const { return !(min.x <= max.x && min.y <= max.y && min.z <= max.z); }
    Vec3 Center() const { return (min + max) * 0.5; }
    Vec3 Size() const { return max - min; }

    void Add(const Vec3& p) {
        min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
    }
    void Add(const BodyBox& other) {
        Add(other.min);
        Add(other.max);
    }
    bool Meets(const BodyBox& other) const {
        return min.x <= other.max.x && other.min.x <= max.x && min.y <= other.max.y &&
               other.min.y <= max.y && min.z <= other.max.z && other.min.z <= max.z;
    }
    bool Contains(const Vec3& p) const {
        return min.x <= p.x && p.x <= max.x && min.y <= p.y && p.y <= max.y && min.z <= p.z &&
               p.z <= max.z;
    }
};

}  // namespace ifchost
