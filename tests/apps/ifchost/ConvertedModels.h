// SPDX-License-Identifier: Apache-2.0
// Work sets of real IFC files, converted as a host converts them.
#pragma once

#include "KYCollisionBase/platform/HostServices.h"

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "PackageBuilder.h"
#include "ifchost/ConverterProcess.h"
#include "ifchost/IfcWorkset.h"
#include "ifchost/SceneConverter.h"

namespace ifchost::testing {

/// Folder of the real models: the variable KYCLASH_MODELS, else shared/models beside the sources.
inline std::filesystem::path ModelFolder() {
    const char* named = std::getenv("KYCLASH_MODELS");
    return named != nullptr ? std::filesystem::path(named)
                            : std::filesystem::path(IFCHOST_SOURCE_DIR) / "../shared/models";
}

/// Why no file can be converted here; empty when all that it takes is there.
inline std::string WhyNoConversion() {
    const char* named = std::getenv("KYCLASH_CONVERTER_DIR");
    const auto folder = named != nullptr
                            ? std::filesystem::path(named)
                            : std::filesystem::path(IFCHOST_SOURCE_DIR) / "apps/ifchost/converter";
    if (FindOnPath("node").empty() && std::getenv("KYCLASH_NODE") == nullptr) {
        return "needs Node.js on PATH";
    }
    if (!std::filesystem::exists(folder / "node_modules/web-ifc")) {
        return "needs web-ifc: npm ci --prefix " + folder.string();
    }
    return {};
}

/// Converts the files into `folder` and makes one work set of them.
inline std::shared_ptr<const IfcWorkset> ConvertToWorkset(
    const std::vector<std::filesystem::path>& files, const TemporaryFolder& folder) {
    ConvertOptions options;
    options.cacheDir = folder.Path() / "cache";
    std::vector<WorksetInput> inputs;
    for (const ConvertResult& result : SceneConverter(options).Convert(files)) {
        if (!result.Ok()) throw std::runtime_error(result.message);
        SceneError error;
        auto package = ScenePackage::Open(result.package, error);
        if (!package) throw std::runtime_error(error.Text());
        inputs.push_back({result.input, std::move(*package)});
    }
    return std::make_shared<const IfcWorkset>(std::move(inputs), Classification::Default());
}

/// Silences the library's message box, which complains where no priority file is given.
class SilentMessages {
  public:
    SilentMessages() {
        BASEUI::SetMessageBox([](const std::wstring&, unsigned int) {});
    }
    ~SilentMessages() { BASEUI::SetMessageBox({}); }
    SilentMessages(const SilentMessages&) = delete;
    SilentMessages& operator=(const SilentMessages&) = delete;
};

}  // namespace ifchost::testing
