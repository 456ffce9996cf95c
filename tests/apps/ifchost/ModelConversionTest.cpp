// SPDX-License-Identifier: Apache-2.0
// Real IFC files through the real converter, from text to typed package.

#include <algorithm>
#include <map>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ConvertedModels.h"
#include "ifchost/SceneConverter.h"
#include "ifchost/ScenePackage.h"

namespace ifchost {
namespace {

using testing::ModelFolder;
using testing::ReadAll;
using testing::TemporaryFolder;
namespace fs = std::filesystem;

struct ManifestRow {
    std::size_t meshed = 0;
    std::size_t storeys = 0;
};

/// Products with a mesh and storeys by file name, as counted by another reader of IFC.
std::map<std::string, ManifestRow> ReadManifest(const fs::path& path) {
    std::map<std::string, ManifestRow> rows;
    std::istringstream lines(ReadAll(path));
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        std::vector<std::string> cells;
        std::istringstream cellStream(line);
        for (std::string cell; std::getline(cellStream, cell, '\t');)
            cells.push_back(cell);
        rows[cells.at(0)] = {std::stoul(cells.at(7)), std::stoul(cells.at(8))};
    }
    return rows;
}

class ModelConversion : public ::testing::Test {
  protected:
    void SetUp() override {
        if (const std::string why = testing::WhyNoModels(); !why.empty()) GTEST_SKIP() << why;
        options_.converterDir = testing::ConverterFolder();
        options_.cacheDir = folder_.Path() / "cache";
    }

    std::vector<ConvertResult> Convert(const std::vector<std::string>& names) {
        std::vector<fs::path> inputs;
        for (const std::string& name : names)
            inputs.push_back(ModelFolder() / name);
        return SceneConverter(options_).Convert(inputs);
    }

    /// Converts one and opens it; fails the test otherwise.
    std::optional<ScenePackage> Open(const std::string& name) {
        const ConvertResult result = Convert({name}).at(0);
        EXPECT_TRUE(result.Ok()) << result.message;
        SceneError error;
        auto package = ScenePackage::Open(result.package, error);
        EXPECT_TRUE(package) << error.Text();
        return package;
    }

    TemporaryFolder folder_;
    ConvertOptions options_;
};

bool IsMeshedElement(const SceneProduct& product) {
    return product.role == ProductRole::Element && product.meshState == MeshState::Meshed;
}

SceneBox BoxOfInstances(const ScenePackage& package, const SceneProduct& product) {
    SceneBox box{{1e300, 1e300, 1e300}, {-1e300, -1e300, -1e300}};
    for (const SceneInstance& instance : package.Instances(product)) {
        const auto positions = package.Geometry(instance.geometry).positions;
        for (std::size_t i = 0; i < positions.size(); i += 3) {
            const Point3 p = instance.Apply(positions[i], positions[i + 1], positions[i + 2]);
            for (std::size_t k = 0; k < 3; ++k) {
                box.min[k] = std::min(box.min[k], p[k]);
                box.max[k] = std::max(box.max[k], p[k]);
            }
        }
    }
    return box;
}

TEST_F(ModelConversion, FindsAsManyMeshesAndStoreysAsTheManifestSays) {
    const std::vector<std::string> names{"sch_trappen.ifc", "sch_kanaalplaat.ifc",
                                         "sch_lateien.ifc", "sch_breedplaat.ifc",
                                         "pcert_hvac.ifc",  "indexed_polycurve_issue2499.ifc"};
    auto manifest = ReadManifest(ModelFolder() / "MANIFEST.tsv");
    for (const ConvertResult& result : Convert(names)) {
        ASSERT_TRUE(result.Ok()) << result.message;
        SceneError error;
        const auto package = ScenePackage::Open(result.package, error);
        ASSERT_TRUE(package) << error.Text();
        const auto& products = package->Products();
        const ManifestRow expected = manifest.at(result.input.filename().string());
        EXPECT_EQ(static_cast<std::size_t>(
                      std::count_if(products.begin(), products.end(), IsMeshedElement)),
                  expected.meshed)
            << result.input;
        EXPECT_EQ(package->Storeys().size(), expected.storeys) << result.input;
    }
}

TEST_F(ModelConversion, AccountsForEveryProduct) {
    const auto package = Open("pcert_structural.ifc");
    ASSERT_TRUE(package);
    for (const SceneProduct& product : package->Products()) {
        EXPECT_EQ(product.guid.size(), 22U) << product.expressId;
        EXPECT_EQ(product.meshNote.empty(), product.meshState == MeshState::Meshed)
            << product.ifcClass;
    }
}

TEST_F(ModelConversion, GivesBoxesThatAreThoseOfTheInstances) {
    const auto package = Open("sch_trappen.ifc");
    ASSERT_TRUE(package);
    std::size_t checked = 0;
    for (const SceneProduct& product : package->Products()) {
        if (!product.box) continue;
        EXPECT_EQ(BoxOfInstances(*package, product).min, product.box->min);
        EXPECT_EQ(BoxOfInstances(*package, product).max, product.box->max);
        ++checked;
    }
    EXPECT_EQ(checked, 10U);
}

TEST_F(ModelConversion, PutsFeetAndMetresOfOneBuildingInTheSamePlace) {
    const auto electrical = Open("duplex_electrical.ifc");
    const auto architecture = Open("duplex_arch.ifc");
    ASSERT_TRUE(electrical && architecture);
    EXPECT_DOUBLE_EQ(electrical->File().lengthUnitInMm, 304.8);
    EXPECT_DOUBLE_EQ(architecture->File().lengthUnitInMm, 1000.0);
    ASSERT_TRUE(electrical->File().box && architecture->File().box);
    constexpr double kSlack = 500.0;  // lamps hang outside of the walls
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_GT(electrical->File().box->min[k], architecture->File().box->min[k] - kSlack);
        EXPECT_LT(electrical->File().box->max[k], architecture->File().box->max[k] + kSlack);
    }
    ASSERT_EQ(electrical->Storeys().size(), 3U);
    EXPECT_NEAR(electrical->Storeys()[1].baseZ, 3100.0, 1e-6);
    EXPECT_NEAR(architecture->Storeys()[2].baseZ, 3100.0, 1e-6);
}

TEST_F(ModelConversion, GivesTheSameBytesEachTime) {
    const auto first = Convert({"pcert_hvac.ifc"}).at(0);
    options_.cacheDir = folder_.Path() / "other-cache";
    const auto second = Convert({"pcert_hvac.ifc"}).at(0);
    ASSERT_TRUE(first.Ok() && second.Ok()) << first.message << second.message;
    EXPECT_FALSE(second.fromCache);
    EXPECT_NE(first.package, second.package);
    EXPECT_EQ(ReadAll(first.package), ReadAll(second.package));
}

TEST_F(ModelConversion, RefusesAFileThatIsCutShort) {
    const std::string text = ReadAll(ModelFolder() / "pcert_hvac.ifc");
    const auto input = folder_.Write("cut.ifc", text.substr(0, text.size() / 2));
    const auto result = SceneConverter(options_).Convert({input}).at(0);
    EXPECT_EQ(result.error, ConvertErrorKind::InputInvalid);
    EXPECT_THAT(result.message, ::testing::HasSubstr("cut.ifc: the file is cut short"));
}

}  // namespace
}  // namespace ifchost
