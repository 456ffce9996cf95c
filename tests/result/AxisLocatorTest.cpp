// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "result/AxisGrid.h"
#include "result/AxisLocator.h"

using kycbtest::AxisGrid;
using QNIM::GeometryPrimitiveResource::CQNIMBoundingBox;
using QNIM::GeometryPrimitiveResource::CQNIMCurve;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kFar = 50000;
const std::wstring kOther = L"其他位置";

std::wstring Locate(double x, double y, AxisGrid& grid) {
    return kycb::LocateAmongAxes({x, y, 0}, grid.Tree());
}

// Axis 1 along x = 0 and axis A along y = 0, both 100 000 long.
AxisGrid Cross() {
    AxisGrid grid;
    grid.Line(L"1", 0, -kFar, 0, kFar).Line(L"A", -kFar, 0, kFar, 0);
    return grid;
}

// Maps a local frame to the world: turned by whole degrees, then moved.
struct Placement {
    double degrees;
    double x0 = 0.0;
    double y0 = 0.0;

    double X(double x, double y) const {
        return x0 + x * std::cos(Angle()) - y * std::sin(Angle());
    }
    double Y(double x, double y) const {
        return y0 + x * std::sin(Angle()) + y * std::cos(Angle());
    }
    double Angle() const { return degrees * kPi / 180; }

    void Line(AxisGrid& grid, const std::wstring& name, double xa, double ya, double xb,
              double yb) const {
        grid.Line(name, X(xa, ya), Y(xa, ya), X(xb, yb), Y(xb, yb));
    }
    std::wstring At(double x, double y, AxisGrid& grid) const {
        return Locate(X(x, y), Y(x, y), grid);
    }
};

// What whole-degree arithmetic says about a grid turned by `degrees`: which quarter turn of the
// local x axis points closest to +y, the one at 135 degrees rather than the one at 45.
int QuarterTurnsTowardsY(int degrees) {
    for (int turns = 0; turns < 4; ++turns) {
        const int angle = (degrees + 90 * turns) % 360;
        if (angle > 45 && angle <= 135) return turns;
    }
    return -1;
}

struct LocalAxis {
    std::wstring name;
    int at;
};

// One part of the text from local whole-number coordinates along the part's own direction, which
// points to the plus side.
std::wstring ExpectedPart(int point, const std::vector<LocalAxis>& axes, int sign) {
    int plus = 1000000;
    int minus = 1000000;
    std::wstring plusName;
    std::wstring minusName;
    for (const LocalAxis& axis : axes) {
        const int side = sign * (point - axis.at);
        if (side >= 0 && side < plus) {
            plus = side;
            plusName = axis.name;
        }
        if (side <= 0 && -side < minus) {
            minus = -side;
            minusName = axis.name;
        }
    }
    if (plus <= minus) {
        return plus < 5000 ? plusName + L"(+" + std::to_wstring(plus) + L"mm)" : L"";
    }
    return minus < 5000 ? minusName + L"(-" + std::to_wstring(minus) + L"mm)" : L"";
}

std::wstring Joined(const std::wstring& first, const std::wstring& second) {
    if (first.empty() && second.empty()) return kOther;
    if (first.empty() || second.empty()) return first + second;
    return first + L" / " + second;
}

// The whole text for a point at local (x, y) among axes at local x and local y, all without ends.
std::wstring Expected(int degrees, int x, int y, const std::vector<LocalAxis>& acrossX,
                      const std::vector<LocalAxis>& acrossY) {
    // The first part measures against the direction v, a quarter turn beyond u; the second along u.
    switch (QuarterTurnsTowardsY(degrees)) {
        case 0:  // u = +x, v = +y
            return Joined(ExpectedPart(y, acrossY, -1), ExpectedPart(x, acrossX, +1));
        case 1:  // u = +y, v = -x
            return Joined(ExpectedPart(x, acrossX, +1), ExpectedPart(y, acrossY, +1));
        case 2:  // u = -x, v = -y
            return Joined(ExpectedPart(y, acrossY, +1), ExpectedPart(x, acrossX, -1));
        default:  // u = -y, v = +x
            return Joined(ExpectedPart(x, acrossX, -1), ExpectedPart(y, acrossY, -1));
    }
}

class Spline : public CQNIMCurve {
  public:
    CQNIMBoundingBox GetBoundingBox() const override { return {{-10, -10, 0}, {10, 10, 0}}; }
};

}  // namespace

TEST(AxisLocator, NamesTheAxesOnBothSidesOfThePoint) {
    AxisGrid grid = Cross();
    EXPECT_EQ(Locate(1000, 2000, grid), L"1(+1000mm) / A(+2000mm)");
    EXPECT_EQ(Locate(-1000, -2000, grid), L"1(-1000mm) / A(-2000mm)");
    EXPECT_EQ(Locate(-1000, 2000, grid), L"1(-1000mm) / A(+2000mm)");
    EXPECT_EQ(Locate(1000, -2000, grid), L"1(+1000mm) / A(-2000mm)");
}

TEST(AxisLocator, GivesOnePartWhereTheOtherAxisIsOutsideTheSearchSquare) {
    AxisGrid grid = Cross();
    EXPECT_EQ(Locate(6000, 100, grid), L"A(+100mm)");
    EXPECT_EQ(Locate(100, -6000, grid), L"1(+100mm)");
}

TEST(AxisLocator, MidwayBetweenTwoAxesThePlusSideWins) {
    AxisGrid grid;
    grid.Line(L"1", 0, -kFar, 0, kFar).Line(L"2", 2000, -kFar, 2000, kFar);
    EXPECT_EQ(Locate(1000, 77, grid), L"1(+1000mm)");
    AxisGrid upward;
    upward.Line(L"A", -kFar, 0, kFar, 0).Line(L"B", -kFar, 2001, kFar, 2001);
    EXPECT_EQ(Locate(77, 1000.5, upward), L"A(+1000mm)");
}

TEST(AxisLocator, TruncatesTheOffset) {
    AxisGrid grid = Cross();
    EXPECT_EQ(Locate(1250.9, 0.99, grid), L"1(+1250mm) / A(+0mm)");
    EXPECT_EQ(Locate(-1250.9, -0.99, grid), L"1(-1250mm) / A(-0mm)");
    EXPECT_EQ(Locate(1249.99, 10, grid), L"1(+1249mm) / A(+10mm)");
}

TEST(AxisLocator, AnOffsetJustBelowAWholeMillimetreIsTruncatedToo) {
    // The axis rises by 1 in 1000 and passes 1 mm below the point, so that it is 1 / sqrt(1 + 1e-6)
    // = 0.9999995 mm away.
    AxisGrid grid;
    grid.Line(L"1", -17500, 1480, 22500, 1520);
    EXPECT_EQ(Locate(1500, 1500, grid), L"1(+0mm)");
}

TEST(AxisLocator, AnEmptyTreeGivesTheOtherPosition) {
    AxisGrid grid;
    EXPECT_EQ(Locate(0, 0, grid), kOther);
    EXPECT_EQ(kycb::LocateAmongAxes({0, 0, 0}, kycb::AxisTree()), kOther);
}

TEST(AxisLocator, AxesFromFiveMetresOnAreTooFar) {
    AxisGrid grid = Cross();
    EXPECT_EQ(Locate(5000, 5000, grid), kOther);
    EXPECT_EQ(Locate(4999, 5000, grid), L"1(+4999mm)");
    EXPECT_EQ(Locate(4999.99, 6000, grid), L"1(+4999mm)");
    EXPECT_EQ(Locate(-5000, 4999, grid), L"A(+4999mm)");
}

TEST(AxisLocator, ABoxInTheSearchSquareIsNotEnough) {
    // The corner of the axis's box is near, the axis itself is not.
    AxisGrid grid;
    grid.Line(L"1", 0, 0, 40000, 40000);
    EXPECT_EQ(Locate(20000, 0, grid), kOther);
}

TEST(AxisLocator, APointOnAnAxisLiesOnItsPlusSideAtDistanceZero) {
    AxisGrid grid = Cross();
    EXPECT_EQ(Locate(0, 700, grid), L"1(+0mm) / A(+700mm)");
    EXPECT_EQ(Locate(-700, 0, grid), L"1(-700mm) / A(+0mm)");
    EXPECT_EQ(Locate(0, 0, grid), L"1(+0mm) / A(+0mm)");
}

TEST(AxisLocator, WholeMillimetresArePrintedAsTheyAreOnHundredMetreAxes) {
    AxisGrid grid = Cross();
    for (int offset = 0; offset < 5000; ++offset) {
        const std::wstring number = std::to_wstring(offset) + L"mm)";
        ASSERT_EQ(Locate(offset, offset, grid), L"1(+" + number + L" / A(+" + number);
    }
}

TEST(AxisLocator, AgreesWithWholeNumberArithmeticOnGridsTurnedByEveryDegree) {
    const std::vector<LocalAxis> acrossX = {{L"1", 0}, {L"2", 2000}, {L"3", 8400}, {L"4", 20400}};
    const std::vector<LocalAxis> acrossY = {{L"A", 0}, {L"B", 3000}, {L"C", 12001}};
    std::mt19937 random(52);
    std::uniform_int_distribution<int> anywhere(-9000, 26000);
    int plus = 0;
    int minus = 0;
    int single = 0;
    int none = 0;
    for (int degrees = 0; degrees < 360; ++degrees) {
        const Placement placement{static_cast<double>(degrees), 12345, -6789};
        AxisGrid grid;
        for (const LocalAxis& axis : acrossX) {
            placement.Line(grid, axis.name, axis.at, -kFar, axis.at, kFar);
        }
        for (const LocalAxis& axis : acrossY) {
            placement.Line(grid, axis.name, kFar, axis.at, -kFar, axis.at);
        }
        std::vector<std::pair<int, int>> points = {
            {0, 0},       {1000, 1500}, {2000, 7},    {5200, 3000},   {1250, 1250},
            {-5000, 100}, {-1, -1},     {8400, 7500}, {25400, 17001}, {14400, -5000}};
        for (int i = 0; i < 30; ++i)
            points.emplace_back(anywhere(random), anywhere(random));
        for (const auto& [x, y] : points) {
            const std::wstring expected = Expected(degrees, x, y, acrossX, acrossY);
            ASSERT_EQ(placement.At(x, y, grid), expected)
                << degrees << " degrees, " << x << ", " << y;
            plus += expected.find(L"(+") != std::wstring::npos;
            minus += expected.find(L"(-") != std::wstring::npos;
            single += expected != kOther && expected.find(L'/') == std::wstring::npos;
            none += expected == kOther;
        }
    }
    EXPECT_GT(plus, 2000);
    EXPECT_GT(minus, 2000);
    EXPECT_GT(single, 1000);
    EXPECT_GT(none, 500);
}

TEST(AxisLocator, MirroredPointsMirrorTheSigns) {
    const Placement placement{0, 0, 0};
    AxisGrid grid = Cross();
    for (int x = 1; x < 5000; x += 311) {
        for (int y = 1; y < 5000; y += 173) {
            const std::wstring dx = std::to_wstring(x) + L"mm)";
            const std::wstring dy = std::to_wstring(y) + L"mm)";
            EXPECT_EQ(placement.At(x, y, grid), L"1(+" + dx + L" / A(+" + dy);
            EXPECT_EQ(placement.At(-x, y, grid), L"1(-" + dx + L" / A(+" + dy);
            EXPECT_EQ(placement.At(x, -y, grid), L"1(+" + dx + L" / A(-" + dy);
            EXPECT_EQ(placement.At(-x, -y, grid), L"1(-" + dx + L" / A(-" + dy);
        }
    }
}

TEST(AxisLocator, DirectionOfTheAxisDoesNotMatter) {
    AxisGrid grid;
    grid.Line(L"1", 0, kFar, 0, -kFar).Line(L"A", kFar, 0, -kFar, 0);
    EXPECT_EQ(Locate(1000, 2000, grid), L"1(+1000mm) / A(+2000mm)");
    EXPECT_EQ(Locate(2000, 1000, grid), L"1(+2000mm) / A(+1000mm)");
}

TEST(AxisLocator, ASlantingAxisIsMeasuredAlongTheRayAndNotAlongItsNormal) {
    // Axis S rises at 60 degrees; from (d + 300 / tan 60, 300) it is d to the left.
    AxisGrid grid;
    grid.Line(L"A", -kFar, 0, kFar, 0)
        .Line(L"S", -10000, -10000 * std::sqrt(3.0), 10000, 10000 * std::sqrt(3.0));
    for (const int d : {400, 1250, 4999}) {
        EXPECT_EQ(Locate(d + 300 / std::sqrt(3.0), 300, grid),
                  L"S(+" + std::to_wstring(d) + L"mm) / A(+300mm)");
    }
}

TEST(AxisLocator, MidwayBetweenAxesThatSlantAgainstEachOtherThePlusSideWins) {
    // A tilt of the rays of 4e-8 would make one of the two nearer.
    AxisGrid grid;
    grid.Line(L"A", -kFar, 0, kFar, 0)
        .Line(L"L", -4000, -7000, -1000, 7000)
        .Line(L"R", 4000, -7000, 1000, 7000);
    EXPECT_EQ(Locate(0, 700, grid), L"L(+2350mm) / A(+700mm)");
    EXPECT_EQ(Locate(0, -700, grid), L"L(+2650mm) / A(-700mm)");
}

TEST(AxisLocator, OfEquallyDistantAxesOnOneSideTheFirstIsNamed) {
    AxisGrid grid;
    grid.Line(L"1", 0, -kFar, 0, kFar).Line(L"1a", 0, -100, 0, 100);
    EXPECT_EQ(Locate(500, 20, grid), L"1(+500mm)");
}

TEST(AxisLocator, AxesThatAreNearlyParallelToTheRayAreNotMet) {
    // Both axes hold the point; the rays along A meet T there too unless it is passed over.
    AxisGrid flat;
    flat.Line(L"A", -kFar, 0, kFar, 0).Line(L"T", -5000, -4.5, 5000, 4.5);
    EXPECT_EQ(Locate(0, 0, flat), L"A(+0mm)");
    AxisGrid steeper;
    steeper.Line(L"A", -kFar, 0, kFar, 0).Line(L"T", -5000, -5.5, 5000, 5.5);
    EXPECT_EQ(Locate(0, 0, steeper), L"T(+0mm) / A(+0mm)");
}

TEST(AxisLocator, AnAxisThatEndsShortOfTheRayIsNotMet) {
    AxisGrid grid;
    grid.Line(L"A", -kFar, 0, kFar, 0).Line(L"1", 1000, 0, 1000, 2000);
    EXPECT_EQ(Locate(0, 2000, grid), L"1(-1000mm) / A(+2000mm)");
    EXPECT_EQ(Locate(0, 2000.01, grid), L"A(+2000mm)");
    EXPECT_EQ(Locate(0, -0.01, grid), L"A(-0mm)");
}

TEST(AxisLocator, AnAxisThatEndsExactlyAtTheRayIsMetAtEveryDegree) {
    for (int degrees = 0; degrees < 360; ++degrees) {
        const Placement placement{static_cast<double>(degrees), 1e5, -1e5};
        AxisGrid grid;
        placement.Line(grid, L"A", -kFar, 0, kFar, 0);
        placement.Line(grid, L"1", 4321, 0, 4321, 2000);
        EXPECT_EQ(placement.At(0, 2000, grid),
                  Expected(degrees, 0, 2000, {{L"1", 4321}}, {{L"A", 0}}))
            << degrees;
        EXPECT_EQ(placement.At(0, 2000.01, grid), Expected(degrees, 0, 2000, {}, {{L"A", 0}}))
            << degrees;
    }
}

TEST(AxisLocator, AnArcGivesItsTangentAtTheClosestPointAsDirection) {
    AxisGrid grid;
    grid.Arc(L"R", 0, 0, 10000, -kPi / 2, kPi);
    // Seen from (8000, 0) the arc runs along y: 2000 to the right, and 6000 up and down.
    EXPECT_EQ(Locate(8000, 0, grid), L"R(-2000mm)");
    // From (9000, 0) the circle is sqrt(10000^2 - 9000^2) = 4358.89 up and down.
    EXPECT_EQ(Locate(9000, 0, grid), L"R(-1000mm) / R(+4358mm)");
    EXPECT_EQ(Locate(11000, 0, grid), L"R(+1000mm)");
}

TEST(AxisLocator, AnArcIsMetOnlyWhereItRuns) {
    // The upper quarter alone: from (9000, 0) it is met above and to the right.
    AxisGrid grid;
    grid.Arc(L"R", 0, 0, 10000, 0, kPi / 2);
    EXPECT_EQ(Locate(9000, 0, grid), L"R(-1000mm) / R(-4358mm)");
}

TEST(AxisLocator, APointOnAnArcTouchesItInBothDirections) {
    // The rays along the tangent touch the arc at the point itself.
    AxisGrid grid;
    grid.Arc(L"R", 0, 0, 10000, 0, 2 * kPi);
    EXPECT_EQ(Locate(10000, 0, grid), L"R(+0mm) / R(+0mm)");
    EXPECT_EQ(Locate(0, -10000, grid), L"R(+0mm) / R(+0mm)");
}

TEST(AxisLocator, AgreesWithTheClosedFormOnRingsAtEveryDegree) {
    const double centreX = 30000;
    const double centreY = -20000;
    for (int degrees = 0; degrees < 360; ++degrees) {
        AxisGrid grid;
        grid.Arc(L"R", centreX, centreY, 12500, 0.3, 2 * kPi);
        for (const int radius : {7501, 9000, 11250, 12400, 12501, 14000, 17499, 17500}) {
            // In the frame of the radius the ring is met outwards and inwards along the radius, and
            // at half the chord across it.
            std::vector<LocalAxis> alongRadius = {{L"R", 12500}, {L"R", -12500}};
            std::vector<LocalAxis> acrossRadius;
            if (radius < 12500) {
                const int chord =
                    static_cast<int>(std::sqrt(12500.0 * 12500.0 - 1.0 * radius * radius));
                acrossRadius = {{L"R", chord}, {L"R", -chord}};
            }
            const std::wstring expected =
                radius == 17500 ? kOther : Expected(degrees, radius, 0, alongRadius, acrossRadius);
            const Placement placement{static_cast<double>(degrees), centreX, centreY};
            EXPECT_EQ(placement.At(radius, 0, grid), expected) << degrees << ", " << radius;
        }
    }
}

TEST(AxisLocator, OfEquallyNearAxesTheFirstGivesTheDirection) {
    // The point is as far from A as from S, which runs at 30 degrees.
    const double c = std::cos(kPi / 6);
    const double s = std::sin(kPi / 6);
    const double x = std::cos(kPi / 12) * 1000;
    const double y = std::sin(kPi / 12) * 1000;
    AxisGrid horizontalFirst;
    horizontalFirst.Line(L"A", 0, 0, kFar, 0).Line(L"S", 0, 0, kFar * c, kFar * s);
    // Up and down along y: A is y below, S is x * tan 30 - y above; left along x: S again.
    const double above = x * s / c - y;
    const double left = x - y * c / s;
    EXPECT_EQ(Locate(x, y, horizontalFirst), L"S(+" + std::to_wstring(static_cast<int>(left)) +
                                                 L"mm) / A(+" +
                                                 std::to_wstring(static_cast<int>(y)) + L"mm)");
    EXPECT_GT(above, y);
    AxisGrid slantingFirst;
    slantingFirst.Line(L"S", 0, 0, kFar * c, kFar * s).Line(L"A", 0, 0, kFar, 0);
    const std::wstring other = Locate(x, y, slantingFirst);
    EXPECT_NE(other, Locate(x, y, horizontalFirst));
    EXPECT_EQ(other.substr(other.find(L'/')),
              L"/ S(-" + std::to_wstring(static_cast<int>(y)) + L"mm)");
}

TEST(AxisLocator, AnAxisWithoutLengthHasNoDirectionAndIsMetOnlyOnIt) {
    AxisGrid grid;
    grid.Line(L"P", 100, 100, 100, 100);
    EXPECT_EQ(Locate(100, 100, grid), L"P(+0mm) / P(+0mm)");
    EXPECT_EQ(Locate(100, 101, grid), kOther);
}

TEST(AxisLocator, PassesOverCurvesThatItDoesNotKnow) {
    AxisGrid grid;
    grid.Curved(L"X", std::make_unique<Spline>());
    EXPECT_EQ(Locate(0, 0, grid), kOther);
    grid.Line(L"1", 700, -kFar, 700, kFar);
    EXPECT_EQ(Locate(0, 0, grid), L"1(-700mm)");
}

TEST(AxisLocator, PassesOverItemsWithoutACurve) {
    AxisGrid grid = Cross();
    KYCOLLISION::LOGIC::SQNGIAxisItem bare;
    grid.Tree().Insert(&bare, {-10, -10, 10, 10});
    grid.Tree().Insert(nullptr, {-10, -10, 10, 10});
    EXPECT_EQ(Locate(100, 200, grid), L"1(+100mm) / A(+200mm)");
}

TEST(AxisLocator, HeightCountsForTheNearestAxisOnly) {
    AxisGrid grid;
    using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
    using QNIM::GeometryPrimitiveResource::CQNIMPosition;
    grid.Curved(L"1", std::make_unique<CQNIMLineSegment>(CQNIMPosition(0, -kFar, 3000),
                                                         CQNIMPosition(0, kFar, 3000)));
    EXPECT_EQ(Locate(1250, 0, grid), L"1(+1250mm)");
    EXPECT_EQ(Locate(4500, 0, grid), kOther);  // 5408 in space
}

TEST(AxisLocator, APointThatIsNowhereHasTheOtherPosition) {
    AxisGrid grid = Cross();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Locate(nan, 0, grid), kOther);
    EXPECT_EQ(Locate(0, infinite, grid), kOther);
    EXPECT_EQ(Locate(1e308, -1e308, grid), kOther);
}
