// SPDX-License-Identifier: Apache-2.0
#include "kyclash/SystemRoot.h"

#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"
#include "KYCollisionBase/platform/HostServices.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <set>
#include <system_error>

#include "ifchost/HostText.h"
#include "ifchost/InstalledData.h"
#include "ifchost/PackageCache.h"

namespace kyclash {
namespace {

namespace fs = std::filesystem;

constexpr const char* kRootVariable = "KYCOLLISION_SYSTEM_ROOT";
const fs::path kTreeFile = fs::path("config") / "system" / "productsort.xml";
const fs::path kPriorityFile = fs::path("CollisionData") / "TypePriorityMap.xml";

bool IsFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

fs::path ChooseRoot(const std::optional<fs::path>& option) {
    if (option) return *option;
    const char* variable = std::getenv(kRootVariable);
    if (variable != nullptr && *variable != '\0') return variable;
    return ShippedDataFolder() / "system-root";
}

// A missing priority file makes the library say so at every pair.
void ShowMessagesOnce() {
    const auto shown = std::make_shared<std::set<std::wstring>>();
    BASEUI::SetMessageBox([shown](const std::wstring& text, unsigned int) {
        if (shown->insert(text).second) {
            std::cerr << "kyclash: warning: " << ifchost::ToUtf8(text) << '\n';
        }
    });
}

bool HasCategories() {
    return KYCOLLISION::MODEL::KyEntityCategoryMgr::GetInstance()->GetSpecNodeCount() > 0;
}

}  // namespace

fs::path ShippedDataFolder() {
    return ifchost::InstalledDataFolder().value_or(KYCLASH_DATA_DIR);
}

fs::path DefaultRulesFile() {
    return ShippedDataFolder() / "rules" / "default.xml";
}

bool SetSystemRoot(const std::optional<fs::path>& option, std::vector<std::string>& remarks) {
    const fs::path root = ChooseRoot(option);
    const fs::path tree = root / kTreeFile;
    const fs::path priorities = root / kPriorityFile;
    if (!IsFile(tree) && !IsFile(priorities)) {
        remarks.push_back(ifchost::PathText(root) + ": is no system root, since it has neither " +
                          kTreeFile.generic_string() + " nor " + kPriorityFile.generic_string());
        return false;
    }
    BASETOOLS::SetSysRoot(ifchost::FromUtf8(ifchost::PathText(root)));
    if (!HasCategories()) {
        remarks.push_back("warning: " + ifchost::PathText(tree) +
                          ": no categories could be read, so rules are not compared with them");
    }
    if (!KYCOLLISION::MODEL::AttCategory::InitTypePriorityMap()) {
        remarks.push_back("warning: " + ifchost::PathText(priorities) +
                          ": no complete list of priorities could be read");
    }
    return true;
}

bool UseSystemRoot(const std::optional<fs::path>& option, std::ostream& errors) {
    std::vector<std::string> remarks;
    const bool isUsable = SetSystemRoot(option, remarks);
    for (const std::string& remark : remarks)
        errors << "kyclash: " << remark << '\n';
    if (isUsable) ShowMessagesOnce();
    return isUsable;
}

}  // namespace kyclash
