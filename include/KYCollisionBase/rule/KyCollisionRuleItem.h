// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/rule/IKyCollisionFilter.h"
#include "KYCollisionBase/rule/KyCollisionMode.h"
#include "KYCollisionBase/rule/KyExcludeItem.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace KYCOLLISION::Rule {

class KyCollisionRule;

/// One component kind with its mode, filter and exclusions; owned by the rule set that holds it.
class KYCB_API KyCollisionRuleItem {
  public:
    KyCollisionRuleItem() = default;
    KyCollisionRuleItem(const KyCollisionRuleItem&) = delete;
    KyCollisionRuleItem& operator=(const KyCollisionRuleItem&) = delete;

    KyCollisionRule* GetOwnerRule() const { return ownerRule_; }
    void SetOwnerRule(KyCollisionRule* rule) { ownerRule_ = rule; }
    const std::wstring& GetSpecName() const { return specName_; }
    void SetSpecName(const std::wstring& name) { specName_ = name; }
    const std::wstring& GetAttName() const { return attName_; }
    void SetAttName(const std::wstring& path) { attName_ = path; }
    IKyCollisionFilter* GetFilter() const { return filter_.get(); }
    void SetFilter(IKyCollisionFilter* filter);
    KyCollisionMode* GetMode() { return &mode_; }
    const KyCollisionMode* GetMode() const { return &mode_; }
    void SetMode(const KyCollisionMode& mode) { mode_ = mode; }

    bool AddExcludeItem(const std::wstring& spec, const KyExcludeItem& item);
    void RemoveExcludeItem(const std::wstring& spec);
    std::vector<std::wstring> GetExcludeSpecArray() const;
    const std::vector<KyExcludeItem>* GetExcludeItemArray(const std::wstring& spec) const;
    bool IsCollisionWith(const std::wstring& otherPath) const;
    bool Equal(const KyCollisionRuleItem& other) const;
    KyCollisionRuleItem* Clone() const;

  private:
    KyCollisionRule* ownerRule_ = nullptr;
    std::wstring specName_;
    std::wstring attName_;
    std::unique_ptr<IKyCollisionFilter> filter_;
    KyCollisionMode mode_;
    std::map<std::wstring, std::vector<KyExcludeItem>> excludes_;
};

}  // namespace KYCOLLISION::Rule
