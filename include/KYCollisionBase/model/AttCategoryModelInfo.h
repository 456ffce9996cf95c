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

/// One component kind on one floor, with its components.
class KYCB_API AttCategoryModelInfo {
  public:
    explicit AttCategoryModelInfo(const AttCategory& category);
    virtual ~AttCategoryModelInfo();
    AttCategoryModelInfo(const AttCategoryModelInfo&) = delete;
    AttCategoryModelInfo& operator=(const AttCategoryModelInfo&) = delete;

    const AttCategory& GetAttCategory() const;
    FloorModelInfo* GetBelongFloorModel() const;
    void SetBelongFloor(FloorModelInfo* floor);
    void AppendObject(ObjectModelInfo* obj);
    const std::multimap<std::wstring, ObjectModelInfo*>& GetObjects() const;
    Rule::KyCollisionRuleItem* GetCollisionRuleItem() const;
    void SetCollisionRuleItem(Rule::KyCollisionRuleItem* item);
    void ReleaseModel();

  private:
    AttCategory category_;
    FloorModelInfo* floor_ = nullptr;
    std::multimap<std::wstring, ObjectModelInfo*> objects_;
    Rule::KyCollisionRuleItem* ruleItem_ = nullptr;
};

}  // namespace KYCOLLISION::MODEL
