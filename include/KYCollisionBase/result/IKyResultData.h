// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/model/SKyModelInfo.h"
#include "KYCollisionBase/result/SWorkSetFloorInfo.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace KYCOLLISION::LOGIC {
class IModelDataSource;
}
namespace KYCOLLISION::MODEL {
class ICollisionModel;
}

namespace KYCOLLISION::RESULT {

class KyResultItem;

/// The clash results of one work set, by project and floor. The order of the virtual operations is
/// binding.
///
/// A floor key is (project id, floor name); one that names no project or floor gives nothing and
/// changes nothing. The container owns its items. A pointer that a query hands out is valid until
/// ReleaseResults, or RemoveOldResults or AppendNewResults of its floor, or destruction.
///
/// Threads: used by one thread at a time.
class KYCB_API IKyResultData {
  public:
    using FloorKey = std::pair<int, std::wstring>;
    using ResultGroup = std::pair<SWorkSetFloorInfo, std::vector<KyResultItem*>>;

    virtual ~IKyResultData() = default;

    /// Deletes everything held and empties the time stamp.
    virtual void ReleaseResults() = 0;

    /// The host's description of the work set.
    virtual const SKyModelInfo& GetModelInfo() const = 0;

    /// Appends the items of one floor to `items`.
    virtual void GetResultItems(const FloorKey& floorKey, std::vector<KyResultItem*>& items) = 0;

    /// Appends one group per selector to `groups`, also when the group is empty.
    ///
    /// A group holds the items of the selector's floors, in the order of its list, when
    /// `byFloorList` is true; else those of its projects, in ascending order of the ids, whose
    /// clash height lies in its band (above the lower bound, not above the upper one). With
    /// `sortByPriority` each group is sorted by KyResultItem::PriorityCompareHigh; items that this
    /// does not tell apart keep their order.
    virtual void GetResultItems(const std::vector<SWorkSetFloorInfo>& selectors, bool byFloorList,
                                std::vector<ResultGroup>& groups, bool sortByPriority) = 0;

    /// Sets the entry of every floor in `all`; other entries stay.
    virtual void GetAllResultItems(std::map<FloorKey, std::vector<KyResultItem*>>& all) = 0;

    /// Removes a floor and deletes its items.
    virtual void RemoveOldResults(const FloorKey& floorKey) = 0;

    /// Replaces the items of a floor, which is created when it is missing, by `items`, which belong
    /// to the container from then on. Null entries are dropped.
    virtual void AppendNewResults(const FloorKey& floorKey, std::vector<KyResultItem*> items) = 0;

    /// Adds `items`, which belong to the container from then on, each to its own project and floor
    /// (those of component A). Null entries are skipped. What was held before stays, so items that
    /// are given twice are listed twice.
    virtual void InitByResults(const std::vector<KyResultItem*>& items) = 0;

    /// Takes names, system codes and heights of all items afresh from the model.
    virtual void InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                             const MODEL::ICollisionModel* model) = 0;

    /// Places all items anew among the axes that the host has for their floors.
    virtual void ReCatulateAxisInfo(const LOGIC::IModelDataSource* source) = 0;

    /// Writes all results to an XML file; false when the file could not be written, and then an
    /// earlier file of that name is still whole.
    virtual bool SerializeToXml(std::wstring path) = 0;

    /// Adds the results in an XML file to those held; false when it cannot be read, and then
    /// nothing has changed. A number that is none throws boost::bad_lexical_cast; the items before
    /// it have been added by then.
    virtual bool InitByXml(std::wstring path) = 0;

    /// The host's own mark of the run that the results come from.
    virtual void SetTimeStamp(std::wstring timeStamp) = 0;
    virtual std::wstring GetTimeStamp() = 0;
};

}  // namespace KYCOLLISION::RESULT
