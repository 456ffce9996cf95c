// SPDX-License-Identifier: Apache-2.0
// The command as a user runs it: options, exit codes, what it prints and what it leaves behind.
#include <algorithm>
#include <array>
#include <map>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <signal.h>

#include "CommandRunner.h"
#include "kyclash/CheckCommand.h"
#include "support/StopFlag.h"

namespace kyclash {
namespace {

using testing::CommandOutcome;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using testing::ReadAll;
using testing::RunCommand;
using testing::RunShell;
using testing::SourcePath;
using testing::TemporaryFolder;
using testing::WhyNoConversion;
using Json = nlohmann::json;
namespace fs = std::filesystem;

std::string ReplaceOnce(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST(Command, SaysHowItIsUsed) {
    EXPECT_EQ(RunCommand({"--help"}).exitCode, 0);
    EXPECT_EQ(RunCommand({"--version"}).out, std::string(KYCLASH_VERSION) + "\n");
    EXPECT_EQ(RunCommand({}).exitCode, 2);
    EXPECT_EQ(RunCommand({"check"}).exitCode, 2);
    EXPECT_EQ(RunCommand({"rules"}).exitCode, 2);
    EXPECT_EQ(RunCommand({"diff", "one.xml"}).exitCode, 2);
    EXPECT_EQ(RunCommand({"check", "a.ifc", "--unknown"}).exitCode, 2);
}

TEST(Command, NamesTheCommandsWhenThereIsNoneOfThatName) {
    EXPECT_THAT(RunCommand({"chekc", "a.ifc"}).errors,
                HasSubstr("kyclash: there is no command \"chekc\"; the commands are: check, rules, "
                          "openings, list, diff\n"));
    EXPECT_THAT(RunCommand({"rules", "print", "a.xml"}).errors,
                HasSubstr("kyclash: there is no command \"print\"; the commands are: init, show, "
                          "validate\n"));
    EXPECT_THAT(RunCommand({"rules"}).errors, HasSubstr("kyclash: a command is missing; "));
    EXPECT_THAT(RunCommand({"check"}).errors, HasSubstr("kyclash: MODEL is required\n"));
}

TEST(Command, FailsWhenTheReportCannotBeWritten) {
    const std::string rules = SourcePath("data/rules/default.xml");
    for (const std::string& arguments :
         {std::string("--help"), "rules show " + rules, "rules validate --json " + rules}) {
        for (const char* stream : {" >/dev/full", " >&-"}) {
            const auto outcome = RunShell(arguments + stream);
            EXPECT_EQ(outcome.exitCode, 1) << arguments << stream;
            EXPECT_THAT(outcome.errors, HasSubstr("kyclash: the report could not be written"));
        }
    }
}

TEST(Command, NamesAFolderThatIsGivenAsAModel) {
    const TemporaryFolder folder;
    const auto outcome = RunCommand({"check", folder.Path().string()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr(folder.Path().string() + ": is a folder"));
}

TEST(Command, FindsOutBeforeTheRunWhereItCannotWrite) {
    const TemporaryFolder folder;
    const auto file = folder.Write("file", "text");
    const auto outcome = RunCommand({"check", "no-such-model.ifc", "--out", file.string()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr(file.string() + ": is no folder"));
    EXPECT_THAT(outcome.errors, Not(HasSubstr("no-such-model.ifc")));
}

TEST(Command, NamesAModelThatIsNotThere) {
    for (const char* command : {"check", "list", "openings"}) {
        const auto outcome = RunCommand({command, "no-such-model.ifc"});
        EXPECT_EQ(outcome.exitCode, 1) << command;
        EXPECT_THAT(outcome.errors, HasSubstr("no-such-model.ifc")) << command;
    }
}

TEST(Command, EndsWithItsOwnCodeWhenItIsInterruptedWhileItReads) {
    // A reader that says when it runs and then does nothing.
    const TemporaryFolder folder;
    const fs::path started = folder.Path() / "started";
    const fs::path reader =
        folder.Write("reader", "#!/bin/sh\n: >'" + started.string() + "'\nexec sleep 600\n");
    fs::permissions(reader, fs::perms::owner_all);
    const std::string errors = (folder.Path() / "errors").string();
    namespace bp = boost::process;
    bp::environment environment = boost::this_process::environment();
    environment["KYCLASH_NODE"] = reader.string();
    bp::child command(bp::exe = KYCLASH_PROGRAM,
                      bp::args = {"check", SourcePath("samples/building.ifc"), "--cache-dir",
                                  (folder.Path() / "cache").string()},
                      environment, bp::std_in<bp::null, bp::std_out> bp::null,
                      bp::std_err > errors);
    while (!fs::exists(started) && command.running())
        std::this_thread::yield();
    ASSERT_EQ(::kill(command.id(), SIGINT), 0);
    command.wait();
    EXPECT_EQ(command.exit_code(), 130);
    EXPECT_THAT(ReadAll(errors), HasSubstr("building.ifc: cancelled\n"));
}

TEST(RulesCommand, WritesTheDefaultRulesOnce) {
    const TemporaryFolder folder;
    const std::string file = (folder.Path() / "rules.xml").string();
    EXPECT_EQ(RunCommand({"rules", "init", file}).exitCode, 0);
    EXPECT_EQ(ReadAll(file), ReadAll(SourcePath("data/rules/default.xml")));
    EXPECT_EQ(RunCommand({"rules", "validate", file}).exitCode, 0);
    const auto again = RunCommand({"rules", "init", file});
    EXPECT_EQ(again.exitCode, 2);
    EXPECT_THAT(again.errors, HasSubstr("exists already"));
    EXPECT_EQ(RunCommand({"rules", "init", (folder.Path() / "no/rules.xml").string()}).exitCode, 1);
}

TEST(RulesCommand, NamesTheFileThatCannotBeWritten) {
    const auto outcome = RunCommand({"rules", "init", "/dev/full/rules.xml"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("/dev/full/rules.xml: could not be written"));
}

TEST(RulesCommand, NamesWhatMatchesNoKind) {
    const TemporaryFolder folder;
    const auto file = folder.Write("rules.xml", R"(<CollisionRule><Specialty name="土建">
        <RuleItem gjtype="土建/墙/木墙" isvalid="true"/></Specialty></CollisionRule>)");
    const auto outcome = RunCommand({"rules", "validate", file.string()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.out, HasSubstr("/CollisionRule/Specialty[1]/RuleItem[1]: "
                                       "gjtype=\"土建/墙/木墙\" matches no kind"));
    const auto json = Json::parse(RunCommand({"rules", "validate", file.string(), "--json"}).out);
    EXPECT_EQ(json["usable"], true);
    EXPECT_EQ(json["remarks"].size(), 1U);
}

TEST(SystemRoot, MustHoldItsFiles) {
    const TemporaryFolder folder;
    const auto rules = SourcePath("data/rules/default.xml");
    const auto outcome =
        RunCommand({"rules", "show", rules, "--system-root", folder.Path().string()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr(folder.Path().string()));
    EXPECT_THAT(outcome.errors, HasSubstr("CollisionData/TypePriorityMap.xml"));
}

TEST(SystemRoot, MakesTheCategoriesThatRulesAreComparedWith) {
    const TemporaryFolder folder;
    folder.Write("config/system/productsort.xml",
                 R"(<root><zhuanye name="木"><dalei name="墙"><xiaolei name="木墙"/></dalei>
                 </zhuanye></root>)");
    folder.Write("CollisionData/TypePriorityMap.xml", "<p/>");
    const auto rules = folder.Write("rules.xml", R"(<CollisionRule><Specialty name="木">
        <RuleItem gjtype="木/墙/木墙" isvalid="true"/></Specialty></CollisionRule>)");
    const std::string root = folder.Path().string();
    EXPECT_EQ(RunCommand({"rules", "validate", rules.string(), "--system-root", root}).exitCode, 0);
    EXPECT_EQ(RunCommand({"rules", "validate", rules.string()}).exitCode, 1);
}

// What a run over the sample building needs.
class CheckCommand : public ::testing::Test {
  protected:
    void SetUp() override {
        if (const std::string why = WhyNoConversion(); !why.empty()) GTEST_SKIP() << why;
    }

    std::string Out(const std::string& name = "") const { return (folder_.Path() / name).string(); }
    std::string Text(const std::string& name) const { return ReadAll(folder_.Path() / name); }

    CommandOutcome Check(std::vector<std::string> more) const {
        std::vector<std::string> arguments = {"check", SourcePath("samples/building.ifc"),
                                              "--quiet"};
        std::move(more.begin(), more.end(), std::back_inserter(arguments));
        return RunCommand(arguments);
    }

    // A run with JSON output that must succeed.
    Json CheckJson(std::vector<std::string> more) const {
        more.emplace_back("--json");
        const auto outcome = Check(std::move(more));
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        return Json::parse(outcome.out);
    }

    TemporaryFolder folder_;
};

TEST_F(CheckCommand, SaysWhatItUsedAndCountsKindPairs) {
    const auto outcome = Check({});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, HasSubstr("kyclash " KYCLASH_VERSION));
    EXPECT_THAT(outcome.out, HasSubstr("default.xml (sha256 "));
    EXPECT_THAT(outcome.out, HasSubstr("modes: clearance for 33 kinds, tolerance 5 mm for 148"));
    EXPECT_THAT(outcome.out, HasSubstr("building.ifc (sha256 "));
    EXPECT_THAT(outcome.out, HasSubstr("  1  土建/梁/框架梁 x 暖通/风管/回风管\n"));
    EXPECT_THAT(outcome.out, HasSubstr("axes 3(+0mm) / C(+2200mm)"));
    EXPECT_THAT(outcome.out, HasSubstr("rules matched no component: "));
}

TEST_F(CheckCommand, SaysWhenAFileIsGivenTwice) {
    const std::string twin = folder_.Write("twin.ifc", ReadAll(SourcePath("samples/building.ifc")));
    const Json report = CheckJson({twin, "--rules", "built-in"});
    ASSERT_EQ(report["warnings"].size(), 1U);
    EXPECT_THAT(report["warnings"][0].get<std::string>(),
                HasSubstr("twin.ifc has the same content as "));
    EXPECT_THAT(report["models"][1]["warnings"].dump(),
                HasSubstr("have the GlobalId of a component of an earlier file"));
}

TEST_F(CheckCommand, FindsTheTwinsOfComponentsThatAreThereTwice) {
    const std::string twin = folder_.Write("twin.ifc", ReadAll(SourcePath("samples/building.ifc")));
    const auto rules = folder_.Write("columns.xml", R"(<CollisionRule><Specialty name="土建">
        <RuleItem gjtype="土建/柱/砼柱" isvalid="true"><Mode type="2">5</Mode></RuleItem>
        </Specialty></CollisionRule>)");
    const Json report = CheckJson({twin, "--rules", rules.string()});
    int clashes = 0;
    for (const Json& floor : report["floors"]) {
        for (const Json& clash : floor["clashes"]) {
            EXPECT_EQ(clash["main"]["guid"], clash["second"]["guid"]);
            EXPECT_NE(clash["main"]["file"], clash["second"]["file"]);
            ++clashes;
        }
    }
    EXPECT_EQ(clashes, 40) << "one for each of the forty columns";
}

TEST_F(CheckCommand, NamesTheFilesOfTheComponentsWhenThereAreSeveral) {
    EXPECT_THAT(Check({}).out, Not(HasSubstr("(building.ifc)")));
    const std::string twin = folder_.Write("twin.ifc", ReadAll(SourcePath("samples/building.ifc")));
    const auto outcome = Check({twin, "--floor", "Roof", "--list"});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_THAT(
        outcome.out,
        HasSubstr(
            "\"Slab Roof\"  2BHDpIvM8aY6eYJ18chhNt  (building.ifc)\n      x "
            "土建/楼梯楼板/梯段  \"Stair F2 flight 2\"  1vwBh9azbtt03Sy3l9E54n  (twin.ifc)\n"));
}

TEST_F(CheckCommand, ReadsModelsWithoutStandardStreams) {
    const auto outcome =
        RunShell("check " + SourcePath("samples/building.ifc") + " --quiet --out " +
                 Out("results") + " --cache-dir " + Out("cache") + " <&- >&-");
    EXPECT_EQ(outcome.exitCode, 1) << "the report went nowhere";
    EXPECT_THAT(outcome.errors, HasSubstr("kyclash: the report could not be written"));
    Check({"--out", Out("proper")});
    for (const char* name : {"results.csv", "openings.csv"}) {
        EXPECT_FALSE(Text(std::string("results/") + name).empty());
    }
    EXPECT_EQ(Text("results/openings.csv"), Text("proper/openings.csv"));
}

TEST_F(CheckCommand, ReportsKindsWithoutARule) {
    const auto rules = folder_.Write("rules.xml", R"(<CollisionRule><Specialty name="暖通">
        <RuleItem gjtype="暖通/风管/送风管" isvalid="true"><Mode type="1"/>
        <Excludes><ExcludeGJ>暖通/风管/送风管</ExcludeGJ></Excludes></RuleItem>
        </Specialty></CollisionRule>)");
    const Json report = CheckJson({"--rules", rules.string()});
    EXPECT_TRUE(report["floors"][0]["clashes"].empty());
    const auto& without = report["rules"]["withoutRule"];
    EXPECT_TRUE(std::any_of(without.begin(), without.end(), [](const Json& kind) {
        return kind["kind"] == "土建/柱/砼柱" && kind["components"] == 40;
    }));
    EXPECT_TRUE(report["rules"]["withoutComponent"].empty());
}

TEST_F(CheckCommand, TakesTheRulesThatNeedNoFile) {
    const Json report = CheckJson({"--rules", "built-in"});
    EXPECT_EQ(report["rules"]["file"], "built-in");
    EXPECT_TRUE(report["rules"]["withoutRule"].empty());
}

TEST_F(CheckCommand, KeepsTheHandlingOverANewRun) {
    CheckJson({"--out", Out("first")});
    fs::copy(Out("first"), Out("second"));
    std::string results = Text("first/results.xml");
    results = ReplaceOnce(results, "dispose=\"0\" remark=\"\"",
                          "dispose=\"2\" remark=\"&lt;ok&gt; &#10;线\"");
    folder_.Write("second/results.xml", results);
    const Json report = CheckJson({"--out", Out("third"), "--previous", Out("second/results.xml")});
    EXPECT_EQ(report["previous"]["counts"]["still open"], 13);
    EXPECT_EQ(report["previous"]["counts"]["new"], 0);
    EXPECT_EQ(report["previous"]["counts"]["gone"], 0);
    EXPECT_THAT(Text("third/results.xml"),
                HasSubstr("dispose=\"2\" remark=\"&lt;ok&gt; &#10;线\""));
    EXPECT_THAT(Text("third/results.csv"), HasSubstr(",2,\"<ok> \n线\","));
    const auto diff = RunCommand({"diff", Out("second/results.xml"), Out("third/results.xml")});
    EXPECT_EQ(diff.exitCode, 0);
    EXPECT_EQ(diff.out, "0 new, 0 gone, 0 changed, 13 the same\n");
}

TEST_F(CheckCommand, FollowsAClashThatGoesAndReturns) {
    const auto ducts = folder_.Write("ducts.xml", R"(<CollisionRule><Specialty name="暖通">
        <RuleItem gjtype="暖通/风管/回风管" isvalid="true"><Mode type="1"/></RuleItem>
        </Specialty><Specialty name="土建"><RuleItem gjtype="土建/梁/框架梁" isvalid="true">
        <Mode type="2">5</Mode></RuleItem></Specialty></CollisionRule>)");
    const auto none = folder_.Write("none.xml", "<CollisionRule/>");
    CheckJson({"--out", Out("a"), "--rules", ducts.string()});
    folder_.Write("a/results.xml",
                  ReplaceOnce(Text("a/results.xml"), "dispose=\"0\"", "dispose=\"7\""));
    const Json gone = CheckJson(
        {"--out", Out("a"), "--rules", none.string(), "--previous", Out("a/results.xml")});
    EXPECT_EQ(gone["previous"]["counts"]["gone"], 1);
    ASSERT_EQ(gone["previous"]["gone"].size(), 1U);
    EXPECT_EQ(gone["previous"]["gone"][0]["second"]["name"], "RA crossing F1");
    EXPECT_EQ(gone["previous"]["gone"][0]["status"], "gone");
    EXPECT_THAT(Text("a/results-gone.csv"), HasSubstr("\r\ngone,F1"));
    EXPECT_THAT(Text("a/results.xml"), Not(HasSubstr("dispose")));
    const Json back = CheckJson(
        {"--out", Out("a"), "--rules", ducts.string(), "--previous", Out("a/results.xml")});
    EXPECT_EQ(back["previous"]["counts"]["returned"], 1);
    EXPECT_EQ(back["previous"]["counts"]["gone"], 0);
    EXPECT_THAT(Text("a/results.xml"), HasSubstr("dispose=\"7\""));
    EXPECT_THAT(Text("a/results.csv"), HasSubstr("\r\nreturned,F1"));
}

TEST_F(CheckCommand, NamesTheClashesOfARemovedComponentAsGone) {
    CheckJson({"--out", Out("a")});
    const std::string building = ReadAll(SourcePath("samples/building.ifc"));
    // Nothing in the file has this GlobalId any more.
    const auto changed = folder_.Write(
        "changed.ifc", ReplaceOnce(building, "06t$4MmyBqjry5leNWiIQ0", "0000000000000000000000"));
    const auto outcome = RunCommand({"check", changed.string(), "--quiet", "--out", Out("b"),
                                     "--previous", Out("a/results.xml")});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, HasSubstr("\ngone: 1 clash\n  1. 土建/梁/框架梁  \"Beam F1 3/C-D\"  "
                                       "3wPNyqm4$Zunx0ktaWB3Bs\n      x 暖通/风管/回风管  "
                                       "\"RA crossing F1\"  06t$4MmyBqjry5leNWiIQ0\n"));
    EXPECT_THAT(outcome.out, HasSubstr(": 1 new, 12 still open, 0 returned, 1 gone, "));
    EXPECT_THAT(Text("b/results-gone.csv"), HasSubstr(",06t$4MmyBqjry5leNWiIQ0,"));
    const auto diff = RunCommand({"diff", Out("a/results.xml"), Out("b/results.xml")});
    EXPECT_THAT(diff.out, HasSubstr("\"RA crossing F1\"  06t$4MmyBqjry5leNWiIQ0\n"));
    EXPECT_THAT(diff.out, HasSubstr("1 new, 1 gone, 0 changed, 12 the same\n"));
}

TEST_F(CheckCommand, LeavesOtherFloorsAsTheyWere) {
    CheckJson({"--out", Out("a")});
    const Json report =
        CheckJson({"--out", Out("a"), "--previous", Out("a/results.xml"), "--floor", "F1"});
    const Json& counts = report["previous"]["counts"];
    EXPECT_EQ(counts["gone"], 0);
    EXPECT_EQ(counts["new"], 0);
    EXPECT_GT(counts["not re-tested"], 0);
    EXPECT_EQ(counts["still open"].get<int>() + counts["not re-tested"].get<int>(), 13);
    EXPECT_EQ(Count(Text("a/results.xml"), "<碰撞点 "), 13U);
}

TEST_F(CheckCommand, ReportsWhatItHasWhenItIsStopped) {
    CheckJson({"--out", Out("whole")});
    CheckOptions options;
    options.models = {SourcePath("samples/building.ifc")};
    options.outDir = Out("stopped");
    options.previous = Out("whole/results.xml");
    kycb::test::StopFlag stop;
    stop.Set();  // before the run: it ends after its first component
    ::testing::internal::CaptureStdout();
    const ExitCode code = RunCheck(options);
    const std::string out = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(code, 130);
    EXPECT_THAT(out, HasSubstr("total: 3 floors, 354 components"));
    EXPECT_THAT(out, HasSubstr(" 0 gone, "));
    EXPECT_THAT(out, EndsWith("stopped: the list is not complete\n"));
    EXPECT_EQ(Count(Text("stopped/results.xml"), "<碰撞点 "), 13U) << "still open or not re-tested";
}

// By the GlobalIds of both components.
std::map<std::string, Json> ClashesOf(const Json& report) {
    std::map<std::string, Json> clashes;
    for (const Json& floor : report["floors"]) {
        for (const Json& clash : floor["clashes"]) {
            const auto main = clash["main"]["guid"].get<std::string>();
            clashes[main + clash["second"]["guid"].get<std::string>()] = clash;
        }
    }
    return clashes;
}

TEST_F(CheckCommand, WritesWorldCoordinatesWhateverTheLocalOriginOfTheRun) {
    // The same building 2500 km east and 5500 km north of its zero.
    constexpr std::array<double, 3> kShift = {2.5e9, 5.5e9, 0.0};
    const auto moved = folder_.Write(
        "moved.ifc",
        ReplaceOnce(ReadAll(SourcePath("samples/building.ifc")), "#17=IFCLOCALPLACEMENT($,#12);",
                    "#900000=IFCCARTESIANPOINT((2500000000.,5500000000.,0.));\n"
                    "#900001=IFCAXIS2PLACEMENT3D(#900000,$,$);\n"
                    "#17=IFCLOCALPLACEMENT($,#900001);"));
    const auto outcome =
        RunCommand({"check", moved.string(), "--quiet", "--json", "--out", Out("moved")});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    const Json report = Json::parse(outcome.out);
    EXPECT_NE(report["localOrigin"][0], 0.0);
    const auto there = ClashesOf(report);
    const auto here = ClashesOf(CheckJson({}));
    ASSERT_EQ(there.size(), here.size());
    for (const auto& [pair, clash] : here) {
        ASSERT_EQ(there.count(pair), 1U);
        const Json& other = there.at(pair);
        EXPECT_EQ(other["axisPosition"], clash["axisPosition"]);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            EXPECT_NEAR(other["point"][axis].get<double>(),
                        clash["point"][axis].get<double>() + kShift[axis], 0.05);
        }
    }
    EXPECT_THAT(Text("moved/results.xml"), HasSubstr("clashPoint=\"2500012000.00,5500010200.00,"));
}

TEST_F(CheckCommand, DoesNotReplaceResultsThatHoldHandling) {
    CheckJson({"--out", Out("a")});
    folder_.Write("a/results.xml",
                  ReplaceOnce(Text("a/results.xml"), "dispose=\"0\"", "dispose=\"7\""));
    const auto outcome = Check({"--out", Out("a")});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("--previous"));
    EXPECT_THAT(Text("a/results.xml"), HasSubstr("dispose=\"7\""));
}

TEST_F(CheckCommand, SaysOnceThatPrioritiesAreMissing) {
    const auto tree = ReadAll(SourcePath("data/system-root/config/system/productsort.xml"));
    folder_.Write("config/system/productsort.xml", tree);
    const auto outcome = Check({"--system-root", Out()});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(Count(outcome.errors, "属性优先级文件错误"), 1U);
    EXPECT_THAT(outcome.errors, HasSubstr("TypePriorityMap.xml"));
}

TEST_F(CheckCommand, NamesTheFloorsThatThereAre) {
    const auto outcome = Check({"--floor", "F9"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("no floor is named \"F9\""));
    EXPECT_THAT(outcome.errors, HasSubstr("F1"));
}

TEST_F(CheckCommand, ListsWhatAModelHolds) {
    const auto list = RunCommand({"list", SourcePath("samples/building.ifc"), "--quiet"});
    ASSERT_EQ(list.exitCode, 0) << list.errors;
    EXPECT_THAT(list.out, HasSubstr("  floor F1: 0 to 3600 mm, "));
    EXPECT_THAT(list.out, HasSubstr("  40  土建/柱/砼柱\n"));
    const auto json =
        Json::parse(RunCommand({"list", SourcePath("samples/building.ifc"), "--json"}).out);
    EXPECT_EQ(json[0]["kinds"]["土建/柱/砼柱"], 40);
    EXPECT_EQ(json[0]["floors"].size(), 3U);
    EXPECT_TRUE(json[0]["unmapped"].empty());
}

TEST_F(CheckCommand, TakesSeveralFloorsInOneOptionOrInSeveral) {
    const std::string model = SourcePath("samples/building.ifc");
    const auto one = RunCommand({"openings", model, "--quiet", "--floor", "F2", "F1"});
    ASSERT_EQ(one.exitCode, 0) << one.errors;
    EXPECT_THAT(one.out, HasSubstr("floor F1\n"));
    EXPECT_THAT(one.out, HasSubstr("floor F2\n"));
    EXPECT_EQ(RunCommand({"openings", model, "--quiet", "--floor", "F2", "--floor", "F1"}).out,
              one.out);
    EXPECT_EQ(RunCommand({"openings", "--floor", "F2", "F1", "--quiet", model}).out, one.out);
}

TEST_F(CheckCommand, ListsOpenings) {
    const auto csv = Out("openings.csv");
    const auto outcome = RunCommand(
        {"openings", SourcePath("samples/building.ifc"), "--quiet", "--floor", "F1", "--csv", csv});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_THAT(outcome.out, HasSubstr("  wall opening  \"Opening Wall F1 B/1-2 duct\"  "
                                       "2hEJBRA$4JBJgEdfBri3HC: rectangle 720 x 670 mm, elevation "
                                       "2190, center 4500,5000,2525\n"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("floor F2")));
    EXPECT_EQ(Count(ReadAll(csv), "\r\n"), Count(outcome.out, "\n") - 1);
    const auto twice = RunCommand({"openings", SourcePath("samples/building.ifc"), "--quiet",
                                   "--floor", "F1", "--floor", "F1"});
    EXPECT_EQ(twice.out, outcome.out);
    const auto json =
        Json::parse(RunCommand({"openings", SourcePath("samples/building.ifc"), "--json"}).out);
    EXPECT_EQ(std::count_if(json.begin(), json.end(),
                            [](const Json& opening) { return opening["type"] == "door"; }),
              17);
}

TEST(DiffCommand, NamesWhatDiffers) {
    const TemporaryFolder folder;
    const auto item = [](const std::string& a, const std::string& point, const std::string& state) {
        return "<i resultId=\"1\" projectA=\"1\" floorA=\"F1\" objectA=\"" + a +
               "\" projectB=\"1\" floorB=\"F1\" objectB=\"z\" clashPoint=\"" + point +
               "\" dispose=\"" + state + "\" picsize=\"0\"/>";
    };
    const auto file = [&](const std::string& name, const std::string& items) {
        return folder.Write(name, "<r><p><f>" + items + "</f></p></r>").string();
    };
    const auto before =
        file("a.xml", item("same", "1,1,1", "0") + item("moved", "1,1,1", "0") +
                          item("handled", "1,1,1", "0") + item("gone", "1,1,1", "0"));
    const auto after = file("b.xml", item("same", "1,1,1", "0") + item("moved", "2,1,1", "0") +
                                         item("handled", "1,1,1", "5") + item("new", "1,1,1", "0"));
    const auto outcome = RunCommand({"diff", before, after});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.out, HasSubstr("1 new, 1 gone, 2 changed, 1 the same\n"));
    EXPECT_THAT(outcome.out, HasSubstr("differs in place\n"));
    EXPECT_THAT(outcome.out, HasSubstr("differs in handling\n"));
    const auto json = Json::parse(RunCommand({"diff", before, after, "--json"}).out);
    EXPECT_EQ(json["new"][0]["objectA"], "new");
    EXPECT_EQ(json["gone"][0]["objectA"], "gone");
    EXPECT_EQ(json["changed"].size(), 2U);
    EXPECT_EQ(json["same"], 1);
}

}  // namespace
}  // namespace kyclash
