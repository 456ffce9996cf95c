// SPDX-License-Identifier: Apache-2.0
#include "Classification.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <utility>
#include <variant>

#include "DefaultMapping.h"
#include "HostText.h"
#include "IfcClasses.h"
#include "MappingReader.h"
#include "MappingRules.h"

namespace ifchost {
namespace {

using KYCOLLISION::MODEL::AttCategory;
using mapping::Field;

// Deeper assemblies occur only where a file goes round in a circle.
constexpr int kMaxAssemblyDepth = 100;

constexpr std::string_view SectionName(SectionShape shape) {
    switch (shape) {
        case SectionShape::Rectangle:
            return "rectangle";
        case SectionShape::Circle:
            return "circle";
        case SectionShape::Other:
            return "other";
    }
    return "";
}

void AppendFilled(std::vector<std::string>& list, const std::string& text) {
    if (!text.empty()) list.push_back(text);
}

// A product during the classification: the texts of its fields in the form that patterns take.
class Subject {
  public:
    explicit Subject(const ProductFacts& facts) : facts_(facts) {
        for (const std::string& name : facts.classes)
            AddClass(name);
    }

    void AddClass(std::string_view ifcClass) {
        auto& classes = Texts(Field::Class);
        for (const std::string& name : ClassAndSupertypes(ifcClass))
            classes.emplace_back(name);
        known_[static_cast<std::size_t>(Field::Class)] = true;
    }

    bool Meets(const mapping::TextCondition& condition) {
        for (std::size_t i = 0; i < mapping::kFieldCount; ++i) {
            if (condition.fields[i] && AnyMatches(condition.patterns, Ready(i))) return true;
        }
        return false;
    }

    const std::vector<SceneProperty>& Properties() const { return facts_.properties; }

  private:
    static bool AnyMatches(const std::vector<TextPattern>& patterns,
                           const std::vector<PatternSubject>& texts) {
        for (const PatternSubject& text : texts) {
            for (const TextPattern& pattern : patterns) {
                if (pattern.Matches(text)) return true;
            }
        }
        return false;
    }

    std::vector<PatternSubject>& Texts(Field field) {
        return texts_[static_cast<std::size_t>(field)];
    }

    // Most rules fail on the class already, so the other texts are prepared when first asked for.
    const std::vector<PatternSubject>& Ready(std::size_t index) {
        std::vector<PatternSubject>& texts = texts_[index];
        if (!known_[index]) Fill(static_cast<Field>(index), texts);
        if (texts.empty()) texts.emplace_back("");
        known_[index] = true;
        return texts;
    }

    void Fill(Field field, std::vector<PatternSubject>& texts) const {
        const auto all = [&texts](const std::vector<std::string>& list) {
            for (const std::string& text : list)
                texts.emplace_back(text);
        };
        switch (field) {
            case Field::Class:
                break;
            case Field::System:
                return all(facts_.systems);
            case Field::SystemType:
                return all(facts_.systemTypes);
            case Field::Material:
                return all(facts_.materials);
            case Field::PartOf:
                for (const std::string& name : facts_.assemblies)
                    all(ClassAndSupertypes(name));
                return;
            default:
                texts.emplace_back(SingleText(field));
        }
    }

    std::string_view SingleText(Field field) const {
        switch (field) {
            case Field::PredefinedType:
                return facts_.predefinedType;
            case Field::ObjectType:
                return facts_.objectType;
            case Field::Name:
                return facts_.name;
            case Field::Description:
                return facts_.description;
            case Field::TypeName:
                return facts_.typeName;
            case Field::Storey:
                return facts_.storey;
            case Field::File:
                return facts_.file;
            case Field::Section:
                return facts_.section;
            default:
                return {};
        }
    }

    const ProductFacts& facts_;
    std::array<std::vector<PatternSubject>, mapping::kFieldCount> texts_;
    std::array<bool, mapping::kFieldCount> known_{};
};

bool HasNumber(PropertyKind kind) {
    return kind != PropertyKind::Text && kind != PropertyKind::Boolean;
}

bool Fits(const SceneProperty& property, const mapping::PropertyCondition& condition) {
    if (const auto* flag = std::get_if<bool>(&condition.value)) {
        return property.kind == PropertyKind::Boolean && (property.number != 0.0) == *flag;
    }
    if (const auto* range = std::get_if<mapping::NumberRange>(&condition.value)) {
        return HasNumber(property.kind) && property.number >= range->min &&
               property.number <= range->max;
    }
    const PatternSubject value(property.value);
    const auto& patterns = std::get<std::vector<TextPattern>>(condition.value);
    return std::any_of(patterns.begin(), patterns.end(),
                       [&value](const TextPattern& pattern) { return pattern.Matches(value); });
}

bool Holds(const mapping::PropertyCondition& condition, const Subject& subject) {
    for (const SceneProperty& property : subject.Properties()) {
        if (condition.name.Matches(PatternSubject(property.name)) &&
            condition.set.Matches(PatternSubject(property.set)) && Fits(property, condition)) {
            return true;
        }
    }
    return false;
}

bool AllHold(const mapping::Conditions& conditions, Subject& subject) {
    for (const auto& condition : conditions.texts) {
        if (!subject.Meets(condition)) return false;
    }
    for (const auto& condition : conditions.properties) {
        if (!Holds(condition, subject)) return false;
    }
    return true;
}

bool Applies(const mapping::Rule& rule, Subject& subject) {
    return AllHold(rule.when, subject) && (rule.unless.IsEmpty() || !AllHold(rule.unless, subject));
}

std::optional<std::string> ReadWhole(const std::filesystem::path& path) {
    std::error_code code;
    if (!std::filesystem::is_regular_file(path, code)) return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (!file.good() && !file.eof()) return std::nullopt;
    return text;
}

std::string Utf8Path(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

void AppendSystems(const ScenePackage& package, const SceneProduct& product, ProductFacts& facts) {
    for (const std::uint32_t index : product.systems) {
        const SceneSystem& system = package.Systems()[index];
        AppendFilled(facts.systems, system.name);
        AppendFilled(facts.systems, system.longName);
        AppendFilled(facts.systemTypes, system.predefinedType);
        AppendFilled(facts.systemTypes, system.objectType);
    }
}

}  // namespace

ProductFacts FactsOf(const ScenePackage& package, std::size_t index, std::string_view file) {
    const SceneProduct& product = package.Products()[index];
    ProductFacts facts;
    facts.classes.push_back(product.ifcClass);
    AppendFilled(facts.classes, ClassOfType(product.typeClass));
    facts.predefinedType = product.predefinedType;
    facts.objectType = product.objectType;
    facts.name = product.name;
    facts.description = product.description;
    facts.typeName = product.typeName;
    facts.file = file;
    facts.materials = product.materials;
    if (product.section) facts.section = SectionName(product.section->shape);
    if (product.storey != kNoIndex) {
        facts.storey = package.Storeys()[static_cast<std::size_t>(product.storey)].name;
    }
    AppendSystems(package, product, facts);
    std::int32_t parent = product.parent;
    for (int depth = 0; parent != kNoIndex && depth < kMaxAssemblyDepth; ++depth) {
        const SceneProduct& assembly = package.Products()[static_cast<std::size_t>(parent)];
        facts.assemblies.push_back(assembly.ifcClass);
        parent = assembly.parent;
    }
    facts.properties = package.Properties(product);
    return facts;
}

std::string MappingError::Text() const {
    std::string text = file;
    if (line != 0) text += ":" + std::to_string(line);
    if (!pointer.empty()) text += ": " + pointer;
    return text + ": " + message;
}

struct Classification::Impl {
    mapping::RuleSet set;
};

Classification::Classification(std::unique_ptr<const Impl> impl) : impl_(std::move(impl)) {}
Classification::Classification(Classification&&) noexcept = default;
Classification& Classification::operator=(Classification&&) noexcept = default;
Classification::~Classification() = default;

Classification Classification::Default() {
    MappingError error;
    auto classification = Parse(DefaultText(), "mapping.json", error);
    if (!classification) throw std::logic_error("the built-in mapping is broken: " + error.Text());
    return std::move(*classification);
}

std::string_view Classification::DefaultText() {
    return kDefaultMapping;
}

std::optional<Classification> Classification::Load(const std::filesystem::path& path,
                                                   MappingError& error) {
    const auto text = ReadWhole(path);
    if (text) return Parse(*text, Utf8Path(path), error);
    error = {Utf8Path(path), "", 0, "the file cannot be read"};
    return std::nullopt;
}

std::optional<Classification> Classification::Parse(std::string_view text, std::string_view file,
                                                    MappingError& error) {
    auto rules = mapping::ReadRules(text, file, error);
    if (!rules) return std::nullopt;
    return Classification(std::make_unique<const Impl>(Impl{std::move(*rules)}));
}

MappingResult Classification::Classify(const ProductFacts& facts) const {
    Subject subject(facts);
    MappingResult result;
    for (std::size_t i = 0; i < impl_->set.rules.size(); ++i) {
        const mapping::Rule& rule = impl_->set.rules[i];
        const bool asPart = std::holds_alternative<mapping::LikeAssembly>(rule.outcome);
        if ((asPart && facts.assemblies.empty()) || !Applies(rule, subject)) continue;
        if (const auto* treatAs = std::get_if<mapping::TreatAs>(&rule.outcome)) {
            subject.AddClass(treatAs->ifcClass);
            continue;
        }
        result.rule = static_cast<std::int32_t>(i);
        if (asPart) {
            result.outcome = MappingOutcome::LikeAssembly;
        } else if (const auto* leaveOut = std::get_if<mapping::LeaveOut>(&rule.outcome)) {
            result.outcome = MappingOutcome::LeftOut;
            result.reason = leaveOut->reason;
        } else {
            result.outcome = MappingOutcome::Category;
            result.category = std::get<mapping::AssignCategory>(rule.outcome).category;
        }
        return result;
    }
    return result;
}

std::size_t Classification::RuleCount() const {
    return impl_->set.rules.size();
}

const std::string& Classification::RuleName(std::size_t rule) const {
    return impl_->set.rules[rule].name;
}

const std::string& Classification::Name() const {
    return impl_->set.name;
}

std::vector<AttCategory> Classification::Categories() const {
    std::vector<AttCategory> categories;
    for (const mapping::Rule& rule : impl_->set.rules) {
        const auto* assign = std::get_if<mapping::AssignCategory>(&rule.outcome);
        if (assign == nullptr) continue;
        const bool known = std::any_of(
            categories.begin(), categories.end(),
            [assign](const AttCategory& category) { return category == assign->category; });
        if (!known) categories.push_back(assign->category);
    }
    return categories;
}

}  // namespace ifchost
