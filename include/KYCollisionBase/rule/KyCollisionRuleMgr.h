// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/rule/IKyCollisionFilter.h"

#include <memory>
#include <string>

class IXMLTree;

namespace KYCOLLISION::Rule {

class KyCollisionMode;
class KyCollisionRule;
class KyCollisionRuleItem;
struct KyExcludeItem;

/// Holds the rule set of a check run and reads and writes it as XML.
class KYCB_API KyCollisionRuleMgr {
  public:
    KyCollisionRuleMgr();
    ~KyCollisionRuleMgr();
    KyCollisionRuleMgr(const KyCollisionRuleMgr&) = delete;
    KyCollisionRuleMgr& operator=(const KyCollisionRuleMgr&) = delete;

    bool InitByXmlPath(const std::wstring& path);
    bool InitByXmlString(const std::wstring& text);
    bool SaveToXMLFile(const std::wstring& path) const;
    const KyCollisionRule* GetRule() const;
    void SetRule(KyCollisionRule* rule, bool destroyOld);
    const KyCollisionRuleItem* GetRuleItem(std::wstring path);

  private:
    std::unique_ptr<KyCollisionRule> rule_;
};

}  // namespace KYCOLLISION::Rule
