// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/logic/CCollisionCheck.h"

#include <cstddef>
#include <map>

#include "scenes/Outcome.h"
#include "scenes/Scene.h"
#include "support/PriorityScope.h"
#include "support/StopFlag.h"

namespace KYCOLLISION::MODEL {
class ObjectModelInfo;
}

namespace kycb::scenes {

class SceneHost;

/// Who walks the floors of a run.
enum class Walk {
    kDriver,  ///< the library's driver, which rests after each floor
    kModel,   ///< the session, with the model's own operations, for runs by the thousand
};

/// A scene in the hands of the library, reached through what it exports.
class LibrarySession {
  public:
    /// The scene must outlive the session.
    LibrarySession(const Scene& scene, Walk walk);
    ~LibrarySession();
    LibrarySession(const LibrarySession&) = delete;
    LibrarySession& operator=(const LibrarySession&) = delete;

    Neighbours GetNeighbours() const;
    CheckOutcome Check(const SceneRun& run);
    ResultOutcome GetResults(const SceneRun& run);
    Refreshed Refresh(const ResultFields& item);
    HoleOutcome GetHoles(const SceneRun& run);

  private:
    using ObjectModelInfo = KYCOLLISION::MODEL::ObjectModelInfo;

    void WalkWithDriver(const SceneRun& run, CheckOutcome& outcome);
    void WalkWithModel(const SceneRun& run, CheckOutcome& outcome);
    Records ReadRecords() const;

    const Scene& scene_;
    Walk walk_;
    test::PriorityScope priorities_;
    test::StopFlag stop_;
    KYCOLLISION::LOGIC::CCollisionCheck driver_;
    SceneHost* host_ = nullptr;  // the driver's
    std::map<const ObjectModelInfo*, std::size_t> numbers_;
    std::vector<const ObjectModelInfo*> objects_;  // by number; null for those in no model
};

}  // namespace kycb::scenes
