// SPDX-License-Identifier: Apache-2.0
#include "kyclash/ModelLoading.h"

#include <iostream>
#include <utility>

#include "ifchost/Classification.h"
#include "ifchost/PackageCache.h"
#include "ifchost/SceneConverter.h"
#include "kyclash/Interrupt.h"

namespace kyclash {
namespace {

using ifchost::ConvertPhase;

void ReportError(Progress& progress, const std::string& text) {
    progress.Clear();
    std::cerr << "kyclash: " << text << '\n';
}

std::optional<ifchost::Classification> LoadMapping(const LoadOptions& options, Progress& progress) {
    if (!options.mapping) return ifchost::Classification::Default();
    ifchost::MappingError error;
    auto mapping = ifchost::Classification::Load(*options.mapping, error);
    if (!mapping) ReportError(progress, error.Text());
    return mapping;
}

// The phase names that users see.
std::string_view PhaseName(ConvertPhase phase) {
    return phase == ConvertPhase::Products || phase == ConvertPhase::Writing ||
                   phase == ConvertPhase::Checking
               ? "mesh"
               : "read";
}

// Phases of one step have nothing to count.
void ShowStep(const ifchost::ConvertProgress& step, const std::filesystem::path& file,
              Progress& progress) {
    if (step.phase == ConvertPhase::Done || step.phase == ConvertPhase::Failed) return;
    const std::string name = ifchost::PathText(file.filename());
    if (step.total > 1) {
        progress.Show(PhaseName(step.phase), name, step.done, step.total);
    } else {
        progress.Show(PhaseName(step.phase), name);
    }
}

std::vector<ifchost::ConvertResult> Convert(const LoadOptions& options, Progress& progress) {
    ifchost::ConvertOptions convertOptions;
    convertOptions.circleSegments = options.circleSegments;
    convertOptions.cacheDir = options.cacheDir;
    ifchost::SceneConverter converter(convertOptions);
    return converter.Convert(options.models, &Interrupt::Requested(),
                             [&](const ifchost::ConvertProgress& step) {
                                 ShowStep(step, options.models[step.input], progress);
                             });
}

// Opens every package; nothing when one of them fails, after all failures were reported.
std::optional<std::vector<ifchost::WorksetInput>> Open(
    const std::vector<ifchost::ConvertResult>& results, Progress& progress) {
    std::vector<ifchost::WorksetInput> inputs;
    for (const auto& result : results) {
        if (!result.Ok()) {
            ReportError(progress, result.message);
            continue;
        }
        ifchost::SceneError error;
        auto package = ifchost::ScenePackage::Open(result.package, error);
        if (!package) {
            ReportError(progress, result.input.string() + ": " + error.Text());
            continue;
        }
        inputs.push_back({result.input, std::move(*package)});
    }
    if (inputs.size() != results.size()) return std::nullopt;
    return inputs;
}

}  // namespace

std::shared_ptr<const ifchost::IfcWorkset> LoadWorkset(const LoadOptions& options,
                                                       Progress& progress) {
    const auto mapping = LoadMapping(options, progress);
    if (!mapping) return nullptr;
    auto inputs = Open(Convert(options, progress), progress);
    if (!inputs) return nullptr;
    return std::make_shared<const ifchost::IfcWorkset>(std::move(*inputs), *mapping);
}

}  // namespace kyclash
