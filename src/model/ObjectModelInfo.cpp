// SPDX-License-Identifier: Apache-2.0
// Identity, place in the tree, neighbours, recorded clashes and meshes of a component.
#include "KYCollisionBase/model/ObjectModelInfo.h"

#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <utility>

#include "model/MeshBudget.h"

namespace KYCOLLISION::MODEL {

namespace {

constexpr const wchar_t* kTeklaSpecialty = L"Tekla";

// A mesh of kShortenedCount triangles is copied into a shell without its last two; hosts rely on
// it.
constexpr std::uint32_t kShortenedCount = 10;
constexpr std::uint32_t kShortenedTo = 8;

struct OpcodeModelDeleter {
    // The model and its mesh interface borrow what they point to, so each of the four is freed
    // here.
    void operator()(Opcode::Model* model) const {
        if (const Opcode::MeshInterface* mesh = model->GetMeshInterface()) {
            delete[] mesh->GetTris();
            delete[] mesh->GetVerts();
            delete mesh;
        }
        delete model;
    }
};
using OwnedOpcodeModel = std::unique_ptr<Opcode::Model, OpcodeModelDeleter>;

bool HasItsArrays(const Opcode::MeshInterface& mesh) {
    return (mesh.GetNbVertices() == 0 || mesh.GetVerts()) &&
           (mesh.GetNbTriangles() == 0 || mesh.GetTris());
}

std::size_t HashOf(const std::wstring& guid) {
    return std::hash<std::wstring>()(guid);
}

auto FindClashWith(const std::vector<SCollisionWithObj>& clashes, const ObjectModelInfo* other) {
    return std::find_if(clashes.begin(), clashes.end(),
                        [&](const SCollisionWithObj& clash) { return clash.other == other; });
}

}  // namespace

ObjectModelInfo::ObjectModelInfo(const boost::any& objectId)
    : objectId_(objectId), guidHash_(HashOf(guid_)) {}

ObjectModelInfo::~ObjectModelInfo() {
    ReleaseOpcodeModel();
}

void ObjectModelInfo::SetPartId(const boost::any& partId) {
    partId_ = partId;
}

void ObjectModelInfo::SetObjGuid(const std::wstring& guid) {
    guid_ = guid;
    guidHash_ = HashOf(guid_);
    NoteChange();
}

void ObjectModelInfo::SetBoundingBox(const KYTOOLS::GRAPH::BoundingBox3d& box) {
    box_ = box;
    NoteChange();
}

// What the floor's tree knows of this component is out of date.
void ObjectModelInfo::NoteChange() {
    FloorModelInfo* floor = category_ ? category_->GetBelongFloorModel() : nullptr;
    if (floor) floor->NoteChangedObject();
}

int ObjectModelInfo::GetProjId() const {
    const FloorModelInfo* floor = category_ ? category_->GetBelongFloorModel() : nullptr;
    return floor ? floor->GetProjId() : -1;
}

std::wstring ObjectModelInfo::GetFloorName() const {
    const FloorModelInfo* floor = category_ ? category_->GetBelongFloorModel() : nullptr;
    return floor ? floor->GetFloorName() : std::wstring();
}

WorkSetModelInfo* ObjectModelInfo::GetBelongWorkset() const {
    const FloorModelInfo* floor = category_ ? category_->GetBelongFloorModel() : nullptr;
    const ProjectModelInfo* project = floor ? floor->GetBelongProject() : nullptr;
    return project ? project->GetBelongWorkSetModel() : nullptr;
}

// Asked for every candidate, and GUIDs nearly always differ: they are compared first, and floors
// only by name when they are not the very same.
bool ObjectModelInfo::IsSameComponent(const ObjectModelInfo& other) const {
    if (this == &other) return true;
    if (guidHash_ != other.guidHash_ || guid_ != other.guid_) return false;
    const FloorModelInfo* floor = category_ ? category_->GetBelongFloorModel() : nullptr;
    const FloorModelInfo* otherFloor =
        other.category_ ? other.category_->GetBelongFloorModel() : nullptr;
    return floor == otherFloor ||
           (GetProjId() == other.GetProjId() && GetFloorName() == other.GetFloorName());
}

void ObjectModelInfo::AnalyseBoxRelated() {
    ShowNeighbours({});
    WorkSetModelInfo* workSet = GetBelongWorkset();
    if (!workSet) return;
    std::vector<ObjectModelInfo*> candidates;
    workSet->QueryEntity(box_, candidates);
    TakeNeighboursFrom(candidates);
}

void ObjectModelInfo::TakeNeighboursFrom(std::vector<ObjectModelInfo*>& candidates) {
    std::erase_if(candidates, [this](const ObjectModelInfo* obj) { return IsSameComponent(*obj); });
    auto room = std::make_unique_for_overwrite<ObjectModelInfo*[]>(candidates.size());
    std::copy(candidates.begin(), candidates.end(), room.get());
    ShowNeighbours({room.get(), candidates.size()});
    ownRoom_ = std::move(room);
}

void ObjectModelInfo::AppendCollisionObj(const SCollisionWithObj& clash) {
    collisionObjs_.push_back(clash);
}

void ObjectModelInfo::ClearCollisionObjs() {
    collisionObjs_.clear();
}

bool ObjectModelInfo::IsHadCollisionWith(ObjectModelInfo* other, CQNIMPosition& point) const {
    const auto found = FindClashWith(collisionObjs_, other);
    if (found == collisionObjs_.end()) return false;
    point = found->clashPoint;
    return true;
}

void ObjectModelInfo::RemoveCollisionObj(ObjectModelInfo* other) {
    const auto found = FindClashWith(collisionObjs_, other);
    if (found != collisionObjs_.end()) collisionObjs_.erase(found);
}

void ObjectModelInfo::ForgetComponentsOf(const std::set<const AttCategoryModelInfo*>& leaving) {
    const auto isLeaving = [&](const ObjectModelInfo* obj) {
        return obj && leaving.contains(obj->category_);
    };
    const auto behind = std::remove_if(boxRelatedObjs_.begin(), boxRelatedObjs_.end(), isLeaving);
    boxRelatedObjs_ =
        boxRelatedObjs_.first(static_cast<std::size_t>(behind - boxRelatedObjs_.begin()));
    std::erase_if(collisionObjs_,
                  [&](const SCollisionWithObj& clash) { return isLeaving(clash.other); });
}

Opcode::Model* ObjectModelInfo::GetOpcodeModel(IModelDataSource* source, int bodyOffset) {
    if (!source) return nullptr;
    const auto cached = opcodeModels_.find(bodyOffset);
    if (cached != opcodeModels_.end()) return cached->second;
    const bool byPart =
        !partId_.empty() && category_ && category_->GetAttCategory().specialty == kTeklaSpecialty;
    OwnedOpcodeModel model(
        source->CreateOpcodeModel(GetProjId(), byPart ? partId_ : objectId_, bodyOffset));
    if (!model) return nullptr;
    opcodeModels_.emplace(bodyOffset, model.get());
    if (auto* budget = kycb::model::MeshBudget::Current()) budget->Take(*model);
    return model.release();
}

void ObjectModelInfo::ReleaseOpcodeModel() {
    for (const auto& [bodyOffset, model] : std::exchange(opcodeModels_, {})) {
        const OwnedOpcodeModel owned(model);
        if (auto* budget = kycb::model::MeshBudget::Current()) budget->GiveBack(*owned);
    }
}

bool ObjectModelInfo::GetCollisionOffsetBody(IModelDataSource* source, int bodyOffset,
                                             CQNIMShell& shell) {
    const Opcode::Model* model = GetOpcodeModel(source, bodyOffset);
    const Opcode::MeshInterface* mesh = model ? model->GetMeshInterface() : nullptr;
    if (!mesh || !HasItsArrays(*mesh)) return false;
    for (std::uint32_t i = 0; i < mesh->GetNbVertices(); ++i) {
        const IceMaths::Point& p = mesh->GetVerts()[i];
        shell.AddPts(
            {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)});
    }
    std::uint32_t count = mesh->GetNbTriangles();
    if (count == kShortenedCount) count = kShortenedTo;
    for (std::uint32_t i = 0; i < count; ++i) {
        shell.AddFaceIndex(3);
        for (const std::uint32_t vertex : mesh->GetTris()[i].mVRef) {
            shell.AddFaceIndex(static_cast<int>(vertex));
        }
    }
    return true;
}

}  // namespace KYCOLLISION::MODEL
