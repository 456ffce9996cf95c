// SPDX-License-Identifier: Apache-2.0
#include "kyclash/CheckCommand.h"

#include <chrono>
#include <iostream>
#include <utility>

#include "ifchost/PackageCache.h"
#include "kyclash/CheckRun.h"
#include "kyclash/ClashHistory.h"
#include "kyclash/Interrupt.h"
#include "kyclash/ModelLoading.h"
#include "kyclash/OutputFile.h"
#include "kyclash/Progress.h"
#include "kyclash/ReportBuilding.h"
#include "kyclash/ResultOutput.h"
#include "kyclash/RuleChoice.h"
#include "kyclash/SystemRoot.h"
#include "platform/ProcessInfo.h"

namespace kyclash {
namespace {

class Stopwatch {
  public:
    /// Seconds since construction or the last call.
    double Lap() {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> lap = now - start_;
        start_ = now;
        return lap.count();
    }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// The earlier results, empty when none are asked for; nothing, after a message, when they cannot
// be read.
std::optional<PreviousResults> LoadPrevious(const CheckOptions& options) {
    if (!options.previous) return PreviousResults{};
    std::string error;
    auto previous = ReadPreviousResults(*options.previous, error);
    if (!previous) std::cerr << "kyclash: " << error << '\n';
    return previous;
}

// Whether the files may and can be written where they are wanted; a message when not.
ExitCode PrepareOutput(const CheckOptions& options) {
    if (!options.outDir) return kExitDone;
    if (const auto reason = WhyNotReplace(*options.outDir, options.previous)) {
        std::cerr << "kyclash: " << *reason << '\n';
        return kExitWrongUse;
    }
    if (const auto reason = PrepareFolder(*options.outDir)) {
        std::cerr << "kyclash: " << *reason << '\n';
        return kExitUnreadable;
    }
    return kExitDone;
}

RunScope ScopeOf(const ifchost::IfcWorkset& workset, const std::vector<SCollisionFloor>& floors,
                 bool isComplete) {
    RunScope scope;
    scope.isComplete = isComplete;
    for (const SCollisionFloor& floor : floors)
        scope.floors.insert(floor.floorKeys.begin(), floor.floorKeys.end());
    for (const auto& component : workset.Components())
        scope.places[component.guid] = {component.projectId, workset.Floor(component).name};
    return scope;
}

// What a run is made of, once every input was read.
struct RunInputs {
    std::shared_ptr<const ifchost::IfcWorkset> workset;
    std::vector<SCollisionFloor> floors;
    ChosenRules rules;
    PreviousResults previous;
};

// Everything after the inputs.
ExitCode CheckAndReport(const CheckOptions& options, RunInputs inputs, Progress& progress,
                        CheckReport& report) {
    Stopwatch watch;
    progress.Show("build", "neighbours");
    CheckRun run(inputs.workset, std::move(inputs.rules.rules));
    report.cost.buildSeconds = watch.Lap();
    report.stopped = !run.Run(inputs.floors, options.jobs, progress);
    report.cost.checkSeconds = watch.Lap();

    const auto clashes = TrackClashes(run.TakeClashes(), std::move(inputs.previous),
                                      ScopeOf(*inputs.workset, inputs.floors, !report.stopped));
    if (options.previous) {
        ReportHistory(*inputs.workset, ifchost::PathText(*options.previous), clashes, report);
    }
    ReportModels(run, report);
    ReportFloors(*inputs.workset, run.SizesOf(inputs.workset->CollisionFloors()), inputs.floors,
                 clashes, report);
    bool isWritten = true;
    if (options.outDir) {
        const auto openings = run.Openings(inputs.floors);
        const auto files = WriteResults(
            *options.outDir, {clashes, openings, *inputs.workset, options.previous.has_value()},
            std::cerr);
        isWritten = files.has_value();
        report.writtenFiles = files.value_or(std::vector<std::string>());
    }
    report.cost.resultSeconds = watch.Lap();
    report.cost.peakMegabytes = PeakMemoryMegabytes();
    WriteReport(report, options.format, options.listing, std::cout);
    if (!isWritten) return kExitUnreadable;
    return report.stopped ? kExitStopped : kExitDone;
}

}  // namespace

ExitCode RunCheck(const CheckOptions& options) {
    const Interrupt interrupt;
    Progress progress(options.quiet ? ProgressMode::Off : DetectProgressMode());
    CheckReport report;
    report.version = KYCLASH_VERSION;
    report.mapping = options.mapping ? ifchost::PathText(*options.mapping) : "default";
    report.circleSegments = options.circleSegments;
    Stopwatch watch;

    RunInputs inputs;
    if (!UseSystemRoot(options.systemRoot, std::cerr)) return kExitUnreadable;
    auto rules = ChooseRules(options.rules, std::cerr);
    if (!rules) return kExitUnreadable;
    auto previous = LoadPrevious(options);
    if (!previous) return kExitUnreadable;
    inputs.previous = std::move(*previous);
    if (const ExitCode code = PrepareOutput(options); code != kExitDone) return code;

    inputs.workset = LoadWorkset(
        {options.models, options.mapping, options.cacheDir, options.circleSegments}, progress);
    if (!inputs.workset) return Interrupt::Requested() ? kExitStopped : kExitUnreadable;
    auto floors = ChooseFloors(inputs.workset->CollisionFloors(), options.floors);
    if (!floors) return kExitWrongUse;
    inputs.floors = std::move(*floors);
    inputs.rules = std::move(*rules);
    CompleteRules(inputs.rules, *inputs.workset);
    report.rules = inputs.rules.report;
    report.cost.readSeconds = watch.Lap();
    return CheckAndReport(options, std::move(inputs), progress, report);
}

}  // namespace kyclash
