// SPDX-License-Identifier: Apache-2.0
// Positions among random axes against a second reckoning, in long doubles and without the geometry
// classes. Points at which a comparison or a truncation is a matter of rounding are left out.
#include <cmath>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "result/AxisGrid.h"
#include "result/AxisLocator.h"

using kycbtest::AxisGrid;

namespace {

using Real = long double;

constexpr Real kPi = std::numbers::pi_v<Real>;
constexpr Real kNear = 5000;
constexpr Real kFarthest = 1e6L;
/// Differences of distances that the two reckonings may see differently (mm).
constexpr Real kDoubtful = 1e-4L;
/// The same for angles and sines.
constexpr Real kDoubtfulAngle = 1e-9L;
/// The same where a line only just cuts a circle, which magnifies errors (mm).
constexpr Real kDoubtfulGrazing = 1e-3L;

struct Vec {
    Real x = 0;
    Real y = 0;

    friend Vec operator+(Vec a, Vec b) { return {a.x + b.x, a.y + b.y}; }
    friend Vec operator-(Vec a, Vec b) { return {a.x - b.x, a.y - b.y}; }
    friend Vec operator*(Vec a, Real s) { return {a.x * s, a.y * s}; }
};

Real Dot(Vec a, Vec b) {
    return a.x * b.x + a.y * b.y;
}
Real Cross(Vec a, Vec b) {
    return a.x * b.y - a.y * b.x;
}
Real Length(Vec a) {
    return std::hypot(a.x, a.y);
}
Vec LeftOf(Vec a) {
    return {-a.y, a.x};
}

/// An arc about `from` when it has a radius, else the line from `from` to `to`.
struct Axis {
    std::wstring name;
    Vec from;
    Vec to;
    double radius = 0;
    double start = 0;
    double sweep = 0;

    bool IsArc() const { return radius > 0; }
    Vec At(Real angle) const { return from + Vec{std::cos(angle), std::sin(angle)} * radius; }
};

/// How far beyond its start the direction of `v` lies on the arc, in [0, 2 pi).
Real BeyondStart(const Axis& arc, Vec v) {
    const Real beyond = std::fmod(std::atan2(v.y, v.x) - arc.start, 2 * kPi);
    return beyond < 0 ? beyond + 2 * kPi : beyond;
}

class Reckoning {
  public:
    Reckoning(Vec point, std::vector<Axis> axes) : point_(point), axes_(std::move(axes)) {}

    std::wstring Text() {
        const Axis* nearest = FindNearest();
        if (!nearest || IsLess(kNear, best_) || best_ == kNear) return L"其他位置";
        const Vec up = TurnedUp(Direction(*nearest));
        const Vec left = LeftOf(up);
        const std::wstring across = Part(Shoot(left), Shoot(left * -1));
        const std::wstring along = Part(Shoot(up * -1), Shoot(up));
        if (across.empty() && along.empty()) return L"其他位置";
        return across + (across.empty() || along.empty() ? L"" : L" / ") + along;
    }

    /// Whether rounding had a say in the text.
    bool IsDoubtful() const { return doubtful_; }

  private:
    struct Hit {
        Real distance = kFarthest;
        std::wstring name;
    };

    bool IsLess(Real a, Real b) {
        Doubt(a - b, kDoubtful);
        return a < b;
    }
    void Doubt(Real difference, Real limit) { doubtful_ |= std::abs(difference) < limit; }

    Vec Closest(const Axis& axis) const {
        if (!axis.IsArc()) {
            const Vec span = axis.to - axis.from;
            const Real t = Dot(point_ - axis.from, span) / Dot(span, span);
            return axis.from + span * std::min<Real>(1, std::max<Real>(0, t));
        }
        const Vec outward = point_ - axis.from;
        if (BeyondStart(axis, outward) <= axis.sweep) {
            return axis.from + outward * (axis.radius / Length(outward));
        }
        const Vec start = axis.At(axis.start);
        const Vec end = axis.At(static_cast<Real>(axis.start) + axis.sweep);
        return Length(point_ - end) < Length(point_ - start) ? end : start;
    }

    const Axis* FindNearest() {
        const Axis* nearest = nullptr;
        for (const Axis& axis : axes_) {
            const Vec closest = Closest(axis);
            const Real distance = Length(point_ - closest);
            if (!IsLess(distance, best_)) continue;
            nearest = &axis;
            best_ = distance;
            closest_ = closest;
        }
        return nearest;
    }

    Vec Direction(const Axis& axis) const {
        const Vec along = axis.IsArc() ? LeftOf(closest_ - axis.from) : axis.to - axis.from;
        return along * (1 / Length(along));
    }

    /// Of the four right-angle turns the one within 45 degrees of +y.
    Vec TurnedUp(Vec direction) {
        Doubt(std::abs(direction.x) - std::abs(direction.y), 1e-6L);
        while (direction.y <= std::abs(direction.x))
            direction = LeftOf(direction);
        return direction;
    }

    Hit Shoot(Vec ray) {
        Hit hit;
        const auto offer = [&](const Axis& axis, Real distance) {
            Doubt(distance, kDoubtful);
            if (distance >= 0 && IsLess(distance, hit.distance)) hit = {distance, axis.name};
        };
        for (const Axis& axis : axes_) {
            if (axis.IsArc()) {
                ShootAtArc(ray, axis, offer);
            } else {
                ShootAtLine(ray, axis, offer);
            }
        }
        return hit;
    }

    template <class Offer>
    void ShootAtLine(Vec ray, const Axis& line, Offer offer) {
        const Vec span = line.to - line.from;
        const Real sine = Cross(ray, span) / Length(span);
        Doubt(std::abs(sine) - 0.001L, kDoubtfulAngle);
        if (std::abs(sine) <= 0.001L) return;
        const Vec offset = line.from - point_;
        const Real along = Cross(offset, ray) / sine;
        Doubt(along, kDoubtful);
        Doubt(along - Length(span), kDoubtful);
        if (along < 0 || along > Length(span)) return;
        offer(line, Cross(offset, span) / Length(span) / sine);
    }

    template <class Offer>
    void ShootAtArc(Vec ray, const Axis& arc, Offer offer) {
        const Vec fromCentre = point_ - arc.from;
        const Real passing = Cross(fromCentre, ray);
        Doubt(std::abs(passing) - arc.radius, kDoubtfulGrazing);
        if (std::abs(passing) > arc.radius) return;
        const Real half = std::sqrt(arc.radius * arc.radius - passing * passing);
        for (const Real distance : {-Dot(fromCentre, ray) - half, -Dot(fromCentre, ray) + half}) {
            const Real beyond = BeyondStart(arc, fromCentre + ray * distance);
            Doubt(beyond * arc.radius, kDoubtfulGrazing);
            Doubt((beyond - arc.sweep) * arc.radius, kDoubtfulGrazing);
            if (beyond <= arc.sweep) offer(arc, distance);
        }
    }

    std::wstring Part(const Hit& plus, const Hit& minus) {
        if (plus.name.empty() && minus.name.empty()) return L"";
        const bool isMinus = IsLess(minus.distance, plus.distance);
        const Hit& nearer = isMinus ? minus : plus;
        if (!IsLess(nearer.distance, kNear)) return L"";
        Doubt(nearer.distance - std::round(nearer.distance), kDoubtful);
        return nearer.name + (isMinus ? L"(-" : L"(+") +
               std::to_wstring(static_cast<int>(nearer.distance)) + L"mm)";
    }

    Vec point_;
    std::vector<Axis> axes_;
    Real best_ = 1e10L;
    Vec closest_;
    bool doubtful_ = false;
};

class RandomAxes {
  public:
    explicit RandomAxes(unsigned seed) : random_(seed) {}

    double Number(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random_);
    }

    /// Of three lines two run along a grid turned by `angle`, as in a building.
    Axis Line(std::wstring name, double angle) {
        const double turns[] = {0.0, std::numbers::pi / 2, Number(0, 3)};
        angle += turns[random_() % 3];
        const Vec middle = {Number(-8000, 8000), Number(-8000, 8000)};
        const Vec along = {std::cos(angle), std::sin(angle)};
        const Vec from = middle - along * Number(10, 40000);
        const Vec to = middle + along * Number(10, 40000);
        // Both reckonings start from the same doubles.
        return {std::move(name), Rounded(from), Rounded(to)};
    }

    Axis Arc(std::wstring name) {
        Axis arc{std::move(name), {Number(-15000, 15000), Number(-15000, 15000)}, {}};
        arc.radius = Number(100, 20000);
        arc.start = Number(-7, 7);
        arc.sweep = Number(0.05, 6.2);
        return arc;
    }

    std::vector<Axis> Several(double angle) {
        std::vector<Axis> axes;
        for (auto count = 1 + random_() % 8; count > 0; --count) {
            const std::wstring name = L"N" + std::to_wstring(count);
            axes.push_back(random_() % 4 == 0 ? Arc(name) : Line(name, angle));
        }
        return axes;
    }

  private:
    static Vec Rounded(Vec v) { return {static_cast<double>(v.x), static_cast<double>(v.y)}; }

    std::mt19937 random_;
};

void Add(AxisGrid& grid, const Axis& axis) {
    const auto x = static_cast<double>(axis.from.x);
    const auto y = static_cast<double>(axis.from.y);
    if (axis.IsArc()) {
        grid.Arc(axis.name, x, y, axis.radius, axis.start, axis.sweep);
    } else {
        grid.Line(axis.name, x, y, static_cast<double>(axis.to.x), static_cast<double>(axis.to.y));
    }
}

/// The axes that the search square around the point meets, in the order of the tree.
std::vector<Axis> Candidates(AxisGrid& grid, const std::vector<Axis>& axes, double x, double y) {
    std::vector<AxisGrid::Item*> found;
    grid.Tree().Query({x - 5000, y - 5000, x + 5000, y + 5000}, found);
    std::vector<Axis> candidates;
    for (const AxisGrid::Item* item : found) {
        for (const Axis& axis : axes) {
            if (axis.name == item->axisName) candidates.push_back(axis);
        }
    }
    return candidates;
}

}  // namespace

TEST(AxisLocator, AgreesWithASecondReckoningAmongRandomLinesAndArcs) {
    RandomAxes random(20240922);
    int compared = 0;
    int twoParts = 0;
    int arcs = 0;
    for (int round = 0; round < 1440; ++round) {
        const std::vector<Axis> axes = random.Several(round % 360 * std::numbers::pi / 180);
        AxisGrid grid;
        for (const Axis& axis : axes) {
            Add(grid, axis);
            arcs += axis.IsArc();
        }
        for (int i = 0; i < 20; ++i) {
            const double x = random.Number(-12000, 12000);
            const double y = random.Number(-12000, 12000);
            Reckoning reckoning({x, y}, Candidates(grid, axes, x, y));
            const std::wstring expected = reckoning.Text();
            if (reckoning.IsDoubtful()) continue;
            ASSERT_EQ(kycb::LocateAmongAxes({x, y, 0}, grid.Tree()), expected)
                << "round " << round << ", " << x << ", " << y;
            ++compared;
            twoParts += expected.find(L" / ") != std::wstring::npos;
        }
    }
    EXPECT_GT(compared, 25000);
    EXPECT_GT(twoParts, 5000);
    EXPECT_GT(arcs, 1000);
}
