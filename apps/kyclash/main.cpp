// SPDX-License-Identifier: Apache-2.0
#include <exception>
#include <functional>
#include <iostream>

#include <CLI/CLI.hpp>

#include "kyclash/CheckCommand.h"
#include "kyclash/DiffCommand.h"
#include "kyclash/ListCommand.h"
#include "kyclash/OpeningsCommand.h"
#include "kyclash/RulesCommand.h"
#include "platform/ProcessInfo.h"

namespace {

using kyclash::ExitCode;
using kyclash::ReportFormat;
using Run = std::function<ExitCode()>;

// The options of all commands, and what the chosen one does.
struct CommandLine {
    kyclash::CheckOptions check;
    kyclash::RulesOptions rules;
    kyclash::OpeningsOptions openings;
    kyclash::ListOptions list;
    kyclash::DiffOptions diff;
    Run run;
};

void AddJson(CLI::App& command, ReportFormat& format) {
    command.add_flag_callback(
        "--json", [&format] { format = ReportFormat::Json; }, "Write the report as JSON");
}

// What every command that reads models takes.
template <class Options>
void AddLoading(CLI::App& command, Options& options) {
    command.add_option("MODEL", options.models, "IFC files; several are one federated building")
        ->type_name("")
        ->required();
    command
        .add_option("--mapping", options.mapping,
                    "Mapping file that gives IFC elements their category")
        ->type_name("FILE");
    command.add_option("--cache-dir", options.cacheDir, "Folder that converted models are kept in")
        ->type_name("DIR");
    command
        .add_option("--circle-segments", options.circleSegments,
                    "Chords of a full circle, 3 to 1024")
        ->type_name("N")
        ->check(CLI::Range(3, 1024).description(""))
        ->capture_default_str();
}

template <class Options>
void AddFloors(CLI::App& command, Options& options, const std::string& text) {
    command.add_option("--floor", options.floors, text + "; models stand before it")
        ->type_name("NAME");
}

void AddSystemRoot(CLI::App& command, std::optional<std::filesystem::path>& folder) {
    command.add_option("--system-root", folder, "Folder of the category tree and the priorities")
        ->type_name("DIR");
}

void AddCheck(CLI::App& app, CommandLine& line) {
    auto& options = line.check;
    auto* check = app.add_subcommand("check", "Find the clashing pairs of one or more IFC models");
    AddLoading(*check, options);
    check
        ->add_option("--rules", options.rules,
                     "Rule file; \"built-in\" for the rules that need no file")
        ->type_name("FILE");
    AddSystemRoot(*check, options.systemRoot);
    check->add_option("--out", options.outDir, "Folder that the results are written to")
        ->type_name("DIR");
    check
        ->add_option("--previous", options.previous,
                     "Result file of the run before, whose states and remarks are kept")
        ->type_name("FILE");
    AddFloors(*check, options, "Check these floors only");
    check->add_flag_callback(
        "--list", [&options] { options.listing = kyclash::PairListing::Complete; },
        "Name every clashing pair, however many there are");
    AddJson(*check, options.format);
    check
        ->add_option("--jobs", options.jobs,
                     "Check so many floors at a time, each in a process of its own; 1 to 256")
        ->type_name("N")
        ->check(CLI::Range(1, 256).description(""))
        ->capture_default_str();
    check->add_flag("--quiet", options.quiet, "Show no progress");
    check->callback([&line] { line.run = [&line] { return RunCheck(line.check); }; });
}

CLI::App* AddRulesAction(CLI::App& rules, CommandLine& line, const char* name, const char* text,
                         ExitCode (*action)(const kyclash::RulesOptions&, std::ostream&,
                                            std::ostream&)) {
    auto& options = line.rules;
    auto* command = rules.add_subcommand(name, text);
    command->add_option("FILE", options.file, "Rule file")->type_name("")->required();
    command->callback([&line, action] {
        line.run = [&line, action] { return action(line.rules, std::cout, std::cerr); };
    });
    return command;
}

void AddRules(CLI::App& app, CommandLine& line) {
    auto* rules = app.add_subcommand("rules", "Write, print or examine a rule file");
    rules->require_subcommand(1);
    AddRulesAction(*rules, line, "init", "Write the default rules to FILE", kyclash::RunRulesInit);
    auto* show =
        AddRulesAction(*rules, line, "show", "Print FILE as a matrix", kyclash::RunRulesShow);
    auto* validate =
        AddRulesAction(*rules, line, "validate", "Name what in FILE cannot mean what it says",
                       kyclash::RunRulesValidate);
    for (CLI::App* command : {show, validate}) {
        AddSystemRoot(*command, line.rules.systemRoot);
        AddJson(*command, line.rules.format);
    }
}

void AddOpenings(CLI::App& app, CommandLine& line) {
    auto& options = line.openings;
    auto* openings =
        app.add_subcommand("openings", "List doors, windows and openings in walls and slabs");
    AddLoading(*openings, options.load);
    AddFloors(*openings, options, "List these floors only");
    openings->add_option("--csv", options.csv, "Write the table to this file, too")
        ->type_name("FILE");
    AddJson(*openings, options.format);
    openings->add_flag("--quiet", options.quiet, "Show no progress");
    openings->callback([&line] {
        line.run = [&line] { return RunOpenings(line.openings, std::cout, std::cerr); };
    });
}

void AddList(CLI::App& app, CommandLine& line) {
    auto& options = line.list;
    auto* list = app.add_subcommand("list", "Show the floors and kinds of the models");
    AddLoading(*list, options.load);
    list->add_option("--csv", options.csv,
                     "Write a table of all products to this file, with the category of each")
        ->type_name("FILE");
    AddJson(*list, options.format);
    list->add_flag("--quiet", options.quiet, "Show no progress");
    list->callback(
        [&line] { line.run = [&line] { return RunList(line.list, std::cout, std::cerr); }; });
}

void AddDiff(CLI::App& app, CommandLine& line) {
    auto& options = line.diff;
    auto* diff = app.add_subcommand("diff", "Compare two result files");
    diff->add_option("OLD", options.oldFile, "Result file of the earlier run")
        ->type_name("")
        ->required();
    diff->add_option("NEW", options.newFile, "Result file of the later run")
        ->type_name("")
        ->required();
    AddJson(*diff, options.format);
    diff->callback(
        [&line] { line.run = [&line] { return RunDiff(line.diff, std::cout, std::cerr); }; });
}

// The command that was recognised last: "kyclash" itself, or as far as the words went.
const CLI::App& LastCommand(const CLI::App& app) {
    const auto chosen = app.get_subcommands();
    return chosen.empty() ? app : LastCommand(*chosen.back());
}

std::string CommandNames(const CLI::App& app) {
    std::string names;
    for (const CLI::App* command : app.get_subcommands({}))
        names += (names.empty() ? "" : ", ") + command->get_name();
    return names;
}

// What is wrong with the command line.
std::string MisuseText(const CLI::App& app, const CLI::ParseError& error) {
    const std::string names = CommandNames(LastCommand(app));
    if (names.empty() || dynamic_cast<const CLI::RequiredError*>(&error) == nullptr) {
        return error.what();
    }
    const auto unknown = app.remaining(true);
    const std::string what =
        unknown.empty() ? "a command is missing" : "there is no command \"" + unknown[0] + "\"";
    return what + "; the commands are: " + names;
}

ExitCode ReportParsing(const CLI::App& app, const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
        app.exit(error);  // --help and --version
        return kyclash::kExitDone;
    }
    std::cerr << "kyclash: " << MisuseText(app, error)
              << "\nRun with --help for more information.\n";
    return kyclash::kExitWrongUse;
}

// A report that did not arrive is no success.
ExitCode FinishOutput(ExitCode code) {
    std::cout.flush();
    if (std::cout.good()) return code;
    std::cerr << "kyclash: the report could not be written to standard output\n";
    return kyclash::kExitUnreadable;
}

}  // namespace

int main(int argc, char** argv) try {
    kyclash::ReplaceMissingStreams();
    CLI::App app("Finds clashes between the components of building models", "kyclash");
    app.set_version_flag("--version", KYCLASH_VERSION);
    app.require_subcommand(1);
    CommandLine line;
    AddCheck(app, line);
    AddRules(app, line);
    AddOpenings(app, line);
    AddList(app, line);
    AddDiff(app, line);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return FinishOutput(ReportParsing(app, error));
    }
    return FinishOutput(line.run());
} catch (const std::exception& error) {
    std::cerr << "kyclash: " << error.what() << '\n';
    return kyclash::kExitUnreadable;
}
