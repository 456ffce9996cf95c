// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/result/KyFloorResultData.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace KYCOLLISION::RESULT {

/// The clash results of one project, by floor. Owns its floors; only a work set creates projects.
///
/// An operation that takes a floor key does nothing when the key is another project's. A copy
/// holds the same floors and shares them.
class KYCB_API KyProjectResultData {
  public:
    using FloorKey = std::pair<int, std::wstring>;

    ~KyProjectResultData();
    KyProjectResultData(const KyProjectResultData&);
    KyProjectResultData& operator=(const KyProjectResultData&);

    int GetProjectId() const;

    /// Deletes every floor with its items.
    void ReleaseResults();

    /// Removes one floor and deletes its items.
    void RemoveOldResults(const FloorKey& floorKey);

    /// Replaces the items of a floor, which is created when it is missing. The items of another
    /// project's key stay the caller's.
    void AppendNewResults(const FloorKey& floorKey, std::vector<KyResultItem*> items);

    /// Sets the entry of every floor in `all`, in place of what stood there.
    void GetAllResultItems(std::map<FloorKey, std::vector<KyResultItem*>>& all) const;

    /// Sets `items` to those of a floor; leaves it alone when the floor does not exist.
    void GetResultItems_byAtt(const FloorKey& floorKey, std::vector<KyResultItem*>& items) const;

    /// Appends the items of all floors, in the order of their names, that lie in the height band.
    void GetResultItems_byHeight(double lower, double upper,
                                 std::vector<KyResultItem*>& items) const;

    /// Adds an item to the floor of its component A, whatever its project. False for null.
    bool AppendResultItem(KyResultItem* item);

    void InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                     const MODEL::ICollisionModel* model);
    void ReCatulateAxisInfo(const LOGIC::IModelDataSource* source);

  private:
    friend class KyWorksetResultData;
    explicit KyProjectResultData(int projectId);

    KyFloorResultData& GetOrCreateFloor(const std::wstring& floorName);

    int projectId_;
    std::map<std::wstring, std::shared_ptr<KyFloorResultData>> floors_;
};

}  // namespace KYCOLLISION::RESULT
