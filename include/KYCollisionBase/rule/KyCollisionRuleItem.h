// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/rule/IKyCollisionFilter.h"
#include "KYCollisionBase/rule/KyCollisionMode.h"
#include "KYCollisionBase/rule/KyExcludeItem.h"

#include <functional>
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

    /// The rule set that holds the item; null until it is added.
    KyCollisionRule* GetOwnerRule() const { return ownerRule_; }
    void SetOwnerRule(KyCollisionRule* rule) { ownerRule_ = rule; }

    /// The specialty, or "Revit" or "Tekla": the first part of the category path.
    const std::wstring& GetSpecName() const { return specName_; }
    void SetSpecName(const std::wstring& name) { specName_ = name; }

    /// The whole category path, the key of the item in its rule set.
    const std::wstring& GetAttName() const { return attName_; }
    void SetAttName(const std::wstring& path) { attName_ = path; }

    /// The filter that is held, or null. It stays the item's.
    IKyCollisionFilter* GetFilter() const { return filter_.get(); }
    /// Takes ownership of `filter` (null for none) and deletes the one held before, unless it is
    /// the same object.
    void SetFilter(IKyCollisionFilter* filter);

    KyCollisionMode* GetMode() { return &mode_; }
    const KyCollisionMode* GetMode() const { return &mode_; }
    void SetMode(const KyCollisionMode& mode) { mode_ = mode; }

    /// Adds an exclusion under a specialty, unless an equal one is there. Always true.
    bool AddExcludeItem(const std::wstring& spec, const KyExcludeItem& item);

    /// Drops the exclusions under a specialty; the specialty itself stays listed.
    void RemoveExcludeItem(const std::wstring& spec);

    /// The specialties with an entry, in the order of the process's category tree. One that the
    /// tree does not know is left out.
    std::vector<std::wstring> GetExcludeSpecArray() const;

    /// The exclusions under a specialty, or null without an entry. They stay the item's.
    const std::vector<KyExcludeItem>* GetExcludeItemArray(const std::wstring& spec) const;

    /// True when a component of the kind `otherPath` may be reported against one of this kind. The
    /// path's first part selects the exclusions; the specialty inside them does not count. False
    /// for a path of fewer than two parts.
    bool IsCollisionWith(const std::wstring& otherPath) const;

    /// True for equal names, filters, modes, effective tolerances and exclusions, the latter in any
    /// order and only under specialties that the category tree knows.
    bool Equal(const KyCollisionRuleItem& other) const;

    /// A new item with copies of all settings and the same owner pointer, which the caller owns.
    KyCollisionRuleItem* Clone() const;

  private:
    KyCollisionRule* ownerRule_ = nullptr;
    std::wstring specName_;
    std::wstring attName_;
    std::unique_ptr<IKyCollisionFilter> filter_;
    KyCollisionMode mode_;
    std::map<std::wstring, std::vector<KyExcludeItem>, std::less<>> excludes_;
};

}  // namespace KYCOLLISION::Rule
