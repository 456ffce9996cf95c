// SPDX-License-Identifier: Apache-2.0
// Several converted IFC files as one work set: projects, floors, components, and what was left out.
#pragma once

#include "KYCollisionBase/logic/SCollisionFloor.h"
#include "KYCollisionBase/model/AttCategory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Classification.h"
#include "LocalOrigin.h"
#include "ScenePackage.h"

namespace ifchost {

struct ProductDecision;

/// One converted file of a work set.
struct WorksetInput {
    std::filesystem::path file;  ///< the IFC file, for names and messages
    ScenePackage package;
};

/// What became of a product. Each product of each file has exactly one fate.
enum class ProductFate : std::uint8_t {
    Checked,        ///< a component of the model that takes part in the check
    ListedOpening,  ///< a component of the model that is listed as an opening and never clashes
    FilledOpening,  ///< an opening that its door, window or other filling stands for
    ThroughParts,   ///< an assembly that is checked through its parts
    NotABody,       ///< space, storey, annotation, grid, virtual element, port, ...
    NoGeometry,     ///< the file gives no body
    EmptyBody,      ///< the file gives a body without a single triangle
    FailedBody,     ///< the reader failed on the body
    LeftOut,        ///< the mapping leaves it out on purpose
    Unmapped,       ///< no rule of the mapping matches
};
inline constexpr std::size_t kProductFateCount = 10;

/// The fate as a short English text for summaries, as "no rule of the mapping matches".
std::string_view FateText(ProductFate fate);
/// The fate's stable name for machine-readable output, as "unmapped".
std::string_view FateName(ProductFate fate);

/// The account of one product.
struct ProductAccount {
    ProductFate fate = ProductFate::NotABody;
    std::int32_t component = kNoIndex;  ///< index in IfcWorkset::Components()
    std::int32_t rule = kNoIndex;       ///< mapping rule that decided; inherited ones included
    std::string note;                   ///< details in words, may be empty
};

/// One floor of a project. Heights are world elevations in millimetres.
struct WorksetFloor {
    std::wstring name;               ///< unique within the project
    double under = 0.0;              ///< the storey's elevation
    double top = 0.0;                ///< elevation of the next storey up, or top of the contents
    std::int32_t storey = kNoIndex;  ///< index in ScenePackage::Storeys(); none: the floor of
                                     ///< everything that belongs to no storey
    std::size_t components = 0;      ///< checked components and listed openings
};

/// Whether a component is tested or only listed.
enum class ComponentRole : std::uint8_t { Body, Opening };

/// One component of the collision model.
struct WorksetComponent {
    int projectId = 0;
    std::uint32_t product = 0;  ///< index in ScenePackage::Products() of the project
    std::uint32_t floor = 0;    ///< index in WorksetProject::floors
    ComponentRole role = ComponentRole::Body;
    std::wstring guid;     ///< 32 lower-case hexadecimal digits, unique within the work set
    std::wstring name;     ///< of the product, else of its type, else class and express id
    std::wstring syscode;  ///< names of its systems, joined by ","
    KYCOLLISION::MODEL::AttCategory category;
    SceneBox box;  ///< of the plain body in world coordinates; of an opening: its outline or point
};

/// One file of the work set.
struct WorksetProject {
    int id = 0;         ///< from 1, in the order in which the files were given
    std::wstring name;  ///< name of the file without folders and extension, unique
    std::filesystem::path file;
    ScenePackage package;
    std::vector<WorksetFloor> floors;      ///< ascending by elevation; "no storey" comes last
    std::vector<ProductAccount> accounts;  ///< one per product
    std::array<std::size_t, kProductFateCount> fateCounts{};  ///< they add up to the products
};

/// How many products of a class no rule matched.
struct UnmappedClass {
    int projectId = 0;
    std::string ifcClass;
    std::size_t count = 0;
    std::string example;  ///< name and GlobalId of the first one
};

/// Something that a user should know about the work set.
struct WorksetWarning {
    int projectId = 0;  ///< 0: concerns all files
    std::string text;
};

/// The work set. Immutable once built; const members may be called from several threads at once.
class IfcWorkset {
  public:
    /// Name of the floor for products that belong to no storey (made unique where a storey has it).
    static constexpr std::wstring_view kNoStoreyName = L"(no storey)";

    IfcWorkset(std::vector<WorksetInput> inputs, const Classification& classification);

    const std::vector<WorksetProject>& Projects() const { return projects_; }
    /// Null for an id that no file has.
    const WorksetProject* Project(int projectId) const;

    /// All components: by project, then by express id.
    const std::vector<WorksetComponent>& Components() const { return components_; }
    const SceneProduct& Product(const WorksetComponent& component) const;
    const WorksetFloor& Floor(const WorksetComponent& component) const;
    /// Null when the project has no component with this GUID (either case of digits).
    const WorksetComponent* FindComponent(int projectId, std::wstring_view guid) const;
    /// The GlobalId in the file, also where the model had to use another GUID.
    const std::string& GlobalId(const WorksetComponent& component) const;

    /// The name of the mapping rule that decided about a product; empty when none did.
    std::string_view RuleName(const ProductAccount& account) const;

    const LocalOrigin& Origin() const { return origin_; }
    Point3 ToWorld(const Point3& local) const;
    Point3 ToLocal(const Point3& world) const;

    /// The kinds of the components that are checked, without duplicates, ordered by their names.
    std::vector<KYCOLLISION::MODEL::AttCategory> CheckedKinds() const;
    /// By project, then by descending count, then by class.
    std::vector<UnmappedClass> Unmapped() const;
    const std::vector<WorksetWarning>& Warnings() const { return warnings_; }

    /// The floors as a user sees them: floors of the same name in several files are one. Ordered
    /// by elevation. Floors without components are left out.
    std::vector<SCollisionFloor> CollisionFloors() const;

  private:
    void AddProject(std::wstring name, WorksetInput input, const Classification& classification);
    bool IsTaken(const std::wstring& guid) const;
    void AddComponents(WorksetProject& project, std::vector<ProductDecision> decisions);
    void ChooseOriginAndWarn();

    std::vector<WorksetProject> projects_;
    std::vector<WorksetComponent> components_;
    std::map<int, std::map<std::wstring, std::size_t, std::less<>>> byGuid_;
    LocalOrigin origin_;
    std::vector<WorksetWarning> warnings_;
    std::vector<std::string> ruleNames_;
};

}  // namespace ifchost
