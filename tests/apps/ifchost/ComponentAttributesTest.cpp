// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "SceneBuilder.h"
#include "ifchost/ComponentAttributes.h"
#include "ifchost/IfcGuid.h"

namespace ifchost {
namespace {

using testing::SceneBuilder;
using testing::TemporaryFolder;
using Json = SceneBuilder::Json;
using Map = ComponentAttributes::Map;

class Attributes : public ::testing::Test {
  protected:
    /// The attributes of the component that the product with this index became.
    Map Of(const SceneBuilder& builder, std::size_t product = 0) {
        std::vector<WorksetInput> inputs;
        inputs.push_back({"f.ifc", builder.Open(folder_)});
        const IfcWorkset workset(std::move(inputs), Classification::Default());
        const auto component = workset.Projects()[0].accounts.at(product).component;
        EXPECT_NE(component, kNoIndex);
        return ComponentAttributes(workset).Read(static_cast<std::size_t>(component));
    }
    static std::wstring Text(const Map& map, const wchar_t* name) {
        const auto found = map.find(name);
        return found == map.end() ? L"(missing)" : found->second;
    }
    static std::wstring Hex(std::size_t product) {
        return *HexFromGlobalId(SceneBuilder::GuidOf(product));
    }
    static Json Section(const char* shape, double width, double height, const Point3& start,
                        const Point3& end, const Point3& xAxis, double radius = 0) {
        const double length = std::hypot(end[0] - start[0], end[1] - start[1], end[2] - start[2]);
        return {{"shape", shape},     {"width", width},     {"height", height}, {"radius", radius},
                {"start", start},     {"end", end},         {"xAxis", xAxis},   {"length", length},
                {"wallThickness", 0}, {"profileClass", ""}, {"solidCount", 1}};
    }
    TemporaryFolder folder_;
};

TEST_F(Attributes, GiveAHorizontalDuctWhatItsUndersideIsMadeOf) {
    SceneBuilder builder;
    builder.Add("IfcDuctSegment").Box({0, 0, 2700}, {3000, 400, 2900});
    builder.Property("Pset_DuctSegmentTypeCommon", "InsulationThickness", "0.05",
                     PropertyKind::Length, 50);
    const Map map = Of(builder);
    EXPECT_EQ(Text(map, L"heighttype"), L"3");
    EXPECT_EQ(Text(map, L"oneheight"), L"2800");
    EXPECT_EQ(Text(map, L"sectheight"), L"200");
    EXPECT_EQ(Text(map, L"bwthick"), L"50");
    EXPECT_EQ(Text(map, L"sectwidthheight"), L"400*200");
    EXPECT_EQ(Text(map, L"sectradius"), L"(missing)");
    EXPECT_EQ(Text(map, L"pipegczj"), L"(missing)");
}

TEST_F(Attributes, TellAnUninsulatedDuctSoAndTakeInsulationFromItsCovering) {
    SceneBuilder builder;
    builder.Add("IfcDuctSegment").Box({0, 0, 2700}, {3000, 400, 2900});
    EXPECT_EQ(Text(Of(builder), L"bwthick"), L"0");
    builder.Add("IfcCovering").With("predefinedType", "INSULATION");
    builder.Box({0, -30, 2670}, {3000, 430, 2930}).Relate("coverings", 0, 1);
    EXPECT_EQ(Text(Of(builder), L"bwthick"), L"30");
}

TEST_F(Attributes, GiveAHorizontalPipeTheHeightOfItsAxis) {
    SceneBuilder builder;
    builder.Add("IfcPipeSegment").Box({0, 0, 1000}, {3000, 100, 1100});
    const Map map = Of(builder);
    EXPECT_EQ(Text(map, L"heighttype"), L"1");
    EXPECT_EQ(Text(map, L"oneheight"), L"1050");
    EXPECT_EQ(Text(map, L"sectheight"), L"(missing)");
}

TEST_F(Attributes, GiveAVerticalRunItsRange) {
    SceneBuilder builder;
    builder.Add("IfcPipeSegment").Box({0, 0, -500}, {100, 100, 2500.25});
    const Map map = Of(builder);
    EXPECT_EQ(Text(map, L"heighttype"), L"2");
    EXPECT_EQ(Text(map, L"underheight"), L"-500");
    EXPECT_EQ(Text(map, L"topheight"), L"2500.25");
}

TEST_F(Attributes, MarkSlopedRunsAndSlopedBeams) {
    for (const char* ifcClass : {"IfcPipeSegment", "IfcBeam"}) {
        SceneBuilder builder;
        builder.Add(ifcClass).Box({0, 0, 0}, {3000, 100, 160});
        builder.With("section",
                     Section("circle", 100, 100, {0, 50, 50}, {3000, 50, 110}, {0, 1, 0}, 50));
        const Map map = Of(builder);
        EXPECT_EQ(Text(map, L"heighttype"), L"4") << ifcClass;
        EXPECT_EQ(Text(map, L"underheight"), L"0");
        EXPECT_EQ(Text(map, L"topheight"), L"160");
    }
}

TEST_F(Attributes, GiveOtherBodiesTheirRange) {
    for (const char* ifcClass : {"IfcWall", "IfcSlab", "IfcColumn", "IfcBeam", "IfcAirTerminal"}) {
        SceneBuilder builder;
        builder.Add(ifcClass).Box({0, 0, 0}, {3000, 200, 300});
        EXPECT_EQ(Text(Of(builder), L"heighttype"), L"2") << ifcClass;
        EXPECT_EQ(Text(Of(builder), L"topheight"), L"300") << ifcClass;
    }
}

TEST_F(Attributes, GiveHeightsInWorldElevationsAlsoFarFromTheOrigin) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({155000000, 0, 2240000}, {155003000, 200, 2242500});
    const Map map = Of(builder);
    EXPECT_EQ(Text(map, L"underheight"), L"2240000");
    EXPECT_EQ(Text(map, L"topheight"), L"2242500");
}

TEST_F(Attributes, GiveRoundSectionsARadius) {
    SceneBuilder builder;
    builder.Add("IfcDuctSegment").Box({0, 0, 0}, {3000, 100, 100});
    builder.With("section",
                 Section("circle", 100, 100, {0, 50, 50}, {3000, 50, 50}, {0, 1, 0}, 50));
    const Map map = Of(builder);
    EXPECT_EQ(Text(map, L"sectradius"), L"50");
    EXPECT_EQ(Text(map, L"sectwidthheight"), L"(missing)");
}

TEST_F(Attributes, FindDiametersInPropertiesNamesAndSizes) {
    const auto pipe = [] {
        SceneBuilder builder;
        builder.Add("IfcPipeSegment").Box({0, 0, 0}, {3000, 114.3, 114.3});
        return builder;
    };
    EXPECT_EQ(Text(Of(pipe().With("nominalDiameter", 80).With("typeName", "DN50")), L"pipegczj"),
              L"80");
    EXPECT_EQ(Text(Of(pipe().With("typeName", "DN50").Named("DN65")), L"pipegczj"), L"50");
    EXPECT_EQ(Text(Of(pipe().Named("DN65")), L"pipegczj"), L"65");
    EXPECT_EQ(Text(Of(pipe()), L"pipegczj"), L"100");
}

TEST_F(Attributes, TakeTheEndsOfARunFromItsAxisOrItsPorts) {
    SceneBuilder builder;
    builder.Add("IfcDuctSegment").Box({0, 0, 0}, {3000, 400, 200});
    builder.With("section",
                 Section("rectangle", 400, 200, {0, 200, 100}, {3000, 200, 100}, {0, 1, 0}));
    EXPECT_EQ(Text(Of(builder), L"drawstartendpt"), L"0,200,100,3000,200,100");
    builder.Add("IfcDistributionPort").As("port").With("origin", Point3{-10, 200, 100});
    builder.Add("IfcDistributionPort").As("port").With("origin", Point3{3010, 200, 100});
    builder.Port(1, 0).Port(2, 0);
    EXPECT_EQ(Text(Of(builder), L"drawstartendpt"), L"-10,200,100,3010,200,100");
}

TEST_F(Attributes, IgnorePortsThatAreAllOnOneSpot) {
    SceneBuilder builder;
    builder.Add("IfcDuctSegment").Box({0, 0, 0}, {3000, 400, 200});
    builder.With("section",
                 Section("rectangle", 400, 200, {0, 200, 100}, {3000, 200, 100}, {0, 1, 0}));
    builder.Add("IfcDistributionPort").As("port").With("origin", Point3{0, 0, 0});
    builder.Add("IfcDistributionPort").As("port").With("origin", Point3{0, 0, 0});
    builder.Port(1, 0).Port(2, 0);
    EXPECT_EQ(Text(Of(builder), L"drawstartendpt"), L"0,200,100,3000,200,100");
}

TEST_F(Attributes, NameRelatedComponentsByTheGuidsOfTheModel) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500});
    builder.Add("IfcOpeningElement").As("opening");
    builder.Add("IfcDoor").Box({1000, 0, 0}, {1900, 200, 2000});
    builder.Relate("voids", 1, 0).Relate("fills", 1, 2);
    EXPECT_EQ(Text(Of(builder, 0), L"relatedobjs"), Hex(2));
    EXPECT_EQ(Text(Of(builder, 2), L"relatedobjs"), Hex(0));
    EXPECT_EQ(Text(Of(builder, 0), L"relatedfits"), L"(missing)");
}

TEST_F(Attributes, NameConnectedRunsAsFittings) {
    SceneBuilder builder;
    builder.Add("IfcPipeSegment").Box({0, 0, 0}, {1000, 100, 100});
    builder.Add("IfcPipeFitting").Box({1000, 0, 0}, {1100, 100, 100});
    builder.Add("IfcPipeSegment").Box({1100, 0, 0}, {2000, 100, 100});
    builder.Connect(0, 1, "port").Connect(1, 2, "port");
    EXPECT_EQ(Text(Of(builder, 1), L"relatedfits"), Hex(0) + L"," + Hex(2));
}

TEST_F(Attributes, LeaveRelatedComponentsOutThatAreFarAway) {
    SceneBuilder builder;
    builder.Add("IfcElementAssembly");
    builder.Add("IfcBeam").Box({0, 0, 0}, {1000, 100, 100}).PartOf(0);
    builder.Add("IfcBeam").Box({2900, 0, 0}, {4000, 100, 100}).PartOf(0);
    builder.Add("IfcBeam").Box({9000, 0, 0}, {9900, 100, 100}).PartOf(0);
    EXPECT_EQ(Text(Of(builder, 1), L"relatedobjs"), Hex(2));
}

TEST_F(Attributes, DescribeADoorAsAnOpening) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500});
    builder.Add("IfcOpeningElement").As("opening").Box({1000, -50, 10}, {1900, 250, 2010});
    builder.Add("IfcDoor").Box({1010, 0, 10}, {1890, 200, 2000});
    builder.With("overallWidth", 900).With("overallHeight", 2000);
    builder.Relate("voids", 1, 0).Relate("fills", 1, 2);
    const Map map = Of(builder, 2);
    EXPECT_EQ(Text(map, L"holeshape"), L"1");
    EXPECT_EQ(Text(map, L"holesize"), L"900,2000");
    EXPECT_EQ(Text(map, L"holecenter"), L"1450,100,1010");
    EXPECT_EQ(Text(map, L"holeelev"), L"10");
    EXPECT_EQ(Text(map, L"parentid"), Hex(0));
    EXPECT_EQ(Text(map, L"heighttype"), L"2");
}

TEST_F(Attributes, ListADoorWithoutAHostToo) {
    SceneBuilder builder;
    builder.Add("IfcDoor").Box({0, 0, 0}, {900, 100, 2000});
    const Map map = Of(builder);
    EXPECT_EQ(Text(map, L"parentid"), L"");
    EXPECT_EQ(Text(map, L"holeshape"), L"3");
    EXPECT_EQ(Text(map, L"holesize"), L"900,2000");
}

TEST_F(Attributes, MeasureAHoleThroughAThickWallAlongTheWall) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {400, 5000, 2500});
    builder.Add("IfcOpeningElement").As("opening").Box({-50, 1000, 900}, {450, 1150, 1000});
    builder.Relate("voids", 1, 0);
    const Map map = Of(builder, 1);
    EXPECT_EQ(Text(map, L"holesize"), L"150,100");
    EXPECT_EQ(Text(map, L"holeelev"), L"900");
    EXPECT_EQ(Text(map, L"parentid"), Hex(0));
}

TEST_F(Attributes, ReadRoundAndRectangularHolesFromTheirSections) {
    const auto opening = [](const Json& section) {
        SceneBuilder builder;
        builder.Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500});
        builder.Add("IfcOpeningElement").As("opening").With("section", section);
        builder.Relate("voids", 1, 0);
        return builder;
    };
    const Map round =
        Of(opening(Section("circle", 160, 160, {500, 0, 900}, {500, 200, 900}, {1, 0, 0}, 80)), 1);
    EXPECT_EQ(Text(round, L"holeshape"), L"2");
    EXPECT_EQ(Text(round, L"holesize"), L"160");
    const Map level =
        Of(opening(Section("rectangle", 300, 100, {500, 0, 900}, {500, 200, 900}, {1, 0, 0})), 1);
    EXPECT_EQ(Text(level, L"holeshape"), L"1");
    EXPECT_EQ(Text(level, L"holesize"), L"300,100");
    const Map turned =
        Of(opening(Section("rectangle", 300, 100, {500, 0, 900}, {500, 200, 900}, {0, 0, 1})), 1);
    EXPECT_EQ(Text(turned, L"holesize"), L"100,300");
    const Map upward =
        Of(opening(Section("rectangle", 900, 200, {500, 100, 0}, {500, 100, 2000}, {1, 0, 0})), 1);
    EXPECT_EQ(Text(upward, L"holesize"), L"900,2000");
}

TEST_F(Attributes, MeasureASlabOpeningInPlan) {
    SceneBuilder builder;
    builder.Add("IfcSlab").Box({0, 0, -200}, {5000, 5000, 0});
    builder.Add("IfcOpeningElement").As("opening").Box({100, 100, -300}, {700, 1300, 100});
    builder.Relate("voids", 1, 0);
    const Map map = Of(builder, 1);
    EXPECT_EQ(Text(map, L"holesize"), L"1200,600");
    EXPECT_EQ(Text(map, L"holecenter"), L"400,700,-100");
}

TEST_F(Attributes, GiveWallsNothingOfAnOpening) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500});
    EXPECT_EQ(Text(Of(builder), L"holeshape"), L"(missing)");
}

}  // namespace
}  // namespace ifchost
