// SPDX-License-Identifier: Apache-2.0
// Rule sets as XML text.
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>

#include "Require.h"
#include "platform/Text.h"

using kycbfuzz::Require;
using KYCOLLISION::Rule::KyCollisionRule;
using KYCOLLISION::Rule::KyCollisionRuleMgr;

namespace {

/// A file of this process alone.
std::wstring FilePath() {
    static const std::wstring path =
        kycb::text::FromUtf8((std::filesystem::temp_directory_path() /
                              ("kycbfuzz-rules-" + std::to_string(std::random_device()()) + ".xml"))
                                 .string());
    return path;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    KyCollisionRuleMgr manager;
    if (!manager.InitByXmlString(kycb::text::FromUtf8(bytes))) {
        Require(manager.GetRule() == nullptr, "a refused text leaves no rule set");
        return 0;
    }
    const std::unique_ptr<KyCollisionRule> copy(manager.GetRule()->Clone(true));
    Require(copy->GetSpecArray() == manager.GetRule()->GetSpecArray(), "a copy is complete");
    KyCollisionRuleMgr again;
    Require(manager.SaveToXMLFile(FilePath()), "a rule set can be saved");
    Require(again.InitByXmlPath(FilePath()), "what was saved can be read");
    Require(again.GetRule()->GetSpecArray() == copy->GetSpecArray(), "and is the same");
    std::filesystem::remove(kycb::text::ToUtf8(FilePath()));
    return 0;
}
