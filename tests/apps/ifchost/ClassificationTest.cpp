// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "ifchost/Classification.h"
#include "ifchost/HostText.h"

namespace ifchost {
namespace {

Classification Mapping(std::string_view rules, std::string_view lists = "{}") {
    MappingError error;
    const std::string text = R"({"version": 1, "lists": )" + std::string(lists) + R"(, "rules": )" +
                             std::string(rules) + "}";
    auto mapping = Classification::Parse(text, "test.json", error);
    EXPECT_TRUE(mapping) << error.Text();
    return mapping ? std::move(*mapping) : Classification::Default();
}

// The message for a mapping that must be refused.
std::string Refusal(std::string_view text) {
    MappingError error;
    EXPECT_FALSE(Classification::Parse(text, "bad.json", error));
    return error.Text();
}

std::string RefusalOfRule(std::string_view rule) {
    return Refusal("{\"version\": 1,\n\"rules\": [\n" + std::string(rule) + "\n]}");
}

ProductFacts Facts(std::string ifcClass) {
    ProductFacts facts;
    facts.classes = {std::move(ifcClass)};
    return facts;
}

std::string Path(const MappingResult& result) {
    const auto& c = result.category;
    return ToUtf8(c.specialty + L"/" + c.dalei + L"/" + c.xiaolei);
}

std::string Path(const Classification& mapping, const ProductFacts& facts) {
    const MappingResult result = mapping.Classify(facts);
    switch (result.outcome) {
        case MappingOutcome::Unmapped:
            return "unmapped";
        case MappingOutcome::LikeAssembly:
            return "like assembly";
        case MappingOutcome::LeftOut:
            return "left out: " + result.reason;
        case MappingOutcome::Category:
            return Path(result);
    }
    return "";
}

SceneProperty Flag(std::string_view set, std::string_view name, bool value) {
    return {set, name, value ? "TRUE" : "FALSE", PropertyKind::Boolean, value ? 1.0 : 0.0};
}

TEST(Classification, TakesTheFirstRuleThatMatches) {
    const auto mapping = Mapping(R"([
        {"when": {"class": "IfcWall", "name": "a*"}, "category": ["s", "d", "first"]},
        {"when": {"class": "IfcWall"}, "category": ["s", "d", "second"]},
        {"when": {"class": "IfcWall"}, "category": ["s", "d", "third"]}])");
    ProductFacts wall = Facts("IfcWall");
    EXPECT_EQ(Path(mapping, wall), "s/d/second");
    wall.name = "Abc";
    EXPECT_EQ(Path(mapping, wall), "s/d/first");
    EXPECT_EQ(mapping.Classify(wall).rule, 0);
    EXPECT_EQ(Path(mapping, Facts("IfcSlab")), "unmapped");
    EXPECT_EQ(mapping.Classify(Facts("IfcSlab")).rule, kNoIndex);
}

TEST(Classification, MatchesSupertypesOfAClass) {
    const auto mapping = Mapping(R"([
        {"when": {"class": "IfcFlowSegment"}, "category": ["s", "d", "run"]},
        {"when": {"class": "IfcBuildingElement"}, "category": ["s", "d", "building"]}])");
    EXPECT_EQ(Path(mapping, Facts("IfcDuctSegment")), "s/d/run");
    EXPECT_EQ(Path(mapping, Facts("IfcWallStandardCase")), "s/d/building");
    EXPECT_EQ(Path(mapping, Facts("IfcDuctFitting")), "unmapped");
}

TEST(Classification, MatchesClassesByWildcardAndList) {
    const auto mapping = Mapping(R"([
        {"when": {"class": ["IfcCable*Segment", "ifcpump"]}, "category": ["s", "d", "x"]}])");
    EXPECT_EQ(Path(mapping, Facts("IfcCableCarrierSegment")), "s/d/x");
    EXPECT_EQ(Path(mapping, Facts("IfcPump")), "s/d/x");
    EXPECT_EQ(Path(mapping, Facts("IfcPipeSegment")), "unmapped");
}

TEST(Classification, TakesTheClassOfTheTypeObjectToo) {
    const auto mapping =
        Mapping(R"([{"when": {"class": "IfcDuctSegment"}, "category": ["s", "d", "duct"]}])");
    ProductFacts segment = Facts("IfcFlowSegment");
    EXPECT_EQ(Path(mapping, segment), "unmapped");
    segment.classes.emplace_back("IfcDuctSegment");
    EXPECT_EQ(Path(mapping, segment), "s/d/duct");
}

TEST(Classification, NeedsEveryConditionOfARule) {
    const auto mapping = Mapping(R"([{"when": {"class": "IfcPipeSegment", "system": "Cold*",
        "material": "Copper"}, "category": ["s", "d", "x"]}])");
    ProductFacts pipe = Facts("IfcPipeSegment");
    pipe.systems = {"Ring", "cold water"};
    EXPECT_EQ(Path(mapping, pipe), "unmapped");
    pipe.materials = {"COPPER"};
    EXPECT_EQ(Path(mapping, pipe), "s/d/x");
}

TEST(Classification, LooksAtEveryFieldThatAConditionJoins) {
    const auto mapping =
        Mapping(R"([{"when": {"name|typeName|storey": "x"}, "category": ["s", "d", "x"]}])");
    ProductFacts facts = Facts("IfcWall");
    facts.objectType = "x";
    EXPECT_EQ(Path(mapping, facts), "unmapped");
    facts.storey = "X";
    EXPECT_EQ(Path(mapping, facts), "s/d/x");
}

TEST(Classification, SkipsARuleWhoseExceptionHolds) {
    const auto mapping = Mapping(R"([{"when": {"class": "IfcWall"},
        "unless": {"name": "x*", "storey": "1"}, "category": ["s", "d", "x"]}])");
    ProductFacts wall = Facts("IfcWall");
    wall.name = "xy";
    EXPECT_EQ(Path(mapping, wall), "s/d/x");
    wall.storey = "1";
    EXPECT_EQ(Path(mapping, wall), "unmapped");
}

TEST(Classification, CountsAFieldWithoutTextsAsEmptyText) {
    const auto mapping = Mapping(R"([{"when": {"system": ""}, "category": ["s", "d", "none"]},
        {"when": {"system": "*"}, "category": ["s", "d", "some"]}])");
    ProductFacts pipe = Facts("IfcPipeSegment");
    EXPECT_EQ(Path(mapping, pipe), "s/d/none");
    pipe.systems = {"A"};
    EXPECT_EQ(Path(mapping, pipe), "s/d/some");
}

TEST(Classification, MatchesRegularExpressionsAnywhereAndWithoutCase) {
    const auto mapping =
        Mapping(R"([{"when": {"name": "/\\bSA\\b/"}, "category": ["s", "d", "x"]}])");
    ProductFacts duct = Facts("IfcDuctSegment");
    duct.name = "duct sa 200";
    EXPECT_EQ(Path(mapping, duct), "s/d/x");
    duct.name = "SAND";
    EXPECT_EQ(Path(mapping, duct), "unmapped");
}

TEST(Classification, MatchesOneCharacterOfAnyScriptByQuestionMark) {
    const auto mapping = Mapping(R"([{"when": {"name": "a?b"}, "category": ["s", "d", "x"]}])");
    ProductFacts facts = Facts("IfcWall");
    facts.name =
        "a\xE5\xA2\x99"
        "b";
    EXPECT_EQ(Path(mapping, facts), "s/d/x");
    facts.name = "ab";
    EXPECT_EQ(Path(mapping, facts), "unmapped");
}

TEST(Classification, ReadsPropertiesAsFlagNumberRangeAndText) {
    const auto mapping = Mapping(R"([
        {"when": {"property": {"Pset_WallCommon.IsExternal": true}}, "category": ["s", "d", "ext"]},
        {"when": {"property": {"*.Width": {"min": 100, "max": 200}}}, "category": ["s", "d", "w"]},
        {"when": {"property": {"*.Count": 3}}, "category": ["s", "d", "three"]},
        {"when": {"property": {"My*.Fire": ["F30*", "F60*"]}}, "category": ["s", "d", "fire"]}])");
    ProductFacts facts = Facts("IfcWall");
    facts.properties = {Flag("Pset_WallCommon", "IsExternal", false)};
    EXPECT_EQ(Path(mapping, facts), "unmapped");
    facts.properties = {Flag("Other", "IsExternal", true)};
    EXPECT_EQ(Path(mapping, facts), "unmapped");
    facts.properties = {Flag("Pset_WallCommon", "IsExternal", true)};
    EXPECT_EQ(Path(mapping, facts), "s/d/ext");
    facts.properties = {{"Q", "Width", "0.2", PropertyKind::Length, 200.0}};
    EXPECT_EQ(Path(mapping, facts), "s/d/w");
    facts.properties = {{"Q", "Width", "0.3", PropertyKind::Length, 200.5}};
    EXPECT_EQ(Path(mapping, facts), "unmapped");
    facts.properties = {{"Q", "Count", "3", PropertyKind::Number, 3.0}};
    EXPECT_EQ(Path(mapping, facts), "s/d/three");
    facts.properties = {{"MySet", "Fire", "f60-A", PropertyKind::Text, 0.0}};
    EXPECT_EQ(Path(mapping, facts), "s/d/fire");
}

TEST(Classification, ReadsNoNumberFromATextProperty) {
    const auto mapping =
        Mapping(R"([{"when": {"property": {"*.N": 0}}, "category": ["s", "d", "x"]}])");
    ProductFacts facts = Facts("IfcWall");
    facts.properties = {{"Q", "N", "zero", PropertyKind::Text, 0.0}};
    EXPECT_EQ(Path(mapping, facts), "unmapped");
}

TEST(Classification, ExpandsNamedListsWithinLists) {
    const auto mapping =
        Mapping(R"([{"when": {"name": ["q", "@all"]}, "category": ["s","d","x"]}])",
                R"({"all": ["a", "@more"], "more": ["b*"]})");
    for (const char* name : {"a", "bcd", "q"}) {
        ProductFacts facts = Facts("IfcWall");
        facts.name = name;
        EXPECT_EQ(Path(mapping, facts), "s/d/x") << name;
    }
    EXPECT_EQ(Path(mapping, Facts("IfcWall")), "unmapped");
}

TEST(Classification, GoesOnWithAnotherClassAfterTreatAs) {
    const auto mapping = Mapping(R"([
        {"when": {"class": "IfcDuctSegment"}, "category": ["s", "d", "before"]},
        {"when": {"class": "IfcBuildingElementProxy", "name": "*duct*"}, "treatAs": "IfcDuctSegment"},
        {"when": {"class": "IfcFlowSegment"}, "category": ["s", "d", "after"]}])");
    ProductFacts proxy = Facts("IfcBuildingElementProxy");
    EXPECT_EQ(Path(mapping, proxy), "unmapped");
    proxy.name = "Duct 12";
    EXPECT_EQ(Path(mapping, proxy), "s/d/after");
}

TEST(Classification, FollowsTheAssemblyOnlyWhereThereIsOne) {
    const auto mapping = Mapping(R"([
        {"when": {"class": "IfcBuildingElementPart"}, "likeAssembly": true},
        {"when": {"class": "IfcBuildingElementPart"}, "category": ["s", "d", "alone"]}])");
    ProductFacts part = Facts("IfcBuildingElementPart");
    EXPECT_EQ(Path(mapping, part), "s/d/alone");
    part.assemblies = {"IfcWall"};
    EXPECT_EQ(Path(mapping, part), "like assembly");
}

TEST(Classification, TellsWhyARuleLeavesAProductOut) {
    const auto mapping = Mapping(R"([{"when": {"class": "IfcSite"}, "leaveOut": "the ground"}])");
    EXPECT_EQ(Path(mapping, Facts("IfcSite")), "left out: the ground");
}

TEST(Classification, GivesUpOnAnExpressionThatBacktracksWithoutEnd) {
    const auto mapping =
        Mapping(R"([{"when": {"name": "/^(a|aa)+$/"}, "category": ["s", "d", "x"]}])");
    ProductFacts facts = Facts("IfcWall");
    facts.name = std::string(2000, 'a') + "b";
    EXPECT_THROW(mapping.Classify(facts), std::runtime_error);
}

TEST(Classification, NamesRulesByTheirPlaceWhereTheyHaveNoName) {
    const auto mapping = Mapping(R"([
        {"name": "Walls", "when": {"class": "IfcWall"}, "category": ["s", "d", "x"]},
        {"when": {"class": "IfcSlab"}, "category": ["s", "d", "x"]}])");
    ASSERT_EQ(mapping.RuleCount(), 2U);
    EXPECT_EQ(mapping.RuleName(0), "Walls");
    EXPECT_EQ(mapping.RuleName(1), "/rules/1");
    EXPECT_EQ(mapping.Categories().size(), 1U);
}

TEST(Classification, TellsFileLineAndPlaceOfAnError) {
    EXPECT_EQ(RefusalOfRule(R"({"when": {"class": 3}, "category": ["a", "b", "c"]})"),
              "bad.json:3: /rules/0/when/class: a text or a list of texts is expected, not a "
              "number");
    EXPECT_EQ(Refusal("{\"version\": 1,\n\n\"rulez\": []}").substr(0, 33),
              "bad.json:3: /rulez: unknown key; ");
    EXPECT_EQ(Refusal("{\n\"version\": 1,\n]").substr(0, 29), "bad.json:3: not valid JSON: s");
}

TEST(Classification, RefusesWhatIsNoMapping) {
    EXPECT_NE(Refusal(""), "");
    EXPECT_NE(Refusal("[]").find("an object is expected"), std::string::npos);
    EXPECT_NE(Refusal("{}").find("\"version\" is missing"), std::string::npos);
    EXPECT_NE(Refusal(R"({"version": 2, "rules": []})").find("/version"), std::string::npos);
    EXPECT_NE(Refusal(R"({"version": 1})").find("\"rules\" is missing"), std::string::npos);
    EXPECT_NE(Refusal(R"({"version": 1, "rules": {}})").find("/rules"), std::string::npos);
    EXPECT_NE(Refusal("{\"version\": 1, \"rules\": [\"\xFF\"]}").find("not valid JSON"),
              std::string::npos);
    EXPECT_NE(Refusal(std::string(100000, '[')).find("bad.json"), std::string::npos);
    const std::string deep = std::string(100000, '[') + std::string(100000, ']');
    EXPECT_NE(Refusal(deep).find("nested too deep"), std::string::npos);
}

TEST(Classification, RefusesAKeyGivenTwice) {
    EXPECT_EQ(RefusalOfRule("{\"when\": {\"class\": \"a\",\n\"class\": \"b\"}, "
                            "\"category\": [\"a\", \"b\", \"c\"]}"),
              "bad.json:3: /rules/0/when/class: the key is given twice");
}

TEST(Classification, RefusesRulesThatCannotWork) {
    const auto fails = [](std::string_view rule, std::string_view reason) {
        const std::string message = RefusalOfRule(rule);
        EXPECT_NE(message.find(reason), std::string::npos) << message;
    };
    fails(R"({"category": ["a", "b", "c"]})", "\"when\" is missing");
    fails(R"({"when": {}, "category": ["a", "b", "c"]})", "at least one condition");
    fails(R"({"when": {"class": []}, "category": ["a", "b", "c"]})", "must not be empty");
    fails(R"({"when": {"klass": "x"}, "category": ["a", "b", "c"]})", "\"klass\" is no condition");
    fails(R"({"when": {"name|": "x"}})", "exactly one of");
    fails(R"({"when": {"name|nme": "x"}, "category": ["a", "b", "c"]})", "\"nme\" is no condition");
    fails(R"({"when": {"class": "x"}})", "exactly one of");
    fails(R"({"when": {"class": "x"}, "leaveOut": "r", "treatAs": "y"})", "exactly one of");
    fails(R"({"when": {"class": "x"}, "likeAssembly": false})", "only true");
    fails(R"({"when": {"class": "x"}, "leaveOut": ""})", "must not be empty");
    fails(R"({"when": {"class": "x"}, "category": ["a", "b"]})", "three names");
    fails(R"({"when": {"class": "x"}, "category": ["a", "b", ""]})", "must not be empty");
    fails(R"({"when": {"class": "x"}, "category": ["a", "b/c", "d"]})", "must not contain");
    fails(R"({"when": {"class": "/(/"}, "category": ["a", "b", "c"]})", "not a regular expression");
    fails(R"({"when": {"class": "@none"}, "category": ["a", "b", "c"]})", "no list \"none\"");
    fails(R"({"when": {"property": {"Width": 1}}, "category": ["a", "b", "c"]})", "set.name");
    fails(R"({"when": {"property": {"a.b": {}}}, "category": ["a", "b", "c"]})", "min or max");
    fails(R"({"when": {"property": {"a.b": {"min": 2, "max": 1}}}, "leaveOut": "x"})", "above max");
    fails(R"({"when": {"property": {"a.b": null}}, "leaveOut": "x"})", "not null");
}

TEST(Classification, RefusesListsThatReferToThemselves) {
    const std::string message =
        Refusal(R"({"version": 1, "lists": {"a": ["@b"], "b": ["@a"]}, "rules": []})");
    EXPECT_NE(message.find("refers to itself"), std::string::npos) << message;
}

TEST(Classification, NamesTheFileThatCannotBeRead) {
    MappingError error;
    EXPECT_FALSE(Classification::Load("/no/such/mapping.json", error));
    EXPECT_EQ(error.Text(), "/no/such/mapping.json: the file cannot be read");
    EXPECT_FALSE(Classification::Load("/", error));
}

}  // namespace
}  // namespace ifchost
