// SPDX-License-Identifier: Apache-2.0
#include "desk/core/WorksetLoading.h"

#include <utility>

#include "desk/core/BackgroundTask.h"
#include "ifchost/Classification.h"
#include "ifchost/IfcWorkset.h"
#include "ifchost/SceneConverter.h"

namespace desk {
namespace {

using ifchost::ConvertErrorKind;
using ifchost::ConvertPhase;
using ifchost::ConvertResult;

std::string Utf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

const char* StepName(ConvertPhase phase) {
    const bool meshing = phase == ConvertPhase::Products || phase == ConvertPhase::Writing ||
                         phase == ConvertPhase::Checking;
    return meshing ? "mesh" : "read";
}

std::optional<ifchost::Classification> LoadMapping(const LoadOptions& options,
                                                   LoadedModels& loaded) {
    if (!options.mapping) return ifchost::Classification::Default();
    ifchost::MappingError error;
    auto mapping = ifchost::Classification::Load(*options.mapping, error);
    if (!mapping) loaded.errors.push_back(error.Text());
    return mapping;
}

std::vector<ConvertResult> Convert(const std::vector<std::filesystem::path>& models,
                                   const LoadOptions& options, BackgroundTask& task) {
    ifchost::ConvertOptions convertOptions;
    convertOptions.circleSegments = options.circleSegments;
    convertOptions.cacheDir = options.cacheDir;
    ifchost::SceneConverter converter(convertOptions);
    return converter.Convert(models, &task.StopFlag(), [&](const ifchost::ConvertProgress& step) {
        task.Report(
            {StepName(step.phase), Utf8(models[step.input].filename()), step.done, step.total});
    });
}

std::vector<ifchost::WorksetInput> OpenPackages(const std::vector<ConvertResult>& results,
                                                LoadedModels& loaded) {
    std::vector<ifchost::WorksetInput> inputs;
    for (const ConvertResult& result : results) {
        if (result.error == ConvertErrorKind::Cancelled) {
            loaded.stopped = true;
            continue;
        }
        if (!result.Ok()) {
            loaded.errors.push_back(result.message);
            continue;
        }
        ifchost::SceneError error;
        auto package = ifchost::ScenePackage::Open(result.package, error);
        if (package) {
            inputs.push_back({result.input, std::move(*package)});
        } else {
            loaded.errors.push_back(Utf8(result.input) + ": " + error.Text());
        }
    }
    return inputs;
}

std::vector<ModelNote> NotesOn(const ifchost::IfcWorkset& workset,
                               const ifchost::WorksetProject& project) {
    const std::string file = Utf8(project.file.filename());
    std::vector<ModelNote> notes;
    for (std::size_t i = 0; i < project.fateCounts.size(); ++i) {
        const auto fate = static_cast<ifchost::ProductFate>(i);
        if (fate == ifchost::ProductFate::Checked || project.fateCounts[i] == 0) continue;
        notes.push_back({file, UncheckedProducts{fate, project.fateCounts[i]}});
    }
    for (const auto& unmapped : workset.Unmapped()) {
        if (unmapped.projectId == project.id) notes.push_back({file, unmapped});
    }
    for (const auto& warning : project.package.Warnings())
        notes.push_back({file, warning.text});
    for (const auto& warning : workset.Warnings()) {
        if (warning.projectId == project.id) notes.push_back({file, warning.text});
    }
    return notes;
}

}  // namespace

LoadedModels LoadModels(const std::vector<std::filesystem::path>& models,
                        const LoadOptions& options, BackgroundTask& task) {
    LoadedModels loaded;
    const auto mapping = LoadMapping(options, loaded);
    if (!mapping) return loaded;
    auto inputs = OpenPackages(Convert(models, options, task), loaded);
    // A model that is missing would shift the project ids of those behind it: all or none.
    if (inputs.size() != models.size()) return loaded;
    task.Report({"build", {}, 0, 0});
    loaded.workset = std::make_shared<const ifchost::IfcWorkset>(std::move(inputs), *mapping);
    for (const auto& warning : loaded.workset->Warnings()) {
        if (warning.projectId == 0) loaded.notes.push_back({{}, warning.text});
    }
    for (const auto& project : loaded.workset->Projects()) {
        for (ModelNote& note : NotesOn(*loaded.workset, project))
            loaded.notes.push_back(std::move(note));
    }
    return loaded;
}

}  // namespace desk
