// SPDX-License-Identifier: Apache-2.0
// One run of the library over a work set.
#pragma once

#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ifchost/IfcDataSource.h"
#include "kyclash/ClashHistory.h"
#include "kyclash/Progress.h"
#include "kyclash/ResultTables.h"

namespace kyclash {

/// The floors of these names, each once, in their order; all of them when no name is given. Nothing
/// when a name is unknown, after a message on the standard error stream.
std::optional<std::vector<SCollisionFloor>> ChooseFloors(const std::vector<SCollisionFloor>& all,
                                                         const std::vector<std::string>& names);

/// Drives the library: the model of a work set, the run, and what comes of it. Not copyable.
class CheckRun {
  public:
    /// Builds the model and the neighbour lists. `rules` may be null when no run is meant.
    CheckRun(std::shared_ptr<const ifchost::IfcWorkset> workset,
             std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> rules);
    CheckRun(const CheckRun&) = delete;
    CheckRun& operator=(const CheckRun&) = delete;

    /// Runs on a thread of its own, as the library's other hosts do, and shows the progress. With
    /// more than one job, that many floors at a time are checked in worker processes; what is
    /// found, and its order, are the same.
    /// @return false when the user stopped it.
    bool Run(const std::vector<SCollisionFloor>& floors, std::size_t jobs, Progress& progress);

    /// The clashes of all floors, with positions in world coordinates; once per run. A run over
    /// some floors records clashes on components of others too, and a pair is listed on the floor
    /// of its main component, wherever that is.
    std::vector<ResultItemPtr> TakeClashes();

    /// The openings of these floors.
    std::vector<Opening> Openings(const std::vector<SCollisionFloor>& floors);

    /// Components of a floor, and the pairs of neighbours that begin on it. A pair that both
    /// components list counts once, for the floor asked about first.
    struct FloorSize {
        std::size_t components = 0;
        std::size_t candidatePairs = 0;
    };
    std::vector<FloorSize> SizesOf(const std::vector<SCollisionFloor>& floors);

    const ifchost::IfcWorkset& Workset() const { return *workset_; }
    /// What the run found wrong with bodies.
    const std::vector<ifchost::BodyNote>& BodyNotes() const;

  private:
    std::shared_ptr<const ifchost::IfcWorkset> workset_;
    KYCOLLISION::LOGIC::CCollisionCheck check_;
    ifchost::IfcDataSource* source_;  // the driver's
    std::optional<std::vector<ifchost::BodyNote>> notesOfWorkers_;
};

}  // namespace kyclash
