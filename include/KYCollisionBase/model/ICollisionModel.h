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

/// The root of a collision model as the check driver and the results see it. The order of the
/// virtual operations is binding.
///
/// A floor key is (project id, floor name). A key that names no project or floor of the model makes
/// an operation do nothing: counts are 0, pointers null. Nothing else is reported as an error.
///
/// Threads: used by one thread at a time. During a check another thread may read the counter that
/// was given to CollisionCheck, through `std::atomic_ref`.
class KYCB_API ICollisionModel {
  public:
    using FloorKey = std::pair<int, std::wstring>;

    virtual ~ICollisionModel() = default;

    /// Deletes all children and leaves an empty tree.
    virtual void ReleaseModel() = 0;

    /// Appends every component of the whole work set whose box meets `box` in plan and reaches
    /// at least 1 mm into its vertical range.
    virtual void QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d& box,
                             std::vector<ObjectModelInfo*>& found) = 0;

    /// The component of a floor under `guid` in lower case, or null.
    virtual ObjectModelInfo* GetObjectModelInfo(const FloorKey& floorKey,
                                                std::wstring guid) const = 0;

    /// Lets every component of one floor list its neighbours anew.
    virtual void AnalyseBoxRelated(const FloorKey& floorKey) = 0;

    /// Lets every component of the model list its neighbours anew.
    virtual void AnalyseBoxRelated() = 0;

    /// Checks the components of one floor that have a rule. `checkedCount` grows by one as each
    /// component starts. Returns early, after the component at hand, when a stop is requested.
    virtual void CollisionCheck(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                                int& checkedCount) = 0;

    /// The number of components of one floor, those without a rule included.
    virtual int GetAllObjectNum(const FloorKey& floorKey) = 0;

    /// Makes every component forget the clashes found.
    virtual void ClearCollisionResultData() = 0;

    /// Binds every category to its rule item, or to none; a null manager changes nothing. The
    /// items stay owned by the manager, which must outlive the next check.
    virtual void ResetModelByCollisionRule(Rule::KyCollisionRuleMgr* rules) = 0;

    /// Appends the results of one floor, ordered by the two GUIDs; the caller owns the new items.
    virtual void GetFloorCollisionResult(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                                         std::vector<RESULT::KyResultItem*>& items) = 0;

    /// Appends the existing openings of one floor.
    virtual void GetFloorExistingHoles(
        LOGIC::IModelDataSource* source, const FloorKey& floorKey,
        std::vector<std::shared_ptr<RESULT::CExistingHole>>& holes) const = 0;

    /// How many results to expect of the floor; to be asked before they are generated.
    virtual int GetFloorResultTempNum(LOGIC::IModelDataSource* source,
                                      const FloorKey& floorKey) = 0;

    /// The host's description of the work set.
    virtual const SKyModelInfo& GetModelInfo() const = 0;

    /// Whether every project can report existing openings; true without projects.
    virtual bool IsSupportHole() const = 0;
};

}  // namespace KYCOLLISION::MODEL
