// SPDX-License-Identifier: Apache-2.0
#include <exception>
#include <iostream>

#include <CLI/CLI.hpp>

#include "kyclash/CheckCommand.h"

namespace {

void AddCheck(CLI::App& app, kyclash::CheckOptions& options) {
    auto* check = app.add_subcommand("check", "Find the clashing pairs of one or more IFC models");
    check->add_option("MODEL", options.models, "IFC files; several are one federated building")
        ->required();
    check->add_option("--mapping", options.mapping,
                      "Mapping file that gives IFC elements their category");
    check->add_option("--floor", options.floors, "Check this floor only; may be repeated");
    check->add_option("--cache-dir", options.cacheDir, "Folder that converted models are kept in");
    check->add_option("--circle-segments", options.circleSegments, "Chords of a full circle")
        ->check(CLI::Range(3, 1024))
        ->capture_default_str();
    check->add_flag_callback(
        "--list", [&] { options.listing = kyclash::PairListing::Complete; },
        "Name every clashing pair, however many there are");
    check->add_flag_callback(
        "--json", [&] { options.format = kyclash::ReportFormat::Json; },
        "Write the report as JSON");
    check->add_flag("--quiet", options.quiet, "Show no progress");
}

}  // namespace

int main(int argc, char** argv) try {
    CLI::App app("Finds clashes between the components of building models", "kyclash");
    app.set_version_flag("--version", KYCLASH_VERSION);
    app.require_subcommand(1);
    kyclash::CheckOptions checkOptions;
    AddCheck(app, checkOptions);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kyclash::kExitDone : kyclash::kExitWrongUse;
    }
    return kyclash::RunCheck(checkOptions);
} catch (const std::exception& error) {
    std::cerr << "kyclash: " << error.what() << '\n';
    return kyclash::kExitUnreadable;
}
