// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/model/AttCategory.h"

#include <map>
#include <string>

namespace KYCOLLISION::Rule {
class KyCollisionRuleItem;
}

namespace KYCOLLISION::MODEL {

class FloorModelInfo;
class ObjectModelInfo;

/// One component kind on one floor, with its components in ascending GUID order.
class KYCB_API AttCategoryModelInfo {
  public:
    explicit AttCategoryModelInfo(const AttCategory& category);
    virtual ~AttCategoryModelInfo();
    AttCategoryModelInfo(const AttCategoryModelInfo&) = delete;
    AttCategoryModelInfo& operator=(const AttCategoryModelInfo&) = delete;

    const AttCategory& GetAttCategory() const { return category_; }

    /// The category path, as AttCategory::categoryIndex gives it.
    const std::wstring& GetCategoryPath() const { return path_; }

    /// What the category predicates answer, asked once: structural member (IsQzlb_JJP), kind of
    /// services run (IsFgQjPsLsRs_JJP), subject to diameter filters (IsNeedFiter).
    bool IsStructuralMember() const { return structural_; }
    int GetRunKind() const { return runKind_; }
    bool IsDiameterFiltered() const { return diameterFiltered_; }

    /// The floor that holds this kind, or null; a plain back pointer.
    FloorModelInfo* GetBelongFloorModel() const { return floor_; }
    void SetBelongFloor(FloorModelInfo* floor) { floor_ = floor; }

    /// Takes a component over, under the GUID that it has now. Several may share a GUID; they stay
    /// in the order in which they came. Null does nothing.
    void AppendObject(ObjectModelInfo* obj);
    const std::multimap<std::wstring, ObjectModelInfo*>& GetObjects() const { return objects_; }

    /// The rule of this kind, owned by the rule set, or null when the kind takes no part.
    Rule::KyCollisionRuleItem* GetCollisionRuleItem() const { return ruleItem_; }
    void SetCollisionRuleItem(Rule::KyCollisionRuleItem* item) { ruleItem_ = item; }

    /// Deletes all components. Those of other kinds forget them, and the floor's index is dropped.
    void ReleaseModel();

  private:
    void DeleteObjects();

    AttCategory category_;
    FloorModelInfo* floor_ = nullptr;
    std::multimap<std::wstring, ObjectModelInfo*> objects_;
    Rule::KyCollisionRuleItem* ruleItem_ = nullptr;
    std::wstring path_;
    int runKind_ = 0;
    bool structural_ = false;
    bool diameterFiltered_ = false;
};

}  // namespace KYCOLLISION::MODEL
