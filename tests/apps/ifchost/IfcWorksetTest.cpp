// SPDX-License-Identifier: Apache-2.0
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "SceneBuilder.h"
#include "ifchost/HostText.h"
#include "ifchost/IfcGuid.h"
#include "ifchost/IfcWorkset.h"

namespace ifchost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::SceneBuilder;
using testing::TemporaryFolder;

class Worksets : public ::testing::Test {
  protected:
    IfcWorkset Make(const std::vector<std::pair<std::string, SceneBuilder>>& files,
                    const Classification& mapping = Classification::Default()) {
        std::vector<WorksetInput> inputs;
        for (const auto& [name, builder] : files)
            inputs.push_back({name, builder.Open(folder_)});
        return IfcWorkset(std::move(inputs), mapping);
    }
    IfcWorkset Make(const SceneBuilder& builder) { return Make({{"model.ifc", builder}}); }

    static const ProductAccount& Account(const IfcWorkset& workset, std::size_t product) {
        return workset.Projects()[0].accounts[product];
    }

    static void ExpectComplete(const IfcWorkset& workset) {
        std::size_t components = 0;
        for (const WorksetProject& project : workset.Projects()) {
            const auto& counts = project.fateCounts;
            const std::size_t sum = std::accumulate(counts.begin(), counts.end(), std::size_t{0});
            EXPECT_EQ(sum, project.package.Products().size());
            EXPECT_EQ(project.accounts.size(), project.package.Products().size());
            components += counts[static_cast<std::size_t>(ProductFate::Checked)] +
                          counts[static_cast<std::size_t>(ProductFate::ListedOpening)];
        }
        EXPECT_EQ(components, workset.Components().size());
    }

    TemporaryFolder folder_;
};

SceneBuilder WallOn(int storey) {
    SceneBuilder builder;
    builder.Storey("E0", 0).Storey("E1", 3000);
    builder.Add("IfcWall").Box({0, 0, 0}, {1000, 200, 2500}).On(storey);
    return builder;
}

TEST_F(Worksets, NumberProjectsFromOneInTheGivenOrder) {
    const auto workset = Make({{"b.ifc", WallOn(0)}, {"a.ifc", WallOn(0)}, {"x/a.ifc", WallOn(0)}});
    ASSERT_EQ(workset.Projects().size(), 3U);
    EXPECT_EQ(workset.Projects()[0].id, 1);
    EXPECT_EQ(workset.Projects()[0].name, L"b");
    EXPECT_EQ(workset.Projects()[1].id, 2);
    EXPECT_EQ(workset.Projects()[1].name, L"a");
    EXPECT_EQ(workset.Projects()[2].name, L"a (2)");
    EXPECT_EQ(workset.Project(3), &workset.Projects()[2]);
    EXPECT_EQ(workset.Project(0), nullptr);
    EXPECT_EQ(workset.Project(4), nullptr);
    ExpectComplete(workset);
}

TEST_F(Worksets, TurnStoreysIntoFloorsUpToTheNextStorey) {
    const auto workset = Make(WallOn(1));
    const auto& floors = workset.Projects()[0].floors;
    ASSERT_EQ(floors.size(), 2U);
    EXPECT_EQ(floors[0].name, L"E0");
    EXPECT_EQ(floors[0].under, 0.0);
    EXPECT_EQ(floors[0].top, 3000.0);
    EXPECT_EQ(floors[0].components, 0U);
    EXPECT_EQ(floors[1].under, 3000.0);
    EXPECT_EQ(floors[1].components, 1U);
    EXPECT_EQ(&workset.Floor(workset.Components()[0]), &floors[1]);
}

TEST_F(Worksets, EndTheHighestFloorAtTheTopOfItsContents) {
    SceneBuilder builder;
    builder.Storey("E0", 0).Add("IfcWall").Box({0, 0, 100}, {1000, 200, 2600}).On(0);
    EXPECT_EQ(Make(builder).Projects()[0].floors[0].top, 2600.0);
}

TEST_F(Worksets, EndAFloorAtTheNextStoreyOfTheSameBuilding) {
    SceneBuilder builder;
    builder.Building("A").Building("B");
    builder.Storey("A0", 0, 0).Storey("B0", 1500, 1).Storey("A1", 3000, 0);
    const auto workset = Make(builder);
    EXPECT_EQ(workset.Projects()[0].floors[0].top, 3000.0);
}

TEST_F(Worksets, MakeFloorNamesUniqueAndFillEmptyOnes) {
    SceneBuilder builder;
    builder.Storey("Level", 0).Storey("Level", 3000).Storey("", 6000);
    const auto& workset = Make(builder);
    const auto& floors = workset.Projects()[0].floors;
    EXPECT_EQ(floors[0].name, L"Level");
    EXPECT_EQ(floors[1].name, L"Level (2)");
    EXPECT_EQ(floors[2].name, L"#12");
}

TEST_F(Worksets, PutProductsWithoutAStoreyOnAFloorOfTheirOwn) {
    SceneBuilder builder;
    builder.Storey("(no storey)", 0);
    builder.Add("IfcWall").Box({0, 0, 500}, {1000, 200, 900});
    const auto workset = Make(builder);
    const auto& floors = workset.Projects()[0].floors;
    ASSERT_EQ(floors.size(), 2U);
    EXPECT_EQ(floors[1].name, L"(no storey) (2)");
    EXPECT_EQ(floors[1].storey, kNoIndex);
    EXPECT_EQ(floors[1].under, 500.0);
    EXPECT_EQ(floors[1].top, 900.0);
}

TEST_F(Worksets, AccountForEveryProduct) {
    SceneBuilder builder;
    builder.Storey("E0", 0);
    builder.Add("IfcWall").Box({0, 0, 0}, {1, 1, 1}).On(0);
    builder.Add("IfcSpace").As("space").With("meshNote", "a space is no body");
    builder.Add("IfcWall");
    builder.Add("IfcWall").With("meshState", "empty");
    builder.Add("IfcWall").With("meshState", "failed").With("meshNote", "the reader failed: x");
    builder.Add("IfcStrangeThing").Box({0, 0, 0}, {1, 1, 1});
    builder.Add("IfcSite").Box({0, 0, 0}, {1, 1, 1});
    const auto workset = Make(builder);
    const ProductFate expected[] = {ProductFate::Checked,    ProductFate::NotABody,
                                    ProductFate::NoGeometry, ProductFate::EmptyBody,
                                    ProductFate::FailedBody, ProductFate::Unmapped,
                                    ProductFate::LeftOut};
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_EQ(Account(workset, i).fate, expected[i]) << i;
        EXPECT_EQ(Account(workset, i).component, i == 0 ? 0 : kNoIndex) << i;
        EXPECT_FALSE(FateText(expected[i]).empty());
        EXPECT_FALSE(FateName(expected[i]).empty());
    }
    EXPECT_EQ(Account(workset, 1).note, "a space is no body");
    EXPECT_EQ(Account(workset, 4).note, "the reader failed: x");
    EXPECT_EQ(Account(workset, 6).note, "the ground is no component");
    ExpectComplete(workset);
}

TEST_F(Worksets, ListUnmappedClassesWithCountAndExample) {
    SceneBuilder builder;
    builder.Add("IfcRareThing").Box({0, 0, 0}, {1, 1, 1});
    for (int i = 0; i < 3; ++i) {
        builder.Add("IfcStrangeThing").Named("S").Box({0, 0, 0}, {1, 1, 1});
    }
    const auto workset = Make(builder);
    const auto unmapped = workset.Unmapped();
    ASSERT_EQ(unmapped.size(), 2U);
    EXPECT_EQ(unmapped[0].ifcClass, "IfcStrangeThing");
    EXPECT_EQ(unmapped[0].count, 3U);
    EXPECT_EQ(unmapped[0].example, "S (" + SceneBuilder::GuidOf(1) + ")");
    EXPECT_EQ(unmapped[1].count, 1U);
}

TEST_F(Worksets, CheckAssembliesThroughTheirParts) {
    SceneBuilder builder;
    builder.Add("IfcElementAssembly");
    builder.Add("IfcBeam").Box({0, 0, 0}, {100, 100, 100}).PartOf(0);
    builder.Add("IfcElementAssembly");
    const auto workset = Make(builder);
    EXPECT_EQ(Account(workset, 0).fate, ProductFate::ThroughParts);
    EXPECT_EQ(Account(workset, 1).fate, ProductFate::Checked);
    EXPECT_EQ(Account(workset, 2).fate, ProductFate::NoGeometry);
    ExpectComplete(workset);
}

TEST_F(Worksets, LeaveAnAssemblyToPartsThatRepeatItsBody) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {1000, 200, 1000});
    builder.Add("IfcBuildingElementPart").Box({0, 0, 0}, {1000, 120, 1000}).PartOf(0);
    builder.Add("IfcBuildingElementPart").Box({0, 120, 0}, {1000, 200, 1000}).PartOf(0);
    const auto workset = Make(builder);
    EXPECT_EQ(Account(workset, 0).fate, ProductFate::ThroughParts);
    EXPECT_EQ(Account(workset, 1).fate, ProductFate::Checked);
    EXPECT_EQ(Account(workset, 2).fate, ProductFate::Checked);
    // The layers belong where the wall belongs.
    EXPECT_EQ(workset.Components()[0].category.xiaolei, L"填充墙");
    EXPECT_EQ(workset.Components()[1].category.xiaolei, L"填充墙");
}

TEST_F(Worksets, CheckAnAssemblyBesidePartsThatOnlyLieInIt) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {1000, 200, 1000});
    builder.Add("IfcReinforcingBar").Box({0, 50, 50}, {1000, 60, 60}).PartOf(0);
    const auto workset = Make(builder);
    EXPECT_EQ(Account(workset, 0).fate, ProductFate::Checked);
    EXPECT_EQ(Account(workset, 1).fate, ProductFate::Checked);
}

TEST_F(Worksets, SurviveAssembliesThatGoInACircle) {
    SceneBuilder builder;
    builder.Add("IfcBuildingElementPart").Box({0, 0, 0}, {1, 1, 1}).With("parent", 1);
    builder.Add("IfcBuildingElementPart").Box({0, 0, 0}, {1, 1, 1}).With("parent", 0);
    const auto workset = Make(builder);
    EXPECT_EQ(Account(workset, 0).fate, ProductFate::Unmapped);
    ExpectComplete(workset);
}

TEST_F(Worksets, ListOpeningsThatNothingFills) {
    SceneBuilder builder;
    builder.Storey("E0", 0);
    builder.Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500}).On(0);
    builder.Add("IfcOpeningElement").As("opening").With("origin", Point3{500, 0, 0}).On(0);
    builder.Add("IfcOpeningElement").As("opening").On(0);
    builder.Add("IfcDoor").Box({2000, 0, 0}, {2900, 200, 2000}).On(0);
    builder.Add("IfcSlab").Box({0, 0, -200}, {3000, 3000, 0}).On(0);
    builder.Add("IfcOpeningElement").As("opening").On(0);
    builder.Add("IfcOpeningElement").As("opening").With("predefinedType", "RECESS");
    builder.Add("IfcVoidingFeature").As("opening");
    builder.Add("IfcOpeningElement").As("opening");
    builder.Relate("voids", 1, 0).Relate("voids", 2, 0).Relate("voids", 5, 4);
    builder.Relate("voids", 6, 0).Relate("voids", 7, 0).Relate("fills", 2, 3);
    const auto workset = Make(builder);
    EXPECT_EQ(Account(workset, 1).fate, ProductFate::ListedOpening);
    EXPECT_EQ(Account(workset, 2).fate, ProductFate::FilledOpening);
    EXPECT_EQ(Account(workset, 5).fate, ProductFate::ListedOpening);
    EXPECT_EQ(Account(workset, 6).fate, ProductFate::NotABody);
    EXPECT_EQ(Account(workset, 7).fate, ProductFate::NotABody);
    EXPECT_EQ(Account(workset, 8).note, "an opening that no element has");
    const auto& wallOpening = workset.Components()[1];
    EXPECT_EQ(wallOpening.role, ComponentRole::Opening);
    EXPECT_EQ(wallOpening.category.xiaolei, L"墙洞");
    EXPECT_EQ(wallOpening.box.min, (Point3{500, 0, 0}));
    const auto& slabOpening =
        workset.Components()[static_cast<std::size_t>(Account(workset, 5).component)];
    EXPECT_EQ(slabOpening.category.dalei, L"板.楼梯");
    EXPECT_EQ(slabOpening.category.xiaolei, L"板洞");
    ExpectComplete(workset);
}

TEST_F(Worksets, ListAnOpeningWhoseFillingIsNotChecked) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500});
    builder.Add("IfcOpeningElement").As("opening");
    builder.Add("IfcDoor");
    builder.Relate("voids", 1, 0).Relate("fills", 1, 2);
    EXPECT_EQ(Account(Make(builder), 1).fate, ProductFate::ListedOpening);
}

TEST_F(Worksets, ListNoCutOutsOfFurnitureAndEquipment) {
    SceneBuilder builder;
    for (const char* host : {"IfcFurniture", "IfcSanitaryTerminal"}) {
        builder.Add(host).Box({0, 0, 0}, {600, 600, 900});
        builder.Add("IfcOpeningElement").As("opening");
    }
    builder.Relate("voids", 1, 0).Relate("voids", 3, 2);
    const auto workset = Make(builder);
    for (const std::size_t opening : {1U, 3U}) {
        EXPECT_EQ(Account(workset, opening).fate, ProductFate::NotABody);
        EXPECT_EQ(Account(workset, opening).note,
                  "a cut-out of furniture or equipment is no opening");
    }
    ExpectComplete(workset);
}

TEST_F(Worksets, KeyComponentsByTheValueOfTheirGlobalId) {
    SceneBuilder builder;
    builder.Add("IfcWall", "2Lf0000000000000000000").Box({0, 0, 0}, {1, 1, 1});
    const auto workset = Make(builder);
    const auto& wall = workset.Components()[0];
    EXPECT_EQ(wall.guid, L"95a40000000000000000000000000000");
    EXPECT_EQ(workset.FindComponent(1, wall.guid), &wall);
    EXPECT_EQ(workset.FindComponent(1, L"95A40000000000000000000000000000"), &wall);
    EXPECT_EQ(workset.FindComponent(2, wall.guid), nullptr);
    EXPECT_EQ(workset.FindComponent(1, L"x"), nullptr);
    EXPECT_EQ(workset.GlobalId(wall), "2Lf0000000000000000000");
}

TEST_F(Worksets, GiveProductsWithARepeatedOrMalformedGlobalIdTheirOwn) {
    SceneBuilder builder;
    for (const char* guid : {"2Lf0000000000000000000", "2Lf0000000000000000000", "not one", ""}) {
        builder.Add("IfcWall", guid).Box({0, 0, 0}, {1, 1, 1});
    }
    const auto workset = Make(builder);
    std::set<std::wstring> guids;
    for (const auto& component : workset.Components()) {
        guids.insert(component.guid);
        EXPECT_EQ(component.guid.size(), kGuidHexDigits);
        EXPECT_EQ(workset.FindComponent(1, component.guid), &component);
    }
    EXPECT_EQ(guids.size(), 4U);
    EXPECT_TRUE(guids.count(L"95a40000000000000000000000000000"));
    EXPECT_EQ(workset.GlobalId(workset.Components()[1]), "2Lf0000000000000000000");
    ASSERT_EQ(workset.Warnings().size(), 2U);
    EXPECT_THAT(workset.Warnings()[0].text, HasSubstr("1 products have the GlobalId of another"));
    EXPECT_EQ(Make(builder).Components()[1].guid, workset.Components()[1].guid);
}

TEST_F(Worksets, GiveComponentsOfEarlierFilesGuidsOfTheirOwn) {
    SceneBuilder builder;
    builder.Add("IfcWall", "2Lf0000000000000000000").Box({0, 0, 0}, {1, 1, 1});
    builder.Add("IfcSpace", "1Lf0000000000000000000");
    const auto workset = Make({{"a.ifc", builder}, {"b.ifc", builder}, {"a.ifc", builder}});
    const auto& components = workset.Components();
    ASSERT_EQ(components.size(), 3U);
    EXPECT_EQ(components[0].guid, L"95a40000000000000000000000000000");
    std::set<std::wstring> guids;
    for (const auto& component : components) {
        guids.insert(component.guid);
        EXPECT_EQ(component.guid.size(), kGuidHexDigits);
        EXPECT_EQ(workset.GlobalId(component), "2Lf0000000000000000000");
        EXPECT_EQ(workset.FindComponent(component.projectId, component.guid), &component);
    }
    EXPECT_EQ(guids.size(), 3U);
    ASSERT_EQ(workset.Warnings().size(), 2U) << "spaces are no components";
    EXPECT_EQ(workset.Warnings()[0].projectId, 2);
    EXPECT_THAT(workset.Warnings()[0].text, HasSubstr("1 components have the GlobalId of a"));
    const auto less = Make({{"c.ifc", builder}, {"b.ifc", builder}});
    EXPECT_EQ(less.Components()[1].guid, components[1].guid) << "it goes by the file's name";
}

TEST_F(Worksets, NameTheMappingRuleThatDecided) {
    SceneBuilder builder;
    builder.Add("IfcPile").Box({0, 0, 0}, {1, 1, 1});
    builder.Add("IfcFancyNewThing").Box({0, 0, 0}, {1, 1, 1});
    const auto workset = Make(builder);
    EXPECT_EQ(workset.RuleName(Account(workset, 0)), "Piles");
    EXPECT_EQ(workset.RuleName(Account(workset, 1)), "");
}

TEST_F(Worksets, NameComponentsAndTheirSystems) {
    SceneBuilder builder;
    builder.System("Supply")
        .System("My selection", "IfcGroup")
        .System("Ring", "IfcDistributionSystem");
    builder.Add("IfcDuctSegment").Box({0, 0, 0}, {1, 1, 1}).Named("Duct 墙");
    builder.With("systems", std::vector<int>{0, 1, 2});
    builder.Add("IfcDuctSegment").Box({0, 0, 0}, {1, 1, 1}).With("typeName", "D200");
    builder.Add("IfcDuctSegment").Box({0, 0, 0}, {1, 1, 1});
    const auto workset = Make(builder);
    EXPECT_EQ(workset.Components()[0].name, L"Duct 墙");
    EXPECT_EQ(workset.Components()[0].syscode, L"Supply,Ring");
    EXPECT_EQ(workset.Components()[1].name, L"D200");
    EXPECT_EQ(workset.Components()[1].syscode, L"");
    EXPECT_EQ(workset.Components()[2].name, L"IfcDuctSegment #102");
}

TEST_F(Worksets, JoinFloorsOfTheSameNameInOrderOfElevation) {
    SceneBuilder services;
    services.Storey("E1", 3010).Storey("Empty", -3000);
    services.Add("IfcDuctSegment").Box({0, 0, 0}, {1, 1, 1}).On(0);
    SceneBuilder architecture = WallOn(1);
    architecture.Add("IfcWall").Box({0, 0, 0}, {1, 1, 1}).On(0);
    const auto workset = Make({{"s.ifc", services}, {"a.ifc", architecture}});
    const auto floors = workset.CollisionFloors();
    ASSERT_EQ(floors.size(), 2U);
    EXPECT_EQ(floors[0].name, L"E0");
    EXPECT_THAT(floors[0].floorKeys, ElementsAre(std::pair(2, std::wstring(L"E0"))));
    EXPECT_EQ(floors[1].name, L"E1");
    EXPECT_THAT(floors[1].floorKeys,
                ElementsAre(std::pair(1, std::wstring(L"E1")), std::pair(2, std::wstring(L"E1"))));
}

TEST_F(Worksets, ListTheKindsThatAreCheckedOnce) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {1, 1, 1});
    builder.Add("IfcWall").Box({0, 0, 0}, {1, 1, 1});
    builder.Add("IfcDoor").Box({0, 0, 0}, {1, 1, 1});
    builder.Add("IfcOpeningElement").As("opening");
    builder.Relate("voids", 3, 0);
    const auto kinds = Make(builder).CheckedKinds();
    ASSERT_EQ(kinds.size(), 2U);
    EXPECT_EQ(kinds[0].xiaolei, L"填充墙");
    EXPECT_EQ(kinds[1].xiaolei, L"门");
}

TEST_F(Worksets, ShareOneLocalOriginAmongAllFiles) {
    SceneBuilder a;
    a.Add("IfcWall").Box({155000000, 463000000, 0}, {155001000, 463000200, 2500});
    SceneBuilder b;
    b.Add("IfcSlab", SceneBuilder::GuidOf(7))
        .Box({155010000, 463000000, -200}, {155011000, 463001000, 0});
    const auto workset = Make({{"a.ifc", a}, {"b.ifc", b}});
    EXPECT_TRUE(workset.Origin().moved);
    // Middles of 155000000..155011000 and 463000000..463001000, to whole metres away from zero.
    EXPECT_EQ(workset.Origin().origin, (Point3{155006000, 463001000, 0}));
    EXPECT_EQ(workset.ToWorld({1, 2, 3}), (Point3{155006001, 463001002, 3}));
    EXPECT_EQ(workset.ToLocal({155006001, 463001002, 3}), (Point3{1, 2, 3}));
    EXPECT_TRUE(workset.Warnings().empty());
}

TEST_F(Worksets, WarnWhenFilesLieTooFarApart) {
    SceneBuilder a;
    a.Add("IfcWall").Box({155000000, 0, 0}, {155001000, 200, 2500});
    a.Add("IfcWall").Box({155000000, 0, 0}, {155001000, 200, 2500});
    SceneBuilder b;
    b.Add("IfcSlab", SceneBuilder::GuidOf(7)).Box({0, 0, 0}, {1000, 1000, 200});
    const auto workset = Make({{"a.ifc", a}, {"b.ifc", b}});
    ASSERT_EQ(workset.Warnings().size(), 1U);
    EXPECT_EQ(workset.Warnings()[0].projectId, 0);
    EXPECT_THAT(workset.Warnings()[0].text, HasSubstr("only kept to 16 mm"));
}

}  // namespace
}  // namespace ifchost
