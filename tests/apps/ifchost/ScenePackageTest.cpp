// SPDX-License-Identifier: Apache-2.0
#include <limits>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PackageBuilder.h"
#include "ifchost/ScenePackage.h"

namespace ifchost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::PackageBuilder;
using testing::TemporaryFolder;

class ScenePackageReading : public ::testing::Test {
  protected:
    std::optional<ScenePackage> Open(const std::string& bytes) {
        return ScenePackage::Open(folder_.Write("test.kyscene", bytes), error_);
    }

    /// Opens what must not be taken.
    SceneError Refused(const std::string& bytes) {
        error_ = {};
        EXPECT_FALSE(Open(bytes).has_value());
        EXPECT_THAT(error_.file, HasSubstr("test.kyscene"));
        EXPECT_FALSE(error_.message.empty());
        return error_;
    }
    SceneError Refused(const PackageBuilder& builder) { return Refused(builder.Build()); }

    TemporaryFolder folder_;
    SceneError error_;
};

/// Touches everything, so that a reader that let something broken through is caught, and returns
/// the number of instances that it met on its way through the products.
std::size_t Walk(const ScenePackage& package) {
    volatile double sink = 0.0;
    std::size_t met = 0;
    for (std::size_t i = 0; i < package.GeometryCount(); ++i) {
        const SceneGeometry mesh = package.Geometry(i);
        for (const std::uint32_t index : mesh.indices)
            sink = mesh.positions[index * 3];
    }
    for (const SceneProduct& product : package.Products()) {
        if (product.storey != kNoIndex) {
            sink = package.Storeys().at(static_cast<std::size_t>(product.storey)).baseZ;
        }
        for (const std::uint32_t system : product.systems) {
            sink = package.Systems().at(system).expressId;
        }
        for (const auto& property : package.Properties(product))
            sink = property.number;
        for (const auto& instance : package.Instances(product)) {
            sink = instance.Apply(1, 2, 3)[0] + package.Geometry(instance.geometry).volume;
            ++met;
        }
    }
    static_cast<void>(sink);
    return met;
}

TEST_F(ScenePackageReading, GivesTheFileAndItsSpatialParts) {
    const auto package = Open(PackageBuilder().Build());
    ASSERT_TRUE(package) << error_.Text();
    EXPECT_EQ(package->File().schema, "IFC4");
    EXPECT_EQ(package->File().projectName, "Höhe");
    EXPECT_EQ(package->File().circleSegments, 24);
    ASSERT_TRUE(package->File().box);
    EXPECT_EQ(package->File().box->max, (Point3{1000, 1000, 1000}));
    EXPECT_EQ(package->Sites().at(0).origin, (Point3{1, 2, 3}));
    EXPECT_EQ(package->Buildings().at(0).parent, 0);
    EXPECT_EQ(package->Storeys().at(0).name, "Ground");
    EXPECT_EQ(package->Storeys().at(0).elevation, 0.0);
    EXPECT_EQ(package->Storeys().at(0).baseZ, 100.0);
}

TEST_F(ScenePackageReading, GivesProductsWithTextsAndReferences) {
    const auto package = Open(PackageBuilder().Build());
    ASSERT_TRUE(package) << error_.Text();
    ASSERT_EQ(package->Products().size(), 2U);
    const SceneProduct& wall = package->Products()[0];
    EXPECT_EQ(wall.expressId, 10U);
    EXPECT_EQ(wall.guid, "g10");
    EXPECT_EQ(wall.name, "墙");
    EXPECT_EQ(wall.role, ProductRole::Element);
    EXPECT_EQ(wall.meshState, MeshState::Meshed);
    EXPECT_EQ(wall.predefinedType, "SOLIDWALL");
    EXPECT_THAT(wall.materials, ElementsAre("Brick"));
    EXPECT_THAT(wall.systems, ElementsAre(0U));
    EXPECT_EQ(wall.netVolume, 5.0);
    EXPECT_FALSE(wall.grossVolume);
    ASSERT_TRUE(wall.section);
    EXPECT_EQ(wall.section->shape, SectionShape::Circle);
    EXPECT_EQ(wall.section->radius, 10.0);
    const SceneProduct& assembly = package->Products()[1];
    EXPECT_EQ(assembly.meshState, MeshState::NoRepresentation);
    EXPECT_EQ(assembly.meshNote, "no body");
    EXPECT_EQ(assembly.parent, 0);
    EXPECT_EQ(assembly.storey, kNoIndex);
}

TEST_F(ScenePackageReading, GivesMeshesAndInstances) {
    const auto package = Open(PackageBuilder().Build());
    ASSERT_TRUE(package) << error_.Text();
    ASSERT_EQ(package->GeometryCount(), 1U);
    const SceneGeometry mesh = package->Geometry(0);
    EXPECT_EQ(mesh.VertexCount(), 4U);
    EXPECT_EQ(mesh.TriangleCount(), 4U);
    EXPECT_EQ(mesh.positions[3], 1000.0);
    EXPECT_EQ(mesh.box.max, (Point3{1000, 1000, 1000}));
    EXPECT_EQ(package->Instances(package->Products()[0]).size(), 1U);
    EXPECT_TRUE(package->Instances(package->Products()[1]).empty());
}

TEST_F(ScenePackageReading, AppliesAnInstanceTransformRowMajor) {
    PackageBuilder builder;
    // A quarter turn about z, then a move by (10, 20, 30).
    builder.instances[0].transform = {0, -1, 0, 10, 1, 0, 0, 20, 0, 0, 1, 30, 0, 0, 0, 1};
    const auto package = Open(builder.Build());
    ASSERT_TRUE(package) << error_.Text();
    EXPECT_EQ(package->Instances()[0].Apply(1, 2, 3), (Point3{8, 21, 33}));
}

TEST_F(ScenePackageReading, GivesProperties) {
    const auto package = Open(PackageBuilder().Build());
    ASSERT_TRUE(package) << error_.Text();
    const SceneProduct& wall = package->Products()[0];
    EXPECT_EQ(package->Properties(wall).size(), 2U);
    const auto width = package->FindProperty(wall, "", "Width");
    ASSERT_TRUE(width);
    EXPECT_EQ(width->set, "Pset_WallCommon");
    EXPECT_EQ(width->value, "200");
    EXPECT_EQ(width->kind, PropertyKind::Length);
    EXPECT_EQ(width->number, 200.0);
    EXPECT_TRUE(package->FindProperty(wall, "Pset_WallCommon", "IsExternal"));
    EXPECT_FALSE(package->FindProperty(wall, "Pset_Other", "IsExternal"));
    EXPECT_TRUE(package->Properties(package->Products()[1]).empty());
}

TEST_F(ScenePackageReading, GivesGridsRelationsAndWarnings) {
    const auto package = Open(PackageBuilder().Build());
    ASSERT_TRUE(package) << error_.Text();
    const SceneGridAxis& axis = package->Grids().at(0).axes.at(0);
    EXPECT_EQ(axis.name, "A");
    EXPECT_EQ(axis.segments.at(0).kind, SceneAxisSegment::Kind::Line);
    EXPECT_EQ(axis.segments.at(1).kind, SceneAxisSegment::Kind::Arc);
    EXPECT_EQ(axis.segments.at(1).radius, 10.0);
    const SceneRelations& relations = package->Relations();
    EXPECT_THAT(relations.voids, ElementsAre(ScenePair{1, 0}));
    EXPECT_TRUE(relations.fills.empty());
    EXPECT_THAT(relations.aggregates, ElementsAre(ScenePair{0, 1}));
    EXPECT_EQ(relations.connections.at(0).kind, ConnectionKind::Port);
    EXPECT_EQ(relations.ports.at(0).flowDirection, "SINK");
    EXPECT_EQ(package->Warnings().at(0).code, "odd");
    EXPECT_EQ(package->Warnings().at(0).product, 1);
}

TEST_F(ScenePackageReading, KeepsSpansWhenMoved) {
    auto package = Open(PackageBuilder().Build());
    ASSERT_TRUE(package) << error_.Text();
    const SceneGeometry mesh = package->Geometry(0);
    const ScenePackage moved = std::move(*package);
    EXPECT_EQ(mesh.positions.data(), moved.Geometry(0).positions.data());
    EXPECT_EQ(mesh.positions[3], 1000.0);
}

TEST_F(ScenePackageReading, TakesAPackageWithoutAnything) {
    PackageBuilder builder;
    builder.json =
        R"({"file": {"schema": "IFC4", "lengthUnitInMm": 1, "circleSegments": 24,
            "georeference": {"largestCoordinate": 0}}, "relations": {}})";
    builder.positions.clear();
    builder.indices.clear();
    builder.geometries.clear();
    builder.instances.clear();
    builder.properties.clear();
    const auto package = Open(builder.Build());
    ASSERT_TRUE(package) << error_.Text();
    EXPECT_TRUE(package->Products().empty());
    EXPECT_EQ(package->GeometryCount(), 0U);
    EXPECT_FALSE(package->File().box);
}

TEST_F(ScenePackageReading, NamesAFileThatIsMissing) {
    EXPECT_FALSE(ScenePackage::Open(folder_.Path() / "nothing.kyscene", error_));
    EXPECT_THAT(error_.Text(), HasSubstr("nothing.kyscene: cannot be opened"));
}

TEST_F(ScenePackageReading, RefusesAFolder) {
    EXPECT_FALSE(ScenePackage::Open(folder_.Path(), error_));
    EXPECT_FALSE(error_.message.empty());
}

TEST_F(ScenePackageReading, RefusesEveryTruncation) {
    const std::string whole = PackageBuilder().Build();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        ASSERT_FALSE(Open(whole.substr(0, size))) << size;
        ASSERT_FALSE(error_.place.empty()) << size;
    }
}

TEST_F(ScenePackageReading, RefusesEveryFlippedByte) {
    const std::string whole = PackageBuilder().Build();
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string changed = whole;
        changed[at] = static_cast<char>(changed[at] ^ 0x10);
        ASSERT_FALSE(Open(changed)) << at;
    }
}

TEST_F(ScenePackageReading, RefusesTrailingBytes) {
    EXPECT_EQ(Refused(PackageBuilder().Build() + "x").place, "header");
}

TEST_F(ScenePackageReading, RefusesAnotherVersion) {
    std::string bytes = PackageBuilder().Build();
    bytes[8] = static_cast<char>(ScenePackage::kVersion + 1);
    PackageBuilder::Seal(bytes);
    EXPECT_THAT(Refused(bytes).message, HasSubstr("version 2 instead of 1"));
}

TEST_F(ScenePackageReading, RefusesAMissingEndMark) {
    std::string bytes = PackageBuilder().Build();
    bytes.back() = 'x';
    const SceneError error = Refused(bytes);
    EXPECT_EQ(error.place, "trailer");
    EXPECT_THAT(error.message, HasSubstr("not finished"));
}

TEST_F(ScenePackageReading, RefusesSectionsOutsideOfTheFile) {
    for (std::size_t section = 0; section < format::kSectionCount; ++section) {
        for (const bool changesCount : {false, true}) {
            for (const std::uint64_t value :
                 {std::uint64_t{1} << 20, std::uint64_t{1} << 62, ~std::uint64_t{15}}) {
                std::string bytes = PackageBuilder().Build();
                const std::size_t at = 40 + section * 16 + (changesCount ? 8 : 0);
                std::memcpy(bytes.data() + at, &value, sizeof(value));
                PackageBuilder::Seal(bytes);
                EXPECT_THAT(Refused(bytes).place, HasSubstr(format::kSectionName[section]));
            }
        }
    }
}

TEST_F(ScenePackageReading, RefusesASectionThatIsNotAligned) {
    std::string bytes = PackageBuilder().Build();
    bytes[40] = static_cast<char>(bytes[40] + 4);
    PackageBuilder::Seal(bytes);
    EXPECT_EQ(Refused(bytes).message, "is not aligned");
}

TEST_F(ScenePackageReading, RefusesATriangleCornerThatDoesNotExist) {
    PackageBuilder builder;
    builder.indices[5] = 4;
    EXPECT_EQ(Refused(builder).place, "geometries[0]");
}

TEST_F(ScenePackageReading, RefusesIndicesThatAreNotWholeTriangles) {
    PackageBuilder builder;
    builder.geometries[0].indexCount = 11;
    EXPECT_THAT(Refused(builder).message, HasSubstr("whole triangles"));
}

TEST_F(ScenePackageReading, RefusesGeometryRangesOutsideOfTheirSections) {
    PackageBuilder builder;
    builder.geometries[0].vertexCount = 5;
    EXPECT_THAT(Refused(builder).message, HasSubstr("vertices are out of range"));
    builder = {};
    builder.geometries[0].firstVertex = ~std::uint64_t{0};
    EXPECT_THAT(Refused(builder).message, HasSubstr("vertices are out of range"));
    builder = {};
    builder.geometries[0].firstIndex = 3;
    EXPECT_THAT(Refused(builder).message, HasSubstr("indices are out of range"));
}

TEST_F(ScenePackageReading, RefusesNumbersThatAreNotFinite) {
    for (const double bad :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        PackageBuilder builder;
        builder.positions[7] = bad;
        EXPECT_EQ(Refused(builder).place, "geometries[0]");
        builder = {};
        builder.instances[0].transform[3] = bad;
        EXPECT_EQ(Refused(builder).place, "instances[0]");
        builder = {};
        builder.properties[1].number = bad;
        EXPECT_EQ(Refused(builder).place, "properties[1]");
        builder = {};
        builder.geometries[0].volume = bad;
        EXPECT_EQ(Refused(builder).place, "geometries[0]");
    }
}

TEST_F(ScenePackageReading, RefusesAnInstanceOfNoGeometry) {
    PackageBuilder builder;
    builder.instances[0].geometry = 1;
    EXPECT_EQ(Refused(builder).place, "instances[0]");
}

TEST_F(ScenePackageReading, RefusesATransformThatIsNotAffine) {
    PackageBuilder builder;
    builder.instances[0].transform[12] = 0.5;
    EXPECT_THAT(Refused(builder).message, HasSubstr("affine"));
}

TEST_F(ScenePackageReading, RefusesAnInstanceOfAnotherProduct) {
    PackageBuilder builder;
    builder.instances[0].product = 1;
    EXPECT_EQ(Refused(builder).place, "products[0]");
}

TEST_F(ScenePackageReading, RefusesInstancesThatBelongToNoProduct) {
    PackageBuilder builder;
    builder.instances.push_back(builder.instances[0]);
    EXPECT_EQ(Refused(builder).place, "instances");
}

TEST_F(ScenePackageReading, RefusesPropertiesWithoutTextOrKind) {
    PackageBuilder builder;
    builder.properties[1].value = 5;
    EXPECT_EQ(Refused(builder).place, "properties[1]");
    builder = {};
    builder.properties[0].kind = 7;
    EXPECT_EQ(Refused(builder).place, "properties[0]");
    builder = {};
    builder.properties.pop_back();
    EXPECT_EQ(Refused(builder).place, "products[0]");
}

TEST_F(ScenePackageReading, NamesThePlaceOfAReferenceOutOfRange) {
    PackageBuilder builder;
    EXPECT_EQ(
        Refused(builder.Replace(R"("meshed", "storey": 0)", R"("meshed", "storey": 1)")).place,
        "products[0].storey");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace(R"("systems": [0])", R"("systems": [0, 9])")).place,
              "products[0].systems[1]");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace("[[1, 0]]", "[[1, 2]]")).place, "relations.voids[0][1]");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace(R"("building": 0)", R"("building": -2)")).place,
              "storeys[0].building");
}

TEST_F(ScenePackageReading, NamesThePlaceOfAWrongType) {
    PackageBuilder builder;
    EXPECT_EQ(Refused(builder.Replace(R"("baseZ": 100)", R"("baseZ": "100")")).place,
              "storeys[0].baseZ");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace(R"("name": "Ground")", R"("name": 7)")).place,
              "storeys[0].name");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace(R"("role": "element", "meshState": "meshed")",
                                      R"("role": "wall", "meshState": "meshed")"))
                  .place,
              "products[0].role");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace("[1, 2, 3]", "[1, 2]")).place, "sites[0].origin");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace(R"("schema": "IFC4", )", "")).place, "file");
}

TEST_F(ScenePackageReading, RefusesABoxWithSwappedCorners) {
    PackageBuilder builder;
    EXPECT_EQ(Refused(builder.Replace(R"("box": [0, 0, 0, 1000, 1000, 1000]},)",
                                      R"("box": [0, 2000, 0, 1000, 1000, 1000]},)"))
                  .place,
              "file.box");
}

TEST_F(ScenePackageReading, RefusesAMeshStateThatDoesNotFitTheInstances) {
    PackageBuilder builder;
    EXPECT_EQ(
        Refused(builder.Replace(R"("meshState": "meshed")", R"("meshState": "failed")")).place,
        "products[0].meshState");
}

TEST_F(ScenePackageReading, RefusesJsonThatIsBroken) {
    PackageBuilder builder;
    builder.json.resize(builder.json.size() / 2);
    EXPECT_EQ(Refused(builder).place, "json");
    builder.json = "[]";
    EXPECT_THAT(Refused(builder).message, HasSubstr("not an object"));
    builder.json = std::string(100000, '[');
    EXPECT_EQ(Refused(builder).place, "json");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace("Höhe", "H\xf6he")).place, "json");
    builder = {};
    EXPECT_EQ(Refused(builder.Replace(R"("baseZ": 100)", R"("baseZ": 1e999)")).place, "json");
}

TEST_F(ScenePackageReading, SurvivesRandomChangesUnderARightChecksum) {
    const std::string whole = PackageBuilder().Build();
    std::mt19937 random(20240607);
    int taken = 0;
    int refused = 0;
    for (int round = 0; round < 4000; ++round) {
        std::string bytes = whole;
        for (auto changes = random() % 3 + 1; changes > 0; --changes) {
            bytes[random() % (bytes.size() - format::kTrailerSize)] = static_cast<char>(random());
        }
        PackageBuilder::Seal(bytes);
        if (const auto package = Open(bytes)) {
            EXPECT_EQ(Walk(*package), package->Instances().size());
            ++taken;
        } else {
            ++refused;
        }
    }
    EXPECT_GT(taken, 100);
    EXPECT_GT(refused, 100);
}

TEST_F(ScenePackageReading, SurvivesRandomBytes) {
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        std::string bytes(random() % 600, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        EXPECT_FALSE(Open(bytes));
    }
}

TEST(SceneErrorText, NamesFilePlaceAndMessage) {
    EXPECT_EQ((SceneError{"a.kyscene", "header", "is odd"}).Text(), "a.kyscene: header: is odd");
    EXPECT_EQ((SceneError{"a.kyscene", "", "is odd"}).Text(), "a.kyscene: is odd");
}

}  // namespace
}  // namespace ifchost
