// SPDX-License-Identifier: Apache-2.0
#include "opcode/Predicates.h"

#include <cmath>

#include "opcode/Expansion.h"

namespace kycb::opcode {
namespace {

// Half an ulp of 1.0 in double precision.
constexpr double kUnit = 0x1p-53;

// Bound on the rounding error of the volume, relative to the sum of the magnitudes of its terms
// (Shewchuk 1997: 7 units plus terms of second order). Single-precision input neither overflows nor
// underflows in products of three double-precision differences, so the bound holds for every finite
// input, and a sum of magnitudes of 0 proves an exact 0.
constexpr double kBound3d = 8 * kUnit;

double ExactVolume(const Point& a, const Point& b, const Point& c, const Point& d) {
    const auto bx = Difference(b.x, a.x);
    const auto by = Difference(b.y, a.y);
    const auto bz = Difference(b.z, a.z);
    const auto cx = Difference(c.x, a.x);
    const auto cy = Difference(c.y, a.y);
    const auto cz = Difference(c.z, a.z);
    const auto nx = Sum(Product(by, cz), Negated(Product(bz, cy)));
    const auto ny = Sum(Product(bz, cx), Negated(Product(bx, cz)));
    const auto nz = Sum(Product(bx, cy), Negated(Product(by, cx)));
    const auto x = Product(nx, Difference(d.x, a.x));
    const auto y = Product(ny, Difference(d.y, a.y));
    const auto z = Product(nz, Difference(d.z, a.z));
    return Sum(Sum(x, y), z).Estimate();
}

}  // namespace

double Orientation(const Point& a, const Point& b, const Point& c, const Point& d) {
    const double bx = static_cast<double>(b.x) - static_cast<double>(a.x);
    const double by = static_cast<double>(b.y) - static_cast<double>(a.y);
    const double bz = static_cast<double>(b.z) - static_cast<double>(a.z);
    const double cx = static_cast<double>(c.x) - static_cast<double>(a.x);
    const double cy = static_cast<double>(c.y) - static_cast<double>(a.y);
    const double cz = static_cast<double>(c.z) - static_cast<double>(a.z);
    const double dx = static_cast<double>(d.x) - static_cast<double>(a.x);
    const double dy = static_cast<double>(d.y) - static_cast<double>(a.y);
    const double dz = static_cast<double>(d.z) - static_cast<double>(a.z);
    const double yz = by * cz;
    const double zy = bz * cy;
    const double zx = bz * cx;
    const double xz = bx * cz;
    const double xy = bx * cy;
    const double yx = by * cx;
    const double value = (yz - zy) * dx + (zx - xz) * dy + (xy - yx) * dz;
    const double terms = (std::fabs(yz) + std::fabs(zy)) * std::fabs(dx) +
                         (std::fabs(zx) + std::fabs(xz)) * std::fabs(dy) +
                         (std::fabs(xy) + std::fabs(yx)) * std::fabs(dz);
    if (terms == 0.0) return 0.0;
    if (std::fabs(value) > kBound3d * terms) return value;
    return ExactVolume(a, b, c, d);
}

double ExactOrientation(const Projected& a, const Projected& b, const Projected& c) {
    return Sum(Product(Difference(b.u, a.u), Difference(c.v, a.v)),
               Negated(Product(Difference(b.v, a.v), Difference(c.u, a.u))))
        .Estimate();
}

}  // namespace kycb::opcode
