// SPDX-License-Identifier: Apache-2.0
// The rules of a mapping in their compiled form.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "TextPattern.h"

namespace ifchost::mapping {

/// Texts of a product that conditions can look at.
enum class Field : std::size_t {
    Class,
    PredefinedType,
    ObjectType,
    Name,
    Description,
    TypeName,
    Storey,
    File,
    System,
    SystemType,
    Material,
    PartOf,
    Section,
};
inline constexpr std::array kFieldNames = {
    std::string_view("class"),       std::string_view("predefinedType"),
    std::string_view("objectType"),  std::string_view("name"),
    std::string_view("description"), std::string_view("typeName"),
    std::string_view("storey"),      std::string_view("file"),
    std::string_view("system"),      std::string_view("systemType"),
    std::string_view("material"),    std::string_view("partOf"),
    std::string_view("section"),
};
inline constexpr std::size_t kFieldCount = kFieldNames.size();

/// Holds when one of the patterns matches one text of one of the fields. A field without texts
/// counts as one empty text.
struct TextCondition {
    std::bitset<kFieldCount> fields;
    std::vector<TextPattern> patterns;
};

/// A number with slack for values that went through a text, or a range with both ends included.
struct NumberRange {
    double min = -std::numeric_limits<double>::infinity();
    double max = std::numeric_limits<double>::infinity();
};

/// Holds when a property of that set and name has a value that fits.
struct PropertyCondition {
    TextPattern set;
    TextPattern name;
    std::variant<bool, NumberRange, std::vector<TextPattern>> value;
};

/// All of these have to hold.
struct Conditions {
    std::vector<TextCondition> texts;
    std::vector<PropertyCondition> properties;

    bool IsEmpty() const { return texts.empty() && properties.empty(); }
};

struct AssignCategory {
    KYCOLLISION::MODEL::AttCategory category;
};
struct LikeAssembly {};
struct LeaveOut {
    std::string reason;
};
/// The product counts as one of this class too, and the rules go on.
struct TreatAs {
    std::string ifcClass;
};

struct Rule {
    std::string name;
    Conditions when;
    Conditions unless;  ///< the rule does not apply when these hold; empty ones never do
    std::variant<AssignCategory, LikeAssembly, LeaveOut, TreatAs> outcome;
};

struct RuleSet {
    std::string name;
    std::vector<Rule> rules;
};

}  // namespace ifchost::mapping
