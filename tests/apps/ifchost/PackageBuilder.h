// SPDX-License-Identifier: Apache-2.0
// Makes scene packages byte by byte, sound ones and broken ones.
#pragma once

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ifchost/SceneFormat.h"
#include "ifchost/Sha256.h"
#include "support/TemporaryFolder.h"

namespace ifchost::testing {

using kycbtest::ReadAll;
using kycbtest::TemporaryFolder;

/// A package in the making; the defaults are one wall made of one tetrahedron on one storey.
struct PackageBuilder {
    std::string json = R"({
        "file": {"schema": "IFC4", "projectName": "Höhe", "lengthUnit": "MILLIMETRE",
                 "lengthUnitInMm": 1, "circleSegments": 24, "converter": "hand",
                 "georeference": {"largestCoordinate": 1000},
                 "box": [0, 0, 0, 1000, 1000, 1000]},
        "sites": [{"expressId": 2, "name": "Site", "elevation": 5, "origin": [1, 2, 3]}],
        "buildings": [{"expressId": 3, "name": "House", "parent": 0}],
        "storeys": [{"expressId": 4, "guid": "g4", "name": "Ground", "elevation": 0,
                     "placementZ": 100, "baseZ": 100, "building": 0}],
        "products": [
            {"expressId": 10, "guid": "g10", "ifcClass": "IfcWall", "name": "墙",
             "role": "element", "meshState": "meshed", "storey": 0,
             "materials": ["Brick"], "systems": [0], "predefinedType": "SOLIDWALL",
             "box": [0, 0, 0, 1000, 1000, 1000], "meshVolume": 166666666.5, "netVolume": 5,
             "origin": [7, 8, 9],
             "section": {"shape": "circle", "profileClass": "IfcCircleProfileDef",
                         "width": 20, "height": 20, "radius": 10, "wallThickness": 0,
                         "length": 30, "start": [0, 0, 0], "end": [0, 0, 30],
                         "xAxis": [1, 0, 0], "solidCount": 1},
             "firstInstance": 0, "instanceCount": 1, "firstProperty": 0, "propertyCount": 2},
            {"expressId": 11, "guid": "g11", "ifcClass": "IfcElementAssembly",
             "role": "element", "meshState": "noRepresentation", "meshNote": "no body",
             "parent": 0, "firstInstance": 1, "instanceCount": 0, "firstProperty": 2,
             "propertyCount": 0}],
        "systems": [{"expressId": 20, "ifcClass": "IfcSystem", "name": "Supply"}],
        "grids": [{"product": 1, "storey": 0, "axes": [{"name": "A", "family": "U", "segments": [
            {"kind": "line", "start": [0, 0, 0], "end": [10, 0, 0], "middle": [5, 0, 0]},
            {"kind": "arc", "start": [10, 0, 0], "end": [-10, 0, 0], "middle": [0, 10, 0],
             "center": [0, 0, 0], "radius": 10}]}]}],
        "relations": {"voids": [[1, 0]], "aggregates": [[0, 1]],
                      "connections": [{"first": 0, "second": 1, "kind": "port"}],
                      "ports": [{"port": 1, "element": 0, "flowDirection": "SINK"}]},
        "warnings": [{"code": "odd", "text": "something", "product": 1}],
        "strings": ["Pset_WallCommon", "IsExternal", "true", "Width", "200"]
    })";
    std::vector<double> positions{0, 0, 0, 1000, 0, 0, 0, 1000, 0, 0, 0, 1000};
    std::vector<std::uint32_t> indices{0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3};
    std::vector<format::GeometryRecord> geometries{
        {0, 4, 0, 12, {0, 0, 0}, {1000, 1000, 1000}, 1e9 / 6, 0}};
    std::vector<SceneInstance> instances{{0, 0, {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}}};
    std::vector<format::PropertyRecord> properties{
        {0, 1, 2, static_cast<std::uint32_t>(PropertyKind::Boolean), 1},
        {0, 3, 4, static_cast<std::uint32_t>(PropertyKind::Length), 200}};

    /// Replaces the only occurrence of `from` in the JSON part.
    PackageBuilder& Replace(std::string_view from, std::string_view to) {
        const auto at = json.find(from);
        if (at == std::string::npos)
            throw std::logic_error("not in the JSON: " + std::string(from));
        json.replace(at, from.size(), to);
        return *this;
    }

    std::string Build() const {
        format::Header header;
        std::string body(sizeof(header), '\0');
        header.jsonSize = json.size();
        body += json;
        AddSection(body, header.sections[format::kPositions], positions, 3);
        AddSection(body, header.sections[format::kIndices], indices, 1);
        AddSection(body, header.sections[format::kGeometries], geometries, 1);
        AddSection(body, header.sections[format::kInstances], instances, 1);
        AddSection(body, header.sections[format::kProperties], properties, 1);
        Align(body);
        header.fileSize = body.size() + format::kTrailerSize;
        std::memcpy(body.data(), &header, sizeof(header));
        body.append(format::kTrailerSize, '\0');
        Seal(body);
        return body;
    }

    /// Puts the end mark and the right checksum at the end of a package.
    static void Seal(std::string& bytes) {
        const std::size_t covered = bytes.size() - format::kTrailerSize;
        Sha256 hash;
        hash.Update(bytes.data(), covered);
        const auto digest = hash.Finish();
        std::memcpy(bytes.data() + covered, digest.data(), digest.size());
        std::memcpy(bytes.data() + covered + digest.size(), format::kEndMagic.data(),
                    format::kEndMagic.size());
    }

  private:
    static void Align(std::string& body) {
        body.resize((body.size() + format::kAlignment - 1) / format::kAlignment *
                    format::kAlignment);
    }

    template <class T>
    static void AddSection(std::string& body, format::SectionEntry& entry,
                           const std::vector<T>& items, std::size_t perRecord) {
        Align(body);
        entry = {body.size(), items.size() / perRecord};
        const std::size_t at = body.size();
        body.resize(at + items.size() * sizeof(T));
        if (!items.empty()) std::memcpy(body.data() + at, items.data(), items.size() * sizeof(T));
    }
};

}  // namespace ifchost::testing
