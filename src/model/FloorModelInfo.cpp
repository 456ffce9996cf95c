// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/FloorModelInfo.h"

#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/platform/Numeric.h"
#include "KYCollisionBase/platform/QuadTree.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <locale>
#include <utility>

#include "logic/StopRequest.h"
#include "model/NeighbourIndex.h"

namespace KYCOLLISION::MODEL {

namespace {

// By how much the vertical range of a query is narrowed at each end (mm): components that merely
// stand on each other are no neighbours.
constexpr double kVerticalInset = 1.0;

// The classic locale, so that a host's own locale cannot change which component a GUID finds.
std::wstring ToLower(std::wstring text) {
    const auto& classic = std::use_facet<std::ctype<wchar_t>>(std::locale::classic());
    classic.tolower(text.data(), text.data() + text.size());
    return text;
}

}  // namespace

FloorModelInfo::FloorModelInfo(std::wstring name) : name_(std::move(name)) {}

FloorModelInfo::~FloorModelInfo() {
    DeleteCategories();
}

int FloorModelInfo::GetProjId() const {
    return project_ ? project_->GetProjId() : -1;
}

void FloorModelInfo::AppendObject(std::wstring spec, std::wstring dalei, std::wstring xiaolei,
                                  ObjectModelInfo* obj) {
    if (!obj) return;
    AttCategory category(std::move(spec), std::move(dalei), std::move(xiaolei));
    std::wstring path = category.categoryIndex();
    if (path.empty()) return;
    auto found = categories_.find(path);
    if (found == categories_.end()) {
        auto opened = std::make_unique<AttCategoryModelInfo>(category);
        opened->SetBelongFloor(this);
        found = categories_.emplace(std::move(path), opened.get()).first;
        opened.release();
    }
    found->second->AppendObject(obj);
    box_.Add(obj->GetBoundingBox());
}

void FloorModelInfo::BuildQuadTree() {
    DropQuadTree();
    auto tree = std::make_unique<ObjectTree>(box_.GetBoundingBox2d());
    for (const auto& [path, category] : categories_) {
        for (const auto& [guid, obj] : category->GetObjects()) {
            tree->Insert(obj, obj->GetBoundingBox2d());
        }
    }
    std::vector<ObjectModelInfo*> inTreeOrder;
    tree->VisitNear(tree->GetBoundingBox(),
                    [&](ObjectModelInfo* obj, const auto&) { inTreeOrder.push_back(obj); });
    index_ = std::make_unique<kycb::model::NeighbourIndex>(inTreeOrder);
    quadTree_ = std::move(tree);
}

void FloorModelInfo::DropQuadTree() {
    index_.reset();
    quadTree_.reset();
    boxesMoved_ = false;
}

std::set<const AttCategoryModelInfo*> FloorModelInfo::CategorySet() const {
    std::set<const AttCategoryModelInfo*> categories;
    for (const auto& [path, category] : categories_) {
        categories.insert(category);
    }
    return categories;
}

void FloorModelInfo::ReleaseModel() {
    DropQuadTree();
    WorkSetModelInfo* workSet = project_ ? project_->GetBelongWorkSetModel() : nullptr;
    if (workSet && !categories_.empty()) workSet->ForgetComponentsOf(CategorySet());
    DeleteCategories();
}

void FloorModelInfo::DeleteCategories() {
    for (const auto& [path, category] : std::exchange(categories_, {})) {
        delete category;
    }
}

void FloorModelInfo::QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d& box,
                                 std::vector<ObjectModelInfo*>& found) {
    if (!quadTree_ || !box.IsIntersect(box_)) return;
    const KYTOOLS::GRAPH::BoundingBox2d plan = box.GetBoundingBox2d();
    if (!plan.IsIntersect(quadTree_->GetBoundingBox())) return;
    const double low = box.GetMinZ() + kVerticalInset;
    const double high = box.GetMaxZ() - kVerticalInset;
    if (!boxesMoved_) {
        index_->Query(box, low, high, found);
        return;
    }
    // A component's place in the tree is that of the build, but the box that counts is the present
    // one, which the index does not know.
    quadTree_->VisitNear(plan, [&](ObjectModelInfo* obj, const auto&) {
        const KYTOOLS::GRAPH::BoundingBox3d own = obj->GetBoundingBox();
        if (own.GetBoundingBox2d().IsIntersect(plan) &&
            KYTOOLS::Numeric::IsDoubleRangeOverLap(own.GetMinZ(), own.GetMaxZ(), low, high)) {
            found.push_back(obj);
        }
    });
}

ObjectModelInfo* FloorModelInfo::GetObjectModelInfo(std::wstring guid) const {
    const std::wstring key = ToLower(std::move(guid));
    for (const auto& [path, category] : categories_) {
        const auto& objects = category->GetObjects();
        const auto found = objects.lower_bound(key);
        if (found != objects.end() && found->first == key) return found->second;
    }
    return nullptr;
}

// The floors that can hold neighbours of this floor's components, in the order of the work set's
// walk. The floor's own box does not serve, because a component that was moved may lie outside.
std::vector<FloorModelInfo*> FloorModelInfo::FloorsNearby() {
    std::vector<FloorModelInfo*> nearby;
    const WorkSetModelInfo* workSet = project_ ? project_->GetBelongWorkSetModel() : nullptr;
    if (!workSet) return nearby;
    KYTOOLS::GRAPH::BoundingBox3d reach;
    for (const auto& [path, category] : categories_) {
        for (const auto& [guid, obj] : category->GetObjects()) {
            reach.Add(obj->GetBoundingBox());
        }
    }
    for (const auto& [id, project] : workSet->GetProjects()) {
        if (!project) continue;
        for (const auto& [name, floor] : project->GetFloors()) {
            if (floor && floor->box_.IsIntersect(reach)) nearby.push_back(floor);
        }
    }
    return nearby;
}

void FloorModelInfo::AnalyseBoxRelated() {
    const std::vector<FloorModelInfo*> floors = FloorsNearby();
    std::vector<ObjectModelInfo*> candidates;
    for (const auto& [path, category] : categories_) {
        for (const auto& [guid, obj] : category->GetObjects()) {
            candidates.clear();
            for (FloorModelInfo* floor : floors) {
                floor->QueryEntity(obj->GetBoundingBox(), candidates);
            }
            obj->TakeNeighboursFrom(candidates);
        }
    }
}

void FloorModelInfo::CollisionCheck(LOGIC::IModelDataSource* source, int& checkedCount) {
    for (const auto& [path, category] : categories_) {
        if (!category->GetCollisionRuleItem()) continue;
        for (const auto& [guid, obj] : category->GetObjects()) {
            obj->CollisionCheck(source, checkedCount);
            if (kycb::logic::IsStopRequested()) return;
        }
    }
}

int FloorModelInfo::GetAllObjectNum() {
    std::size_t count = 0;
    for (const auto& [path, category] : categories_) {
        count += category->GetObjects().size();
    }
    return static_cast<int>(count);
}

void FloorModelInfo::ClearCollisionResultData() {
    for (const auto& [path, category] : categories_) {
        for (const auto& [guid, obj] : category->GetObjects()) {
            obj->ClearCollisionObjs();
        }
    }
}

void FloorModelInfo::ResetModelByCollisionRule(Rule::KyCollisionRuleMgr* rules) {
    if (!rules) return;
    for (const auto& [path, category] : categories_) {
        // The manager hands its items out read-only, while the contract's category and algorithm
        // hold them without const; neither changes an item.
        category->SetCollisionRuleItem(
            const_cast<Rule::KyCollisionRuleItem*>(rules->GetRuleItem(path)));
    }
}

}  // namespace KYCOLLISION::MODEL
