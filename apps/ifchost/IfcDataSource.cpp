// SPDX-License-Identifier: Apache-2.0
#include "IfcDataSource.h"

#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/opcode/OPCODECREATE.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"
#include "KYCollisionBase/platform/QuadTree.h"

#include <algorithm>
#include <set>
#include <utility>

#include "BodyMesh.h"
#include "BodyStore.h"
#include "ClearanceReach.h"
#include "ComponentAttributes.h"
#include "GridAxes.h"
#include "HostText.h"

namespace ifchost {
namespace {

using KYCOLLISION::LOGIC::SQNGIAxisItem;
using KYCOLLISION::MODEL::FloorModelInfo;
using KYCOLLISION::MODEL::ICollisionModel;
using KYCOLLISION::MODEL::ObjectModelInfo;
using KYCOLLISION::MODEL::ProjectModelInfo;
using KYCOLLISION::MODEL::WorkSetModelInfo;
using KYTOOLS::GRAPH::BoundingBox2d;
using KYTOOLS::GRAPH::BoundingBox3d;

// Vertices may move by this much (mm) when they become single precision near the origin.
constexpr double kRoundingMargin = 0.1;
// The neighbour search takes 1.0 mm off each end of one box; half of it on each of two makes up.
constexpr double kVerticalMargin = 0.5;

// The arrays of a mesh with what holds them together, until the library takes them over.
struct OwnedMesh {
    std::unique_ptr<IceMaths::Point[]> points;
    std::unique_ptr<IceMaths::IndexedTriangle[]> triangles;
    std::unique_ptr<Opcode::MeshInterface> mesh;
    std::unique_ptr<Opcode::Model> model;
};

OwnedMesh MakeMesh(const OpcodeArrays& arrays) {
    OwnedMesh owned;
    owned.points = std::make_unique<IceMaths::Point[]>(arrays.VertexCount());
    owned.triangles = std::make_unique<IceMaths::IndexedTriangle[]>(arrays.TriangleCount());
    for (std::size_t i = 0; i < arrays.VertexCount(); ++i) {
        const float* p = &arrays.positions[3 * i];
        owned.points[i] = IceMaths::Point(p[0], p[1], p[2]);
    }
    for (std::size_t i = 0; i < arrays.TriangleCount(); ++i) {
        const std::uint32_t* t = &arrays.indices[3 * i];
        owned.triangles[i] = IceMaths::IndexedTriangle(t[0], t[1], t[2]);
    }
    owned.mesh = std::make_unique<Opcode::MeshInterface>();
    owned.mesh->SetNbTriangles(static_cast<std::uint32_t>(arrays.TriangleCount()));
    owned.mesh->SetNbVertices(static_cast<std::uint32_t>(arrays.VertexCount()));
    owned.mesh->SetPointers(owned.triangles.get(), owned.points.get());
    owned.model = std::make_unique<Opcode::Model>();
    return owned;
}

Opcode::Model* HandOver(OwnedMesh owned) {
    Opcode::OPCODECREATE create;
    create.mIMesh = owned.mesh.get();
    if (!owned.model->Build(create)) return nullptr;
    owned.points.release();
    owned.triangles.release();
    owned.mesh.release();
    return owned.model.release();
}

BoundingBox2d PlanBox(const SQNGIAxisItem& item) {
    const auto box = item.axisCurve->GetBoundingBox();
    return {box.GetLowPt().GetX(), box.GetLowPt().GetY(), box.GetHighPt().GetX(),
            box.GetHighPt().GetY()};
}

}  // namespace

struct IfcDataSource::Impl {
    Impl(const IfcWorkset& set, DataSourceOptions opts)
        : workset(set),
          options(std::move(opts)),
          bodies(set, options.bodyCacheBytes),
          attributes(set),
          attributeCache(set.Components().size()) {}

    /// Null for ids that are not ours.
    const WorksetComponent* Find(int projectId, const boost::any& objectId) const {
        const auto* id = boost::any_cast<ComponentId>(&objectId);
        if (id == nullptr || *id >= workset.Components().size()) return nullptr;
        const WorksetComponent& component = workset.Components()[*id];
        return component.projectId == projectId ? &component : nullptr;
    }

    ComponentId IdOf(const WorksetComponent& component) const {
        return static_cast<ComponentId>(&component - workset.Components().data());
    }

    BoundingBox3d BoxFor(const WorksetComponent& component) {
        SceneBox box = component.box;
        const int kind = component.category.IsFgQjPsLsRs_JJP();
        if (component.role == ComponentRole::Body && kind > 0) {
            const BodyBox grown = BoundingBox(bodies.Body(IdOf(component), LargestOffset(kind)));
            if (!grown.IsEmpty()) Grow(box, grown);
        }
        const Point3 low = workset.ToLocal(box.min);
        const Point3 high = workset.ToLocal(box.max);
        const double across = std::max(kRoundingMargin, workset.Origin().resolution);
        const double upward = across + kVerticalMargin;
        return {low[0] - across,  low[1] - across,  low[2] - upward,
                high[0] + across, high[1] + across, high[2] + upward};
    }

    static void Grow(SceneBox& box, const BodyBox& other) {
        const Point3 low = {other.min.x, other.min.y, other.min.z};
        const Point3 high = {other.max.x, other.max.y, other.max.z};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            box.min[axis] = std::min(box.min[axis], low[axis]);
            box.max[axis] = std::max(box.max[axis], high[axis]);
        }
    }

    std::unique_ptr<ObjectModelInfo> MakeObject(const WorksetComponent& component) {
        auto object = std::make_unique<ObjectModelInfo>(boost::any(IdOf(component)));
        object->SetObjGuid(component.guid);
        object->SetObjAttname(component.name);
        object->SetObjSyscode(component.syscode);
        object->SetBoundingBox(BoxFor(component));
        return object;
    }

    const ComponentAttributes::Map& AttributesOf(ComponentId id) const {
        auto& cached = attributeCache[id];
        if (!cached) {
            cached = std::make_unique<const ComponentAttributes::Map>(attributes.Read(id));
        }
        return *cached;
    }

    const IfcWorkset& workset;
    DataSourceOptions options;
    BodyStore bodies;
    ComponentAttributes attributes;
    // Read over and over during a check, a component's attributes are worked out only once.
    mutable std::vector<std::unique_ptr<const ComponentAttributes::Map>> attributeCache;
    std::set<std::pair<ComponentId, int>> withoutMesh;
};

IfcDataSource::IfcDataSource(std::shared_ptr<const IfcWorkset> workset, DataSourceOptions options)
    : workset_(std::move(workset)), impl_(std::make_unique<Impl>(*workset_, std::move(options))) {}

IfcDataSource::~IfcDataSource() = default;

ICollisionModel* IfcDataSource::CreateCollisionModel() {
    auto model = std::make_unique<WorkSetModelInfo>();
    std::vector<std::vector<FloorModelInfo*>> floors;
    for (const WorksetProject& project : workset_->Projects()) {
        auto* projectModel = new ProjectModelInfo(project.id, project.name);
        model->AppendProject(project.id, projectModel);
        auto& projectFloors = floors.emplace_back();
        for (const WorksetFloor& floor : project.floors) {
            auto* floorModel = new FloorModelInfo(floor.name);
            floorModel->setUnder(floor.under);
            floorModel->setHeight(floor.top);
            projectModel->AppendFloor(floor.name, floorModel);
            projectFloors.push_back(floorModel);
        }
    }
    int shownProject = 0;
    for (const WorksetComponent& component : workset_->Components()) {
        if (component.projectId != shownProject) {
            shownProject = component.projectId;
            ShowProgress(workset_->Project(shownProject)->name);
        }
        auto object = impl_->MakeObject(component);
        const auto& category = component.category;
        floors[static_cast<std::size_t>(component.projectId) - 1][component.floor]->AppendObject(
            category.specialty, category.dalei, category.xiaolei, object.release());
    }
    for (const auto& projectFloors : floors) {
        for (FloorModelInfo* floor : projectFloors)
            floor->BuildQuadTree();
    }
    return model.release();
}

Opcode::Model* IfcDataSource::CreateOpcodeModel(int projectId, const boost::any& objectId,
                                                int bodyOffset) {
    const WorksetComponent* component = impl_->Find(projectId, objectId);
    if (component == nullptr || component->role != ComponentRole::Body) return nullptr;
    const ComponentId id = impl_->IdOf(*component);
    // The library asks again for what it did not get, once per pair.
    if (impl_->withoutMesh.count({id, bodyOffset}) != 0) return nullptr;
    const Point3& origin = workset_->Origin().origin;
    const OpcodeArrays arrays =
        ToOpcodeArrays(impl_->bodies.Body(id, bodyOffset), {origin[0], origin[1], origin[2]});
    if (arrays.TriangleCount() == 0) {
        impl_->withoutMesh.insert({id, bodyOffset});
        return nullptr;
    }
    return HandOver(MakeMesh(arrays));
}

bool IfcDataSource::GetObjAttributes(int projectId, const boost::any& objectId,
                                     std::map<std::wstring, std::wstring>& attributes) const {
    const WorksetComponent* component = impl_->Find(projectId, objectId);
    if (component == nullptr) return false;
    for (const auto& [name, value] : impl_->AttributesOf(impl_->IdOf(*component))) {
        attributes[name] = value;
    }
    return true;
}

void IfcDataSource::GetFloorAxisInfo(int projectId, const std::wstring& floorName,
                                     std::vector<SQNGIAxisItem*>& items,
                                     KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>& tree) const {
    auto axes = AxesOfFloor(*workset_, projectId, floorName);
    if (axes.empty()) return;
    BoundingBox2d bounds;
    for (const auto& axis : axes)
        bounds.Add(PlanBox(*axis));
    tree = KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>(bounds);
    items.reserve(items.size() + axes.size());
    for (auto& axis : axes) {
        items.push_back(axis.release());
        tree.Insert(items.back(), PlanBox(*items.back()));
    }
}

void IfcDataSource::ShowProgress(const std::wstring& text) {
    if (impl_->options.showProgress) impl_->options.showProgress(text);
}

std::wstring IfcDataSource::GetObjDisplayName(int projectId, const boost::any& objectId) const {
    const WorksetComponent* component = impl_->Find(projectId, objectId);
    if (component == nullptr) return {};
    const SceneProduct& product = workset_->Product(*component);
    return component->name + L" (" + FromUtf8(product.ifcClass) + L", " + FromUtf8(product.guid) +
           L")";
}

void IfcDataSource::HighlightObj(int projectId, const boost::any& objectId) {
    const WorksetComponent* component = impl_->Find(projectId, objectId);
    if (component == nullptr || !impl_->options.highlight) return;
    impl_->options.highlight(projectId, impl_->IdOf(*component));
}

std::wstring IfcDataSource::GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                              const std::wstring& guid) const {
    const WorksetComponent* component = workset_->FindComponent(projectId, guid);
    const bool isThere = component != nullptr && workset_->Floor(*component).name == floorName;
    return isThere ? component->category.xiaolei : std::wstring();
}

const std::vector<BodyNote>& IfcDataSource::BodyNotes() const {
    return impl_->bodies.Notes();
}

}  // namespace ifchost
