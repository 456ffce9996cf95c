// SPDX-License-Identifier: Apache-2.0
#include "SyntheticBuilding.h"

#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"
#include "KYCollisionBase/platform/QuadTree.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <memory>
#include <numbers>

namespace kycb::bench {

using namespace KYCOLLISION;
using KYTOOLS::GRAPH::BoundingBox2d;
using KYTOOLS::GRAPH::BoundingBox3d;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

namespace {

constexpr double kStoreyHeight = 3600.0;
constexpr double kComponentsPerSquareMetre = 2.5;
constexpr double kSquareMillimetresPerSquareMetre = 1e6;
constexpr double kBay = 7200.0;
constexpr int kProject = 1;
constexpr unsigned kPipeSides = 16;
constexpr unsigned kFittingSides = 12;
constexpr unsigned kFittingRings = 9;

struct KindNames {
    const wchar_t* specialty;
    const wchar_t* dalei;
    const wchar_t* xiaolei;
};

constexpr std::array<KindNames, SyntheticBuilding::kKinds> kNames = {{
    {L"土建", L"楼梯楼板", L"现浇板"},
    {L"土建", L"柱", L"砼柱"},
    {L"土建", L"墙", L"砼内墙"},
    {L"暖通", L"风管", L"送风管"},
    {L"给排水", L"管道", L"给水管"},
    {L"电气", L"电缆桥架", L"桥架"},
    {L"给排水", L"管道", L"其它管"},
}};

// How many of a thousand components are of each kind.
constexpr std::array<unsigned, SyntheticBuilding::kKinds> kShares = {20,  40,  80, 150,
                                                                     330, 130, 250};

struct Shape {
    std::vector<IceMaths::Point> points;
    std::vector<std::array<unsigned, 3>> faces;

    void AddPoint(double x, double y, double z) {
        points.push_back({static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
    }
    void AddQuad(unsigned a, unsigned b, unsigned c, unsigned d) {
        faces.push_back({a, b, c});
        faces.push_back({a, c, d});
    }
    // A cap over the ring of `sides` points from `first` on.
    void AddFan(unsigned first, unsigned sides, bool facingBack) {
        for (unsigned i = 1; i + 1 < sides; ++i) {
            const unsigned next = first + i + 1;
            faces.push_back(facingBack ? std::array<unsigned, 3>{first, next, first + i}
                                       : std::array<unsigned, 3>{first, first + i, next});
        }
    }
};

Shape BoxShape(const BoundingBox3d& box) {
    Shape shape;
    for (unsigned i = 0; i < 8; ++i) {
        shape.AddPoint((i & 1U) != 0 ? box.GetMaxX() : box.GetMinX(),
                       (i & 2U) != 0 ? box.GetMaxY() : box.GetMinY(),
                       (i & 4U) != 0 ? box.GetMaxZ() : box.GetMinZ());
    }
    shape.AddQuad(0, 2, 3, 1);
    shape.AddQuad(4, 5, 7, 6);
    shape.AddQuad(0, 1, 5, 4);
    shape.AddQuad(2, 6, 7, 3);
    shape.AddQuad(0, 4, 6, 2);
    shape.AddQuad(1, 3, 7, 5);
    return shape;
}

// Points on a unit circle.
template <unsigned kSides>
const std::array<std::array<double, 2>, kSides>& Circle() {
    static const auto points = [] {
        std::array<std::array<double, 2>, kSides> circle{};
        for (unsigned i = 0; i < kSides; ++i) {
            const double angle = 2.0 * std::numbers::pi * i / kSides;
            circle[i] = {std::cos(angle), std::sin(angle)};
        }
        return circle;
    }();
    return points;
}

// Along the longest side of the box.
Shape PipeShape(const BoundingBox3d& box) {
    const std::array<double, 3> low = {box.GetMinX(), box.GetMinY(), box.GetMinZ()};
    const std::array<double, 3> high = {box.GetMaxX(), box.GetMaxY(), box.GetMaxZ()};
    std::size_t axis = 0;
    for (std::size_t k = 1; k < 3; ++k) {
        if (high[k] - low[k] > high[axis] - low[axis]) axis = k;
    }
    const std::size_t u = (axis + 1) % 3;
    const std::size_t v = (axis + 2) % 3;
    Shape shape;
    for (const double along : {low[axis], high[axis]}) {
        for (const auto& [cosine, sine] : Circle<kPipeSides>()) {
            std::array<double, 3> p{};
            p[axis] = along;
            p[u] = (low[u] + high[u]) / 2.0 + cosine * (high[u] - low[u]) / 2.0;
            p[v] = (low[v] + high[v]) / 2.0 + sine * (high[v] - low[v]) / 2.0;
            shape.AddPoint(p[0], p[1], p[2]);
        }
    }
    for (unsigned i = 0; i < kPipeSides; ++i) {
        const unsigned next = (i + 1) % kPipeSides;
        shape.AddQuad(i, next, kPipeSides + next, kPipeSides + i);
    }
    shape.AddFan(0, kPipeSides, true);
    shape.AddFan(kPipeSides, kPipeSides, false);
    return shape;
}

// A quarter bend in plan that fills the box.
Shape FittingShape(const BoundingBox3d& box) {
    const double sizeX = box.GetMaxX() - box.GetMinX();
    const double sizeY = box.GetMaxY() - box.GetMinY();
    const double sizeZ = box.GetMaxZ() - box.GetMinZ();
    Shape shape;
    for (unsigned ring = 0; ring < kFittingRings; ++ring) {
        const double turn = std::numbers::pi / 2.0 * ring / (kFittingRings - 1);
        for (const auto& [cosine, sine] : Circle<kFittingSides>()) {
            const double radius = 0.75 + 0.25 * cosine;
            shape.AddPoint(box.GetMinX() + sizeX * radius * std::cos(turn),
                           box.GetMinY() + sizeY * radius * std::sin(turn),
                           box.GetMinZ() + sizeZ * (0.5 + 0.5 * sine));
        }
    }
    for (unsigned ring = 0; ring + 1 < kFittingRings; ++ring) {
        for (unsigned i = 0; i < kFittingSides; ++i) {
            const unsigned a = ring * kFittingSides + i;
            const unsigned b = ring * kFittingSides + (i + 1) % kFittingSides;
            shape.AddQuad(a, b, b + kFittingSides, a + kFittingSides);
        }
    }
    shape.AddFan(0, kFittingSides, true);
    shape.AddFan((kFittingRings - 1) * kFittingSides, kFittingSides, false);
    return shape;
}

Shape ShapeOf(const SyntheticBuilding::Component& component, int bodyOffset) {
    const BoundingBox3d& b = component.box;
    const double offset = bodyOffset;
    const BoundingBox3d body(b.GetMinX() - offset, b.GetMinY() - offset, b.GetMinZ() - offset,
                             b.GetMaxX() + offset, b.GetMaxY() + offset, b.GetMaxZ() + offset);
    if (component.kind == SyntheticBuilding::kPipe) return PipeShape(body);
    if (component.kind == SyntheticBuilding::kFitting) return FittingShape(body);
    return BoxShape(body);
}

Opcode::Model* NewModel(const Shape& shape) {
    auto points = std::make_unique<IceMaths::Point[]>(shape.points.size());
    std::copy(shape.points.begin(), shape.points.end(), points.get());
    auto triangles = std::make_unique<IceMaths::IndexedTriangle[]>(shape.faces.size());
    for (std::size_t i = 0; i < shape.faces.size(); ++i) {
        std::copy(shape.faces[i].begin(), shape.faces[i].end(), triangles[i].mVRef);
    }
    auto mesh = std::make_unique<Opcode::MeshInterface>();
    mesh->SetNbVertices(static_cast<std::uint32_t>(shape.points.size()));
    mesh->SetNbTriangles(static_cast<std::uint32_t>(shape.faces.size()));
    mesh->SetPointers(triangles.get(), points.get());
    Opcode::OPCODECREATE create;
    create.mIMesh = mesh.get();
    auto model = std::make_unique<Opcode::Model>();
    if (!model->Build(create)) return nullptr;
    triangles.release();
    points.release();
    mesh.release();
    return model.release();
}

// Adds its life to a sum.
class Stopwatch {
  public:
    explicit Stopwatch(double& seconds) : seconds_(seconds) {}
    ~Stopwatch() { seconds_ += std::chrono::duration<double>(Clock::now() - start_).count(); }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

  private:
    using Clock = std::chrono::steady_clock;

    double& seconds_;
    Clock::time_point start_ = Clock::now();
};

std::wstring Digits(long number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

std::uint32_t NumberOf(const boost::any& objectId) {
    return *boost::any_cast<std::uint32_t>(&objectId);
}

}  // namespace

SyntheticBuilding::SyntheticBuilding(std::size_t components)
    : floors_(static_cast<std::uint32_t>((components + kComponentsPerFloor - 1) /
                                         kComponentsPerFloor)) {
    const double area = static_cast<double>(kComponentsPerFloor) / kComponentsPerSquareMetre *
                        kSquareMillimetresPerSquareMetre;
    width_ = std::sqrt(area * 1.6);
    depth_ = area / width_;
    components_.reserve(components);
    for (std::size_t i = 0; i < components; ++i) {
        auto draw = static_cast<unsigned>(random_() % 1000);
        unsigned kind = 0;
        while (draw >= kShares[kind]) {
            draw -= kShares[kind++];
        }
        const auto floor = static_cast<std::uint32_t>(i / kComponentsPerFloor);
        components_.push_back({NextBox(static_cast<Kind>(kind), kStoreyHeight * floor),
                               static_cast<Kind>(kind), floor});
    }
}

std::wstring SyntheticBuilding::FloorName(std::uint32_t floor) {
    std::wstring number = std::to_wstring(floor + 1);
    return std::wstring(4 - std::min<std::size_t>(number.size(), 4), L'0') + number + L"F";
}

std::vector<SCollisionFloor> SyntheticBuilding::Floors() const {
    std::vector<SCollisionFloor> floors;
    for (std::uint32_t floor = 0; floor < floors_; ++floor) {
        floors.push_back({FloorName(floor), {}, {{kProject, FloorName(floor)}}});
    }
    return floors;
}

// Not by a standard distribution, whose numbers differ from library to library.
double SyntheticBuilding::Random(double low, double high) {
    return low + (high - low) * (static_cast<double>(random_()) / 4294967296.0);
}

BoundingBox3d SyntheticBuilding::NextBox(Kind kind, Length bottom) {
    const double x = Random(0.0, width_);
    const double y = Random(0.0, depth_);
    const double bayX = kBay * std::floor(x / kBay);
    const double bayY = kBay * std::floor(y / kBay);
    switch (kind) {
        case kSlab:
            return {bayX, bayY, bottom, bayX + kBay, bayY + kBay, bottom + 300.0};
        case kColumn:
            return {bayX, bayY, bottom, bayX + 400.0, bayY + 400.0, bottom + kStoreyHeight};
        case kWall: {
            const double length = Random(1500.0, 7000.0);
            const bool alongX = random_() % 2 == 0;
            return {x,
                    y,
                    bottom + 300.0,
                    x + (alongX ? length : 200.0),
                    y + (alongX ? 200.0 : length),
                    bottom + kStoreyHeight};
        }
        case kFitting: {
            const double z = bottom + Random(200.0, 3300.0);
            const double size = Random(50.0, 500.0);
            return {x, y, z, x + size, y + Random(50.0, 500.0), z + Random(50.0, 400.0)};
        }
        case kDuct: {
            const double width = Random(200.0, 600.0);
            return NextRun(bottom, width, Random(150.0, 400.0));
        }
        case kTray: {
            const double width = Random(100.0, 400.0);
            return NextRun(bottom, width, Random(50.0, 150.0));
        }
        default:
            break;
    }
    const double diameter = Random(20.0, 150.0);
    if (random_() % 8 != 0) return NextRun(bottom, diameter, diameter);
    const double z = bottom + Random(0.0, 1000.0);
    return {x, y, z, x + diameter, y + diameter, z + Random(1500.0, 3600.0)};
}

// A horizontal run below the ceiling.
BoundingBox3d SyntheticBuilding::NextRun(Length bottom, Length width, Length depth) {
    const double x = Random(0.0, width_);
    const double y = Random(0.0, depth_);
    const double z = bottom + Random(2300.0, 3500.0);
    const double length = Random(500.0, 9000.0);
    const bool alongX = random_() % 2 == 0;
    return {x, y, z, x + (alongX ? length : width), y + (alongX ? width : length), z + depth};
}

MODEL::ICollisionModel* BuildingSource::CreateCollisionModel() {
    auto workSet = std::make_unique<MODEL::WorkSetModelInfo>();
    auto* project = new MODEL::ProjectModelInfo(kProject, L"tower");
    workSet->AppendProject(kProject, project);
    for (std::uint32_t floor = 0; floor < building_.FloorCount(); ++floor) {
        auto* storey = new MODEL::FloorModelInfo(SyntheticBuilding::FloorName(floor));
        storey->setUnder(kStoreyHeight * floor);
        storey->setHeight(kStoreyHeight * (floor + 1));
        project->AppendFloor(SyntheticBuilding::FloorName(floor), storey);
    }
    const auto& components = building_.Components();
    for (std::uint32_t number = 0; number < components.size(); ++number) {
        const SyntheticBuilding::Component& component = components[number];
        const KindNames& names = kNames[component.kind];
        auto* obj = new MODEL::ObjectModelInfo(boost::any(number));
        obj->SetObjGuid(NextGuid());
        obj->SetObjAttname(std::wstring(names.xiaolei) + L"-" + std::to_wstring(number % 97));
        obj->SetObjSyscode(L"J" + std::to_wstring(component.kind));
        obj->SetBoundingBox(component.box);
        project->GetFloorModel(SyntheticBuilding::FloorName(component.floor))
            ->AppendObject(names.specialty, names.dalei, names.xiaolei, obj);
    }
    for (const auto& [name, floor] : project->GetFloors()) {
        floor->BuildQuadTree();
    }
    return workSet.release();
}

Opcode::Model* BuildingSource::CreateOpcodeModel(int, const boost::any& objectId, int bodyOffset) {
    const Stopwatch stopwatch(seconds_);
    return NewModel(ShapeOf(building_.Components()[NumberOf(objectId)], bodyOffset));
}

bool BuildingSource::GetObjAttributes(int, const boost::any& objectId,
                                      std::map<std::wstring, std::wstring>& attributes) const {
    const Stopwatch stopwatch(seconds_);
    const std::uint32_t number = NumberOf(objectId);
    const SyntheticBuilding::Component& component = building_.Components()[number];
    const auto rounded = [](double value) { return Digits(std::lround(value)); };
    const BoundingBox3d& box = component.box;
    const bool isRun = component.kind >= SyntheticBuilding::kDuct;
    attributes.emplace(L"heighttype", isRun ? L"3" : L"2");
    attributes.emplace(L"underheight", rounded(box.GetMinZ()));
    attributes.emplace(L"topheight", rounded(box.GetMaxZ()));
    attributes.emplace(L"material", L"C30");
    attributes.emplace(L"number", Digits(number));
    if (isRun) {
        attributes.emplace(L"oneheight", rounded((box.GetMinZ() + box.GetMaxZ()) / 2.0));
        attributes.emplace(L"sectheight", rounded(box.GetMaxZ() - box.GetMinZ()));
        attributes.emplace(L"bwthick", L"30");
    }
    if (component.kind == SyntheticBuilding::kPipe) {
        attributes.emplace(L"pipegczj", rounded(box.GetMaxZ() - box.GetMinZ()));
    }
    return true;
}

// Every bay has its axes.
void BuildingSource::GetFloorAxisInfo(int, const std::wstring&, std::vector<SQNGIAxisItem*>& items,
                                      KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>& tree) const {
    constexpr int kAxes = 9;
    const double end = kBay * (kAxes - 1);
    tree = KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>(BoundingBox2d(0.0, 0.0, end, end));
    const auto add = [&](const std::wstring& name, double x0, double y0, double x1, double y1) {
        auto item = std::make_unique<SQNGIAxisItem>();
        item->axisName = name;
        item->axisCurve = std::make_unique<CQNIMLineSegment>(CQNIMPosition(x0, y0, 0.0),
                                                             CQNIMPosition(x1, y1, 0.0));
        items.push_back(item.get());
        tree.Insert(item.release(), BoundingBox2d(x0, y0, x1, y1));
    };
    for (int i = 0; i < kAxes; ++i) {
        const double at = kBay * i;
        add(std::to_wstring(i + 1), at, 0.0, at, end);
        add(std::wstring(1, static_cast<wchar_t>(L'A' + i)), 0.0, at, end, at);
    }
}

void BuildingSource::ShowProgress(const std::wstring&) {}

std::wstring BuildingSource::GetObjDisplayName(int, const boost::any&) const {
    return {};
}

void BuildingSource::HighlightObj(int, const boost::any&) {}

std::wstring BuildingSource::GetObjXiaoLeiName(int, const std::wstring&,
                                               const std::wstring&) const {
    return {};
}

std::wstring BuildingSource::RuleText() {
    std::wstring text = L"<CollisionRule><Specialty name=\"all\">";
    for (const KindNames& names : kNames) {
        text += L"<RuleItem gjtype=\"" + std::wstring(names.specialty) + L"/" + names.dalei + L"/" +
                names.xiaolei +
                L"\" isvalid=\"true\"><Filter type=\"1\">DN(mm)&gt;=32</Filter>"
                L"<Mode type=\"2\">5</Mode><Excludes/></RuleItem>";
    }
    return text + L"</Specialty></CollisionRule>";
}

std::wstring BuildingSource::NextGuid() {
    constexpr const wchar_t* kDigits = L"0123456789abcdef";
    std::wstring guid(36, L'-');
    for (std::size_t i = 0; i < guid.size(); ++i) {
        if (i != 8 && i != 13 && i != 18 && i != 23) guid[i] = kDigits[random_() % 16];
    }
    return guid;
}

}  // namespace kycb::bench
