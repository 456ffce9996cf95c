// SPDX-License-Identifier: Apache-2.0
// Makes scene packages from a few words about a building.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "PackageBuilder.h"
#include "ifchost/ScenePackage.h"

namespace ifchost::testing {

/// A mesh in millimetres: x, y, z per vertex and three indices per triangle.
struct PlainMesh {
    std::vector<double> positions;
    std::vector<std::uint32_t> indices;
    double volume = 0.0;
};

/// An axis-aligned box, its triangles facing outward.
inline PlainMesh BoxMesh(const Point3& low, const Point3& high) {
    PlainMesh mesh;
    for (int corner = 0; corner < 8; ++corner) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            mesh.positions.push_back((corner >> axis) & 1 ? high[axis] : low[axis]);
        }
    }
    mesh.indices = {0, 2, 3, 0, 3, 1, 4, 5, 7, 4, 7, 6, 0, 1, 5, 0, 5, 4,
                    2, 6, 7, 2, 7, 3, 0, 4, 6, 0, 6, 2, 1, 3, 7, 1, 7, 5};
    mesh.volume = (high[0] - low[0]) * (high[1] - low[1]) * (high[2] - low[2]);
    return mesh;
}

inline std::array<double, 16> Identity() {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

/// A package in the making. Products are added in the order of their express ids, from 100 up.
class SceneBuilder {
  public:
    using Json = nlohmann::json;

    /// Another product. Without further words it is an element of the class without a body.
    SceneBuilder& Add(std::string ifcClass, std::string guid) {
        products_.push_back({{"expressId", 100 + products_.size()},
                             {"ifcClass", std::move(ifcClass)},
                             {"guid", std::move(guid)},
                             {"role", "element"},
                             {"meshState", "noRepresentation"},
                             {"firstInstance", raw_.instances.size()},
                             {"instanceCount", 0},
                             {"firstProperty", raw_.properties.size()},
                             {"propertyCount", 0}});
        return *this;
    }
    /// The same with a GlobalId made from the product's number.
    SceneBuilder& Add(std::string ifcClass) {
        return Add(std::move(ifcClass), GuidOf(products_.size()));
    }
    /// The GlobalId that Add gives to the product with this index.
    static std::string GuidOf(std::size_t index) {
        const std::string digits = std::to_string(index);
        return std::string(22 - digits.size(), '0') + digits;
    }

    /// Sets a field of the latest product.
    template <class T>
    SceneBuilder& With(const char* field, T&& value) {
        products_.back()[field] = std::forward<T>(value);
        return *this;
    }
    SceneBuilder& Named(const std::string& name) { return With("name", name); }
    SceneBuilder& On(int storey) { return With("storey", storey); }
    SceneBuilder& PartOf(int parent) {
        relations_["aggregates"].push_back({parent, Last()});
        return With("parent", parent);
    }
    SceneBuilder& As(const char* role) { return With("role", role).With("meshState", "notABody"); }

    /// Gives the latest product one more piece of body.
    SceneBuilder& Mesh(const PlainMesh& mesh,
                       const std::array<double, 16>& transform = Identity()) {
        return Instance(AddGeometry(mesh), transform);
    }
    SceneBuilder& Box(const Point3& low, const Point3& high) { return Mesh(BoxMesh(low, high)); }

    /// A geometry that several products may use.
    std::uint32_t AddGeometry(const PlainMesh& mesh) {
        format::GeometryRecord record;
        record.firstVertex = raw_.positions.size() / 3;
        record.vertexCount = mesh.positions.size() / 3;
        record.firstIndex = raw_.indices.size();
        record.indexCount = mesh.indices.size();
        record.volume = mesh.volume;
        record.boxMin = record.boxMax = {mesh.positions[0], mesh.positions[1], mesh.positions[2]};
        for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
            record.boxMin[i % 3] = std::min(record.boxMin[i % 3], mesh.positions[i]);
            record.boxMax[i % 3] = std::max(record.boxMax[i % 3], mesh.positions[i]);
        }
        raw_.positions.insert(raw_.positions.end(), mesh.positions.begin(), mesh.positions.end());
        raw_.indices.insert(raw_.indices.end(), mesh.indices.begin(), mesh.indices.end());
        raw_.geometries.push_back(record);
        return static_cast<std::uint32_t>(raw_.geometries.size() - 1);
    }
    SceneBuilder& Instance(std::uint32_t geometry, const std::array<double, 16>& transform) {
        const SceneInstance instance{geometry, static_cast<std::uint32_t>(Last()), transform};
        raw_.instances.push_back(instance);
        Json& product = products_.back();
        product["meshState"] = "meshed";
        product["instanceCount"] = product["instanceCount"].get<int>() + 1;
        product["meshVolume"] = product.value("meshVolume", 0.0) + raw_.geometries[geometry].volume;
        GrowBox(product, instance);
        return *this;
    }

    SceneBuilder& Property(const char* set, const char* name, const std::string& value,
                           PropertyKind kind = PropertyKind::Text, double number = 0.0) {
        raw_.properties.push_back(
            {String(set), String(name), String(value), static_cast<std::uint32_t>(kind), number});
        Json& product = products_.back();
        product["propertyCount"] = product["propertyCount"].get<int>() + 1;
        return *this;
    }

    SceneBuilder& Storey(const std::string& name, double baseZ, int building = -1) {
        Json storey = {{"expressId", 10 + storeys_.size()}, {"name", name}, {"baseZ", baseZ}};
        if (building >= 0) storey["building"] = building;
        storeys_.push_back(storey);
        return *this;
    }
    SceneBuilder& Building(const std::string& name) {
        buildings_.push_back({{"expressId", 5 + buildings_.size()}, {"name", name}});
        return *this;
    }
    SceneBuilder& System(const std::string& name, const std::string& ifcClass = "IfcSystem",
                         const std::string& predefinedType = "") {
        systems_.push_back({{"expressId", 50 + systems_.size()},
                            {"ifcClass", ifcClass},
                            {"name", name},
                            {"predefinedType", predefinedType}});
        return *this;
    }
    /// `kind` is the name of one of the lists of pairs, as "voids".
    SceneBuilder& Relate(const char* kind, int first, int second) {
        relations_[kind].push_back({first, second});
        return *this;
    }
    SceneBuilder& Connect(int first, int second, const char* kind) {
        relations_["connections"].push_back({{"first", first}, {"second", second}, {"kind", kind}});
        return *this;
    }
    SceneBuilder& Port(int port, int element) {
        relations_["ports"].push_back({{"port", port}, {"element", element}});
        return *this;
    }
    /// A grid whose product is the latest one.
    SceneBuilder& Grid(int storey, Json axes) {
        Json grid = {{"product", Last()}, {"axes", std::move(axes)}};
        if (storey >= 0) grid["storey"] = storey;
        grids_.push_back(grid);
        return *this;
    }
    static Json LineAxis(const char* name, const Point3& start, const Point3& end) {
        const Point3 middle{(start[0] + end[0]) / 2, (start[1] + end[1]) / 2,
                            (start[2] + end[2]) / 2};
        return {
            {"name", name},
            {"family", "U"},
            {"segments", {{{"kind", "line"}, {"start", start}, {"end", end}, {"middle", middle}}}}};
    }

    int Last() const { return static_cast<int>(products_.size()) - 1; }

    std::string Build() const {
        PackageBuilder raw = raw_;
        Json document = {{"file",
                          {{"schema", "IFC4"},
                           {"lengthUnit", "MILLIMETRE"},
                           {"lengthUnitInMm", 1},
                           {"circleSegments", 24},
                           {"converter", "hand"},
                           {"georeference", {{"largestCoordinate", 0}}}}},
                         {"sites", Json::array()},
                         {"buildings", buildings_},
                         {"storeys", storeys_},
                         {"products", products_},
                         {"systems", systems_},
                         {"grids", grids_},
                         {"relations", relations_},
                         {"warnings", Json::array()},
                         {"strings", strings_}};
        raw.json = document.dump();
        return raw.Build();
    }

    /// Opens the package by way of a file in `folder`.
    ScenePackage Open(const TemporaryFolder& folder) const {
        static int count = 0;
        const auto path = folder.Write("scene" + std::to_string(++count) + ".kyscene", Build());
        SceneError error;
        auto package = ScenePackage::Open(path, error);
        if (!package) throw std::runtime_error(error.Text());
        return std::move(*package);
    }

  private:
    static PackageBuilder Empty() {
        PackageBuilder raw;
        raw.positions.clear();
        raw.indices.clear();
        raw.geometries.clear();
        raw.instances.clear();
        raw.properties.clear();
        return raw;
    }

    void GrowBox(Json& product, const SceneInstance& instance) {
        const format::GeometryRecord& record = raw_.geometries[instance.geometry];
        std::array<double, 6> box{};
        const bool known = product.contains("box");
        if (known) box = product["box"].get<std::array<double, 6>>();
        for (std::size_t i = 0; i < record.vertexCount; ++i) {
            const double* p = &raw_.positions[(record.firstVertex + i) * 3];
            const Point3 world = instance.Apply(p[0], p[1], p[2]);
            for (std::size_t axis = 0; axis < 3; ++axis) {
                const bool first = !known && i == 0;
                box[axis] = first ? world[axis] : std::min(box[axis], world[axis]);
                box[axis + 3] = first ? world[axis] : std::max(box[axis + 3], world[axis]);
            }
        }
        product["box"] = box;
    }

    std::uint32_t String(const std::string& text) {
        const auto [entry, isNew] = stringIndex_.emplace(text, strings_.size());
        if (isNew) strings_.push_back(text);
        return static_cast<std::uint32_t>(entry->second);
    }

    PackageBuilder raw_ = Empty();
    Json products_ = Json::array();
    Json storeys_ = Json::array();
    Json buildings_ = Json::array();
    Json systems_ = Json::array();
    Json grids_ = Json::array();
    Json relations_ = Json::object();
    std::vector<std::string> strings_;
    std::map<std::string, std::size_t> stringIndex_;
};

}  // namespace ifchost::testing
