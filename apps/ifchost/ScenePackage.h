// SPDX-License-Identifier: Apache-2.0
// A converted IFC file: products with meshes, texts and relations, read from one scene package.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ifchost {

/// A point or direction in IFC axes (Z up). Points are millimetres in the world frame of the file.
using Point3 = std::array<double, 3>;

/// "No such index" in every field that refers to another list of the package.
inline constexpr std::int32_t kNoIndex = -1;

/// Axis-aligned box, millimetres, world frame unless said otherwise. Both corners belong to it.
struct SceneBox {
    Point3 min{};
    Point3 max{};
};

/// What part a product plays in the building. Only `Element` products are bodies to be checked.
enum class ProductRole : std::uint8_t {
    Element,     ///< a physical thing: wall, pipe, furniture, proxy, terrain of a site, ...
    Opening,     ///< cut from a host: IfcOpeningElement and the other subtractive features
    Space,       ///< a room or spatial zone; never has a mesh here
    Spatial,     ///< site, building, storey or another spatial container without a body
    Annotation,  ///< texts, dimensions, symbols
    Grid,        ///< IfcGrid; its axes are in ScenePackage::Grids()
    Virtual,     ///< IfcVirtualElement and the like: boundaries without matter
    Port,        ///< connection point of a services element
    Other        ///< analysis members, loads, alignments, ...: no bodies
};

/// Whether a product has a mesh, and if not, why. `meshNote` has the details in words.
enum class MeshState : std::uint8_t {
    Meshed,            ///< at least one instance with at least one triangle
    NoRepresentation,  ///< the file gives the product no body (an assembly, say)
    Empty,             ///< the file gives a body, but the reader made no triangle of it
    Failed,            ///< the reader failed on the body
    NotABody           ///< not asked for because of the role
};

/// How a property's `number` is to be read.
enum class PropertyKind : std::uint32_t {
    Text,     ///< `number` is 0
    Number,   ///< plain number, ratio, count, or a measure without conversion
    Length,   ///< millimetres
    Area,     ///< square millimetres
    Volume,   ///< cubic millimetres
    Angle,    ///< radians
    Boolean,  ///< 0 false, 1 true; an unknown logical is `Text`
};

/// One single value of a property set or quantity set. The views point into the package and live
/// as long as it does.
struct SceneProperty {
    std::string_view set;    ///< name of the property or quantity set, UTF-8
    std::string_view name;   ///< name of the property; parts of a complex one joined by "."
    std::string_view value;  ///< text as in the file (file units); ends in "…" when it was cut
    PropertyKind kind = PropertyKind::Text;
    double number = 0.0;
};

/// One triangle mesh in its own frame. Vertices are shared between triangles and unreferenced
/// ones do not occur; triangles are counter-clockwise seen from outside as far as the file says.
struct SceneGeometry {
    std::span<const double> positions;       ///< x, y, z per vertex, millimetres
    std::span<const std::uint32_t> indices;  ///< three per triangle, each below VertexCount()
    SceneBox box;                            ///< of the positions, in the mesh's own frame
    double volume = 0.0;                     ///< signed, cubic millimetres; positive when outward

    std::size_t VertexCount() const { return positions.size() / 3; }
    std::size_t TriangleCount() const { return indices.size() / 3; }
};

/// One placing of a geometry. World point = transform * mesh point. The transform is affine, may
/// mirror (negative determinant: the triangles' sense turns over) and may scale.
struct SceneInstance {
    std::uint32_t geometry = 0;        ///< index for ScenePackage::Geometry()
    std::uint32_t product = 0;         ///< the product that it belongs to
    std::array<double, 16> transform;  ///< row-major; the last row is exactly 0 0 0 1

    /// The mesh point (x, y, z) in the world frame.
    Point3 Apply(double x, double y, double z) const {
        const auto& t = transform;
        return {t[0] * x + t[1] * y + t[2] * z + t[3], t[4] * x + t[5] * y + t[6] * z + t[7],
                t[8] * x + t[9] * y + t[10] * z + t[11]};
    }
};

/// Outline of the profile that a product's body is swept from.
enum class SectionShape : std::uint8_t {
    Rectangle,  ///< also rounded and hollow ones
    Circle,     ///< also hollow ones and swept discs
    Other       ///< I, L, U, T, C, Z, ellipse, free outline: width and height are overall sizes
};

/// Size and axis of the first swept solid of a product's body. All lengths in millimetres.
struct SceneSection {
    SectionShape shape = SectionShape::Other;
    std::string profileClass;      ///< IFC class of the profile, as "IfcCircleHollowProfileDef"
    std::string profileName;       ///< ProfileName, or empty
    double width = 0.0;            ///< overall, along the profile's x axis
    double height = 0.0;           ///< overall, along the profile's y axis
    double radius = 0.0;           ///< outer radius of a circle, otherwise 0
    double wallThickness = 0.0;    ///< of hollow profiles, otherwise 0
    double length = 0.0;           ///< of the sweep
    Point3 start{};                ///< middle of the profile's overall box at the start, world
    Point3 end{};                  ///< the same point at the end of the sweep, world
    Point3 xAxis{};                ///< profile's x direction in the world, unit length
    std::uint32_t solidCount = 0;  ///< swept solids in the body; above 1 the section is partial
};

/// One IfcProduct of the file. Every one is listed, bodies or not, in the order of express ids.
/// Texts are UTF-8 and empty where the file says nothing.
struct SceneProduct {
    std::uint32_t expressId = 0;
    std::string guid;      ///< GlobalId; not always unique in real files
    std::string ifcClass;  ///< as "IfcWallStandardCase"
    std::string name;
    std::string description;
    std::string objectType;
    std::string tag;
    std::string longName;        ///< spaces and spatial elements
    std::string predefinedType;  ///< own one, else the type's, as "SPRINKLER"; "" when undefined
    std::string typeClass;       ///< class of the type object, as "IfcDuctSegmentType"
    std::string typeName;
    std::string typeGuid;
    ProductRole role = ProductRole::Element;
    MeshState meshState = MeshState::NotABody;
    std::string meshNote;            ///< why there is no mesh; empty for `Meshed`
    std::int32_t storey = kNoIndex;  ///< index in Storeys(), found through containment, assemblies,
                                     ///< spaces, hosts of openings and openings of fillings
    std::int32_t parent = kNoIndex;  ///< product that this one is a part of (aggregates or nests)
    std::vector<std::string> materials;     ///< names, no duplicates, in file order
    std::vector<std::uint32_t> systems;     ///< indices in Systems()
    std::optional<SceneBox> box;            ///< of all instances, world; empty without a mesh
    std::optional<double> meshVolume;       ///< cubic millimetres, sum over the instances
    std::optional<double> grossVolume;      ///< declared, cubic millimetres
    std::optional<double> netVolume;        ///< declared, cubic millimetres
    std::optional<double> overallWidth;     ///< IfcDoor / IfcWindow OverallWidth, millimetres
    std::optional<double> overallHeight;    ///< IfcDoor / IfcWindow OverallHeight, millimetres
    std::optional<double> nominalDiameter;  ///< from properties, millimetres
    std::optional<Point3> origin;           ///< origin of the product's placement, world
    std::optional<SceneSection> section;    ///< when the body is a swept solid

    std::uint64_t firstInstance = 0;  ///< use ScenePackage::Instances()
    std::uint64_t instanceCount = 0;
    std::uint64_t firstProperty = 0;  ///< use ScenePackage::Properties()
    std::uint64_t propertyCount = 0;
};

/// One IfcBuildingStorey, in ascending order of `baseZ`, then express id.
struct SceneStorey {
    std::uint32_t expressId = 0;
    std::string guid;
    std::string name;
    std::string longName;
    std::optional<double> elevation;   ///< Elevation attribute, millimetres; relative to the
                                       ///< building's zero, so it may differ from `placementZ`
    std::optional<double> placementZ;  ///< world Z of the storey's placement, millimetres
    double baseZ = 0.0;  ///< best world Z of the floor: placementZ, else elevation, else 0
    std::int32_t building = kNoIndex;  ///< index in Buildings()
};

/// One IfcBuilding or IfcSite.
struct SceneSpatial {
    std::uint32_t expressId = 0;
    std::string guid;
    std::string name;
    std::string longName;
    std::optional<double> elevation;  ///< ElevationOfRefHeight or RefElevation, millimetres
    std::optional<Point3> origin;     ///< of its placement, world
    std::int32_t parent = kNoIndex;   ///< buildings: index in Sites()
};

/// A group of products: IfcSystem and its subtypes, or a plain IfcGroup.
struct SceneSystem {
    std::uint32_t expressId = 0;
    std::string guid;
    std::string ifcClass;  ///< as "IfcDistributionSystem"
    std::string name;
    std::string longName;
    std::string objectType;
    std::string predefinedType;  ///< as "DRAINAGE"; empty when undefined
};

/// A piece of a grid axis.
struct SceneAxisSegment {
    enum class Kind : std::uint8_t { Line, Arc };
    Kind kind = Kind::Line;
    Point3 start{};
    Point3 end{};
    Point3 middle{};      ///< arcs: the point halfway along; lines: the middle
    Point3 center{};      ///< arcs only
    double radius = 0.0;  ///< arcs only; a whole circle has start equal to end
};

/// One named axis of an IfcGrid, its placement applied, millimetres in the world frame.
struct SceneGridAxis {
    std::string name;    ///< AxisTag
    std::string family;  ///< "U", "V" or "W"
    std::vector<SceneAxisSegment> segments;
};

/// One IfcGrid.
struct SceneGrid {
    std::int32_t product = kNoIndex;  ///< the grid among Products()
    std::int32_t storey = kNoIndex;   ///< storey that contains it; none: it serves all floors
    std::vector<SceneGridAxis> axes;
};

/// A pair of products by their indices in Products(). What first and second are, the list says.
struct ScenePair {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    bool operator==(const ScenePair&) const = default;
};

/// How two products are joined.
enum class ConnectionKind : std::uint8_t {
    Port,      ///< through ports: IfcRelConnectsPorts
    Element,   ///< IfcRelConnectsElements
    Path,      ///< IfcRelConnectsPathElements, wall joints
    Realizing  ///< IfcRelConnectsWithRealizingElements: the two and the realizing element
};

/// Two products joined; each unordered pair occurs once per kind, with first < second.
struct SceneConnection {
    std::uint32_t first = 0;
    std::uint32_t second = 0;
    ConnectionKind kind = ConnectionKind::Element;
};

/// A port and the product that it sits on.
struct ScenePort {
    std::uint32_t port = 0;     ///< index in Products()
    std::uint32_t element = 0;  ///< index in Products()
    std::string flowDirection;  ///< "SOURCE", "SINK", "SOURCEANDSINK" or empty
};

/// Relations between products. A product that is missing in the file leaves its relation out (and
/// a warning in).
struct SceneRelations {
    std::vector<ScenePair> voids;       ///< first: opening, second: host that it is cut from
    std::vector<ScenePair> fills;       ///< first: opening, second: door, window, ... that fills it
    std::vector<ScenePair> aggregates;  ///< first: assembly, second: part (also nested elements)
    std::vector<ScenePair> coverings;   ///< first: covered element, second: covering (insulation)
    std::vector<SceneConnection> connections;
    std::vector<ScenePort> ports;
};

/// Something odd that did not stop the reading.
struct SceneWarning {
    std::string code;  ///< stable short name, as "volume-differs"
    std::string text;
    std::int32_t product = kNoIndex;
};

/// Where the file lies on the earth, as far as it says. Nothing of it is applied to coordinates.
struct SceneGeoreference {
    struct MapConversion {
        double eastings = 0.0;          ///< millimetres
        double northings = 0.0;         ///< millimetres
        double orthogonalHeight = 0.0;  ///< millimetres
        double xAxisAbscissa = 1.0;
        double xAxisOrdinate = 0.0;
        double scale = 1.0;
        std::string targetCrs;  ///< name of the projected system, as "EPSG:28992"
    };
    std::optional<MapConversion> mapConversion;
    std::optional<double> latitude;   ///< degrees, of the first site that has one
    std::optional<double> longitude;  ///< degrees
    std::optional<Point3> trueNorth;  ///< direction in the model's x/y plane
    /// Largest absolute world coordinate of any mesh, millimetres; 0 without meshes. Above some
    /// 10^6 a local origin is due before coordinates become float32.
    double largestCoordinate = 0.0;
};

/// What holds for the file as a whole.
struct SceneFileInfo {
    std::string schema;  ///< as "IFC2X3" or "IFC4"
    std::string projectGuid;
    std::string projectName;
    std::string application;      ///< originating system of the header
    std::string lengthUnit;       ///< as "MILLIMETRE" or "FOOT"
    double lengthUnitInMm = 1.0;  ///< millimetres in one file unit
    int circleSegments = 0;       ///< chords per full circle that the meshes were made with
    std::string converter;        ///< versions that wrote the package
    SceneGeoreference georeference;
    std::optional<SceneBox> box;  ///< of all `Element` meshes, world
};

/// Why a package could not be read.
struct SceneError {
    std::string file;     ///< path of the package, UTF-8
    std::string place;    ///< where in it, as "header" or "products[3].storey"
    std::string message;  ///< what is wrong there

    /// "file: place: message".
    std::string Text() const;
};

/// A scene package, checked as a whole and mapped into memory.
///
/// Open() verifies the checksum, every size, offset, index and number, so that the accessors need
/// no further care; a file that changes while it is mapped is outside of this promise (packages
/// are replaced by renaming, never written in place). The object can be moved, not copied; spans
/// and views that it handed out stay valid when it is moved and end with it. All const members
/// may be called from several threads at once.
class ScenePackage {
  public:
    static constexpr std::uint32_t kVersion = 1;

    /// Reads `path`. Returns nothing and fills `error` when the file is missing, unfinished,
    /// truncated, altered or of another version. Never throws on bad content.
    static std::optional<ScenePackage> Open(const std::filesystem::path& path, SceneError& error);

    ScenePackage(ScenePackage&&) noexcept;
    ScenePackage& operator=(ScenePackage&&) noexcept;
    ScenePackage(const ScenePackage&) = delete;
    ScenePackage& operator=(const ScenePackage&) = delete;
    ~ScenePackage();

    const SceneFileInfo& File() const;
    const std::vector<SceneSpatial>& Sites() const;
    const std::vector<SceneSpatial>& Buildings() const;
    const std::vector<SceneStorey>& Storeys() const;
    const std::vector<SceneProduct>& Products() const;
    const std::vector<SceneSystem>& Systems() const;
    const std::vector<SceneGrid>& Grids() const;
    const SceneRelations& Relations() const;
    const std::vector<SceneWarning>& Warnings() const;

    std::size_t GeometryCount() const;
    /// Precondition: index < GeometryCount().
    SceneGeometry Geometry(std::size_t index) const;

    /// All instances, those of one product side by side, in the order of products.
    std::span<const SceneInstance> Instances() const;
    std::span<const SceneInstance> Instances(const SceneProduct& product) const;

    /// All properties of the product and (where not set on it) of its type, in file order.
    std::vector<SceneProperty> Properties(const SceneProduct& product) const;
    /// The first property with these names (case-sensitive); an empty `set` means any set.
    std::optional<SceneProperty> FindProperty(const SceneProduct& product, std::string_view set,
                                              std::string_view name) const;

  private:
    struct Impl;
    explicit ScenePackage(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace ifchost
