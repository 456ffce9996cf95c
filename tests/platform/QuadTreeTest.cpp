// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/QuadTree.h"

#include <algorithm>
#include <limits>
#include <random>
#include <vector>

#include <gmock/gmock.h>

namespace {

using KYTOOLS::GRAPH::BoundingBox2d;
using Tree = KYTOOLS::GRAPH::QuadTree<int>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const BoundingBox2d kEverything(-1e9, -1e9, 1e9, 1e9);

std::vector<int> AllIn(const Tree& tree) {
    std::vector<int> found;
    tree.Query(kEverything, found);
    return found;
}

// A root over [0, 4000] x [0, 4000] (centre 2000) that holds item 1 in its upper right quadrant and
// then item 2 under `box`: 2 comes first exactly when it stays at the root.
std::vector<int> OrderWith(const BoundingBox2d& box) {
    Tree tree(BoundingBox2d(0, 0, 4000, 4000));
    tree.Insert(1, {3000, 3000, 3100, 3100});
    tree.Insert(2, box);
    return AllIn(tree);
}

TEST(QuadTree, FindsItemsAtTheNodeFirstThenChildrenFromUpperRightToLowerLeft) {
    Tree tree(BoundingBox2d(0, 0, 4000, 4000));
    tree.Insert(1, {100, 100, 200, 200});      // lower left
    tree.Insert(2, {100, 3000, 200, 3100});    // upper left
    tree.Insert(3, {3000, 100, 3100, 200});    // lower right
    tree.Insert(4, {3000, 3000, 3100, 3100});  // upper right
    tree.Insert(5, {1900, 100, 2100, 200});    // across the vertical centre line
    tree.Insert(6, {100, 1900, 200, 2100});    // across the horizontal one
    EXPECT_THAT(AllIn(tree), ElementsAre(5, 6, 4, 3, 2, 1));
}

TEST(QuadTree, KeepsABoxThatTouchesACentreLineAtTheNode) {
    EXPECT_THAT(OrderWith({2000.00005, 3000, 2100, 3100}), ElementsAre(2, 1));
    EXPECT_THAT(OrderWith({3000, 2000.00005, 3100, 2100}), ElementsAre(2, 1));
    EXPECT_THAT(OrderWith({1000, 3000, 1999.99995, 3100}), ElementsAre(2, 1));
    EXPECT_THAT(OrderWith({3000, 1000, 3100, 1999.99995}), ElementsAre(2, 1));
}

TEST(QuadTree, MovesABoxThatIsClearOfBothCentreLinesToTheChild) {
    EXPECT_THAT(OrderWith({2000.0002, 2000.0002, 2100, 2100}), ElementsAre(1, 2));
    EXPECT_THAT(OrderWith({1000, 1000, 1999.9998, 1999.9998}), ElementsAre(1, 2));
}

TEST(QuadTree, KeepsABoxOutsideTheNodeAtTheNode) {
    EXPECT_THAT(OrderWith({4000.0002, 3000, 4100, 3100}), ElementsAre(2, 1));
    EXPECT_THAT(OrderWith({-200, -200, -0.0002, -100}), ElementsAre(2, 1));
}

TEST(QuadTree, DividesAtAWidthAndDepthOf500ButNotBelow) {
    Tree divided(BoundingBox2d(0, 0, 500, 500));
    divided.Insert(1, {10, 10, 20, 20});
    divided.Insert(2, {400, 400, 410, 410});
    EXPECT_THAT(AllIn(divided), ElementsAre(2, 1));
    Tree narrow(BoundingBox2d(0, 0, 499.9, 5000));
    narrow.Insert(1, {10, 10, 20, 20});
    narrow.Insert(2, {400, 4000, 410, 4010});
    EXPECT_THAT(AllIn(narrow), ElementsAre(1, 2));
    Tree shallow(BoundingBox2d(0, 0, 5000, 499.9));
    shallow.Insert(1, {10, 10, 20, 20});
    shallow.Insert(2, {4000, 400, 4010, 410});
    EXPECT_THAT(AllIn(shallow), ElementsAre(1, 2));
}

TEST(QuadTree, FindsWhatMerelyTouchesTheQueryBox) {
    Tree tree(BoundingBox2d(0, 0, 4000, 4000));
    tree.Insert(1, {100, 100, 200, 200});
    std::vector<int> found;
    tree.Query({200, 200, 300, 300}, found);
    EXPECT_THAT(found, ElementsAre(1));
    found.clear();
    tree.Query({200.001, 200, 300, 300}, found);
    EXPECT_THAT(found, IsEmpty());
}

TEST(QuadTree, FindsNothingForAQueryThatMissesTheRootBox) {
    Tree tree(BoundingBox2d(0, 0, 1000, 1000));
    tree.Insert(1, {2000, 2000, 2100, 2100});
    std::vector<int> found;
    tree.Query({2000, 2000, 2100, 2100}, found);
    EXPECT_THAT(found, IsEmpty());
}

TEST(QuadTree, FindsNothingWithoutAPlaceUntilOneIsAssigned) {
    Tree tree;
    tree.Insert(1, {0, 0, 10, 10});
    EXPECT_THAT(AllIn(tree), IsEmpty());
    tree = Tree(BoundingBox2d(0, 0, 10, 10));
    tree.Insert(2, {0, 0, 10, 10});
    EXPECT_THAT(AllIn(tree), ElementsAre(2));
}

TEST(QuadTree, NeverFindsAnItemWithANullBox) {
    Tree tree(BoundingBox2d(0, 0, 4000, 4000));
    tree.Insert(1, BoundingBox2d());
    EXPECT_THAT(AllIn(tree), IsEmpty());
}

TEST(QuadTree, StopsDividingWhereRoundingLeavesNoCentre) {
    // At 1e19 mm neighbouring numbers lie 2048 mm apart.
    Tree far(BoundingBox2d(1e19, 1e19, 1e19 + 4096, 1e19 + 4096));
    far.Insert(1, {1e19, 1e19, 1e19, 1e19});
    std::vector<int> found;
    far.Query({0, 0, 2e19, 2e19}, found);
    EXPECT_THAT(found, ElementsAre(1));
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    Tree infinite(BoundingBox2d(0, 0, kInfinity, kInfinity));
    infinite.Insert(2, {10, 10, 20, 20});
    EXPECT_THAT(AllIn(infinite), ElementsAre(2));
    constexpr double kLargest = std::numeric_limits<double>::max();
    Tree largest(BoundingBox2d(-kLargest, -kLargest, kLargest, kLargest));
    largest.Insert(3, {10, 10, 20, 20});
    EXPECT_THAT(AllIn(largest), ElementsAre(3));
}

TEST(QuadTree, FindsTheSameItemsAsAComparisonWithEveryBox) {
    std::mt19937 random(20240611);
    std::uniform_real_distribution<double> place(0, 20000);
    std::uniform_real_distribution<double> size(1, 1500);
    const auto randomBox = [&] {
        const double x = place(random);
        const double y = place(random);
        return BoundingBox2d(x, y, x + size(random), y + size(random));
    };
    Tree tree(BoundingBox2d(0, 0, 21500, 21500));
    std::vector<BoundingBox2d> boxes;
    for (int i = 0; i < 2000; ++i) {
        boxes.push_back(randomBox());
        tree.Insert(i, boxes.back());
    }
    std::size_t hits = 0;
    for (int round = 0; round < 500; ++round) {
        const BoundingBox2d query = randomBox();
        std::vector<int> found;
        tree.Query(query, found);
        std::sort(found.begin(), found.end());
        std::vector<int> expected;
        for (int i = 0; i < 2000; ++i) {
            if (boxes[static_cast<std::size_t>(i)].IsIntersect(query)) expected.push_back(i);
        }
        ASSERT_EQ(found, expected);
        hits += expected.size();
    }
    EXPECT_GT(hits, 1000U);        // hits are common
    EXPECT_LT(hits, 500000U / 2);  // and misses more so
}

}  // namespace
