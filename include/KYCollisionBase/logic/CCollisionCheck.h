// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/logic/ECheckReturn.h"
#include "KYCollisionBase/logic/SCollisionFloor.h"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace KYCOLLISION::MODEL {
class ICollisionModel;
}
namespace KYCOLLISION::Rule {
class KyCollisionRuleMgr;
}
namespace KYCOLLISION::RESULT {
class KyResultItem;
struct CExistingHole;
}  // namespace KYCOLLISION::RESULT

namespace KYCOLLISION::LOGIC {

class IModelDataSource;

/// The object that a host drives: it holds the data source, the rules and the collision model, runs
/// a check over chosen floors, and hands out clash results and existing openings.
///
/// Order of use: SetDataSource and SetCollisionRule, InitCollisionModel, then any number of
/// CollisionCheck runs, each followed by GetCollisionResult and GetExistingHoles.
///
/// Ownership: what is set or built belongs to the driver. Replacing it, Release and the destructor
/// delete it. A driver cannot be copied.
///
/// Threads: the driver starts none. One thread at a time runs its operations; while that is
/// CollisionCheck, any other thread may call GetAllCheckObjectNum, GetCheckedObjectNum,
/// CheckIsSuccessDone and GetCurCheckFloor, and may set the stop flag. The counters and the success
/// flag are plain fields that are read and written through std::atomic_ref, each on its own: a
/// total and a count that are polled one after the other may belong to different floors. The floor
/// name is guarded by a lock that is held for the copy or the assignment only.
///
/// Errors: only CollisionCheck and InitCollisionModel report missing parts. The other operations do
/// nothing without a model. Exceptions of the data source pass through.
class KYCB_API CCollisionCheck {
  public:
    using FloorKey = std::pair<int, std::wstring>;

    CCollisionCheck();
    virtual ~CCollisionCheck();
    CCollisionCheck(const CCollisionCheck&) = delete;
    CCollisionCheck& operator=(const CCollisionCheck&) = delete;

    /// Deletes the data source, the model and the rules, in this order, and returns all progress
    /// fields to their initial values. The driver can then be set up anew.
    void Release();

    /// Takes a data source over and deletes the one held before. Never to be given the one held.
    void SetDataSource(IModelDataSource* source);
    IModelDataSource* GetDataSource() const { return dataSource_.get(); }

    /// Takes a rule manager over and deletes the one held before. Never to be given the one held.
    /// The model is rebound to its rules at the start of the next run.
    void SetCollisionRule(Rule::KyCollisionRuleMgr* rules);
    Rule::KyCollisionRuleMgr* GetCollisionRule() const { return rules_.get(); }

    /// Empties the model held, asks the data source for a new one, deletes the old one, and lets
    /// every component list its neighbours.
    /// @return false without a data source (then nothing changes) or when no model could be built.
    bool InitCollisionModel();
    MODEL::ICollisionModel* GetCollisionModel() { return model_.get(); }

    /// Whether a data source and a model are held; the rules are not asked for.
    bool IsCheckEnvironmentOk();

    /// Lets every component list its neighbours anew; needed after the host changed the model.
    void AnalyseBoxRelated();

    /// The number of components on the given floors, for a progress total.
    int GetAllObjectNum(const std::vector<FloorKey>& floorKeys);

    /// Forgets all clashes and binds the model to the current rules, as the start of a run does.
    void ResetCollisionTempData();

    /// Checks the given floors, one after the other. Missing parts are reported in the order model,
    /// rules, data source. The stop flag is read after each component and after each floor key; a
    /// stopped run keeps its counters and the clashes found so far. The calling thread rests for
    /// 10 ms after each floor, so that a host's window gets its turn.
    ECheckReturn CollisionCheck(const std::vector<SCollisionFloor>& floors);

    /// Bounds the memory of the meshes that a run keeps (bytes); 0, the default, for no bound. Over
    /// the limit, meshes that no later pair of the floor needs are released; a later floor asks the
    /// data source for them again. What a floor does need is kept whatever it takes, and the
    /// results are the same. A mesh counts with its vertices and triangles and with what a search
    /// tree over them may take. Holds from the next run on, for models that are WorkSetModelInfo.
    void SetMeshMemoryLimit(std::size_t bytes) { meshMemoryLimit_ = bytes; }
    std::size_t GetMeshMemoryLimit() const { return meshMemoryLimit_; }

    /// Components of the floor being checked. May be polled from any thread.
    int GetAllCheckObjectNum();
    /// Components of that floor whose check has started; stays below the total where kinds without
    /// a rule are passed over. May be polled from any thread.
    int GetCheckedObjectNum();
    /// Whether the last run went through every floor. May be polled from any thread.
    bool CheckIsSuccessDone();
    /// Returns the progress fields to their initial values.
    void ResetCheckStatus();
    /// Display name of the floor being checked. May be polled from any thread.
    std::wstring GetCurCheckFloor();

    /// Generates the results of the given floors into `results[floor key]`. A key without results
    /// is left as it was; a vector that already stands under a key is replaced. The caller owns the
    /// items, also those that it had stored under a replaced key. When a key is named twice in one
    /// call, the first results are deleted in favour of the second.
    void GetCollisionResult(const std::vector<SCollisionFloor>& floors,
                            std::map<FloorKey, std::vector<RESULT::KyResultItem*>>& results);

    /// Collects the existing openings of the given floors, filed in the same way.
    void GetExistingHoles(
        const std::vector<SCollisionFloor>& floors,
        std::map<FloorKey, std::vector<std::shared_ptr<RESULT::CExistingHole>>>& holes);

    /// How many results to expect of the given floors; asked before GetCollisionResult.
    int GetResultTempNum(const std::vector<FloorKey>& floorKeys);

    /// The cancel request. The host sets it, and clears it before the next run; the library only
    /// reads it, through std::atomic_ref. A thread that sets it during a run does the same.
    static bool s_bStopCheck;

  private:
    ECheckReturn CheckFloor(const SCollisionFloor& floor);
    void SetCurCheckFloor(const std::wstring& name);

    std::unique_ptr<IModelDataSource> dataSource_;
    std::unique_ptr<MODEL::ICollisionModel> model_;
    std::unique_ptr<Rule::KyCollisionRuleMgr> rules_;
    bool successDone_ = false;
    std::wstring curCheckFloor_;
    int allCheckObjectNum_ = 0;
    int checkedObjectNum_ = 0;
    std::mutex curCheckFloorLock_;
    std::size_t meshMemoryLimit_ = 0;
};

}  // namespace KYCOLLISION::LOGIC
