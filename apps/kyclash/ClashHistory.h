// SPDX-License-Identifier: Apache-2.0
// What became of the clashes of an earlier run, and what the user did about them.
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kyclash {

using ResultItemPtr = std::unique_ptr<KYCOLLISION::RESULT::KyResultItem>;
using FloorKey = std::pair<int, std::wstring>;

/// Where a clash stands, compared with the run before.
enum class ClashStatus {
    New,
    StillOpen,    ///< the run before had it too
    Returned,     ///< it was gone
    Gone,         ///< the run before had it, and this one looked and found nothing
    NotRetested,  ///< the run before had it, and this one did not look
};
inline constexpr std::size_t kClashStatusCount = 5;

/// The status as users see it, as "still open".
std::string_view StatusText(ClashStatus status);

/// A clash with its status.
struct TrackedClash {
    ResultItemPtr item;
    ClashStatus status = ClashStatus::New;
};

/// The results of an earlier run.
struct PreviousResults {
    std::vector<ResultItemPtr> open;  ///< of its results.xml, in the order of the container
    std::vector<ResultItemPtr> gone;  ///< of the results-gone.xml beside it, if there is one
};

/// The items of a result file, by project, floor and order in the file. Nothing, and `error` filled
/// (it names the file and the place), when it cannot be read.
std::optional<std::vector<ResultItemPtr>> ReadResultFile(const std::filesystem::path& file,
                                                         std::string& error);

/// A result file and the list of gone clashes beside it.
std::optional<PreviousResults> ReadPreviousResults(const std::filesystem::path& file,
                                                   std::string& error);

/// The file beside a result file that keeps the clashes that are gone.
std::filesystem::path GoneFileOf(const std::filesystem::path& resultFile);

/// What a run looked at.
struct RunScope {
    std::set<FloorKey> floors;  ///< that were checked
    bool isComplete = true;     ///< false for a run that was stopped
    /// The floors of all components of the models, also of those not checked, by GUID.
    std::map<std::wstring, FloorKey> places = {};
};

/// Compares the clashes found with an earlier run's and carries state, remark, viewport and picture
/// of each over to the same clash.
///
/// The same clash is, in this order: equal projects, floors and GUIDs; the same two components by
/// project and GUID, in either order and on any floors; the same two GUIDs, where that leaves
/// exactly one on each side (models given in another order have other project ids). Among several,
/// one with the same offsets and point comes first.
///
/// A clash that was not found again is gone when the run was complete and went over the floors of
/// both components; else it is not re-tested. A found one that is among the gone has returned. What
/// counts is the floor that a component stands on now. One that the models have no more counts
/// where it stood, unless another model of the earlier run has its project id by now: then its own
/// model was not given.
///
/// The result holds the found ones in their order, then those not re-tested, then the gone ones,
/// the earlier run's after the new.
std::vector<TrackedClash> TrackClashes(std::vector<ResultItemPtr> found, PreviousResults previous,
                                       const RunScope& scope);

/// How many clashes have each status, by its value.
std::array<std::size_t, kClashStatusCount> CountStatuses(const std::vector<TrackedClash>& clashes);

/// Whether the user has set a state, remark, viewport or picture.
bool IsHandled(const KYCOLLISION::RESULT::KyResultItem& item);

/// Whether both are at the same place with the same offsets; positions that are none match nothing.
bool IsSamePlace(const KYCOLLISION::RESULT::KyResultItem& a,
                 const KYCOLLISION::RESULT::KyResultItem& b);

/// For each later clash the position of the same earlier one, if there is one.
using Matches = std::vector<std::optional<std::size_t>>;

/// Finds the same clashes of two runs, by the rules of TrackClashes.
Matches MatchClashes(const std::vector<const KYCOLLISION::RESULT::KyResultItem*>& later,
                     const std::vector<const KYCOLLISION::RESULT::KyResultItem*>& earlier);

std::vector<const KYCOLLISION::RESULT::KyResultItem*> BorrowItems(
    const std::vector<ResultItemPtr>& items);

}  // namespace kyclash
