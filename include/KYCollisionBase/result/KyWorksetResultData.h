// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/result/IKyResultData.h"
#include "KYCollisionBase/result/KyProjectResultData.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace KYCOLLISION::RESULT {

/// The clash results of one work set, by project and floor. Owns its projects.
///
/// A copy holds the same projects and shares them.
class KYCB_API KyWorksetResultData : public IKyResultData {
  public:
    /// A new empty container. `modelId` is the host's; the library stores it.
    static std::unique_ptr<KyWorksetResultData> Create(KyModelType modelType, int modelId);

    ~KyWorksetResultData() override;
    KyWorksetResultData(const KyWorksetResultData&);
    KyWorksetResultData& operator=(const KyWorksetResultData&);

    void ReleaseResults() override;
    const SKyModelInfo& GetModelInfo() const override;
    void SetModelInfo(const SKyModelInfo& modelInfo);
    void GetResultItems(const FloorKey& floorKey, std::vector<KyResultItem*>& items) override;
    void GetResultItems(const std::vector<SWorkSetFloorInfo>& selectors, bool byFloorList,
                        std::vector<ResultGroup>& groups, bool sortByPriority) override;
    void GetAllResultItems(std::map<FloorKey, std::vector<KyResultItem*>>& all) override;
    void RemoveOldResults(const FloorKey& floorKey) override;
    void AppendNewResults(const FloorKey& floorKey, std::vector<KyResultItem*> items) override;
    void InitByResults(const std::vector<KyResultItem*>& items) override;
    void InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                     const MODEL::ICollisionModel* model) override;
    void ReCatulateAxisInfo(const LOGIC::IModelDataSource* source) override;

    /// Model info and time stamp are not written. Characters that XML forbids (control characters
    /// but tab and line ends, unpaired surrogates) are written as U+FFFD; every other text comes
    /// back as it was.
    bool SerializeToXml(std::wstring path) override;

    /// Elements are known by their place, not by their names, and what stands between them
    /// (comments, texts) is passed over; each item goes to the project and floor of its own
    /// component A, wherever it stands. A file above 1 GiB (some 1.8 million items) is refused.
    bool InitByXml(std::wstring path) override;

    void SetTimeStamp(std::wstring timeStamp) override;
    std::wstring GetTimeStamp() override;

    /// The project, or null.
    KyProjectResultData* GetProjectResults(int projectId) const;

    /// Adds an item, which belongs to the container from then on, to the project and floor of its
    /// component A. False for null.
    bool AppendResultItem(KyResultItem* item);

    /// Why the last SerializeToXml or InitByXml failed or threw, naming the file and the place;
    /// empty after a success.
    const std::wstring& GetErrorText() const;

  protected:
    KyWorksetResultData(KyModelType modelType, int modelId);

  private:
    KyProjectResultData& GetOrCreateProject(int projectId);
    void SelectByHeight(const SWorkSetFloorInfo& selector, std::vector<KyResultItem*>& items) const;

    SKyModelInfo modelInfo_;
    std::map<int, std::shared_ptr<KyProjectResultData>> projects_;
    std::wstring timeStamp_;
    std::wstring errorText_;
};

}  // namespace KYCOLLISION::RESULT
