// SPDX-License-Identifier: Apache-2.0
#include "MappingReader.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "HostText.h"
#include "JsonPlaces.h"

namespace ifchost::mapping {
namespace {

using nlohmann::json;

constexpr int kFormatVersion = 1;
// A mapping needs five levels; the limit keeps hostile files from exhausting the stack.
constexpr int kMaxDepth = 64;
// Slack for numbers that were rounded on their way through a text.
constexpr double kNumberSlack = 1e-9;

// Carries a problem from where it is seen to ReadRules.
class MappingProblem : public std::runtime_error {
  public:
    MappingProblem(std::string pointer, const std::string& message)
        : std::runtime_error(message), pointer_(std::move(pointer)) {}
    const std::string& Pointer() const { return pointer_; }

  private:
    std::string pointer_;
};

// A JSON value together with where it stands.
struct Node {
    const json& value;
    std::string pointer;

    [[noreturn]] void Fail(const std::string& message) const {
        throw MappingProblem(pointer, message);
    }
    Node At(const std::string& key) const {
        std::string escaped;
        for (const char c : key)
            escaped += c == '~' ? "~0" : c == '/' ? "~1" : std::string(1, c);
        return {value.at(key), pointer + "/" + escaped};
    }
    Node At(std::size_t index) const {
        return {value.at(index), pointer + "/" + std::to_string(index)};
    }
    bool Has(const std::string& key) const { return value.contains(key); }

    const Node& MustBeObject() const {
        if (!value.is_object()) Fail(std::string("an object is expected, not ") + Kind());
        return *this;
    }
    const Node& MustBeArray() const {
        if (!value.is_array()) Fail(std::string("a list is expected, not ") + Kind());
        return *this;
    }
    std::string Text() const {
        if (!value.is_string()) Fail(std::string("a text is expected, not ") + Kind());
        return value.get<std::string>();
    }
    std::string FilledText() const {
        std::string text = Text();
        if (text.empty()) Fail("the text must not be empty");
        return text;
    }
    const char* Kind() const {
        if (value.is_object()) return "an object";
        if (value.is_array()) return "a list";
        if (value.is_string()) return "a text";
        if (value.is_boolean()) return "true or false";
        if (value.is_number()) return "a number";
        return "null";
    }
};

std::string Joined(const std::vector<std::string>& names) {
    std::string out;
    for (const std::string& name : names)
        out += (out.empty() ? "" : ", ") + name;
    return out;
}

// "comment" is welcome everywhere.
void AllowKeys(const Node& object, const std::vector<std::string>& keys) {
    for (const auto& [key, unused] : object.MustBeObject().value.items()) {
        if (key == "comment" || std::find(keys.begin(), keys.end(), key) != keys.end()) continue;
        object.At(key).Fail("unknown key; known here are: " + Joined(keys));
    }
}

using Lists = std::map<std::string, std::vector<std::string>, std::less<>>;

// Named lists of patterns, with those that they refer to put in their place.
class ListReader {
  public:
    explicit ListReader(const Node& root) : root_(root) {}

    Lists ReadAll() {
        if (!root_.Has("lists")) return {};
        const Node lists = root_.At("lists");
        for (const auto& [name, unused] : lists.MustBeObject().value.items()) {
            if (name != "comment") Expand(lists, name);
        }
        return std::move(done_);
    }

  private:
    const std::vector<std::string>& Expand(const Node& lists, const std::string& name) {
        const auto found = done_.find(name);
        if (found != done_.end()) return found->second;
        const Node list = lists.At(name);
        if (std::find(open_.begin(), open_.end(), name) != open_.end()) {
            list.Fail("the list refers to itself");
        }
        open_.push_back(name);
        std::vector<std::string> patterns;
        for (std::size_t i = 0; i < list.MustBeArray().value.size(); ++i) {
            AppendItem(lists, list.At(i), patterns);
        }
        open_.pop_back();
        return done_[name] = std::move(patterns);
    }

    void AppendItem(const Node& lists, const Node& item, std::vector<std::string>& patterns) {
        std::string pattern = item.Text();
        if (!pattern.starts_with('@')) {
            patterns.push_back(std::move(pattern));
            return;
        }
        const std::string name = pattern.substr(1);
        if (name == "comment" || !lists.Has(name)) item.Fail("there is no list \"" + name + "\"");
        const auto& others = Expand(lists, name);
        patterns.insert(patterns.end(), others.begin(), others.end());
    }

    const Node& root_;
    Lists done_;
    std::vector<std::string> open_;
};

TextPattern CompilePattern(const Node& place, std::string_view pattern) {
    std::string reason;
    auto compiled = TextPattern::Parse(pattern, reason);
    if (!compiled) place.Fail("\"" + std::string(pattern) + "\" is " + reason);
    return *compiled;
}

class RuleReader {
  public:
    RuleReader(const Node& root, Lists lists) : root_(root), lists_(std::move(lists)) {}

    std::vector<Rule> ReadAll() const {
        if (!root_.Has("rules")) root_.Fail("the key \"rules\" is missing");
        const Node list = root_.At("rules");
        std::vector<Rule> rules;
        for (std::size_t i = 0; i < list.MustBeArray().value.size(); ++i) {
            rules.push_back(ReadRule(list.At(i)));
        }
        return rules;
    }

  private:
    Rule ReadRule(const Node& node) const {
        AllowKeys(node,
                  {"name", "when", "unless", "category", "likeAssembly", "leaveOut", "treatAs"});
        Rule rule;
        rule.name = node.Has("name") ? node.At("name").FilledText() : node.pointer;
        if (!node.Has("when")) node.Fail("the key \"when\" is missing");
        rule.when = ReadConditions(node.At("when"));
        if (node.Has("unless")) rule.unless = ReadConditions(node.At("unless"));
        ReadOutcome(node, rule);
        return rule;
    }

    static void ReadOutcome(const Node& node, Rule& rule) {
        int outcomes = 0;
        if (node.Has("category") && ++outcomes == 1) {
            rule.outcome = AssignCategory{ReadCategory(node.At("category"))};
        }
        if (node.Has("likeAssembly") && ++outcomes == 1) {
            const Node flag = node.At("likeAssembly");
            if (flag.value != true) flag.Fail("only true makes sense here");
            rule.outcome = LikeAssembly{};
        }
        if (node.Has("leaveOut") && ++outcomes == 1) {
            rule.outcome = LeaveOut{node.At("leaveOut").FilledText()};
        }
        if (node.Has("treatAs") && ++outcomes == 1) {
            rule.outcome = TreatAs{node.At("treatAs").FilledText()};
        }
        if (outcomes != 1) {
            node.Fail("exactly one of category, likeAssembly, leaveOut and treatAs is needed");
        }
    }

    static KYCOLLISION::MODEL::AttCategory ReadCategory(const Node& node) {
        if (node.MustBeArray().value.size() != 3) {
            node.Fail("three names are expected: specialty, major category, minor category");
        }
        KYCOLLISION::MODEL::AttCategory category;
        category.specialty = CategoryName(node.At(0));
        category.dalei = CategoryName(node.At(1));
        category.xiaolei = CategoryName(node.At(2));
        return category;
    }

    static std::wstring CategoryName(const Node& node) {
        const std::string name = node.FilledText();
        // Category paths join the three names with slashes and are split at them again.
        if (name.find('/') != std::string::npos) node.Fail("a name must not contain \"/\"");
        return FromUtf8(name);
    }

    Conditions ReadConditions(const Node& node) const {
        Conditions conditions;
        for (const auto& [key, unused] : node.MustBeObject().value.items()) {
            if (key == "comment") continue;
            if (key == "property") {
                ReadProperties(node.At(key), conditions);
            } else {
                conditions.texts.push_back(ReadTextCondition(node.At(key), key));
            }
        }
        if (conditions.IsEmpty()) node.Fail("at least one condition is needed");
        return conditions;
    }

    TextCondition ReadTextCondition(const Node& node, std::string_view fields) const {
        TextCondition condition;
        while (!fields.empty()) {
            const std::size_t end = std::min(fields.find('|'), fields.size());
            condition.fields.set(FieldIndex(node, fields.substr(0, end)));
            fields.remove_prefix(std::min(end + 1, fields.size()));
        }
        condition.patterns = ReadPatterns(node);
        return condition;
    }

    static std::size_t FieldIndex(const Node& node, std::string_view name) {
        const auto* found = std::find(kFieldNames.begin(), kFieldNames.end(), name);
        if (found == kFieldNames.end()) {
            const std::vector<std::string> known(kFieldNames.begin(), kFieldNames.end());
            node.Fail("\"" + std::string(name) + "\" is no condition; known are: " + Joined(known) +
                      ", property");
        }
        return static_cast<std::size_t>(found - kFieldNames.begin());
    }

    std::vector<TextPattern> ReadPatterns(const Node& node) const {
        std::vector<TextPattern> patterns;
        if (node.value.is_string()) {
            AppendPatterns(node, patterns);
        } else if (node.value.is_array()) {
            for (std::size_t i = 0; i < node.value.size(); ++i) {
                AppendPatterns(node.At(i), patterns);
            }
            if (patterns.empty()) node.Fail("the list must not be empty");
        } else {
            node.Fail(std::string("a text or a list of texts is expected, not ") + node.Kind());
        }
        return patterns;
    }

    void AppendPatterns(const Node& node, std::vector<TextPattern>& patterns) const {
        const std::string text = node.Text();
        if (!text.starts_with('@')) {
            patterns.push_back(CompilePattern(node, text));
            return;
        }
        const auto list = lists_.find(text.substr(1));
        if (list == lists_.end()) node.Fail("there is no list \"" + text.substr(1) + "\"");
        for (const std::string& pattern : list->second) {
            patterns.push_back(CompilePattern(node, pattern));
        }
    }

    void ReadProperties(const Node& node, Conditions& conditions) const {
        for (const auto& [key, unused] : node.MustBeObject().value.items()) {
            if (key == "comment") continue;
            conditions.properties.push_back(ReadProperty(node.At(key), key));
        }
    }

    PropertyCondition ReadProperty(const Node& node, const std::string& key) const {
        const std::size_t dot = key.find('.');
        if (dot == std::string::npos || dot == 0 || dot + 1 == key.size()) {
            node.Fail("a property is named as \"set.name\"; \"*.name\" means any set");
        }
        PropertyCondition condition{CompilePattern(node, key.substr(0, dot)),
                                    CompilePattern(node, key.substr(dot + 1)),
                                    {}};
        if (node.value.is_boolean()) {
            condition.value = node.value.get<bool>();
        } else if (node.value.is_number()) {
            const auto number = node.value.get<double>();
            const double slack = std::abs(number) * kNumberSlack;
            condition.value = NumberRange{number - slack, number + slack};
        } else if (node.value.is_object()) {
            condition.value = ReadRange(node);
        } else {
            condition.value = ReadPatterns(node);
        }
        return condition;
    }

    static NumberRange ReadRange(const Node& node) {
        AllowKeys(node, {"min", "max"});
        NumberRange range;
        for (const auto& [key, bound] : {std::pair{"min", &range.min}, {"max", &range.max}}) {
            if (!node.Has(key)) continue;
            const Node number = node.At(std::string(key));
            if (!number.value.is_number()) number.Fail("a number is expected");
            *bound = number.value.get<double>();
        }
        if (!node.Has("min") && !node.Has("max")) node.Fail("min or max is needed");
        if (range.min > range.max) node.Fail("min is above max");
        return range;
    }

    const Node& root_;
    Lists lists_;
};

json ParseJson(std::string_view text) {
    bool tooDeep = false;
    const auto watchDepth = [&tooDeep](int depth, json::parse_event_t, const json&) {
        tooDeep = tooDeep || depth > kMaxDepth;
        return !tooDeep;
    };
    json root = json::parse(text, watchDepth);
    if (tooDeep) throw MappingProblem("", "the values are nested too deep");
    return root;
}

RuleSet ReadRoot(const Node& root) {
    AllowKeys(root, {"version", "name", "lists", "rules"});
    if (!root.Has("version")) root.Fail("the key \"version\" is missing");
    if (root.At("version").value != kFormatVersion) {
        root.At("version").Fail("only version " + std::to_string(kFormatVersion) + " is known");
    }
    RuleSet set;
    if (root.Has("name")) set.name = root.At("name").Text();
    set.rules = RuleReader(root, ListReader(root).ReadAll()).ReadAll();
    return set;
}

std::size_t LineOfByte(std::string_view text, std::size_t byte) {
    const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(byte, text.size()));
    return 1 + static_cast<std::size_t>(std::count(text.begin(), end, '\n'));
}

RuleSet ReadOrThrow(std::string_view text) {
    const json root = ParseJson(text);
    const JsonPlaces places(text);
    if (!places.RepeatedKey().empty()) {
        throw MappingProblem(places.RepeatedKey(), "the key is given twice");
    }
    return ReadRoot(Node{root, ""});
}

// The parser's message without its own prefix and place, which would only repeat ours.
std::string ParserReason(const json::parse_error& problem) {
    const std::string what = problem.what();
    const std::size_t colon = what.find(": ", what.find("column"));
    return "not valid JSON: " + (colon == std::string::npos ? what : what.substr(colon + 2));
}

}  // namespace

std::optional<RuleSet> ReadRules(std::string_view text, std::string_view file,
                                 MappingError& error) {
    try {
        return ReadOrThrow(text);
    } catch (const json::parse_error& problem) {
        const std::size_t line = LineOfByte(text, problem.byte == 0 ? 0 : problem.byte - 1);
        error = {std::string(file), "", line, ParserReason(problem)};
    } catch (const MappingProblem& problem) {
        const bool walkable = !problem.Pointer().empty();
        const std::size_t line = walkable ? JsonPlaces(text).Line(problem.Pointer()) : 0;
        error = {std::string(file), problem.Pointer(), line, problem.what()};
    }
    return std::nullopt;
}

}  // namespace ifchost::mapping
