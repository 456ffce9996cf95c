// SPDX-License-Identifier: Apache-2.0
#include "ComponentAttributes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <utility>

#include "HostText.h"
#include "IfcClasses.h"
#include "IfcGuid.h"
#include "NominalDiameter.h"
#include "PrismShape.h"
#include "RelatedProducts.h"

namespace ifchost {
namespace {

using KYCOLLISION::MODEL::AttCategory;
using Map = ComponentAttributes::Map;

// Beyond this distance between their boxes (mm) two components are never tested, whatever their
// clearances, so there is no need to name them as related.
constexpr double kFarApart = 2000.0;

// Height formats of the library.
constexpr const wchar_t* kSingleHeight = L"1";
constexpr const wchar_t* kUnderAndTop = L"2";
constexpr const wchar_t* kUnderside = L"3";
constexpr const wchar_t* kSloped = L"4";

constexpr std::string_view kInsulationNames[] = {"InsulationThickness",  "Insulation Thickness",
                                                 "Insulation thickness", "ThermalInsulation",
                                                 "Dämmstärke",           "Dämmdicke",
                                                 "Isolatiedikte",        "保温厚度"};

bool IsOneOf(const std::wstring& text, std::initializer_list<std::wstring_view> names) {
    return std::find(names.begin(), names.end(), text) != names.end();
}

// Trays, trunking and ducts are shown by their underside, pipes by their axis.
bool IsShownByUnderside(const AttCategory& category) {
    return IsOneOf(category.dalei, {L"风管", L"电缆桥架", L"线槽桥架"});
}

bool IsRun(const AttCategory& category) {
    return category.IsSgFgQj_RP();
}

bool IsBeam(const AttCategory& category, const SceneProduct& product) {
    return IsKindOf(product.ifcClass, "IfcBeam") || IsKindOf(product.ifcClass, "IfcMember") ||
           category.dalei == L"梁";
}

bool IsPost(const SceneProduct& product) {
    return IsKindOf(product.ifcClass, "IfcColumn") || IsKindOf(product.ifcClass, "IfcPile");
}

bool IsWallOpening(const AttCategory& category) {
    return category.specialty == L"土建" && category.dalei == L"门.窗.洞" &&
           IsOneOf(category.xiaolei, {L"门", L"窗", L"飘窗", L"墙洞"});
}

bool IsSlabOpening(const AttCategory& category) {
    return category.specialty == L"土建" && category.dalei == L"板.楼梯" &&
           category.xiaolei == L"板洞";
}

bool LieWithin(const SceneBox& a, const SceneBox& b, double distance) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (a.min[axis] > b.max[axis] + distance || b.min[axis] > a.max[axis] + distance) {
            return false;
        }
    }
    return true;
}

std::wstring PointText(const Point3& p) {
    return FormatMillimetres(p[0]) + L"," + FormatMillimetres(p[1]) + L"," +
           FormatMillimetres(p[2]);
}

std::wstring WholeMillimetres(double value) {
    return FormatMillimetres(std::round(value));
}

double Distance(const Point3& a, const Point3& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

struct HoleSize {
    HoleShape shape = HoleShape::Other;
    double width = 0.0;
    double height = 0.0;
};

}  // namespace

// The components of one file.
class ComponentAttributes::ProjectReader {
  public:
    ProjectReader(const IfcWorkset& workset, const WorksetProject& project)
        : workset_(workset),
          project_(project),
          package_(project.package),
          related_(project.package) {}

    Map Read(const WorksetComponent& component) const {
        Map map;
        const SceneProduct& product = package_.Products()[component.product];
        if (component.role == ComponentRole::Body) {
            AddShape(component, product, map);
        } else {
            AddHeightRange(component.box, kUnderAndTop, map);
        }
        AddHole(component, product, map);
        AddRelated(L"relatedobjs", related_.Objects(component.product), component, map);
        AddRelated(L"relatedfits", related_.Fittings(component.product), component, map);
        return map;
    }

  private:
    void AddShape(const WorksetComponent& component, const SceneProduct& product, Map& map) const {
        const bool isRun = IsRun(component.category);
        const bool isBeam = IsBeam(component.category, product);
        std::optional<PrismShape> shape;
        if (isRun || isBeam || IsPost(product)) shape = ShapeOf(product);
        AddHeights(component, product, isRun || isBeam ? shape : std::nullopt, isRun, map);
        if (shape) AddSection(*shape, map);
        if (isRun && shape) AddEnds(product, *shape, map);
        if (component.category.IsNeedFiter()) AddDiameter(product, shape, map);
    }

    std::optional<PrismShape> ShapeOf(const SceneProduct& product) const {
        auto shape = PrismOfSection(product);
        return shape ? shape : PrismOfMesh(WorldMeshOf(package_, product));
    }

    void AddHeights(const WorksetComponent& component, const SceneProduct& product,
                    const std::optional<PrismShape>& shape, bool isRun, Map& map) const {
        if (!shape || shape->IsVertical()) return AddHeightRange(component.box, kUnderAndTop, map);
        if (!shape->IsHorizontal()) return AddHeightRange(component.box, kSloped, map);
        if (!isRun) return AddHeightRange(component.box, kUnderAndTop, map);
        const double low = component.box.min[2];
        const double high = component.box.max[2];
        const bool underside = IsShownByUnderside(component.category);
        map[L"heighttype"] = underside ? kUnderside : kSingleHeight;
        map[L"oneheight"] = FormatMillimetres((low + high) / 2.0);
        if (!underside) return;
        map[L"sectheight"] = FormatMillimetres(high - low);
        map[L"bwthick"] = FormatMillimetres(InsulationOf(component, product));
    }

    static void AddHeightRange(const SceneBox& box, const wchar_t* type, Map& map) {
        map[L"heighttype"] = type;
        map[L"underheight"] = FormatMillimetres(box.min[2]);
        map[L"topheight"] = FormatMillimetres(box.max[2]);
    }

    // From a property, else from the covering that wraps the run.
    double InsulationOf(const WorksetComponent& component, const SceneProduct& product) const {
        for (const std::string_view name : kInsulationNames) {
            const auto property = package_.FindProperty(product, "", name);
            if (property && property->kind == PropertyKind::Length && property->number > 0.0) {
                return property->number;
            }
        }
        double thickness = 0.0;
        for (const std::uint32_t index : related_.CoveringsOf(component.product)) {
            const auto& box = package_.Products()[index].box;
            if (box) thickness = std::max(thickness, component.box.min[2] - box->min[2]);
        }
        return thickness;
    }

    static void AddSection(const PrismShape& shape, Map& map) {
        if (shape.radius > 0.0) {
            map[L"sectradius"] = FormatMillimetres(shape.radius);
        } else {
            map[L"sectwidthheight"] =
                FormatMillimetres(shape.width) + L"*" + FormatMillimetres(shape.height);
        }
    }

    void AddEnds(const SceneProduct& product, const PrismShape& shape, Map& map) const {
        Point3 start = shape.start;
        Point3 end = shape.end;
        const auto index = static_cast<std::size_t>(&product - package_.Products().data());
        const auto& ports = related_.PortsOf(static_cast<std::uint32_t>(index));
        if (ports.size() == 2) {
            const auto& first = package_.Products()[ports[0]].origin;
            const auto& second = package_.Products()[ports[1]].origin;
            // Ports that were all put on one spot tell nothing.
            if (first && second && Distance(*first, *second) > shape.Length() / 2.0) {
                start = *first;
                end = *second;
            }
        }
        map[L"drawstartendpt"] = PointText(start) + L"," + PointText(end);
    }

    static void AddDiameter(const SceneProduct& product, const std::optional<PrismShape>& shape,
                            Map& map) {
        std::optional<double> diameter = product.nominalDiameter;
        for (const std::string* text : {&product.typeName, &product.name, &product.objectType}) {
            if (!diameter) diameter = NominalDiameterInText(*text);
        }
        if (!diameter && shape) {
            const double outer =
                shape->radius > 0.0 ? 2.0 * shape->radius : std::max(shape->width, shape->height);
            diameter = NominalDiameterOfOuter(outer);
        }
        if (diameter) map[L"pipegczj"] = FormatMillimetres(*diameter);
    }

    void AddHole(const WorksetComponent& component, const SceneProduct& product, Map& map) const {
        const bool inWall = IsWallOpening(component.category);
        if (!inWall && !IsSlabOpening(component.category)) return;
        const std::int32_t openingIndex = related_.OpeningOf(component.product);
        const SceneProduct& opening =
            openingIndex == kNoIndex ? product
                                     : package_.Products()[static_cast<std::size_t>(openingIndex)];
        const SceneBox box = opening.box.value_or(component.box);
        const HoleSize size = SizeOf(component, product, opening, inWall);
        map[L"holeshape"] = std::to_wstring(static_cast<int>(size.shape));
        map[L"holecenter"] =
            PointText({(box.min[0] + box.max[0]) / 2.0, (box.min[1] + box.max[1]) / 2.0,
                       (box.min[2] + box.max[2]) / 2.0});
        map[L"holeelev"] = FormatMillimetres(box.min[2]);
        map[L"parentid"] = HostGuid(component.product);
        if (size.width <= 0.0) return;
        map[L"holesize"] = WholeMillimetres(size.width);
        if (size.shape == HoleShape::Circle) return;
        map[L"holesize"] += L"," + WholeMillimetres(size.height);
    }

    HoleSize SizeOf(const WorksetComponent& component, const SceneProduct& product,
                    const SceneProduct& opening, bool inWall) const {
        if (product.overallWidth && product.overallHeight) {
            return {HoleShape::Rectangle, *product.overallWidth, *product.overallHeight};
        }
        if (const auto size = SizeOfSection(opening, inWall)) return *size;
        const WorldMesh body = WorldMeshOf(package_, opening.box ? opening : product);
        if (body.points.empty()) return {};
        // A small hole through a thick wall is deepest across it, so the wall tells the direction.
        const std::int32_t host = related_.HostOf(component.product);
        const WorldMesh guide =
            inWall && host != kNoIndex
                ? WorldMeshOf(package_, package_.Products()[static_cast<std::size_t>(host)])
                : body;
        const Point3 along = PlanDirection(guide.points.empty() ? body : guide);
        const Point3 across = inWall ? Point3{0, 0, 1} : Point3{-along[1], along[0], 0};
        return {HoleShape::Other, ExtentAlong(body, along), ExtentAlong(body, across)};
    }

    // The section faces the way that the opening is cut; swept upward in a wall, it is a plan.
    static std::optional<HoleSize> SizeOfSection(const SceneProduct& opening, bool inWall) {
        if (!opening.section || opening.section->solidCount != 1) return std::nullopt;
        const SceneSection& section = *opening.section;
        if (section.shape == SectionShape::Circle) {
            return HoleSize{HoleShape::Circle, 2.0 * section.radius, 2.0 * section.radius};
        }
        const HoleShape shape =
            section.shape == SectionShape::Rectangle ? HoleShape::Rectangle : HoleShape::Other;
        const PrismShape sweep{section.start, section.end, section.width, section.height, 0.0};
        if (inWall && sweep.IsVertical()) {
            return HoleSize{shape, std::max(section.width, section.height), sweep.Length()};
        }
        const bool turned = inWall && std::abs(section.xAxis[2]) > std::sqrt(0.5);
        return turned ? HoleSize{shape, section.height, section.width}
                      : HoleSize{shape, section.width, section.height};
    }

    std::wstring HostGuid(std::uint32_t product) const {
        const std::int32_t host = related_.HostOf(product);
        if (host == kNoIndex) return {};
        const auto index = static_cast<std::size_t>(host);
        const std::int32_t component = project_.accounts[index].component;
        if (component != kNoIndex) {
            return workset_.Components()[static_cast<std::size_t>(component)].guid;
        }
        return HexFromGlobalId(package_.Products()[index].guid).value_or(std::wstring());
    }

    void AddRelated(const wchar_t* name, const std::vector<std::uint32_t>& products,
                    const WorksetComponent& component, Map& map) const {
        std::wstring guids;
        for (const std::uint32_t product : products) {
            const std::int32_t index = project_.accounts[product].component;
            if (index == kNoIndex) continue;
            const auto& other = workset_.Components()[static_cast<std::size_t>(index)];
            if (!LieWithin(component.box, other.box, kFarApart)) continue;
            if (!guids.empty()) guids += L',';
            guids += other.guid;
        }
        if (!guids.empty()) map[name] = std::move(guids);
    }

    const IfcWorkset& workset_;
    const WorksetProject& project_;
    const ScenePackage& package_;
    RelatedProducts related_;
};

ComponentAttributes::ComponentAttributes(const IfcWorkset& workset) : workset_(workset) {
    for (const WorksetProject& project : workset.Projects()) {
        projects_.push_back(std::make_unique<ProjectReader>(workset, project));
    }
}

ComponentAttributes::~ComponentAttributes() = default;

Map ComponentAttributes::Read(std::size_t component) const {
    const WorksetComponent& which = workset_.Components()[component];
    return projects_[static_cast<std::size_t>(which.projectId) - 1]->Read(which);
}

}  // namespace ifchost
