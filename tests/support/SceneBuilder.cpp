// SPDX-License-Identifier: Apache-2.0
#include "support/SceneBuilder.h"

#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"

#include <utility>

namespace kycb::test {

using namespace KYCOLLISION::MODEL;

SceneComponent& SceneComponent::Attribute(const std::wstring& key, const std::wstring& value) {
    attributes[key] = value;
    return *this;
}

SceneComponent& SceneComponent::Name(const std::wstring& text) {
    name = text;
    return *this;
}

SceneComponent& SceneComponent::Syscode(const std::wstring& text) {
    syscode = text;
    return *this;
}

SceneComponent& SceneComponent::PartId(const std::wstring& id) {
    partId = id;
    return *this;
}

SceneComponent& SceneComponent::WithBody(Body other) {
    body = std::move(other);
    return *this;
}

SceneComponent& SceneComponent::WithoutBody() {
    body = [](int) { return std::optional<TestMesh>(); };
    return *this;
}

SceneComponent& SceneComponent::BoxGrownBy(double margin) {
    box = {box.GetMinX() - margin, box.GetMinY() - margin, box.GetMinZ() - margin,
           box.GetMaxX() + margin, box.GetMaxY() + margin, box.GetMaxZ() + margin};
    return *this;
}

SceneBuilder& SceneBuilder::At(int projectId, const std::wstring& floorName) {
    projectId_ = projectId;
    floorName_ = floorName;
    return *this;
}

SceneComponent& SceneBuilder::Add(const std::wstring& guid, const AttCategory& category,
                                  const BoundingBox3d& box) {
    SceneComponent component;
    component.guid = guid;
    component.category = category;
    component.box = box;
    component.body = BoxBody(box);
    component.projectId = projectId_;
    component.floorName = floorName_;
    component.objectId = L"obj:" + std::to_wstring(components_.size());
    component.name = guid;
    return components_.emplace_back(std::move(component));
}

const SceneComponent* SceneBuilder::Find(const std::wstring& id) const {
    for (const SceneComponent& component : components_) {
        if (component.objectId == id || (!id.empty() && component.partId == id)) return &component;
    }
    return nullptr;
}

ObjectModelInfo* NewObject(const SceneComponent& component) {
    auto* obj = new ObjectModelInfo(boost::any(component.objectId));
    obj->SetObjGuid(component.guid);
    obj->SetObjAttname(component.name);
    obj->SetObjSyscode(component.syscode);
    obj->SetBoundingBox(component.box);
    if (!component.partId.empty()) obj->SetPartId(boost::any(component.partId));
    return obj;
}

ObjectModelInfo* NewObject(const std::wstring& guid, const BoundingBox3d& box) {
    auto* obj = new ObjectModelInfo(boost::any(guid));
    obj->SetObjGuid(guid);
    obj->SetBoundingBox(box);
    return obj;
}

std::unique_ptr<WorkSetModelInfo> SceneBuilder::BuildModel() const {
    auto model = std::make_unique<WorkSetModelInfo>();
    for (const SceneComponent& component : components_) {
        ProjectModelInfo* project = model->GetProject(component.projectId);
        if (!project) {
            project = new ProjectModelInfo(component.projectId, L"project");
            model->AppendProject(component.projectId, project);
        }
        FloorModelInfo* floor = project->GetFloorModel(component.floorName);
        if (!floor) {
            floor = new FloorModelInfo(component.floorName);
            project->AppendFloor(component.floorName, floor);
        }
        const AttCategory& c = component.category;
        ObjectModelInfo* obj = NewObject(component);
        floor->AppendObject(c.specialty, c.dalei, c.xiaolei, obj);
        // One that has no category path stays the host's.
        if (!obj->GetBelongCategoryModel()) delete obj;
    }
    for (const auto& [id, project] : model->GetProjects()) {
        for (const auto& [name, floor] : project->GetFloors()) {
            floor->BuildQuadTree();
        }
    }
    return model;
}

std::vector<ObjectModelInfo*> ObjectsOf(const WorkSetModelInfo& model) {
    std::vector<ObjectModelInfo*> objects;
    for (const auto& [id, project] : model.GetProjects()) {
        for (const auto& [name, floor] : project->GetFloors()) {
            for (const auto& [path, category] : floor->GetCategories()) {
                for (const auto& [guid, obj] : category->GetObjects()) {
                    objects.push_back(obj);
                }
            }
        }
    }
    return objects;
}

ObjectModelInfo* ObjectOf(const WorkSetModelInfo& model, const std::wstring& guid) {
    for (const auto& [id, project] : model.GetProjects()) {
        for (const auto& [name, floor] : project->GetFloors()) {
            for (const auto& [path, category] : floor->GetCategories()) {
                const auto found = category->GetObjects().lower_bound(guid);
                if (found != category->GetObjects().end() && found->first == guid) {
                    return found->second;
                }
            }
        }
    }
    return nullptr;
}

FloorModelInfo* FloorOf(const WorkSetModelInfo& model, int projectId,
                        const std::wstring& floorName) {
    const ProjectModelInfo* project = model.GetProject(projectId);
    return project ? project->GetFloorModel(floorName) : nullptr;
}

std::vector<std::wstring> GuidsOf(std::span<ObjectModelInfo* const> objects) {
    std::vector<std::wstring> guids;
    for (const ObjectModelInfo* obj : objects) {
        guids.push_back(obj->GetObjGuid());
    }
    return guids;
}

}  // namespace kycb::test
