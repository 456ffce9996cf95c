// SPDX-License-Identifier: Apache-2.0
// What the mapping that ships with the host makes of typical products.
#include <string>

#include <gtest/gtest.h>

#include "ifchost/Classification.h"
#include "ifchost/HostText.h"

namespace ifchost {
namespace {

using KYCOLLISION::MODEL::AttCategory;

const Classification& Shipped() {
    static const Classification mapping = Classification::Default();
    return mapping;
}

// One product, described field by field.
class Product {
  public:
    explicit Product(std::string ifcClass) { facts_.classes = {std::move(ifcClass)}; }
    Product& OfType(std::string typeClass) {
        facts_.classes.push_back(std::move(typeClass));
        return *this;
    }
    Product& Predefined(std::string text) { return Set(facts_.predefinedType, std::move(text)); }
    Product& Named(std::string text) { return Set(facts_.name, std::move(text)); }
    Product& TypeNamed(std::string text) { return Set(facts_.typeName, std::move(text)); }
    Product& Section(std::string text) { return Set(facts_.section, std::move(text)); }
    Product& In(std::string system) {
        facts_.systems.push_back(std::move(system));
        return *this;
    }
    Product& SystemType(std::string type) {
        facts_.systemTypes.push_back(std::move(type));
        return *this;
    }
    Product& Of(std::string material) {
        facts_.materials.push_back(std::move(material));
        return *this;
    }
    Product& PartOf(std::string assembly) {
        facts_.assemblies.push_back(std::move(assembly));
        return *this;
    }
    Product& Flag(std::string_view set, std::string_view name, bool value) {
        facts_.properties.push_back(
            {set, name, value ? "TRUE" : "FALSE", PropertyKind::Boolean, value ? 1.0 : 0.0});
        return *this;
    }
    const ProductFacts& Facts() const { return facts_; }

  private:
    Product& Set(std::string& field, std::string text) {
        field = std::move(text);
        return *this;
    }
    ProductFacts facts_;
};

AttCategory CategoryOf(const Product& product) {
    const MappingResult result = Shipped().Classify(product.Facts());
    EXPECT_EQ(result.outcome, MappingOutcome::Category) << product.Facts().classes.front();
    return result.category;
}

std::wstring PathOf(const Product& product) {
    AttCategory category = CategoryOf(product);
    return category.categoryIndex();
}

TEST(DefaultMapping, TellsWallsByMaterialAndSide) {
    EXPECT_EQ(
        PathOf(
            Product("IfcWall").Of("Concrete C30/37").Flag("Pset_WallCommon", "IsExternal", true)),
        L"土建/墙/砼外墙");
    EXPECT_EQ(PathOf(Product("IfcWallStandardCase").Of("Stahlbeton")), L"土建/墙/砼内墙");
    EXPECT_EQ(PathOf(Product("IfcWall").Of("Ziegel").Named("Außenwand")), L"土建/墙/砖外墙");
    EXPECT_EQ(PathOf(Product("IfcWall").Of("Porenbeton")), L"土建/墙/砖内墙");
    EXPECT_EQ(PathOf(Product("IfcWall").Named("Interior - Partition (92mm Stud)")),
              L"土建/墙/间壁墙");
    EXPECT_EQ(PathOf(Product("IfcWall").Predefined("PARTITIONING")), L"土建/墙/间壁墙");
    EXPECT_EQ(PathOf(Product("IfcWall").Named("电梯井墙")), L"土建/墙/电梯井墙");
    EXPECT_EQ(PathOf(Product("IfcWall").Flag("Pset_WallCommon", "LoadBearing", true)),
              L"土建/墙/砼内墙");
    EXPECT_EQ(PathOf(Product("IfcWall")), L"土建/墙/填充墙");
    EXPECT_EQ(PathOf(Product("IfcCurtainWall")), L"土建/墙/玻璃幕墙");
    EXPECT_EQ(PathOf(Product("IfcPlate").PartOf("IfcCurtainWall")), L"土建/墙/玻璃幕墙");
}

TEST(DefaultMapping, TellsFrameMembersByMaterial) {
    EXPECT_EQ(PathOf(Product("IfcColumn")), L"土建/柱/砼柱");
    EXPECT_EQ(PathOf(Product("IfcColumn").Of("S235JR")), L"土建/几何构件/钢柱");
    EXPECT_EQ(PathOf(Product("IfcColumn").Of("钢筋混凝土")), L"土建/柱/砼柱");
    EXPECT_EQ(PathOf(Product("IfcColumn").Of("Baksteen")), L"土建/柱/砖柱");
    EXPECT_EQ(PathOf(Product("IfcBeam")), L"土建/梁/框架梁");
    EXPECT_EQ(PathOf(Product("IfcBeam").TypeNamed("HEA200")), L"土建/几何构件/钢梁");
    EXPECT_EQ(PathOf(Product("IfcBeam").Of("Stahlbeton")), L"土建/梁/框架梁");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("Latei 100x60")), L"土建/梁/过梁");
    EXPECT_EQ(PathOf(Product("IfcMember").Of("Steel")), L"土建/几何构件/钢梁");
    EXPECT_EQ(PathOf(Product("IfcPlate").Of("Staal")), L"土建/几何构件/钢板");
    EXPECT_EQ(PathOf(Product("IfcBeam").Of("MISCELLANEOUS/PVC")), L"给排水/管道/废水管");
}

TEST(DefaultMapping, TellsSlabsStairsAndFoundations) {
    EXPECT_EQ(PathOf(Product("IfcSlab").Predefined("FLOOR")), L"土建/楼梯楼板/现浇板");
    EXPECT_EQ(PathOf(Product("IfcSlab").TypeNamed("Kanaalplaat 200")), L"土建/楼梯楼板/预制板");
    EXPECT_EQ(PathOf(Product("IfcSlab").Predefined("BASESLAB")), L"土建/楼梯楼板/现浇板");
    EXPECT_EQ(PathOf(Product("IfcSlab").PartOf("IfcRoof")), L"土建/几何构件/几何板");
    EXPECT_EQ(PathOf(Product("IfcRoof")), L"土建/几何构件/几何板");
    EXPECT_EQ(PathOf(Product("IfcStair")), L"土建/楼梯楼板/楼梯");
    EXPECT_EQ(PathOf(Product("IfcStairFlight").PartOf("IfcStair")), L"土建/楼梯楼板/梯段");
    EXPECT_EQ(PathOf(Product("IfcSlab").PartOf("IfcStair")), L"土建/楼梯楼板/现浇板");
    EXPECT_EQ(PathOf(Product("IfcMember").PartOf("IfcStair")), L"土建/楼梯楼板/楼梯");
    EXPECT_EQ(PathOf(Product("IfcRamp")), L"土建/几何构件/几何板");
    EXPECT_EQ(PathOf(Product("IfcFooting").Predefined("STRIP_FOOTING")), L"土建/基础/条形基础");
    EXPECT_EQ(PathOf(Product("IfcFooting")), L"土建/基础/独立基础");
    EXPECT_EQ(PathOf(Product("IfcPile")), L"土建/基础/桩");
}

TEST(DefaultMapping, KnowsPilesAndFoundationsThatAreModelledAsMembers) {
    for (const char* name :
         {"PAAL", "Heipaal 320x320", "Pile 12", "Bohrpfahl D60", "Pieu 3", "桩"}) {
        EXPECT_EQ(PathOf(Product("IfcBeam").Named(name)), L"土建/基础/桩") << name;
        EXPECT_EQ(PathOf(Product("IfcColumn").Named(name).Of("Concrete")), L"土建/基础/桩") << name;
    }
    EXPECT_EQ(PathOf(Product("IfcFooting").Named("Pile cap 2")), L"土建/基础/桩承台");
    EXPECT_EQ(PathOf(Product("IfcFooting").Named("桩承台")), L"土建/基础/桩承台");
    for (const char* name : {"FUNDBALK (PREFAB)", "Grade beam", "Longrine 30x50", "地梁"}) {
        EXPECT_EQ(PathOf(Product("IfcBeam").Named(name).Of("Beton")), L"土建/基础/基础梁") << name;
    }
    for (const char* name : {"FUND", "Poer", "Einzelfundament", "Footing F1"}) {
        EXPECT_EQ(PathOf(Product("IfcBeam").Named(name)), L"土建/基础/独立基础") << name;
    }
}

TEST(DefaultMapping, KnowsConnectionsThatAreModelledAsMembers) {
    for (const char* name :
         {"ANKER", "Anchor bolt M24", "MOER", "Dook", "Ankerschraube", "螺栓 M20"}) {
        EXPECT_EQ(PathOf(Product("IfcBeam").Named(name)), L"土建/连接件/紧固件") << name;
        EXPECT_EQ(PathOf(Product("IfcDiscreteAccessory").Named(name)), L"土建/连接件/紧固件")
            << name;
    }
    for (const char* name : {"INGIETSTUKONDERDEEL", "HIJSOOG DIAM.60", "Cast-in insert",
                             "Ankerschiene", "Lifting anchor", "Injectiebuis 65", "预埋件 3"}) {
        EXPECT_EQ(PathOf(Product("IfcBeam").Named(name)), L"土建/连接件/预埋件") << name;
    }
    for (const char* name :
         {"Base plate", "Knotenblech", "Kopplaat", "Gousset", "Bevest.Hoek", "连接板"}) {
        EXPECT_EQ(PathOf(Product("IfcPlate").Named(name).Of("steel")), L"土建/连接件/连接板")
            << name;
    }
    for (const char* name : {"OPLEGRUBBER", "NEOPRENE", "Elastomerlager", "橡胶支座"}) {
        EXPECT_EQ(PathOf(Product("IfcBeam").Named(name)), L"土建/连接件/支座") << name;
    }
    EXPECT_EQ(PathOf(Product("IfcDiscreteAccessory")), L"土建/连接件/连接板");
    EXPECT_EQ(PathOf(Product("IfcMechanicalFastener")), L"土建/连接件/紧固件");
    EXPECT_EQ(PathOf(Product("IfcVibrationIsolator")), L"土建/连接件/支座");
}

TEST(DefaultMapping, KnowsWhatElseIsModelledAsMembers) {
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("BEKISTING")), L"土建/临时构件/模板");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("Schalung")), L"土建/临时构件/模板");
    EXPECT_EQ(PathOf(Product("IfcMember").Named("Formwork prop")), L"土建/临时构件/模板");
    EXPECT_EQ(PathOf(Product("IfcBuildingElementProxy").Named("脚手架")), L"土建/临时构件/脚手架");
    EXPECT_EQ(PathOf(Product("IfcMember").Named("UITST.WAP")), L"土建/钢筋构件/钢筋");
    EXPECT_EQ(PathOf(Product("IfcMember").Named("Anschlussbewehrung")), L"土建/钢筋构件/钢筋");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("GEWELF")), L"土建/楼梯楼板/预制板");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("Hollow-core 265")), L"土建/楼梯楼板/预制板");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("WAND").Of("BETON")), L"土建/墙/砼内墙");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("Trapezblech T85")), L"土建/几何构件/钢板");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("EPS 20")), L"土建/装饰/保温板");
}

TEST(DefaultMapping, KeepsStructureWhoseNamesOnlySoundLikeConnections) {
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("Ringanker")), L"土建/梁/圈梁");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("钢筋混凝土梁")), L"土建/梁/框架梁");
    EXPECT_EQ(PathOf(Product("IfcPlate").Named("Verschalung")), L"土建/几何构件/几何板");
    EXPECT_EQ(PathOf(Product("IfcWall").Named("Ankerwand")), L"土建/墙/填充墙");
    EXPECT_EQ(PathOf(Product("IfcBeam").Named("Wandriegel")), L"土建/梁/框架梁");
}

TEST(DefaultMapping, ReadsDevicesByTheirNames) {
    for (const char* ifcClass : {"IfcBuildingElementProxy", "IfcFlowTerminal"}) {
        const auto device = [ifcClass](const char* name) {
            return ToUtf8(PathOf(Product(ifcClass).Named(name)));
        };
        EXPECT_EQ(device("M_Telephone Outlet"), "弱电/弱电设备/信息插座") << ifcClass;
        EXPECT_EQ(device("RJ45 socket"), "弱电/弱电设备/信息插座") << ifcClass;
        EXPECT_EQ(device("CCTV camera"), "弱电/弱电设备/弱电设备") << ifcClass;
        EXPECT_EQ(device("Rauchmelder"), "消防/消防设备/火灾报警设备") << ifcClass;
        EXPECT_EQ(device("Steckdose"), "电气/开关插座/插座") << ifcClass;
        EXPECT_EQ(device("Lighting Switches"), "电气/开关插座/开关") << ifcClass;
        EXPECT_EQ(device("Downlight 150"), "电气/灯具/灯具") << ifcClass;
        EXPECT_EQ(device("Elevator-Hydraulic"), "土建/设备/运输设备") << ifcClass;
    }
    EXPECT_EQ(PathOf(Product("IfcFlowController").Named("M_Smoke Detector")),
              L"消防/消防设备/火灾报警设备");
    EXPECT_EQ(PathOf(Product("IfcBuildingElementProxy").Named("Skylight")), L"土建/其它构件/其它");
    EXPECT_EQ(PathOf(Product("IfcBuildingElementProxy").Named("Roof outlet DN100")),
              L"土建/其它构件/其它");
}

TEST(DefaultMapping, LeavesMarkersAndTextsOut) {
    for (const char* name : {"origin", "geo-reference", "ROOT nulpunt", "Project Base Point",
                             "Model Text:600mm Arial"}) {
        EXPECT_EQ(
            Shipped().Classify(Product("IfcBuildingElementProxy").Named(name).Facts()).outcome,
            MappingOutcome::LeftOut)
            << name;
    }
}

TEST(DefaultMapping, ListsDoorsAndWindowsAsOpenings) {
    EXPECT_EQ(PathOf(Product("IfcDoor")), L"土建/门.窗.洞/门");
    EXPECT_EQ(PathOf(Product("IfcWindow")), L"土建/门.窗.洞/窗");
    EXPECT_EQ(PathOf(Product("IfcWindow").Named("Erker West")), L"土建/门.窗.洞/飘窗");
}

TEST(DefaultMapping, TellsDuctsByTheirAir) {
    const auto duct = [](std::string system) {
        return PathOf(Product("IfcDuctSegment").In(std::move(system)));
    };
    EXPECT_EQ(duct("Mechanical Supply Air 1"), L"暖通/风管/送风管");
    EXPECT_EQ(duct("Zuluft EG"), L"暖通/风管/送风管");
    EXPECT_EQ(duct("SA-01"), L"暖通/风管/送风管");
    EXPECT_EQ(duct("Retourlucht"), L"暖通/风管/回风管");
    EXPECT_EQ(duct("Abluft WC"), L"暖通/风管/排风管");
    EXPECT_EQ(duct("Outside air"), L"暖通/风管/新风管");
    EXPECT_EQ(duct("机械排烟"), L"暖通/风管/除尘排烟管");
    EXPECT_EQ(duct("新风系统"), L"暖通/风管/新风管");
    EXPECT_EQ(duct("System 7"), L"暖通/风管/其它风管");
    EXPECT_EQ(PathOf(Product("IfcDuctSegment").Predefined("FLEXIBLESEGMENT")),
              L"暖通/风管/柔性风管");
}

TEST(DefaultMapping, GivesDuctFittingsAndTerminalsNoClearance) {
    const Product products[] = {Product("IfcDuctFitting").In("Supply Air"),
                                Product("IfcAirTerminal").In("Supply Air"),
                                Product("IfcDamper").In("Supply Air"), Product("IfcDuctSilencer")};
    for (const Product& product : products) {
        EXPECT_EQ(CategoryOf(product).specialty, L"暖通");
        EXPECT_EQ(CategoryOf(product).IsFgQjPsLsRs_JJP(), 0);
    }
}

TEST(DefaultMapping, TellsCableCarriers) {
    EXPECT_EQ(PathOf(Product("IfcCableCarrierSegment").Predefined("CABLETRAYSEGMENT")),
              L"电气/电缆桥架/桥架");
    EXPECT_EQ(PathOf(Product("IfcCableCarrierSegment").Named("Tray pan 200x60")),
              L"电气/电缆桥架/托盘");
    EXPECT_EQ(PathOf(Product("IfcCableCarrierSegment").Predefined("CABLELADDERSEGMENT")),
              L"电气/电缆桥架/桥架");
    EXPECT_EQ(PathOf(Product("IfcCableCarrierSegment").Predefined("CABLETRUNKINGSEGMENT")),
              L"弱电/线槽桥架/线槽");
    EXPECT_EQ(
        PathOf(Product("IfcCableCarrierSegment").Predefined("CABLETRAYSEGMENT").SystemType("DATA")),
        L"弱电/线槽桥架/桥架");
    EXPECT_EQ(PathOf(Product("IfcCableSegment").Predefined("BUSBARSEGMENT")),
              L"电气/电缆桥架/母线馈线");
    EXPECT_EQ(CategoryOf(Product("IfcCableCarrierFitting")).IsFgQjPsLsRs_JJP(), 0);
}

TEST(DefaultMapping, TellsPipesByTheirMedium) {
    const auto pipe = [](std::string system) {
        return PathOf(Product("IfcPipeSegment").In(std::move(system)));
    };
    EXPECT_EQ(pipe("Domestic Cold Water"), L"给排水/管道/给水管");
    EXPECT_EQ(pipe("Trinkwasser kalt"), L"给排水/管道/给水管");
    EXPECT_EQ(pipe("Domestic Hot Water 2"), L"给排水/管道/热给水管");
    EXPECT_EQ(pipe("Warmwasser Zirkulation"), L"给排水/管道/热回水管");
    EXPECT_EQ(pipe("Sanitary 1"), L"给排水/管道/污水管");
    EXPECT_EQ(pipe("Drainage"), L"给排水/管道/废水管");
    EXPECT_EQ(pipe("Hemelwaterafvoer"), L"给排水/管道/雨水管");
    EXPECT_EQ(pipe("雨水系统"), L"给排水/管道/雨水管");
    EXPECT_EQ(pipe("污水"), L"给排水/管道/污水管");
    EXPECT_EQ(pipe("中水"), L"给排水/管道/中水管");
    EXPECT_EQ(pipe("Heizung Vorlauf"), L"暖通/水管/热供水管");
    EXPECT_EQ(pipe("Hydronic Return"), L"暖通/水管/热回水管");
    EXPECT_EQ(pipe("Hot water heating supply"), L"暖通/水管/热供水管");
    EXPECT_EQ(pipe("Chilled Water Supply"), L"暖通/水管/冷供水管");
    EXPECT_EQ(pipe("Chilled Water Return"), L"暖通/水管/冷回水管");
    EXPECT_EQ(pipe("冷却水"), L"暖通/水管/冷却水管");
    EXPECT_EQ(pipe("Kondensat"), L"暖通/水管/凝结水管");
    EXPECT_EQ(pipe("Sprinkler"), L"消防/管网/喷淋管");
    EXPECT_EQ(pipe("Fire Protection Wet"), L"消防/管网/消防管");
    EXPECT_EQ(pipe("气体灭火"), L"消防/管网/气体灭火管");
    EXPECT_EQ(pipe("X"), L"给排水/管道/其它管");
}

TEST(DefaultMapping, TellsPipesByPredefinedTypesOfTheirSystems) {
    const auto pipe = [](std::string type) {
        return PathOf(Product("IfcPipeSegment").SystemType(std::move(type)));
    };
    EXPECT_EQ(pipe("DRAINAGE"), L"给排水/管道/废水管");
    EXPECT_EQ(pipe("SEWAGE"), L"给排水/管道/污水管");
    EXPECT_EQ(pipe("RAINWATER"), L"给排水/管道/雨水管");
    EXPECT_EQ(pipe("DOMESTICHOTWATER"), L"给排水/管道/热给水管");
    EXPECT_EQ(pipe("DOMESTICCOLDWATER"), L"给排水/管道/给水管");
    EXPECT_EQ(pipe("HEATING"), L"暖通/水管/热供水管");
    EXPECT_EQ(pipe("CHILLEDWATER"), L"暖通/水管/冷供水管");
    EXPECT_EQ(pipe("FIREPROTECTION"), L"消防/管网/消防管");
}

TEST(DefaultMapping, FallsBackToThePipeMaterial) {
    EXPECT_EQ(PathOf(Product("IfcPipeSegment").Of("PVC-U")), L"给排水/管道/废水管");
    EXPECT_EQ(PathOf(Product("IfcPipeSegment").Of("Kupfer")), L"给排水/管道/给水管");
}

TEST(DefaultMapping, LetsPipeFittingsFollowTheirMedium) {
    const auto fitting = CategoryOf(Product("IfcPipeFitting").In("Sanitary"));
    EXPECT_EQ(fitting.xiaolei, L"污水管");
    EXPECT_EQ(fitting.IsFgQjPsLsRs_JJP(), 3);
}

TEST(DefaultMapping, ReadsGenericSegmentsByTypeWordsAndSection) {
    EXPECT_EQ(PathOf(Product("IfcFlowSegment").OfType("IfcDuctSegment").In("Supply Air")),
              L"暖通/风管/送风管");
    EXPECT_EQ(PathOf(Product("IfcFlowSegment").Named("Rectangular Duct: 300x200")),
              L"暖通/风管/其它风管");
    EXPECT_EQ(PathOf(Product("IfcFlowSegment").Section("rectangle")), L"暖通/风管/其它风管");
    EXPECT_EQ(PathOf(Product("IfcFlowSegment").Named("Cable Tray").Section("other")),
              L"电气/电缆桥架/桥架");
    EXPECT_EQ(PathOf(Product("IfcFlowSegment").Section("circle")), L"给排水/管道/其它管");
    EXPECT_EQ(PathOf(Product("IfcBuildingElementProxy").Named("风管 400x200")),
              L"暖通/风管/其它风管");
}

TEST(DefaultMapping, TellsTerminalsAndEquipment) {
    EXPECT_EQ(PathOf(Product("IfcFlowTerminal").OfType("IfcSanitaryTerminal")),
              L"给排水/卫生器具/卫生器具");
    EXPECT_EQ(PathOf(Product("IfcFlowTerminal").Named("M_Toilet-Commercial")),
              L"给排水/卫生器具/卫生器具");
    EXPECT_EQ(PathOf(Product("IfcFlowTerminal").Named("Duplex Receptacle")), L"电气/开关插座/插座");
    EXPECT_EQ(PathOf(Product("IfcFlowTerminal").OfType("IfcLightFixture")), L"电气/灯具/灯具");
    EXPECT_EQ(PathOf(Product("IfcFireSuppressionTerminal").Predefined("SPRINKLER")),
              L"消防/消防设备/喷头");
    EXPECT_EQ(PathOf(Product("IfcValve").In("Heating")), L"暖通/水管附件/阀门");
    EXPECT_EQ(PathOf(Product("IfcDistributionFlowElement")), L"机电/设备/其它设备");
}

TEST(DefaultMapping, LeavesTheGroundOut) {
    EXPECT_EQ(Shipped().Classify(Product("IfcSite").Facts()).outcome, MappingOutcome::LeftOut);
    EXPECT_EQ(
        Shipped().Classify(Product("IfcGeographicElement").Predefined("TERRAIN").Facts()).outcome,
        MappingOutcome::LeftOut);
}

TEST(DefaultMapping, LetsLayersFollowTheirElement) {
    const Product layer = Product("IfcBuildingElementPart").PartOf("IfcWall");
    EXPECT_EQ(Shipped().Classify(layer.Facts()).outcome, MappingOutcome::LikeAssembly);
}

TEST(DefaultMapping, KnowsNothingOfForeignClasses) {
    EXPECT_EQ(Shipped().Classify(Product("IfcFancyNewThing").Facts()).outcome,
              MappingOutcome::Unmapped);
}

TEST(DefaultMapping, PutsStructureWhereTheClearanceTablesKnowIt) {
    const Product members[] = {Product("IfcWall"),
                               Product("IfcWall").Of("brick"),
                               Product("IfcColumn"),
                               Product("IfcColumn").Of("steel"),
                               Product("IfcBeam"),
                               Product("IfcBeam").Of("steel"),
                               Product("IfcSlab"),
                               Product("IfcRoof"),
                               Product("IfcStair"),
                               Product("IfcStairFlight"),
                               Product("IfcCurtainWall"),
                               Product("IfcMember"),
                               Product("IfcPlate"),
                               Product("IfcRamp"),
                               Product("IfcBeam").Of("timber")};
    for (const Product& member : members) {
        EXPECT_TRUE(CategoryOf(member).IsQzlb_JJP()) << ToUtf8(PathOf(member));
    }
}

TEST(DefaultMapping, PutsRunsWhereTheClearanceTablesKnowThem) {
    EXPECT_EQ(CategoryOf(Product("IfcDuctSegment")).IsFgQjPsLsRs_JJP(), 1);
    EXPECT_EQ(CategoryOf(Product("IfcCableCarrierSegment")).IsFgQjPsLsRs_JJP(), 2);
    EXPECT_EQ(CategoryOf(Product("IfcPipeSegment").In("Drain")).IsFgQjPsLsRs_JJP(), 3);
    EXPECT_EQ(CategoryOf(Product("IfcPipeSegment")).IsFgQjPsLsRs_JJP(), 4);
    EXPECT_EQ(CategoryOf(Product("IfcPipeSegment").In("Sprinkler")).IsFgQjPsLsRs_JJP(), 4);
    EXPECT_EQ(CategoryOf(Product("IfcPipeSegment").In("Heating")).IsFgQjPsLsRs_JJP(), 5);
}

}  // namespace
}  // namespace ifchost
