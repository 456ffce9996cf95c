// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/GltfWriter.h"
#include "KYCollisionBase/ui/SceneRecorder.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "support/LocaleScope.h"

using kycb::SceneRecorder;
using nlohmann::json;
using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using testing::SizeIs;

namespace {

json Write(const SceneRecorder& scene) {
    std::ostringstream out;
    kycb::WriteGltf(scene, out);
    return json::parse(out.str());
}

std::vector<std::uint8_t> Decode(const std::string& base64) {
    static const std::string kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::vector<std::uint8_t> bytes;
    std::uint32_t bits = 0;
    int count = 0;
    for (const char digit : base64) {
        if (digit == '=') break;
        bits = (bits << 6U) | static_cast<std::uint32_t>(kDigits.find(digit));
        count += 6;
        if (count < 8) continue;
        count -= 8;
        bytes.push_back(static_cast<std::uint8_t>(bits >> static_cast<unsigned>(count)));
    }
    return bytes;
}

using Point = std::array<double, 3>;

// The points of one mesh as a viewer places them: metres, y up.
std::vector<Point> ViewedPoints(const json& file, std::size_t mesh) {
    const auto& primitive = file["meshes"][mesh]["primitives"][0];
    EXPECT_EQ(primitive["mode"], 1);
    const auto& accessor =
        file["accessors"][primitive["attributes"]["POSITION"].get<std::size_t>()];
    EXPECT_EQ(accessor["componentType"], 5126);
    const auto& view = file["bufferViews"][accessor["bufferView"].get<std::size_t>()];
    const std::string uri = file["buffers"][0]["uri"];
    const auto bytes = Decode(uri.substr(uri.find(',') + 1));
    EXPECT_EQ(bytes.size(), file["buffers"][0]["byteLength"]);
    const auto read = [&](std::size_t at) {
        std::uint32_t bits = 0;
        for (std::size_t i = 4; i-- > 0;)
            bits = (bits << 8U) | bytes[at + i];
        return static_cast<double>(std::bit_cast<float>(bits));
    };
    const auto& shift = file["nodes"][0]["translation"];
    std::vector<Point> points;
    const std::size_t start = view["byteOffset"];
    for (std::size_t i = 0; i < accessor["count"]; ++i) {
        const double x = read(start + 12 * i);
        const double y = read(start + 12 * i + 4);
        const double z = read(start + 12 * i + 8);
        points.push_back({x * 0.001 + shift[0].get<double>(), z * 0.001 + shift[1].get<double>(),
                          -y * 0.001 + shift[2].get<double>()});
    }
    return points;
}

void ExpectPoint(const Point& actual, double x, double y, double z) {
    EXPECT_NEAR(actual[0], x, 1e-6);
    EXPECT_NEAR(actual[1], y, 1e-6);
    EXPECT_NEAR(actual[2], z, 1e-6);
}

}  // namespace

TEST(GltfWriter, WritesAnEmptySceneWithoutEmptyLists) {
    const json file = Write(SceneRecorder());
    EXPECT_EQ(file["asset"]["version"], "2.0");
    EXPECT_THAT(file["nodes"], SizeIs(1));
    for (const char* list : {"meshes", "materials", "accessors", "bufferViews", "buffers"})
        EXPECT_FALSE(file.contains(list)) << list;
}

TEST(GltfWriter, KeepsTheTreeAndTheNamesOfTheNodes) {
    SceneRecorder scene;
    IQNGINode* parent = scene.CreateNode(kQNGISceneRoot, L"a \"quoted\"\n名");
    scene.CreateNode(parent->GetId(), L"child");
    scene.CreateNode(kQNGISceneRoot, L"second");
    const json file = Write(scene);
    EXPECT_EQ(file["nodes"][0]["children"], json({1, 3}));
    EXPECT_EQ(file["nodes"][1]["name"], "a \"quoted\"\n\u540D");
    EXPECT_EQ(file["nodes"][1]["children"], json({2}));
    EXPECT_EQ(file["nodes"][2]["name"], "child");
    EXPECT_EQ(file["nodes"][3]["name"], "second");
}

TEST(GltfWriter, WritesLinesInMetresWithYUp) {
    SceneRecorder scene;
    scene.CreateNode(kQNGISceneRoot, L"")->AddLineSegment({{1000, 2000, 3000}, {-1000, 0, 0}}, 0);
    const json file = Write(scene);
    const auto points = ViewedPoints(file, 0);
    ASSERT_THAT(points, SizeIs(2));
    ExpectPoint(points[0], 1, 3, -2);
    ExpectPoint(points[1], -1, 0, 0);
}

// The node turns by -90 degrees about x and scales to metres, which is what the test above assumes.
TEST(GltfWriter, TurnsAndScalesTheWholeSceneAtItsOutermostNode) {
    const json node = Write(SceneRecorder())["nodes"][0];
    const double half = std::numbers::sqrt2 / 2;
    EXPECT_NEAR(node["rotation"][0].get<double>(), -half, 1e-12);
    EXPECT_EQ(node["rotation"][1], 0);
    EXPECT_EQ(node["rotation"][2], 0);
    EXPECT_NEAR(node["rotation"][3].get<double>(), half, 1e-12);
    EXPECT_EQ(node["scale"], json({0.001, 0.001, 0.001}));
}

TEST(GltfWriter, KeepsFractionsOfAMillimetreFarFromTheOrigin) {
    SceneRecorder scene;
    scene.CreateNode(kQNGISceneRoot, L"")
        ->AddLineSegment({{4e9 + 0.25, 5e9, 0}, {4e9 + 1000, 5e9, 0}}, 0);
    const auto points = ViewedPoints(Write(scene), 0);
    EXPECT_NEAR(points.at(1)[0] - points.at(0)[0], 0.99975, 1e-8);
}

TEST(GltfWriter, StatesTheExactBoundsOfEachMesh) {
    SceneRecorder scene;
    scene.CreateNode(kQNGISceneRoot, L"")->AddLineSegment({{-1, -2, -3}, {1, 2, 3}}, 0);
    const json accessor = Write(scene)["accessors"][0];
    EXPECT_EQ(accessor["min"], json({-1, -2, -3}));
    EXPECT_EQ(accessor["max"], json({1, 2, 3}));
}

TEST(GltfWriter, WritesTheColourOfEachNodeAsLinearLight) {
    SceneRecorder scene;
    IQNGINode* node = scene.CreateNode(kQNGISceneRoot, L"");
    node->SetColor({255, 188, 0});
    node->AddLineSegment({{0, 0, 0}, {1, 0, 0}}, 0);
    const json file = Write(scene);
    const auto& material =
        file["materials"][file["meshes"][0]["primitives"][0]["material"].get<std::size_t>()];
    const auto& color = material["pbrMetallicRoughness"]["baseColorFactor"];
    EXPECT_EQ(color[0], 1);
    // 188 of 255 is half of the light: ((188/255 + 0.055) / 1.055)^2.4 = 0.5029
    EXPECT_NEAR(color[1].get<double>(), 0.5029, 1e-4);
    EXPECT_EQ(color[2], 0);
    EXPECT_TRUE(material["extensions"].contains("KHR_materials_unlit"));
    EXPECT_EQ(file["extensionsUsed"], json({"KHR_materials_unlit"}));
}

TEST(GltfWriter, BreaksAnArcIntoChordsOfAtMostFiveDegrees) {
    SceneRecorder scene;
    scene.CreateNode(kQNGISceneRoot, L"")
        ->AddArc(CQNIMBoundArc({0, 0, 0}, 1000, 0, std::numbers::pi / 2));
    const auto points = ViewedPoints(Write(scene), 0);
    ASSERT_THAT(points, SizeIs(36));  // 90 degrees: 18 chords
    ExpectPoint(points.front(), 1, 0, 0);
    ExpectPoint(points.back(), 0, 0, -1);
    for (const Point& point : points)
        EXPECT_NEAR(std::hypot(point[0], point[2]), 1, 1e-6);
}

TEST(GltfWriter, LeavesOutGeometryThatIsNotFinite) {
    SceneRecorder scene;
    IQNGINode* node = scene.CreateNode(kQNGISceneRoot, L"");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    node->AddLineSegment({{nan, 0, 0}, {1, 0, 0}}, 0);
    node->AddLineSegment({{0, 0, 0}, {infinity, 0, 0}}, 0);
    node->AddArc(CQNIMBoundArc({nan, 0, 0}, 1, 0, 1));
    EXPECT_FALSE(Write(scene).contains("meshes"));
    node->AddLineSegment({{0, 0, 0}, {1, 0, 0}}, 0);
    EXPECT_THAT(ViewedPoints(Write(scene), 0), SizeIs(2));
}

TEST(GltfWriter, WritesNumbersWithAPointInEveryLocale) {
    const kycbtest::LocaleScope locale("de_DE");
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    SceneRecorder scene;
    scene.CreateNode(kQNGISceneRoot, L"")->AddLineSegment({{0.5, 0, 0}, {1234567.5, 0, 0}}, 0);
    const auto points = ViewedPoints(Write(scene), 0);
    ASSERT_THAT(points, SizeIs(2));
    ExpectPoint(points[0], 0.0005, 0, 0);
    ExpectPoint(points[1], 1234.5675, 0, 0);
}
