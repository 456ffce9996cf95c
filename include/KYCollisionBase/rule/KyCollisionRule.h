// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/rule/EnumRuleType.h"

#include <map>
#include <string>
#include <vector>

namespace KYCOLLISION::Rule {

class KyCollisionRuleItem;

/// A rule set: which component kinds take part in a check, with which settings.
///
/// Each specialty has its valid items, which take part, and its invalid ones, which are switched
/// off but keep their settings. The rule set owns both; pointers to items stay good until the rule
/// set is reset or destroyed.
///
/// Paths split at each "/", an empty last part being dropped. An item's path has three parts, or
/// two of which the first is "Revit" or "Tekla" in any case.
class KYCB_API KyCollisionRule {
  public:
    /// An empty rule set of type eRuleTypeNormal.
    KyCollisionRule() = default;
    /// Destroys the items.
    ~KyCollisionRule();
    KyCollisionRule(const KyCollisionRule&) = delete;
    KyCollisionRule& operator=(const KyCollisionRule&) = delete;

    const std::wstring& GetGUID() const { return guid_; }
    void SetGUID(const std::wstring& guid) { guid_ = guid; }
    const std::wstring& GetRuleName() const { return ruleName_; }
    void SetRuleName(const std::wstring& name) { ruleName_ = name; }
    EnumRuleType GetRuleType() const { return ruleType_; }
    void SetRuleType(EnumRuleType type) { ruleType_ = type; }

    /// The specialties in the order in which they were first met.
    const std::vector<std::wstring>& GetSpecArray() const { return specArray_; }

    /// A new rule set with copies of the items, which the caller owns.
    KyCollisionRule* Clone(bool withGuid) const;

    /// Makes this rule set a copy of `source`. Its GUID is taken over only when `withGuid` says so;
    /// otherwise this one keeps its own. Null, and the rule set itself, change nothing.
    void Copy(const KyCollisionRule* source, bool withGuid);

    /// The first valid item of this path, or null.
    const KyCollisionRuleItem* QueryRuleItem(const std::wstring& path) const;
    /// The valid item of a specialty at an index, or null.
    const KyCollisionRuleItem* QueryRuleItem(const std::wstring& spec, int index) const;

    /// Adds an item for a kind. One that is switched the other way is moved with its settings; one
    /// that is there already gets a second item beside it. False for a path that no item can have.
    bool AddRuleItem(const std::wstring& path, bool valid);

    /// Moves `item` over when it is among the items switched the other way, else takes ownership of
    /// it; one that is switched this way already is listed a second time. False, and the item stays
    /// the caller's, when it is null or no item can have its path.
    bool AddRuleItem(KyCollisionRuleItem* item, bool valid);

    /// Switches a valid item off; it is not destroyed. False when it is no valid item.
    bool DeleteRuleItem(const KyCollisionRuleItem* item);

    /// The valid, or the invalid, items of a specialty; null when it has no entry.
    const std::vector<KyCollisionRuleItem*>* GetRuleItemArray(const std::wstring& spec) const;
    const std::vector<KyCollisionRuleItem*>* GetInValidRuleItemArray(
        const std::wstring& spec) const;

    /// Switch all items of a specialty off, or on. Both start at the last item, so that doing one
    /// after the other restores the order.
    void DeleteAllItems(const std::wstring& spec);
    void AddAllItems(const std::wstring& spec);

    /// True for equal names, types, specialties and valid items. GUIDs and invalid items do not
    /// count, nor does the order of either.
    bool Equal(const KyCollisionRule& other) const;

  private:
    using ItemArray = std::vector<KyCollisionRuleItem*>;
    using ItemMap = std::map<std::wstring, ItemArray>;

    void InitResource();
    const KyCollisionRuleItem* QueryRuleItem(const std::wstring& path,
                                             const ItemArray& items) const;
    bool MoveItemByCache(const KyCollisionRuleItem* item, bool toValid);
    void AddSpecialty(const std::wstring& spec);
    void CopyItems(const ItemMap& source, ItemMap& target);
    bool HasEqualItems(const std::wstring& spec, const KyCollisionRule& other) const;

    std::wstring guid_;
    std::wstring ruleName_;
    EnumRuleType ruleType_ = eRuleTypeNormal;
    std::vector<std::wstring> specArray_;
    ItemMap validItems_;
    ItemMap invalidItems_;
};

}  // namespace KYCOLLISION::Rule
