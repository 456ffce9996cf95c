// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/FloorModelInfo.h"

#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/platform/Numeric.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <algorithm>
#include <locale>
#include <utility>

#include "logic/StopRequest.h"
#include "model/FloorTree.h"
#include "model/MeshBudget.h"
#include "model/NeighbourJoin.h"

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
    quadTree_ = std::make_unique<kycb::model::FloorTree>(box_, GetObjects());
}

void FloorModelInfo::DropQuadTree() {
    quadTree_.reset();
    objectsChanged_ = false;
    objectsAdded_ = false;
}

// A step through a sorted map waits for memory. All categories are walked at once, each from both
// ends, so that the waits overlap.
std::vector<ObjectModelInfo*> FloorModelInfo::GetObjects() const {
    using Objects = std::multimap<std::wstring, ObjectModelInfo*>;
    struct Walk {
        Objects::const_iterator next;
        Objects::const_iterator behind;
        std::size_t first;
        std::size_t end;
    };
    std::size_t count = 0;
    std::vector<Walk> walks;
    for (const auto& [path, category] : categories_) {
        const Objects& objects = category->GetObjects();
        walks.push_back({objects.begin(), objects.end(), count, count + objects.size()});
        count += objects.size();
    }
    std::vector<ObjectModelInfo*> inOrder(count);
    while (count > 0) {
        for (Walk& walk : walks) {
            if (walk.first == walk.end) continue;
            inOrder[walk.first++] = (walk.next++)->second;
            --count;
            if (walk.first == walk.end) continue;
            inOrder[--walk.end] = (--walk.behind)->second;
            --count;
        }
    }
    return inOrder;
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
    if (!plan.IsIntersect(quadTree_->GetPlan())) return;
    const double low = box.GetMinZ() + kVerticalInset;
    const double high = box.GetMaxZ() - kVerticalInset;
    // A component's place in the tree is that of the build, but the box that counts is the present
    // one.
    quadTree_->VisitNear(plan, [&](ObjectModelInfo* obj) {
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

// The box around all components as they are now. The floor's own box does not serve, because a
// component that was moved may lie outside.
KYTOOLS::GRAPH::BoundingBox3d FloorModelInfo::GetReach() const {
    if (IsTreeUpToDate() && !objectsAdded_) return quadTree_->GetReach();
    KYTOOLS::GRAPH::BoundingBox3d reach;
    for (const ObjectModelInfo* obj : GetObjects()) {
        reach.Add(obj->GetBoundingBox());
    }
    return reach;
}

// The floors that can hold neighbours of this floor's components, in the order of the work set's
// walk.
std::vector<FloorModelInfo*> FloorModelInfo::FloorsNearby() const {
    std::vector<FloorModelInfo*> nearby;
    const WorkSetModelInfo* workSet = project_ ? project_->GetBelongWorkSetModel() : nullptr;
    if (!workSet) return nearby;
    const KYTOOLS::GRAPH::BoundingBox3d reach = GetReach();
    for (const auto& [id, project] : workSet->GetProjects()) {
        if (!project) continue;
        for (const auto& [name, floor] : project->GetFloors()) {
            if (floor && floor->quadTree_ && floor->box_.IsIntersect(reach)) {
                nearby.push_back(floor);
            }
        }
    }
    return nearby;
}

void FloorModelInfo::AnalyseBoxRelated() {
    const std::vector<FloorModelInfo*> floors = FloorsNearby();
    if (!ListNeighboursAtOnce(floors)) ListNeighboursOneByOne(floors);
}

// False when a tree does not show all components as they are now.
bool FloorModelInfo::ListNeighboursAtOnce(const std::vector<FloorModelInfo*>& floors) {
    if (objectsAdded_) return false;
    std::vector<const kycb::model::FloorTree*> trees;
    for (const FloorModelInfo* floor : floors) {
        if (!floor->IsTreeUpToDate() || !floor->quadTree_->HoldsAll()) return false;
        trees.push_back(floor->quadTree_.get());
    }
    if (std::find(floors.begin(), floors.end(), this) == floors.end()) return false;
    neighbourLists_ = kycb::model::ListNeighbours(trees, *quadTree_, kVerticalInset);
    return true;
}

void FloorModelInfo::ListNeighboursOneByOne(const std::vector<FloorModelInfo*>& floors) {
    std::vector<ObjectModelInfo*> candidates;
    for (ObjectModelInfo* obj : GetObjects()) {
        candidates.clear();
        for (FloorModelInfo* floor : floors) {
            floor->QueryEntity(obj->GetBoundingBox(), candidates);
        }
        obj->TakeNeighboursFrom(candidates);
    }
    neighbourLists_.reset();
}

void FloorModelInfo::CollisionCheck(LOGIC::IModelDataSource* source, int& checkedCount) {
    auto* budget = kycb::model::MeshBudget::Current();
    if (budget) budget->BeginFloor(GetCheckedObjects());
    for (const auto& [path, category] : categories_) {
        if (!category->GetCollisionRuleItem()) continue;
        for (const auto& [guid, obj] : category->GetObjects()) {
            obj->CollisionCheck(source, checkedCount);
            if (kycb::logic::IsStopRequested()) return;
            if (budget) budget->EndTurn();
        }
    }
}

std::vector<ObjectModelInfo*> FloorModelInfo::GetCheckedObjects() const {
    std::vector<ObjectModelInfo*> objects = GetObjects();
    std::erase_if(objects, [](const ObjectModelInfo* obj) {
        return !obj->GetBelongCategoryModel()->GetCollisionRuleItem();
    });
    return objects;
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
