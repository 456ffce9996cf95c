// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/model/SKyModelInfo.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace KYCOLLISION::LOGIC {
class IModelDataSource;
}
namespace KYCOLLISION::Rule {
class KyCollisionRuleMgr;
}
namespace KYCOLLISION::RESULT {
class KyResultItem;
struct CExistingHole;
}  // namespace KYCOLLISION::RESULT

namespace KYCOLLISION::MODEL {

class ObjectModelInfo;

/// The root of a collision model as the check driver and the results see it.
class KYCB_API ICollisionModel {
  public:
    using FloorKey = std::pair<int, std::wstring>;

    virtual ~ICollisionModel() = default;

    virtual void ReleaseModel() = 0;
    virtual void QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d& box,
                             std::vector<ObjectModelInfo*>& found) = 0;
    virtual ObjectModelInfo* GetObjectModelInfo(const FloorKey& floorKey,
                                                std::wstring guid) const = 0;
    virtual void AnalyseBoxRelated(const FloorKey& floorKey) = 0;
    virtual void AnalyseBoxRelated() = 0;
    virtual void CollisionCheck(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                                int& checkedCount) = 0;
    virtual int GetAllObjectNum(const FloorKey& floorKey) = 0;
    virtual void ClearCollisionResultData() = 0;
    virtual void ResetModelByCollisionRule(Rule::KyCollisionRuleMgr* rules) = 0;
    virtual void GetFloorCollisionResult(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                                         std::vector<RESULT::KyResultItem*>& items) = 0;
    virtual void GetFloorExistingHoles(
        LOGIC::IModelDataSource* source, const FloorKey& floorKey,
        std::vector<std::shared_ptr<RESULT::CExistingHole>>& holes) const = 0;
    virtual int GetFloorResultTempNum(LOGIC::IModelDataSource* source,
                                      const FloorKey& floorKey) = 0;
    virtual const SKyModelInfo& GetModelInfo() const = 0;
    virtual bool IsSupportHole() const = 0;
};

}  // namespace KYCOLLISION::MODEL
