// SPDX-License-Identifier: Apache-2.0
// Neighbour lists of random floors against a literal transcription of the rules that define them.
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include <gmock/gmock.h>
#include <hwy/targets.h>

#include "support/Kinds.h"
#include "support/OnlyTarget.h"
#include "support/SceneBuilder.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Indices = std::vector<std::size_t>;

struct Rectangle {
    double minX, minY, maxX, maxY;
};

Rectangle PlanOf(const BoundingBox3d& box) {
    return {box.GetMinX(), box.GetMinY(), box.GetMaxX(), box.GetMaxY()};
}

bool Meet(const Rectangle& a, const Rectangle& b) {
    return a.minX <= b.maxX && b.minX <= a.maxX && a.minY <= b.maxY && b.minY <= a.maxY;
}

// A quad tree as its rules say it, one node at a time.
struct LiteralNode {
    Rectangle box;
    std::array<std::unique_ptr<LiteralNode>, 4> children;  // UR, LR, UL, LL
    std::vector<std::pair<std::size_t, Rectangle>> held;   // with the box of the insertion

    void Insert(std::size_t item, const Rectangle& c) {
        const int quadrant = Choose(c);
        if (quadrant < 0) {
            held.emplace_back(item, c);
            return;
        }
        auto& child = children[static_cast<std::size_t>(quadrant)];
        if (!child) child.reset(new LiteralNode{Quarter(quadrant), {}, {}});
        child->Insert(item, c);
    }

    void Query(const Rectangle& q, Indices& found) const {
        if (!Meet(q, box)) return;
        for (const auto& [item, c] : held) {
            if (Meet(c, q)) found.push_back(item);
        }
        for (const auto& child : children) {
            if (child) child->Query(q, found);
        }
    }

  private:
    int Choose(const Rectangle& c) const {
        const double e = 0.0001;
        const double mx = (box.minX + box.maxX) / 2;
        const double my = (box.minY + box.maxY) / 2;
        if (std::fabs(box.maxX - box.minX) < 500 || std::fabs(box.maxY - box.minY) < 500) return -1;
        if (c.minX - box.maxX > e || c.minY - box.maxY > e) return -1;
        if (box.minX - c.maxX > e || box.minY - c.maxY > e) return -1;
        if (c.minX - mx > e) {
            if (c.minY - my > e) return 0;
            if (my - c.maxY > e) return 1;
            return -1;
        }
        if (mx - c.maxX > e) {
            if (c.minY - my > e) return 2;
            if (my - c.maxY > e) return 3;
        }
        return -1;
    }

    Rectangle Quarter(int quadrant) const {
        const double mx = (box.minX + box.maxX) / 2;
        const double my = (box.minY + box.maxY) / 2;
        switch (quadrant) {
            case 0:
                return {mx, my, box.maxX, box.maxY};
            case 1:
                return {mx, box.minY, box.maxX, my};
            case 2:
                return {box.minX, my, mx, box.maxY};
            default:
                return {box.minX, box.minY, mx, my};
        }
    }
};

bool IsAtHeight(const BoundingBox3d& candidate, const BoundingBox3d& query) {
    return candidate.GetMinZ() <= query.GetMaxZ() - 1.0 &&
           query.GetMinZ() + 1.0 <= candidate.GetMaxZ();
}

// The components of a scene in the order of the model's walk: project, floor, category path, GUID.
std::vector<const SceneComponent*> InWalkOrder(const SceneBuilder& scene) {
    std::vector<const SceneComponent*> order;
    for (const SceneComponent& component : scene.Components()) {
        order.push_back(&component);
    }
    const auto key = [](const SceneComponent* c) {
        return std::make_tuple(c->projectId, c->floorName, PathOf(c->category), c->guid);
    };
    std::stable_sort(order.begin(), order.end(),
                     [&](const auto* a, const auto* b) { return key(a) < key(b); });
    return order;
}

struct LiteralFloor {
    BoundingBox3d box;
    std::unique_ptr<LiteralNode> tree;
};

// Neighbours of every component of `order`, as positions in it.
std::vector<Indices> LiteralNeighbours(const std::vector<const SceneComponent*>& order) {
    std::map<std::pair<int, std::wstring>, LiteralFloor> floors;
    for (const SceneComponent* c : order) {
        floors[{c->projectId, c->floorName}].box.Add(c->box);
    }
    for (std::size_t i = 0; i < order.size(); ++i) {
        LiteralFloor& floor = floors[{order[i]->projectId, order[i]->floorName}];
        if (!floor.tree) floor.tree.reset(new LiteralNode{PlanOf(floor.box), {}, {}});
        floor.tree->Insert(i, PlanOf(order[i]->box));
    }
    std::vector<Indices> neighbours(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const SceneComponent& own = *order[i];
        Indices candidates;
        for (const auto& [key, floor] : floors) {
            if (own.box.IsIntersect(floor.box)) floor.tree->Query(PlanOf(own.box), candidates);
        }
        for (const std::size_t j : candidates) {
            const SceneComponent& other = *order[j];
            const bool same = other.guid == own.guid && other.projectId == own.projectId &&
                              other.floorName == own.floorName;
            if (!same && IsAtHeight(other.box, own.box)) neighbours[i].push_back(j);
        }
    }
    return neighbours;
}

SceneBuilder RandomScene(unsigned seed, int count, double extent) {
    std::mt19937 random(seed);
    // Whole hundreds make shared faces, centre lines and equal boxes frequent.
    std::uniform_int_distribution<int> place(0, static_cast<int>(extent / 100));
    std::uniform_int_distribution<int> size(1, 15);
    std::uniform_int_distribution<int> choice(0, 999);
    const std::array kinds = {kWall, kSlab, kDuct, kDrain, kTray, kBox};
    const std::array<std::wstring, 3> floors = {L"1F", L"2F", L"B1"};
    SceneBuilder scene;
    for (int i = 0; i < count; ++i) {
        const double x = 100.0 * place(random) + 0.01 * (choice(random) % 3);
        const double y = 100.0 * place(random);
        const double z = 100.0 * (choice(random) % 60);
        const double height = choice(random) % 10 == 0 ? 1.0 : 100.0 * size(random);
        const auto pick = static_cast<std::size_t>(choice(random));
        scene.At(1 + choice(random) % 2, floors[pick % floors.size()])
            .Add(L"g" + std::to_wstring(choice(random)), kinds[pick % kinds.size()],
                 {x, y, z, x + 100.0 * size(random), y + 100.0 * size(random), z + height});
    }
    return scene;
}

std::vector<ObjectModelInfo*> NeighboursOf(const ObjectModelInfo& object) {
    const auto neighbours = object.GetBoxRelatedObjs();
    return {neighbours.begin(), neighbours.end()};
}

class RandomFloors : public ::testing::TestWithParam<unsigned> {};

// Compares the lists of all components, and says how many neighbours they hold.
void ExpectLiteralNeighbours(const SceneBuilder& scene, std::size_t& hits, std::size_t& alone) {
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    const auto order = InWalkOrder(scene);
    const auto objects = ObjectsOf(*model);
    ASSERT_EQ(objects.size(), order.size());
    const auto expected = LiteralNeighbours(order);
    for (std::size_t i = 0; i < objects.size(); ++i) {
        std::vector<ObjectModelInfo*> neighbours;
        for (const std::size_t j : expected[i]) {
            neighbours.push_back(objects[j]);
        }
        ASSERT_EQ(NeighboursOf(*objects[i]), neighbours) << "component " << i;
        hits += neighbours.size();
        alone += neighbours.empty() ? 1 : 0;
    }
}

TEST_P(RandomFloors, HaveTheNeighbourListsOfTheLiteralRulesInTheSameOrder) {
    std::size_t hits = 0;
    std::size_t alone = 0;
    ExpectLiteralNeighbours(RandomScene(GetParam(), 1500, 20000), hits, alone);
    EXPECT_GT(hits, 1500U);
    EXPECT_GT(alone, 0U);
}

TEST_P(RandomFloors, ListExactlyTheComponentsWhoseBoxesMeet) {
    const SceneBuilder scene = RandomScene(GetParam() + 1000, 700, 9000);
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    const auto objects = ObjectsOf(*model);
    std::size_t hits = 0;
    for (ObjectModelInfo* a : objects) {
        std::vector<ObjectModelInfo*> expected;
        for (ObjectModelInfo* b : objects) {
            const bool same = a->GetObjGuid() == b->GetObjGuid() &&
                              a->GetProjId() == b->GetProjId() &&
                              a->GetFloorName() == b->GetFloorName();
            if (!same && Meet(PlanOf(a->GetBoundingBox()), PlanOf(b->GetBoundingBox())) &&
                IsAtHeight(b->GetBoundingBox(), a->GetBoundingBox())) {
                expected.push_back(b);
            }
        }
        std::vector<ObjectModelInfo*> found = NeighboursOf(*a);
        std::sort(found.begin(), found.end());
        std::sort(expected.begin(), expected.end());
        ASSERT_EQ(found, expected);
        hits += found.size();
    }
    EXPECT_GT(hits, objects.size());
}

// A literal floor over the components that a model's floor holds now.
struct LiteralFloorOf {
    FloorModelInfo* floor;
    LiteralNode root;
    std::vector<ObjectModelInfo*> objects;

    explicit LiteralFloorOf(FloorModelInfo* built)
        : floor(built), root{PlanOf(built->GetFloorBox()), {}, {}} {
        for (const auto& [path, category] : floor->GetCategories()) {
            for (const auto& [guid, obj] : category->GetObjects()) {
                root.Insert(objects.size(), PlanOf(obj->GetBoundingBox()));
                objects.push_back(obj);
            }
        }
    }

    // Node by node as built, component by component as they are now.
    void Query(const LiteralNode& node, const BoundingBox3d& box,
               std::vector<ObjectModelInfo*>& found) const {
        if (!Meet(PlanOf(box), node.box)) return;
        for (const auto& [item, c] : node.held) {
            const BoundingBox3d own = objects[item]->GetBoundingBox();
            if (Meet(PlanOf(own), PlanOf(box)) && IsAtHeight(own, box)) {
                found.push_back(objects[item]);
            }
        }
        for (const auto& child : node.children) {
            if (child) Query(*child, box, found);
        }
    }
};

enum class Moved { kBeforeTheBuild, kAfterTheBuild };

// Moves some components, also out of their floors, and adds others that no tree holds.
void ExpectLiteralNeighboursOfMovedComponents(unsigned seed, Moved moved) {
    const SceneBuilder scene = RandomScene(seed, 600, 8000);
    const SceneBuilder elsewhere = RandomScene(seed + 1, 600, 14000);
    const auto model = scene.BuildModel();
    const auto objects = ObjectsOf(*model);
    const auto moveSome = [&] {
        for (std::size_t i = 0; i < objects.size(); i += 5) {
            objects[i]->SetBoundingBox(elsewhere.Components()[i].box);
        }
    };
    if (moved == Moved::kBeforeTheBuild) moveSome();
    std::vector<LiteralFloorOf> floors;
    for (const auto& [id, project] : model->GetProjects()) {
        for (const auto& [name, floor] : project->GetFloors()) {
            floor->BuildQuadTree();
            floors.emplace_back(floor);
            floor->AppendObject(L"late", L"late", L"",
                                NewObject(L"l", {9000, 0, 0, 12000, 9000, 5000}));
        }
    }
    if (moved == Moved::kAfterTheBuild) moveSome();
    model->AnalyseBoxRelated();
    std::size_t hits = 0;
    for (ObjectModelInfo* obj : ObjectsOf(*model)) {
        std::vector<ObjectModelInfo*> expected;
        const BoundingBox3d box = obj->GetBoundingBox();
        for (const LiteralFloorOf& floor : floors) {
            if (box.IsIntersect(floor.floor->GetFloorBox())) floor.Query(floor.root, box, expected);
        }
        std::erase_if(expected, [&](const ObjectModelInfo* other) {
            return other->GetObjGuid() == obj->GetObjGuid() &&
                   other->GetProjId() == obj->GetProjId() &&
                   other->GetFloorName() == obj->GetFloorName();
        });
        ASSERT_EQ(NeighboursOf(*obj), expected);
        obj->AnalyseBoxRelated();
        ASSERT_EQ(NeighboursOf(*obj), expected);
        hits += expected.size();
    }
    EXPECT_GT(hits, objects.size());
}

TEST_P(RandomFloors, FollowTheLiteralRulesForComponentsThatWereMovedOrAddedLate) {
    ExpectLiteralNeighboursOfMovedComponents(GetParam(), Moved::kBeforeTheBuild);
    ExpectLiteralNeighboursOfMovedComponents(GetParam(), Moved::kAfterTheBuild);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomFloors, ::testing::Values(1U, 2U, 3U, 4U));

// Where and how large the boxes of a scene are (mm): places in [at, at + extent), sizes up to
// `size`, both in steps of `step`, so that shared faces are as frequent as steps are coarse.
struct Shape {
    const char* name;
    int count;
    std::array<double, 3> extent;
    std::array<double, 3> size;
    double at = 0.0;
    double step = 1.0;
    int straggling = 0;  // so many boxes are ten million mm away
};

constexpr Shape kShapes[] = {
    {"Wide", 4000, {60000, 40000, 3000}, {6000, 6000, 500}},
    {"Coarse", 3000, {40000, 30000, 3000}, {4000, 3000, 1000}, 0, 500},
    {"TallCrowd", 4000, {12000, 12000, 90000}, {3000, 2000, 1500}},
    {"LongAlongX", 2000, {100, 90000, 2500}, {80000, 200, 200}},
    {"LongAlongY", 2000, {90000, 100, 2500}, {200, 80000, 200}},
    {"OneSpot", 300, {1, 1, 1}, {50, 50, 50}},
    {"Thin", 3000, {20000, 20000, 20}, {3000, 3000, 3}},
    {"StepsBelowSinglePrecision", 3000, {20, 20, 20}, {3, 3, 3}, 3e7, 1.0 / 128},
    {"StepsBelowDoublePrecision", 1000, {64, 64, 64}, {16, 16, 16}, 1e16, 1.0 / 2},
    {"OverlapsOfAboutOneInHeight", 3000, {9000, 9000, 30}, {2000, 2000, 12}, 0, 1.0},
    {"Straggling", 3000, {40000, 30000, 3000}, {4000, 3000, 500}, 0, 1.0, 60},
    {"Few", 9, {500, 500, 500}, {400, 400, 400}},
};

SceneBuilder SceneOf(const Shape& shape, unsigned seed) {
    std::mt19937 random(seed);
    const auto upTo = [&](double length) {
        const auto steps = static_cast<unsigned>(length / shape.step);
        return shape.step * static_cast<double>(random() % (steps + 1));
    };
    SceneBuilder scene;
    for (int i = 0; i < shape.count; ++i) {
        const double away = i < shape.straggling ? (i % 2 == 0 ? 1e7 : -1e7) : 0.0;
        std::array<double, 3> low{};
        std::array<double, 3> high{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            low[axis] = shape.at + away + upTo(shape.extent[axis]);
            high[axis] = low[axis] + upTo(shape.size[axis]);
        }
        // One in three stands on a floor that shares the place.
        scene.At(1, random() % 3 == 0 ? L"1F" : L"2F")
            .Add(L"g" + std::to_wstring(random() % 5000), random() % 2 == 0 ? kWall : kDuct,
                 {low[0], low[1], low[2], high[0], high[1], high[2]});
    }
    return scene;
}

class FloorsOfEveryShape : public ::testing::TestWithParam<Shape> {};

TEST_P(FloorsOfEveryShape, HaveTheNeighbourListsOfTheLiteralRulesInTheSameOrder) {
    std::size_t hits = 0;
    std::size_t alone = 0;
    for (unsigned seed = 1; seed <= 3; ++seed) {
        ExpectLiteralNeighbours(SceneOf(GetParam(), seed), hits, alone);
    }
    EXPECT_GT(hits, static_cast<std::size_t>(GetParam().count));
}

INSTANTIATE_TEST_SUITE_P(Shapes, FloorsOfEveryShape, ::testing::ValuesIn(kShapes),
                         [](const auto& shape) { return shape.param.name; });

TEST(AnalyseBoxRelated, GivesTheSameListsOnEveryInstructionSet) {
    for (std::int64_t rest = hwy::SupportedTargets(); rest != 0; rest &= rest - 1) {
        const std::int64_t target = rest & -rest;
        SCOPED_TRACE(hwy::TargetName(target));
        const OnlyTarget only(target);
        std::size_t hits = 0;
        std::size_t alone = 0;
        for (const Shape& shape : {kShapes[1], kShapes[2], kShapes[7]}) {
            ExpectLiteralNeighbours(SceneOf(shape, 7), hits, alone);
        }
        EXPECT_GT(hits, 3000U);
    }
}

TEST(AnalyseBoxRelated, ListsOneFloorAsItDoesAll) {
    const SceneBuilder scene = RandomScene(9, 1500, 12000);
    const auto all = scene.BuildModel();
    const auto one = scene.BuildModel();
    all->AnalyseBoxRelated();
    one->AnalyseBoxRelated({2, L"1F"});
    const auto expected = ObjectsOf(*all);
    const auto objects = ObjectsOf(*one);
    std::size_t hits = 0;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const bool asked = objects[i]->GetProjId() == 2 && objects[i]->GetFloorName() == L"1F";
        EXPECT_EQ(GuidsOf(objects[i]->GetBoxRelatedObjs()),
                  asked ? GuidsOf(expected[i]->GetBoxRelatedObjs()) : std::vector<std::wstring>());
        hits += objects[i]->GetBoxRelatedObjs().size();
    }
    EXPECT_GT(hits, 200U);
}

TEST(AnalyseBoxRelated, KnowsTheSameComponentByTheGuidThatItHasNow) {
    SceneBuilder scene;
    scene.Add(L"a", kWall, {0, 0, 0, 100, 100, 100});
    scene.Add(L"b", kSlab, {0, 0, 0, 100, 100, 100});
    scene.Add(L"c", kDuct, {0, 0, 0, 100, 100, 100});
    const auto model = scene.BuildModel();
    ObjectOf(*model, L"b")->SetObjGuid(L"a");
    model->AnalyseBoxRelated();
    EXPECT_THAT(GuidsOf(FloorOf(*model)->GetObjectModelInfo(L"a")->GetBoxRelatedObjs()),
                ElementsAre(L"c"));
}

TEST(AnalyseBoxRelated, ListsForAComponentThatAKindWasGivenDirectly) {
    SceneBuilder scene;
    scene.Add(L"a", kWall, {0, 0, 0, 100, 100, 100});
    const auto model = scene.BuildModel();
    AttCategoryModelInfo* walls = FloorOf(*model)->GetCategories().begin()->second;
    auto* late = NewObject(L"late", {50, 50, 0, 150, 150, 100});
    walls->AppendObject(late);
    model->AnalyseBoxRelated();
    EXPECT_THAT(GuidsOf(late->GetBoxRelatedObjs()), ElementsAre(L"a"));
    EXPECT_THAT(ObjectOf(*model, L"a")->GetBoxRelatedObjs(), IsEmpty());
}

TEST(AnalyseBoxRelated, CopesWithExtremeBoxes) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    SceneBuilder scene;
    scene.Add(L"a", kWall, {-1e300, -1e300, -1e300, 1e300, 1e300, 1e300});
    scene.Add(L"b", kWall, {0, 0, 0, kInfinity, kInfinity, kInfinity});
    scene.Add(L"c", kWall, {10, 10, 10, 20, 20, 20});
    scene.Add(L"nan", kWall, {kNan, 0, 0, 10, 10, 10});
    scene.Add(L"null", kWall, BoundingBox3d());
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    EXPECT_THAT(GuidsOf(ObjectOf(*model, L"a")->GetBoxRelatedObjs()), ElementsAre(L"b", L"c"));
    EXPECT_THAT(GuidsOf(ObjectOf(*model, L"b")->GetBoxRelatedObjs()), ElementsAre(L"a", L"c"));
    EXPECT_THAT(GuidsOf(ObjectOf(*model, L"c")->GetBoxRelatedObjs()), ElementsAre(L"a", L"b"));
    EXPECT_THAT(ObjectOf(*model, L"nan")->GetBoxRelatedObjs(), IsEmpty());
    EXPECT_THAT(ObjectOf(*model, L"null")->GetBoxRelatedObjs(), IsEmpty());
}

TEST(AnalyseBoxRelated, SeesDifferencesBelowSinglePrecision) {
    // At 1e9 mm single precision knows steps of 64 mm only.
    SceneBuilder scene;
    scene.Add(L"a", kWall, {1e9, 0, 0, 1e9 + 100, 100, 100});
    scene.Add(L"apart", kWall, {1e9 + 100.001, 0, 0, 1e9 + 200, 100, 100});
    scene.Add(L"touching", kWall, {1e9 + 100, 0, 0, 1e9 + 100.0005, 100, 100});
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    EXPECT_THAT(GuidsOf(ObjectOf(*model, L"a")->GetBoxRelatedObjs()), ElementsAre(L"touching"));
}

TEST(AnalyseBoxRelated, LeavesOutTheComponentItself) {
    SceneBuilder scene;
    scene.Add(L"a", kWall, {0, 0, 0, 100, 100, 100});
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    EXPECT_THAT(ObjectOf(*model, L"a")->GetBoxRelatedObjs(), IsEmpty());
}

TEST(AnalyseBoxRelated, LeavesOutTheSameComponentEnteredTwiceOnOneFloorOnly) {
    SceneBuilder scene;
    scene.Add(L"a", kWall, {0, 0, 0, 100, 100, 100});
    scene.Add(L"a", kSlab, {0, 0, 0, 100, 100, 100});
    scene.At(1, L"2F").Add(L"a", kWall, {0, 0, 0, 100, 100, 100});
    scene.At(2, L"1F").Add(L"a", kWall, {0, 0, 0, 100, 100, 100});
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    const auto& neighbours = FloorOf(*model)->GetObjectModelInfo(L"a")->GetBoxRelatedObjs();
    ASSERT_EQ(neighbours.size(), 2U);
    EXPECT_EQ(neighbours[0]->GetFloorName(), L"2F");
    EXPECT_EQ(neighbours[1]->GetProjId(), 2);
}

TEST(AnalyseBoxRelated, ReplacesTheEarlierList) {
    SceneBuilder scene;
    scene.Add(L"a", kWall, {0, 0, 0, 100, 100, 100});
    scene.Add(L"b", kWall, {50, 50, 0, 150, 150, 100});
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    model->AnalyseBoxRelated();
    EXPECT_THAT(GuidsOf(ObjectOf(*model, L"a")->GetBoxRelatedObjs()), ElementsAre(L"b"));
}

}  // namespace
