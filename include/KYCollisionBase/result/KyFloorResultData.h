// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <memory>
#include <string>
#include <vector>

namespace KYCOLLISION::LOGIC {
class IModelDataSource;
}
namespace KYCOLLISION::MODEL {
class ICollisionModel;
}
namespace kycb {
class ItemPool;
}

namespace KYCOLLISION::RESULT {

class KyResultItem;

/// The clash results of one floor. Owns its items; an item may stand in one floor only, though
/// several times in it.
///
/// A copy lists the same items and shares them: releasing or replacing them in one of the two
/// leaves them to the other, and the last one deletes them.
class KYCB_API KyFloorResultData {
  public:
    explicit KyFloorResultData(std::wstring floorName);
    ~KyFloorResultData();
    KyFloorResultData(const KyFloorResultData& other);
    KyFloorResultData& operator=(const KyFloorResultData& other);

    std::wstring GetFloorName() const;

    /// Deletes every item.
    void ReleaseResults();

    /// Deletes the items held and takes over `items` in their place. Null entries are dropped; an
    /// item that was held already is kept.
    void AppendNewResults(std::vector<KyResultItem*> items);

    /// Takes over one more item, which may be listed already. False for null.
    bool AppendResultItem(KyResultItem* item);

    /// Sets `items` to those of the floor, in the order in which they were appended.
    void GetResultItems_byAtt(std::vector<KyResultItem*>& items) const;

    /// Appends the items whose clash height (the z of the clash point, mm) is above `lower` and not
    /// above `upper`, so that adjacent bands share none. Throws what GetClashPoint throws.
    void GetResultItems_byHeight(double lower, double upper,
                                 std::vector<KyResultItem*>& items) const;

    /// Takes names, system codes and heights of the items afresh from the model.
    void InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                     const MODEL::ICollisionModel* model);

    /// Places the items among the axes that the host has for this floor of project `projectId`;
    /// nothing without a source. Axes received are deleted also when an exception passes.
    void ReCatulateAxisInfo(const LOGIC::IModelDataSource* source, int projectId);

  private:
    std::wstring floorName_;
    std::vector<KyResultItem*> items_;
    std::shared_ptr<kycb::ItemPool> pool_;  // owns what items_ lists
};

}  // namespace KYCOLLISION::RESULT
