// SPDX-License-Identifier: Apache-2.0
#include "InstalledData.h"

#include <system_error>

#define BOOST_DLL_USE_STD_FS
#include <boost/dll/runtime_symbol_info.hpp>

namespace ifchost {

std::optional<std::filesystem::path> InstalledDataFolder() {
    std::error_code error;
    const std::filesystem::path program = boost::dll::program_location(error);
    if (error) return std::nullopt;
    const auto folder = program.parent_path().parent_path() / "share" / "kyclash";
    if (!std::filesystem::is_directory(folder, error)) return std::nullopt;
    return folder;
}

}  // namespace ifchost
