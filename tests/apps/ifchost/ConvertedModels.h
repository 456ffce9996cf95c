// SPDX-License-Identifier: Apache-2.0
// Work sets of real IFC files, converted as a host converts them.
#pragma once

#include "KYCollisionBase/platform/HostServices.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ModelConverter.h"
#include "PackageBuilder.h"
#include "ifchost/IfcWorkset.h"
#include "ifchost/SceneConverter.h"

namespace ifchost::testing {

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
