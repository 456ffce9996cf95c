// SPDX-License-Identifier: Apache-2.0
#include "SceneJson.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

namespace ifchost {
namespace {

using Json = nlohmann::json;

/// One JSON value together with the way to it, for messages.
class Node {
  public:
    Node(const Json& value, std::string place) : value_(&value), place_(std::move(place)) {}

    [[noreturn]] void Fail(const std::string& message) const {
        throw SceneFormatError(place_, message);
    }

    bool Has(const char* key) const { return value_->contains(key); }

    Node At(const char* key) const {
        RequireObject();
        const auto found = value_->find(key);
        if (found == value_->end()) Fail(std::string("\"") + key + "\" is missing");
        return {*found, place_.empty() ? key : place_ + "." + key};
    }

    std::size_t Size() const {
        if (!value_->is_array()) Fail("is not a list");
        return value_->size();
    }

    Node At(std::size_t index) const {
        return {(*value_)[index], place_ + "[" + std::to_string(index) + "]"};
    }

    void RequireObject() const {
        if (!value_->is_object()) Fail("is not an object");
    }

    const std::string& Text() const {
        if (!value_->is_string()) Fail("is not a text");
        return value_->get_ref<const std::string&>();
    }

    double Number() const {
        if (!value_->is_number()) Fail("is not a number");
        const double number = value_->get<double>();
        if (!std::isfinite(number)) Fail("is not a finite number");
        return number;
    }

    std::uint64_t Unsigned(std::uint64_t limit) const {
        if (!value_->is_number_unsigned()) Fail("is not a whole number from 0 up");
        const auto number = value_->get<std::uint64_t>();
        if (number > limit) Fail("is larger than " + std::to_string(limit));
        return number;
    }

    /// An index below `count`.
    std::uint32_t Index(std::size_t count) const {
        constexpr std::uint64_t kMax = std::numeric_limits<std::int32_t>::max();
        const std::uint64_t index = Unsigned(kMax);
        if (index >= count) {
            Fail("index " + std::to_string(index) + " is out of range, there are " +
                 std::to_string(count));
        }
        return static_cast<std::uint32_t>(index);
    }

    /// An index below `count`, or -1.
    std::int32_t IndexOrNone(std::size_t count) const {
        if (value_->is_number_integer() && *value_ == -1) return kNoIndex;
        return static_cast<std::int32_t>(Index(count));
    }

    template <std::size_t N>
    std::array<double, N> Numbers() const {
        if (Size() != N) Fail("does not have " + std::to_string(N) + " numbers");
        std::array<double, N> numbers{};
        for (std::size_t i = 0; i < N; ++i)
            numbers[i] = At(i).Number();
        return numbers;
    }

    SceneBox Box() const {
        const auto n = Numbers<6>();
        const SceneBox box{{n[0], n[1], n[2]}, {n[3], n[4], n[5]}};
        for (std::size_t i = 0; i < 3; ++i) {
            if (box.min[i] > box.max[i]) Fail("is a box with its corners swapped");
        }
        return box;
    }

    // What a key that may be missing holds.
    std::string TextOr(const char* key) const { return Has(key) ? At(key).Text() : std::string(); }
    std::optional<double> MaybeNumber(const char* key) const {
        return Has(key) ? std::optional(At(key).Number()) : std::nullopt;
    }
    std::optional<Point3> MaybePoint(const char* key) const {
        return Has(key) ? std::optional(At(key).Numbers<3>()) : std::nullopt;
    }
    std::int32_t MaybeIndex(const char* key, std::size_t count) const {
        return Has(key) ? At(key).IndexOrNone(count) : kNoIndex;
    }

    template <class Enum>
    Enum Choice(std::initializer_list<std::pair<const char*, Enum>> choices) const {
        for (const auto& [name, value] : choices) {
            if (Text() == name) return value;
        }
        Fail("\"" + Text() + "\" is not one of the known words");
    }

  private:
    const Json* value_;
    std::string place_;
};

/// The items of a list that may be missing.
template <class T, class Read>
std::vector<T> ReadList(const Node& parent, const char* key, const Read& read) {
    std::vector<T> items;
    if (!parent.Has(key)) return items;
    const Node list = parent.At(key);
    const std::size_t count = list.Size();
    items.reserve(count);
    for (std::size_t i = 0; i < count; ++i)
        items.push_back(read(list.At(i)));
    return items;
}

std::size_t CountOf(const Node& parent, const char* key) {
    return parent.Has(key) ? parent.At(key).Size() : 0;
}

std::uint32_t ExpressId(const Node& node) {
    return static_cast<std::uint32_t>(
        node.At("expressId").Unsigned(std::numeric_limits<std::uint32_t>::max()));
}

SceneGeoreference::MapConversion ReadMapConversion(const Node& node) {
    SceneGeoreference::MapConversion map;
    map.eastings = node.At("eastings").Number();
    map.northings = node.At("northings").Number();
    map.orthogonalHeight = node.At("orthogonalHeight").Number();
    map.xAxisAbscissa = node.At("xAxisAbscissa").Number();
    map.xAxisOrdinate = node.At("xAxisOrdinate").Number();
    map.scale = node.At("scale").Number();
    map.targetCrs = node.TextOr("targetCrs");
    return map;
}

SceneGeoreference ReadGeoreference(const Node& node) {
    SceneGeoreference geo;
    if (node.Has("mapConversion")) geo.mapConversion = ReadMapConversion(node.At("mapConversion"));
    geo.latitude = node.MaybeNumber("latitude");
    geo.longitude = node.MaybeNumber("longitude");
    geo.trueNorth = node.MaybePoint("trueNorth");
    geo.largestCoordinate = node.At("largestCoordinate").Number();
    return geo;
}

SceneFileInfo ReadFile(const Node& node) {
    SceneFileInfo file;
    file.schema = node.At("schema").Text();
    file.projectGuid = node.TextOr("projectGuid");
    file.projectName = node.TextOr("projectName");
    file.application = node.TextOr("application");
    file.lengthUnit = node.TextOr("lengthUnit");
    file.lengthUnitInMm = node.At("lengthUnitInMm").Number();
    if (!(file.lengthUnitInMm > 0.0)) node.At("lengthUnitInMm").Fail("is not above 0");
    constexpr std::uint64_t kMostSegments = 1U << 20;
    file.circleSegments = static_cast<int>(node.At("circleSegments").Unsigned(kMostSegments));
    file.converter = node.TextOr("converter");
    file.georeference = ReadGeoreference(node.At("georeference"));
    if (node.Has("box")) file.box = node.At("box").Box();
    return file;
}

SceneSpatial ReadSpatial(const Node& node, std::size_t parentCount) {
    SceneSpatial spatial;
    spatial.expressId = ExpressId(node);
    spatial.guid = node.TextOr("guid");
    spatial.name = node.TextOr("name");
    spatial.longName = node.TextOr("longName");
    spatial.elevation = node.MaybeNumber("elevation");
    spatial.origin = node.MaybePoint("origin");
    spatial.parent = node.MaybeIndex("parent", parentCount);
    return spatial;
}

SceneStorey ReadStorey(const Node& node, std::size_t buildingCount) {
    SceneStorey storey;
    storey.expressId = ExpressId(node);
    storey.guid = node.TextOr("guid");
    storey.name = node.TextOr("name");
    storey.longName = node.TextOr("longName");
    storey.elevation = node.MaybeNumber("elevation");
    storey.placementZ = node.MaybeNumber("placementZ");
    storey.baseZ = node.At("baseZ").Number();
    storey.building = node.MaybeIndex("building", buildingCount);
    return storey;
}

SceneSystem ReadSystem(const Node& node) {
    SceneSystem system;
    system.expressId = ExpressId(node);
    system.guid = node.TextOr("guid");
    system.ifcClass = node.TextOr("ifcClass");
    system.name = node.TextOr("name");
    system.longName = node.TextOr("longName");
    system.objectType = node.TextOr("objectType");
    system.predefinedType = node.TextOr("predefinedType");
    return system;
}

SceneSection ReadSection(const Node& node) {
    SceneSection section;
    section.shape = node.At("shape").Choice<SectionShape>({{"rectangle", SectionShape::Rectangle},
                                                           {"circle", SectionShape::Circle},
                                                           {"other", SectionShape::Other}});
    section.profileClass = node.TextOr("profileClass");
    section.profileName = node.TextOr("profileName");
    section.width = node.At("width").Number();
    section.height = node.At("height").Number();
    section.radius = node.At("radius").Number();
    section.wallThickness = node.At("wallThickness").Number();
    section.length = node.At("length").Number();
    section.start = node.At("start").Numbers<3>();
    section.end = node.At("end").Numbers<3>();
    section.xAxis = node.At("xAxis").Numbers<3>();
    section.solidCount = static_cast<std::uint32_t>(
        node.At("solidCount").Unsigned(std::numeric_limits<std::uint32_t>::max()));
    return section;
}

ProductRole ReadRole(const Node& node) {
    return node.Choice<ProductRole>({{"element", ProductRole::Element},
                                     {"opening", ProductRole::Opening},
                                     {"space", ProductRole::Space},
                                     {"spatial", ProductRole::Spatial},
                                     {"annotation", ProductRole::Annotation},
                                     {"grid", ProductRole::Grid},
                                     {"virtual", ProductRole::Virtual},
                                     {"port", ProductRole::Port},
                                     {"other", ProductRole::Other}});
}

MeshState ReadMeshState(const Node& node) {
    return node.Choice<MeshState>({{"meshed", MeshState::Meshed},
                                   {"noRepresentation", MeshState::NoRepresentation},
                                   {"empty", MeshState::Empty},
                                   {"failed", MeshState::Failed},
                                   {"notABody", MeshState::NotABody}});
}

/// Sizes of the lists that products refer to.
struct Counts {
    std::size_t storeys = 0;
    std::size_t products = 0;
    std::size_t systems = 0;
};

void ReadProductTexts(const Node& node, SceneProduct& product) {
    product.guid = node.TextOr("guid");
    product.ifcClass = node.TextOr("ifcClass");
    product.name = node.TextOr("name");
    product.description = node.TextOr("description");
    product.objectType = node.TextOr("objectType");
    product.tag = node.TextOr("tag");
    product.longName = node.TextOr("longName");
    product.predefinedType = node.TextOr("predefinedType");
    product.typeClass = node.TextOr("typeClass");
    product.typeName = node.TextOr("typeName");
    product.typeGuid = node.TextOr("typeGuid");
    product.meshNote = node.TextOr("meshNote");
}

void ReadProductNumbers(const Node& node, SceneProduct& product) {
    if (node.Has("box")) product.box = node.At("box").Box();
    product.meshVolume = node.MaybeNumber("meshVolume");
    product.grossVolume = node.MaybeNumber("grossVolume");
    product.netVolume = node.MaybeNumber("netVolume");
    product.overallWidth = node.MaybeNumber("overallWidth");
    product.overallHeight = node.MaybeNumber("overallHeight");
    product.nominalDiameter = node.MaybeNumber("nominalDiameter");
    product.origin = node.MaybePoint("origin");
    if (node.Has("section")) product.section = ReadSection(node.At("section"));
    constexpr auto kAny = std::numeric_limits<std::uint64_t>::max();
    product.firstInstance = node.At("firstInstance").Unsigned(kAny);
    product.instanceCount = node.At("instanceCount").Unsigned(kAny);
    product.firstProperty = node.At("firstProperty").Unsigned(kAny);
    product.propertyCount = node.At("propertyCount").Unsigned(kAny);
}

SceneProduct ReadProduct(const Node& node, const Counts& counts) {
    SceneProduct product;
    product.expressId = ExpressId(node);
    ReadProductTexts(node, product);
    product.role = ReadRole(node.At("role"));
    product.meshState = ReadMeshState(node.At("meshState"));
    product.storey = node.MaybeIndex("storey", counts.storeys);
    product.parent = node.MaybeIndex("parent", counts.products);
    product.materials =
        ReadList<std::string>(node, "materials", [](const Node& item) { return item.Text(); });
    product.systems = ReadList<std::uint32_t>(
        node, "systems", [&](const Node& item) { return item.Index(counts.systems); });
    ReadProductNumbers(node, product);
    const bool isMeshed = product.meshState == MeshState::Meshed;
    if (isMeshed != (product.instanceCount > 0)) {
        node.At("meshState").Fail("does not fit the number of instances");
    }
    if (isMeshed != product.box.has_value()) node.Fail("has a mesh without a box, or the reverse");
    return product;
}

SceneAxisSegment ReadSegment(const Node& node) {
    SceneAxisSegment segment;
    using Kind = SceneAxisSegment::Kind;
    segment.kind = node.At("kind").Choice<Kind>({{"line", Kind::Line}, {"arc", Kind::Arc}});
    segment.start = node.At("start").Numbers<3>();
    segment.end = node.At("end").Numbers<3>();
    segment.middle = node.At("middle").Numbers<3>();
    if (segment.kind == Kind::Line) return segment;
    segment.center = node.At("center").Numbers<3>();
    segment.radius = node.At("radius").Number();
    if (segment.radius < 0.0) node.At("radius").Fail("is below 0");
    return segment;
}

SceneGridAxis ReadAxis(const Node& node) {
    SceneGridAxis axis;
    axis.name = node.TextOr("name");
    axis.family = node.TextOr("family");
    axis.segments = ReadList<SceneAxisSegment>(node, "segments", ReadSegment);
    return axis;
}

SceneGrid ReadGrid(const Node& node, const Counts& counts) {
    SceneGrid grid;
    grid.product = node.MaybeIndex("product", counts.products);
    grid.storey = node.MaybeIndex("storey", counts.storeys);
    grid.axes = ReadList<SceneGridAxis>(node, "axes", ReadAxis);
    return grid;
}

std::vector<ScenePair> ReadPairs(const Node& parent, const char* key, std::size_t count) {
    return ReadList<ScenePair>(parent, key, [count](const Node& item) {
        if (item.Size() != 2) item.Fail("is not a pair");
        return ScenePair{item.At(std::size_t{0}).Index(count), item.At(1).Index(count)};
    });
}

SceneConnection ReadConnection(const Node& node, std::size_t count) {
    SceneConnection connection;
    connection.first = node.At("first").Index(count);
    connection.second = node.At("second").Index(count);
    connection.kind =
        node.At("kind").Choice<ConnectionKind>({{"port", ConnectionKind::Port},
                                                {"element", ConnectionKind::Element},
                                                {"path", ConnectionKind::Path},
                                                {"realizing", ConnectionKind::Realizing}});
    if (connection.first >= connection.second) node.Fail("is not in ascending order");
    return connection;
}

ScenePort ReadPort(const Node& node, std::size_t count) {
    return {node.At("port").Index(count), node.At("element").Index(count),
            node.TextOr("flowDirection")};
}

SceneRelations ReadRelations(const Node& node, std::size_t count) {
    SceneRelations relations;
    relations.voids = ReadPairs(node, "voids", count);
    relations.fills = ReadPairs(node, "fills", count);
    relations.aggregates = ReadPairs(node, "aggregates", count);
    relations.coverings = ReadPairs(node, "coverings", count);
    relations.connections = ReadList<SceneConnection>(
        node, "connections", [count](const Node& item) { return ReadConnection(item, count); });
    relations.ports = ReadList<ScenePort>(
        node, "ports", [count](const Node& item) { return ReadPort(item, count); });
    return relations;
}

SceneWarning ReadWarning(const Node& node, std::size_t count) {
    return {node.At("code").Text(), node.TextOr("text"), node.MaybeIndex("product", count)};
}

SceneDocument ReadDocument(const Node& root) {
    root.RequireObject();
    const Counts counts{CountOf(root, "storeys"), CountOf(root, "products"),
                        CountOf(root, "systems")};
    SceneDocument document;
    document.file = ReadFile(root.At("file"));
    document.sites = ReadList<SceneSpatial>(root, "sites",
                                            [](const Node& item) { return ReadSpatial(item, 0); });
    document.buildings = ReadList<SceneSpatial>(root, "buildings", [&](const Node& item) {
        return ReadSpatial(item, document.sites.size());
    });
    document.storeys = ReadList<SceneStorey>(root, "storeys", [&](const Node& item) {
        return ReadStorey(item, document.buildings.size());
    });
    document.products = ReadList<SceneProduct>(
        root, "products", [&](const Node& item) { return ReadProduct(item, counts); });
    document.systems = ReadList<SceneSystem>(root, "systems", ReadSystem);
    document.grids = ReadList<SceneGrid>(root, "grids",
                                         [&](const Node& item) { return ReadGrid(item, counts); });
    document.relations = ReadRelations(root.At("relations"), counts.products);
    document.warnings = ReadList<SceneWarning>(
        root, "warnings", [&](const Node& item) { return ReadWarning(item, counts.products); });
    document.strings =
        ReadList<std::string>(root, "strings", [](const Node& item) { return item.Text(); });
    return document;
}

}  // namespace

SceneDocument ParseSceneDocument(std::string_view text) {
    Json json;
    try {
        json = Json::parse(text.begin(), text.end());
    } catch (const Json::exception& error) {
        throw SceneFormatError("json", error.what());
    }
    return ReadDocument(Node(json, ""));
}

}  // namespace ifchost
