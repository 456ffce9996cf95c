// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/logic/ECheckReturn.h"
#include "KYCollisionBase/logic/SCollisionFloor.h"
#include "KYCollisionBase/model/AttCategory.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desk/core/BackgroundTask.h"
#include "desk/core/ModelNote.h"
#include "desk/core/ResultMerge.h"
#include "desk/core/SceneMeshes.h"
#include "desk/core/WorksetLoading.h"
#include "kyclash/CheckReport.h"

namespace KYCOLLISION::LOGIC {
class CCollisionCheck;
}
namespace KYCOLLISION::RESULT {
class KyWorksetResultData;
struct CExistingHole;
}  // namespace KYCOLLISION::RESULT
namespace ifchost {
class IfcWorkset;
class IfcDataSource;
}  // namespace ifchost

namespace desk {

enum class Activity { kIdle, kOpening, kReadingResults, kChecking };

/// What a run is to check. Kinds are category paths.
struct CheckRequest {
    std::vector<std::wstring> floors;  ///< names, as Session::Floors() has them
    std::vector<std::wstring> kinds;   ///< those that take part, as Session::Kinds() has them
};

/// What a session works with.
struct SessionOptions {
    LoadOptions loading;
    /// Rule file; none: the one that ships with the hosts. "built-in": the rules without a file.
    std::optional<std::filesystem::path> rules;
};

/// How an activity ended.
struct ActivityOutcome {
    Activity activity = Activity::kIdle;
    bool succeeded = false;              ///< went through to the end
    bool stopped = false;                ///< the user wanted it to stop
    std::size_t clashes = 0;             ///< of a check: results in all
    std::vector<std::string> errors;     ///< UTF-8, to be shown
    std::vector<ModelNote> modelNotes;   ///< of reading
    std::vector<std::string> bodyNotes;  ///< of a check: bodies that had to be repaired (UTF-8)
    std::optional<kyclash::ReportedRules> rules;  ///< of a check
};

/// A kind of components and how many there are.
struct KindCount {
    KYCOLLISION::MODEL::AttCategory kind;
    std::size_t count = 0;
};

/// What the window works on: the open models, the check driver, and the results with what the user
/// made of them. It knows no toolkit.
///
/// Opening, reading results and checking run on a thread of their own. The owner calls Progress
/// while that goes on, and Poll, which takes the outcome over once there is one. Results can be
/// read and edited all the while; they change only in Poll and CloseResults.
///
/// Threads: the owner's, for all operations.
class Session {
  public:
    using Item = KYCOLLISION::RESULT::KyResultItem;
    using Hole = KYCOLLISION::RESULT::CExistingHole;

    explicit Session(SessionOptions options = {});
    /// Stops what is going on and waits for it.
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    Activity CurrentActivity() const { return activity_; }
    TaskProgress Progress() const;
    /// Asks the activity to end soon; Poll tells when it has.
    void RequestStop();
    /// Whether the activity has ended, so that Poll has its outcome.
    bool HasOutcome() const { return activity_ != Activity::kIdle && task_.IsDone(); }
    /// The outcome of the activity, once, when it has ended.
    std::optional<ActivityOutcome> Poll();

    /// Starts reading models, in place of those that are open. Those (and the results) stay until
    /// the new ones are there, and when they cannot be read. Precondition: idle.
    void StartOpen(std::vector<std::filesystem::path> models);
    /// Starts a run. The rules are read anew, so that an edited rule file counts; kinds that the
    /// request leaves out are switched off in them. Precondition: idle, and models are open.
    void StartCheck(const CheckRequest& request);

    /// As in the options; counts from the next run on.
    const std::optional<std::filesystem::path>& RuleFile() const { return options_.rules; }
    void SetRuleFile(const std::filesystem::path& file) { options_.rules = file; }

    const std::vector<std::filesystem::path>& Models() const { return models_; }
    /// Null while no models are open.
    const std::shared_ptr<const ifchost::IfcWorkset>& Workset() const { return workset_; }
    /// Null while no models are open.
    const std::shared_ptr<const SceneMeshes>& Meshes() const { return meshes_; }
    std::vector<SCollisionFloor> Floors() const;
    std::vector<KindCount> Kinds() const;
    /// Index in the work set's components, if the model of that component is open.
    std::optional<std::size_t> ComponentIndex(int projectId, const std::wstring& guid) const;
    const std::vector<std::shared_ptr<Hole>>& Openings() const { return openings_; }

    /// All results; they belong to the session.
    std::vector<Item*> Results() const;
    void SetDisposeState(Item& item, int state);
    void SetRemark(Item& item, const std::wstring& remark);
    void SetViewport(Item& item, const std::wstring& viewport);

    /// Whether there is something that SaveResults has not written.
    bool IsModified() const { return modified_; }
    /// Where the results were last saved to or read from.
    const std::optional<std::filesystem::path>& ResultFile() const { return resultFile_; }
    /// Writes the results, and the list of the models beside them. False, with `error`, when one
    /// of the two fails.
    bool SaveResults(const std::filesystem::path& file, std::string& error);
    /// Starts reading results in place of those held, which stay until the new ones are there, and
    /// when the file holds none. Precondition: idle.
    void StartOpenResults(const std::filesystem::path& file);
    /// Forgets all results.
    void CloseResults();

  private:
    struct OpenedModels;
    struct ReadResults;
    struct CheckedModels;

    void TakeOver(OpenedModels& opened, ActivityOutcome& outcome);
    void TakeOver(ReadResults& read, ActivityOutcome& outcome);
    void TakeOver(CheckedModels& checked, ActivityOutcome& outcome);

    SessionOptions options_;
    Activity activity_ = Activity::kIdle;

    std::vector<std::filesystem::path> models_;
    std::shared_ptr<const ifchost::IfcWorkset> workset_;
    std::shared_ptr<const SceneMeshes> meshes_;
    std::unique_ptr<KYCOLLISION::LOGIC::CCollisionCheck> driver_;
    const ifchost::IfcDataSource* source_ = nullptr;  // the driver's
    std::vector<std::shared_ptr<Hole>> openings_;

    std::unique_ptr<KYCOLLISION::RESULT::KyWorksetResultData> results_;
    std::optional<std::filesystem::path> resultFile_;
    bool modified_ = false;

    std::unique_ptr<OpenedModels> opened_;
    std::unique_ptr<ReadResults> read_;
    std::unique_ptr<CheckedModels> checked_;
    // Last: its end is waited for before anything that the work uses goes.
    BackgroundTask task_;
};

}  // namespace desk
