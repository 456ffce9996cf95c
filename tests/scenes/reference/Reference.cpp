// SPDX-License-Identifier: Apache-2.0
#include "scenes/reference/Reference.h"

#include <algorithm>
#include <stdexcept>

#include "scenes/reference/Attributes.h"
#include "scenes/reference/Meshes.h"
#include "scenes/reference/Rules.h"

namespace kycb::scenes::reference {

namespace {

constexpr int kSuccess = 1;
constexpr int kStopped = 5;

/// What a vertical range is narrowed by at each end before it is compared (mm).
constexpr double kVerticalInset = 1.0;

bool IsNull(const KYTOOLS::GRAPH::BoundingBox3d& box) {
    return !(box.GetMinX() <= box.GetMaxX() && box.GetMinY() <= box.GetMaxY() &&
             box.GetMinZ() <= box.GetMaxZ());
}

Rect PlanOf(const KYTOOLS::GRAPH::BoundingBox3d& box) {
    if (IsNull(box)) return {};
    return {box.GetMinX(), box.GetMinY(), box.GetMaxX(), box.GetMaxY()};
}

bool Overlap(double minA, double maxA, double minB, double maxB) {
    return minA <= maxB && minB <= maxA;
}

bool Contains(const std::vector<std::wstring>& texts, const std::wstring& text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

bool IsSameComponent(const SceneComponent& a, const SceneComponent& b) {
    return a.guid == b.guid && a.projectId == b.projectId && a.floorName == b.floorName;
}

Point MiddleOf(const Point& p, const Point& q) {
    return {(p.GetX() + q.GetX()) / 2.0, (p.GetY() + q.GetY()) / 2.0, (p.GetZ() + q.GetZ()) / 2.0};
}

}  // namespace

// --- The model ---------------------------------------------------------------------------------

Reference::Reference(const Scene& scene) : scene_(scene) {
    for (std::size_t i = 0; i < scene.components.size(); ++i) {
        Component& component = components_.emplace_back();
        component.input = &scene.components[i];
        component.index = i;
    }
    for (Component& component : components_) {
        Append(component);
    }
    for (Component& component : components_) {
        if (component.kind) ListNeighbours(component);
    }
}

void Reference::Append(Component& component) {
    const SceneComponent& input = *component.input;
    const FloorKey key(input.projectId, input.floorName);
    Floor& floor = floors_[key];
    floor.key = key;
    const std::wstring path = CategoryPath(input.category);
    if (path.empty()) return;
    if (floor.kinds.count(path) == 0)
        floor.kinds[path] = {path, input.category, &floor, {}, nullptr};
    Kind& kind = floor.kinds[path];
    component.kind = &kind;
    const auto place = std::upper_bound(
        kind.components.begin(), kind.components.end(), input.guid,
        [](const std::wstring& guid, const Component* other) { return guid < other->input->guid; });
    kind.components.insert(place, &component);
    if (IsNull(input.box)) return;
    floor.minZ =
        floor.plan.IsNull() ? input.box.GetMinZ() : std::min(floor.minZ, input.box.GetMinZ());
    floor.maxZ =
        floor.plan.IsNull() ? input.box.GetMaxZ() : std::max(floor.maxZ, input.box.GetMaxZ());
    floor.plan.Add(PlanOf(input.box));
}

std::vector<Reference::Component*> Reference::ComponentsOf(const Floor& floor) {
    std::vector<Component*> all;
    for (const auto& [path, kind] : floor.kinds) {
        all.insert(all.end(), kind.components.begin(), kind.components.end());
    }
    return all;
}

const Reference::Floor* Reference::FindFloor(const FloorKey& key) const {
    const auto found = floors_.find(key);
    return found == floors_.end() ? nullptr : &found->second;
}

// The floors that a run names and the model knows, in the order of the request.
std::vector<const Reference::Floor*> Reference::FloorsOf(const SceneRun& run) const {
    std::vector<const Floor*> found;
    for (const SCollisionFloor& requested : run.floors) {
        for (const FloorKey& key : requested.floorKeys) {
            const Floor* floor = FindFloor(key);
            if (floor) found.push_back(floor);
        }
    }
    return found;
}

// --- Neighbours --------------------------------------------------------------------------------

std::vector<Reference::Component*> Reference::FindNear(const Floor& floor,
                                                       const SceneComponent& around) const {
    const auto& box = around.box;
    if (IsNull(box) || !PlanOf(box).Meets(floor.plan)) return {};
    if (!Overlap(box.GetMinZ(), box.GetMaxZ(), floor.minZ, floor.maxZ)) return {};
    const std::vector<Component*> all = ComponentsOf(floor);
    std::vector<Rect> plans;
    for (const Component* component : all) {
        plans.push_back(PlanOf(component->input->box));
    }
    std::vector<Component*> found;
    for (const std::size_t i : FindInPlan(floor.plan, plans, PlanOf(box))) {
        const auto& other = all[i]->input->box;
        if (Overlap(other.GetMinZ(), other.GetMaxZ(), box.GetMinZ() + kVerticalInset,
                    box.GetMaxZ() - kVerticalInset)) {
            found.push_back(all[i]);
        }
    }
    return found;
}

void Reference::ListNeighbours(Component& component) const {
    for (const auto& [key, floor] : floors_) {
        for (Component* other : FindNear(floor, *component.input)) {
            if (other == &component || IsSameComponent(*other->input, *component.input)) continue;
            component.neighbours.push_back(other);
        }
    }
}

Neighbours Reference::GetNeighbours() const {
    Neighbours neighbours(components_.size());
    for (const Component& component : components_) {
        for (const Component* other : component.neighbours) {
            neighbours[component.index].push_back(other->index);
        }
    }
    return neighbours;
}

// --- The check ---------------------------------------------------------------------------------

CheckOutcome Reference::Check(const SceneRun& run) {
    run_ = &run;
    rules_ = UsableRules(run);
    for (Component& component : components_) {
        component.records.clear();
    }
    for (auto& [key, floor] : floors_) {
        for (auto& [path, kind] : floor.kinds) {
            kind.rule = FindRule(rules_, path);
        }
    }
    CheckOutcome outcome;
    outcome.answer = kSuccess;
    for (const SCollisionFloor& floor : run.floors) {
        if (outcome.answer == kSuccess) CheckRequested(floor, outcome);
    }
    outcome.done = outcome.answer == kSuccess;
    outcome.records = AllRecords();
    return outcome;
}

void Reference::CheckRequested(const SCollisionFloor& floor, CheckOutcome& outcome) {
    outcome.floor = floor.name;
    outcome.total = 0;
    outcome.checked = 0;
    for (const FloorKey& key : floor.floorKeys) {
        const Floor* found = FindFloor(key);
        if (found) outcome.total += static_cast<int>(ComponentsOf(*found).size());
    }
    for (const FloorKey& key : floor.floorKeys) {
        CheckFloor(key, outcome);
        if (!ShallStop(outcome)) continue;
        outcome.answer = kStopped;
        return;
    }
}

bool Reference::ShallStop(const CheckOutcome& outcome) const {
    return run_->stopAtMeshCall &&
           static_cast<int>(outcome.meshCalls.size()) >= *run_->stopAtMeshCall;
}

void Reference::CheckFloor(const FloorKey& key, CheckOutcome& outcome) {
    const Floor* floor = FindFloor(key);
    if (!floor) return;
    for (Component* component : ComponentsOf(*floor)) {
        if (!component->kind->rule) continue;
        CheckComponent(*component, outcome);
        if (ShallStop(outcome)) return;
    }
}

void Reference::CheckComponent(Component& a, CheckOutcome& outcome) {
    ++outcome.checked;
    const SceneRule& rule = *a.kind->rule;
    if (rule.filter && ValueOf(FilteredPipes(), a.kind->category, 0) == 1) {
        const auto value = PipeValue(a.input->attributes);
        if (value && !MeetsFilter(*rule.filter, *value)) return;
    }
    for (Component* b : a.neighbours) {
        if (IsToBeTested(a, *b)) Test(a, *b, outcome);
    }
}

bool Reference::IsToBeTested(const Component& a, const Component& b) const {
    if (Contains(RelatedGuids(a.input->attributes), b.input->guid)) return false;
    if (Contains(RelatedGuids(b.input->attributes), a.input->guid)) return false;
    for (const Record& record : a.records) {
        if (record.other == b.index) return false;
    }
    if (!b.kind->rule) return false;
    const SceneRule& ruleA = *a.kind->rule;
    if (ruleA.filter && ValueOf(FilteredPipes(), b.kind->category, 0) == 1) {
        const auto value = PipeValue(b.input->attributes);
        if (value && !MeetsFilter(*ruleA.filter, *value)) return false;
    }
    return Admits(ruleA, b.kind->path) && Admits(*b.kind->rule, a.kind->path);
}

void Reference::Test(Component& a, Component& b, CheckOutcome& outcome) {
    const Offsets offsets =
        OffsetsOf(*a.kind->rule, a.kind->category, *b.kind->rule, b.kind->category);
    const auto meshA = AskForMesh(a, offsets.a, outcome);
    const auto meshB = AskForMesh(b, offsets.b, outcome);
    if (!meshA || !meshB || !IsUsable(*meshA) || !IsUsable(*meshB)) return;
    const auto contact = ContactOf(*meshA, *meshB);
    if (!contact) return;
    const Point point = MiddleOf(contact->high, contact->low);
    a.records.push_back({b.index, point, offsets.a, offsets.b});
    b.records.push_back({a.index, point, offsets.b, offsets.a});
}

// A mesh is asked for once; that there is none is asked for again and again.
std::optional<test::TestMesh> Reference::AskForMesh(Component& component, int bodyOffset,
                                                    CheckOutcome& outcome) {
    const SceneComponent& input = *component.input;
    auto mesh = input.body(bodyOffset);
    if (component.meshesKept.count(bodyOffset) == 1) return mesh;
    const bool isPart = !input.partId.empty() && component.kind->category.specialty == L"Tekla";
    outcome.meshCalls.push_back(
        {input.projectId, isPart ? input.partId : input.objectId, bodyOffset});
    if (mesh) component.meshesKept.insert(bodyOffset);
    return mesh;
}

Records Reference::AllRecords() const {
    Records records;
    for (const Component& component : components_) {
        records.push_back(component.records);
    }
    return records;
}

std::vector<KYCOLLISION::RESULT::CExistingHole> Reference::HolesOf(const Floor& floor) {
    std::vector<KYCOLLISION::RESULT::CExistingHole> holes;
    for (const Component* component : ComponentsOf(floor)) {
        const SceneComponent& input = *component->input;
        const AttCategory& kind = component->kind->category;
        auto hole = ReadOpening(input.attributes, kind);
        if (!hole) continue;
        hole->projId = input.projectId;
        hole->floorName = input.floorName;
        hole->objGuid = input.guid;
        hole->attInfo = {kind.specialty, kind.dalei, kind.xiaolei, input.name, input.syscode};
        holes.push_back(*hole);
    }
    return holes;
}

HoleOutcome Reference::GetHoles(const SceneRun& run) const {
    HoleOutcome outcome;
    try {
        for (const Floor* floor : FloorsOf(run)) {
            const auto holes = HolesOf(*floor);
            if (!holes.empty()) outcome.items[floor->key] = holes;
        }
    } catch (const std::logic_error& error) {
        outcome.error = error.what();
    }
    return outcome;
}

}  // namespace kycb::scenes::reference
