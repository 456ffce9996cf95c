// SPDX-License-Identifier: Apache-2.0
#include "model/MeshBudget.h"

#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"

#include <unordered_map>

namespace kycb::model {

namespace {

// Search trees are built by the first test that needs them, and counted as if they all were.
constexpr std::size_t kTreeBytesPerTriangle = 100;

MeshBudget*& InForce() {
    thread_local MeshBudget* budget = nullptr;
    return budget;
}

}  // namespace

std::size_t MemoryOf(const Opcode::Model& model) {
    const Opcode::MeshInterface* mesh = model.GetMeshInterface();
    if (!mesh) return sizeof(model);
    return sizeof(model) + sizeof(*mesh) +
           mesh->GetNbVertices() * std::size_t{sizeof(IceMaths::Point)} +
           mesh->GetNbTriangles() * (sizeof(IceMaths::IndexedTriangle) + kTreeBytesPerTriangle);
}

MeshBudget::MeshBudget(const KYCOLLISION::MODEL::WorkSetModelInfo& model, std::size_t limit)
    : limit_(limit) {
    for (const auto& [id, project] : model.GetProjects()) {
        if (!project) continue;
        for (const auto& [name, floor] : project->GetFloors()) {
            if (!floor) continue;
            for (const auto& [path, category] : floor->GetCategories()) {
                for (const auto& [guid, obj] : category->GetObjects()) {
                    if (obj->GetOpcodeModels().empty()) continue;
                    idle_.push_back(obj);
                    for (const auto& [offset, mesh] : obj->GetOpcodeModels()) {
                        Take(*mesh);
                    }
                }
            }
        }
    }
    InForce() = this;
}

MeshBudget::~MeshBudget() {
    InForce() = nullptr;
}

MeshBudget* MeshBudget::Current() {
    return InForce();
}

void MeshBudget::BeginFloor(const std::vector<ObjectModelInfo*>& turns) {
    std::unordered_map<ObjectModelInfo*, std::size_t> lastTurns;
    for (std::size_t turn = 0; turn < turns.size(); ++turn) {
        lastTurns[turns[turn]] = turn;
        for (ObjectModelInfo* neighbour : turns[turn]->GetBoxRelatedObjs()) {
            lastTurns[neighbour] = turn;
        }
    }
    std::erase_if(idle_, [&](ObjectModelInfo* obj) { return lastTurns.contains(obj); });
    turn_ = 0;
    needless_.assign(turns.size(), {});
    for (const auto& [obj, turn] : lastTurns) {
        needless_[turn].push_back(obj);
    }
}

void MeshBudget::EndTurn() {
    for (ObjectModelInfo* obj : needless_[turn_++]) {
        if (!obj->GetOpcodeModels().empty()) idle_.push_back(obj);
    }
    ReleaseIdle();
}

void MeshBudget::ReleaseIdle() {
    while (used_ > limit_ && !idle_.empty()) {
        idle_.front()->ReleaseOpcodeModel();
        idle_.pop_front();
    }
}

}  // namespace kycb::model
