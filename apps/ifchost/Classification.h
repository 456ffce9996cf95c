// SPDX-License-Identifier: Apache-2.0
// The mapping file: which specialty, major and minor category an IFC product belongs to.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ScenePackage.h"

namespace ifchost {

/// What a mapping rule may ask about a product. All texts are UTF-8.
struct ProductFacts {
    /// The product's IFC class and the class that its type object stands for ("IfcDuctSegment" of
    /// an "IfcDuctSegmentType"); supertypes are added by the classification itself.
    std::vector<std::string> classes;
    std::string predefinedType;
    std::string objectType;
    std::string name;
    std::string description;
    std::string typeName;
    std::string storey;   ///< name of the storey
    std::string file;     ///< name of the IFC file, without folders
    std::string section;  ///< "rectangle", "circle" or "other" of a swept body, else empty
    std::vector<std::string> systems;      ///< names and long names of the systems and groups
    std::vector<std::string> systemTypes;  ///< predefined and object types of the systems
    std::vector<std::string> materials;
    std::vector<std::string> assemblies;  ///< IFC classes of what this product is a part of
    std::vector<SceneProperty> properties;
};

/// Gathers the facts of one product. Property views point into `package`.
/// Precondition: product < package.Products().size().
ProductFacts FactsOf(const ScenePackage& package, std::size_t product, std::string_view file);

/// What a mapping decides about a product.
enum class MappingOutcome : std::uint8_t {
    Unmapped,      ///< no rule matches
    Category,      ///< it belongs to `MappingResult::category`
    LikeAssembly,  ///< it belongs where the product that it is a part of belongs
    LeftOut,       ///< a rule leaves it out of the check on purpose
};

/// The decision of the first rule that matches.
struct MappingResult {
    MappingOutcome outcome = MappingOutcome::Unmapped;
    KYCOLLISION::MODEL::AttCategory category;  ///< only for `Category`
    std::string reason;                        ///< only for `LeftOut`
    std::int32_t rule = kNoIndex;              ///< index of the rule, `kNoIndex` when unmapped
};

/// Why a mapping could not be used.
struct MappingError {
    std::string file;      ///< path, UTF-8, or a name for texts that are not files
    std::string pointer;   ///< JSON pointer to the offending value, as "/rules/3/when/class"
    std::size_t line = 0;  ///< 1-based; 0 when not known
    std::string message;

    /// "file:line: pointer: message"; unknown parts are left out.
    std::string Text() const;
};

/// An ordered list of mapping rules. Immutable; the format is described in docs/mapping.md.
///
/// The first rule whose conditions all hold decides. Text conditions ignore case. All const
/// members may be called from several threads at once.
class Classification {
  public:
    /// The mapping that ships with the host.
    static Classification Default();
    /// The JSON text of that mapping.
    static std::string_view DefaultText();

    /// Reads `path`; nothing, and `error` filled, when the file cannot be read or is not a mapping.
    static std::optional<Classification> Load(const std::filesystem::path& path,
                                              MappingError& error);
    /// Reads JSON `text`; `file` is only named in errors.
    static std::optional<Classification> Parse(std::string_view text, std::string_view file,
                                               MappingError& error);

    Classification(Classification&&) noexcept;
    Classification& operator=(Classification&&) noexcept;
    Classification(const Classification&) = delete;
    Classification& operator=(const Classification&) = delete;
    ~Classification();

    /// Throws std::runtime_error when a regular expression of the mapping backtracks without end.
    MappingResult Classify(const ProductFacts& facts) const;

    std::size_t RuleCount() const;
    /// The rule's name, or its JSON pointer when it has none. Precondition: rule < RuleCount().
    const std::string& RuleName(std::size_t rule) const;
    /// The mapping's own name, empty when it has none.
    const std::string& Name() const;
    /// Every category that some rule assigns, without duplicates, in the order of the rules.
    std::vector<KYCOLLISION::MODEL::AttCategory> Categories() const;

  private:
    struct Impl;
    explicit Classification(std::unique_ptr<const Impl> impl);
    std::unique_ptr<const Impl> impl_;
};

}  // namespace ifchost
