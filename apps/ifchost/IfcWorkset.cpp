// SPDX-License-Identifier: Apache-2.0
#include "IfcWorkset.h"

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>
#include <utility>

#include "HostText.h"
#include "IfcGuid.h"
#include "ProductFates.h"

namespace ifchost {
namespace {

using KYCOLLISION::MODEL::AttCategory;

struct FateWords {
    std::string_view name;
    std::string_view text;
};

// In the order of ProductFate.
constexpr std::array<FateWords, kProductFateCount> kFateWords = {{
    {"checked", "checked"},
    {"listed-opening", "an opening: listed, not checked"},
    {"filled-opening", "an opening that a door, a window or the like stands for"},
    {"through-parts", "an assembly: checked through its parts"},
    {"not-a-body", "no body: space, storey, annotation, grid, port or the like"},
    {"no-geometry", "the file gives it no body"},
    {"empty-body", "its body has no triangles"},
    {"failed-body", "its body could not be read"},
    {"left-out", "left out by the mapping"},
    {"unmapped", "no rule of the mapping matches"},
}};

std::string Utf8Of(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

// Gives each name that was met before a number: "Level", "Level (2)", "Level (3)".
class UniqueNames {
  public:
    std::wstring Take(const std::wstring& name) {
        std::wstring unique = name;
        for (int number = 2; !taken_.insert(unique).second; ++number) {
            unique = name + L" (" + std::to_wstring(number) + L")";
        }
        return unique;
    }

  private:
    std::set<std::wstring> taken_;
};

// Gives each product its GUID inside the model, unique within its file.
class GuidMaker {
  public:
    std::wstring Make(const SceneProduct& product) {
        if (product.guid.empty()) return HexFromText("#" + std::to_string(product.expressId));
        const int occurrence = ++occurrences_[product.guid];
        if (occurrence > 1) {
            ++repeated_;
            return HexFromText(product.guid + "#" + std::to_string(occurrence));
        }
        if (auto hex = HexFromGlobalId(product.guid)) return *hex;
        ++malformed_;
        return HexFromText(product.guid);
    }

    std::size_t Repeated() const { return repeated_; }
    std::size_t Malformed() const { return malformed_; }

  private:
    std::map<std::string, int> occurrences_;
    std::size_t repeated_ = 0;
    std::size_t malformed_ = 0;
};

std::wstring StoreyName(const SceneStorey& storey) {
    if (!storey.name.empty()) return FromUtf8(storey.name);
    if (!storey.longName.empty()) return FromUtf8(storey.longName);
    return L"#" + std::to_wstring(storey.expressId);
}

std::wstring ComponentName(const SceneProduct& product) {
    for (const std::string* text : {&product.name, &product.typeName, &product.objectType}) {
        if (!text->empty()) return FromUtf8(*text);
    }
    return FromUtf8(product.ifcClass) + L" #" + std::to_wstring(product.expressId);
}

// Plain groups are an organiser's matter and say nothing about services.
std::wstring SystemCode(const ScenePackage& package, const SceneProduct& product) {
    std::wstring code;
    for (const std::uint32_t index : product.systems) {
        const SceneSystem& system = package.Systems()[index];
        if (system.ifcClass == "IfcGroup" || system.name.empty()) continue;
        if (!code.empty()) code += L",";
        code += FromUtf8(system.name);
    }
    return code;
}

SceneBox PointBox(const Point3& point) {
    return {point, point};
}

// Openings often have no mesh of their own; their outline or at least their place has to do.
SceneBox BoxOf(const SceneProduct& product) {
    if (product.box) return *product.box;
    if (product.section) {
        SceneBox box = PointBox(product.section->start);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            box.min[axis] = std::min(box.min[axis], product.section->end[axis]);
            box.max[axis] = std::max(box.max[axis], product.section->end[axis]);
        }
        return box;
    }
    return PointBox(product.origin.value_or(Point3{}));
}

bool SameBuilding(const SceneStorey& a, const SceneStorey& b) {
    return a.building == b.building || a.building == kNoIndex || b.building == kNoIndex;
}

// Elevation of the next storey up in the same building.
std::optional<double> NextStoreyUp(const ScenePackage& package, const SceneStorey& storey) {
    std::optional<double> next;
    for (const SceneStorey& other : package.Storeys()) {
        if (other.baseZ > storey.baseZ && SameBuilding(storey, other)) {
            next = std::min(next.value_or(other.baseZ), other.baseZ);
        }
    }
    return next;
}

struct HeightRange {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
};

// Fills the floors of a project: one per storey, and one more when something belongs to none.
class FloorPlan {
  public:
    explicit FloorPlan(WorksetProject& project) : project_(project) {
        const auto& storeys = project.package.Storeys();
        for (std::size_t i = 0; i < storeys.size(); ++i) {
            WorksetFloor floor;
            floor.name = names_.Take(StoreyName(storeys[i]));
            floor.under = storeys[i].baseZ;
            floor.storey = static_cast<std::int32_t>(i);
            project.floors.push_back(std::move(floor));
        }
        contents_.resize(storeys.size());
    }

    /// Puts the component on its floor.
    void Add(WorksetComponent& component) {
        const std::int32_t storey = project_.package.Products()[component.product].storey;
        const std::size_t floor =
            storey == kNoIndex ? NoStoreyFloor() : static_cast<std::size_t>(storey);
        component.floor = static_cast<std::uint32_t>(floor);
        contents_[floor].low = std::min(contents_[floor].low, component.box.min[2]);
        contents_[floor].high = std::max(contents_[floor].high, component.box.max[2]);
        ++project_.floors[floor].components;
    }

    /// To be called once all components are there.
    void SetHeights() {
        for (std::size_t i = 0; i < project_.floors.size(); ++i) {
            WorksetFloor& floor = project_.floors[i];
            if (floor.storey == kNoIndex) {
                floor.under = contents_[i].low;
                floor.top = contents_[i].high;
            } else {
                const auto next = NextStoreyUp(project_.package, project_.package.Storeys()[i]);
                floor.top = next.value_or(std::max(floor.under, contents_[i].high));
            }
        }
    }

  private:
    std::size_t NoStoreyFloor() {
        if (!noStorey_) {
            noStorey_ = project_.floors.size();
            WorksetFloor floor;
            floor.name = names_.Take(std::wstring(IfcWorkset::kNoStoreyName));
            project_.floors.push_back(std::move(floor));
            contents_.emplace_back();
        }
        return *noStorey_;
    }

    WorksetProject& project_;
    UniqueNames names_;
    std::vector<HeightRange> contents_;
    std::optional<std::size_t> noStorey_;
};

WorksetComponent MakeComponent(const WorksetProject& project, std::size_t index,
                               const ProductDecision& decision, const std::wstring& guid) {
    const SceneProduct& product = project.package.Products()[index];
    WorksetComponent component;
    component.projectId = project.id;
    component.product = static_cast<std::uint32_t>(index);
    component.role = decision.role;
    component.guid = guid;
    component.name = ComponentName(product);
    component.syscode = SystemCode(project.package, product);
    component.category = decision.category;
    component.box = BoxOf(product);
    return component;
}

void WarnAboutGuids(int projectId, const GuidMaker& guids, std::vector<WorksetWarning>& warnings) {
    if (guids.Repeated() > 0) {
        warnings.push_back({projectId, std::to_string(guids.Repeated()) +
                                           " products have the GlobalId of another product of the "
                                           "file; they got GUIDs of their own"});
    }
    if (guids.Malformed() > 0) {
        warnings.push_back({projectId, std::to_string(guids.Malformed()) +
                                           " products have a GlobalId that is none; they got "
                                           "GUIDs of their own"});
    }
}

}  // namespace

std::string_view FateText(ProductFate fate) {
    return kFateWords[static_cast<std::size_t>(fate)].text;
}

std::string_view FateName(ProductFate fate) {
    return kFateWords[static_cast<std::size_t>(fate)].name;
}

IfcWorkset::IfcWorkset(std::vector<WorksetInput> inputs, const Classification& classification) {
    for (std::size_t rule = 0; rule < classification.RuleCount(); ++rule)
        ruleNames_.push_back(classification.RuleName(rule));
    UniqueNames names;
    projects_.reserve(inputs.size());
    for (WorksetInput& input : inputs) {
        std::wstring name = names.Take(FromUtf8(Utf8Of(input.file.stem())));
        AddProject(std::move(name), std::move(input), classification);
    }
    ChooseOriginAndWarn();
}

void IfcWorkset::AddProject(std::wstring name, WorksetInput input,
                            const Classification& classification) {
    const std::string fileName = Utf8Of(input.file.filename());
    const int id = static_cast<int>(projects_.size()) + 1;
    auto decisions = DecideProducts(input.package, classification, fileName);
    projects_.push_back(
        {id, std::move(name), std::move(input.file), std::move(input.package), {}, {}, {}});
    AddComponents(projects_.back(), std::move(decisions));
}

bool IfcWorkset::IsTaken(const std::wstring& guid) const {
    return std::any_of(byGuid_.begin(), byGuid_.end(),
                       [&guid](const auto& project) { return project.second.count(guid) > 0; });
}

void IfcWorkset::AddComponents(WorksetProject& project, std::vector<ProductDecision> decisions) {
    FloorPlan plan(project);
    GuidMaker guids;
    std::size_t takenGuids = 0;
    for (std::size_t i = 0; i < decisions.size(); ++i) {
        ProductDecision& decision = decisions[i];
        std::wstring guid = guids.Make(project.package.Products()[i]);
        ++project.fateCounts[static_cast<std::size_t>(decision.fate)];
        ProductAccount account{decision.fate, kNoIndex, decision.rule, std::move(decision.note)};
        if (decision.fate == ProductFate::Checked || decision.fate == ProductFate::ListedOpening) {
            account.component = static_cast<std::int32_t>(components_.size());
            // Two components of one GUID never clash in the model: neither ranks before the other.
            // The name of the file, unlike its place in the list, stays the same in later runs.
            if (IsTaken(guid)) {
                guid = HexFromText(ToUtf8(guid) + "@" + ToUtf8(project.name));
                ++takenGuids;
            }
            byGuid_[project.id].emplace(guid, components_.size());
            components_.push_back(MakeComponent(project, i, decision, guid));
            plan.Add(components_.back());
        }
        project.accounts.push_back(std::move(account));
    }
    plan.SetHeights();
    WarnAboutGuids(project.id, guids, warnings_);
    if (takenGuids > 0) {
        warnings_.push_back({project.id, std::to_string(takenGuids) +
                                             " components have the GlobalId of a component of an "
                                             "earlier file; they got GUIDs of their own"});
    }
}

void IfcWorkset::ChooseOriginAndWarn() {
    std::vector<SceneBox> boxes;
    for (const WorksetComponent& component : components_) {
        if (component.role == ComponentRole::Body) boxes.push_back(component.box);
    }
    origin_ = ChooseOrigin(boxes);
    if (origin_.impreciseComponents > 0) {
        warnings_.push_back(
            {0, std::to_string(origin_.impreciseComponents) +
                    " components lie so far from the others that their coordinates are only kept "
                    "to " +
                    ToUtf8(FormatMillimetres(origin_.resolution)) +
                    " mm; check that all files use the same coordinates"});
    }
}

const WorksetProject* IfcWorkset::Project(int projectId) const {
    if (projectId < 1 || static_cast<std::size_t>(projectId) > projects_.size()) return nullptr;
    return &projects_[static_cast<std::size_t>(projectId) - 1];
}

const SceneProduct& IfcWorkset::Product(const WorksetComponent& component) const {
    return Project(component.projectId)->package.Products()[component.product];
}

const WorksetFloor& IfcWorkset::Floor(const WorksetComponent& component) const {
    return Project(component.projectId)->floors[component.floor];
}

const WorksetComponent* IfcWorkset::FindComponent(int projectId, std::wstring_view guid) const {
    const auto project = byGuid_.find(projectId);
    if (project == byGuid_.end()) return nullptr;
    std::wstring lower(guid);
    for (wchar_t& c : lower) {
        if (c >= L'A' && c <= L'F') c = static_cast<wchar_t>(c - L'A' + L'a');
    }
    const auto found = project->second.find(lower);
    return found == project->second.end() ? nullptr : &components_[found->second];
}

const std::string& IfcWorkset::GlobalId(const WorksetComponent& component) const {
    return Product(component).guid;
}

std::string_view IfcWorkset::RuleName(const ProductAccount& account) const {
    if (account.rule == kNoIndex) return {};
    return ruleNames_[static_cast<std::size_t>(account.rule)];
}

Point3 IfcWorkset::ToWorld(const Point3& local) const {
    const Point3& o = origin_.origin;
    return {local[0] + o[0], local[1] + o[1], local[2] + o[2]};
}

Point3 IfcWorkset::ToLocal(const Point3& world) const {
    const Point3& o = origin_.origin;
    return {world[0] - o[0], world[1] - o[1], world[2] - o[2]};
}

std::vector<AttCategory> IfcWorkset::CheckedKinds() const {
    const auto names = [](const AttCategory& c) {
        return std::tie(c.specialty, c.dalei, c.xiaolei);
    };
    std::vector<AttCategory> kinds;
    for (const WorksetComponent& component : components_) {
        if (component.role == ComponentRole::Body) kinds.push_back(component.category);
    }
    std::sort(kinds.begin(), kinds.end(),
              [&names](const AttCategory& a, const AttCategory& b) { return names(a) < names(b); });
    kinds.erase(std::unique(kinds.begin(), kinds.end()), kinds.end());
    return kinds;
}

std::vector<UnmappedClass> IfcWorkset::Unmapped() const {
    std::vector<UnmappedClass> all;
    for (const WorksetProject& project : projects_) {
        std::map<std::string, UnmappedClass> byClass;
        for (std::size_t i = 0; i < project.accounts.size(); ++i) {
            if (project.accounts[i].fate != ProductFate::Unmapped) continue;
            const SceneProduct& product = project.package.Products()[i];
            UnmappedClass& entry = byClass[product.ifcClass];
            if (entry.count++ > 0) continue;
            entry.projectId = project.id;
            entry.ifcClass = product.ifcClass;
            entry.example = product.name + " (" + product.guid + ")";
        }
        const auto first = static_cast<std::ptrdiff_t>(all.size());
        for (auto& [name, entry] : byClass)
            all.push_back(std::move(entry));
        std::stable_sort(all.begin() + first, all.end(),
                         [](const auto& a, const auto& b) { return a.count > b.count; });
    }
    return all;
}

std::vector<SCollisionFloor> IfcWorkset::CollisionFloors() const {
    struct Group {
        double under = std::numeric_limits<double>::infinity();
        SCollisionFloor floor;
    };
    std::map<std::wstring, Group> groups;
    for (const WorksetProject& project : projects_) {
        for (const WorksetFloor& floor : project.floors) {
            if (floor.components == 0) continue;
            Group& group = groups[floor.name];
            group.under = std::min(group.under, floor.under);
            group.floor.name = floor.name;
            group.floor.floorKeys.emplace_back(project.id, floor.name);
        }
    }
    std::vector<Group*> ordered;
    for (auto& [name, group] : groups)
        ordered.push_back(&group);
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const Group* a, const Group* b) { return a->under < b->under; });
    std::vector<SCollisionFloor> floors;
    for (Group* group : ordered)
        floors.push_back(std::move(group->floor));
    return floors;
}

}  // namespace ifchost
