// SPDX-License-Identifier: Apache-2.0
#include "kyclash/ClashHistory.h"

#include "KYCollisionBase/result/KyWorksetResultData.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <system_error>

#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include "ifchost/HostText.h"
#include "ifchost/PackageCache.h"

namespace kyclash {
namespace {

using KYCOLLISION::RESULT::KyResultItem;
using KYCOLLISION::RESULT::KyWorksetResultData;
using Component = std::pair<int, std::wstring>;

Component ComponentA(const KyResultItem& item) {
    return {item.GetProjectA(), item.GetObjGuidA()};
}
Component ComponentB(const KyResultItem& item) {
    return {item.GetProjectB(), item.GetObjGuidB()};
}

template <class T>
std::pair<T, T> Unordered(T a, T b) {
    return b < a ? std::pair<T, T>(std::move(b), std::move(a))
                 : std::pair<T, T>(std::move(a), std::move(b));
}

using GuidPair = std::pair<std::wstring, std::wstring>;

GuidPair GuidPairOf(const KyResultItem& item) {
    return Unordered(item.GetObjGuidA(), item.GetObjGuidB());
}

bool IsSamePair(const KyResultItem& a, const KyResultItem& b) {
    return Unordered(ComponentA(a), ComponentB(a)) == Unordered(ComponentA(b), ComponentB(b));
}

// Pairs up the clashes of two runs, one way of being the same after the other.
class Matcher {
  public:
    using Items = std::vector<const KyResultItem*>;

    Matcher(const Items& later, const Items& earlier)
        : later_(later), earlier_(earlier), matches_(later.size()), taken_(earlier.size(), false) {
        for (std::size_t i = 0; i < earlier.size(); ++i)
            byGuids_[GuidPairOf(*earlier[i])].push_back(i);
    }

    Matches Run() {
        MatchBy([](const KyResultItem& a, const KyResultItem& b) {
            return a.IsSameResult_MainInfo(&b);
        });
        MatchBy(IsSamePair);
        MatchUniqueGuids();
        return std::move(matches_);
    }

  private:
    template <class Same>
    void MatchBy(const Same& same) {
        for (std::size_t i = 0; i < later_.size(); ++i) {
            if (matches_[i]) continue;
            const auto bucket = byGuids_.find(GuidPairOf(*later_[i]));
            if (bucket == byGuids_.end()) continue;
            std::optional<std::size_t> best;
            for (const std::size_t candidate : bucket->second) {
                if (taken_[candidate] || !same(*later_[i], *earlier_[candidate])) continue;
                if (!best || IsSamePlace(*later_[i], *earlier_[candidate])) best = candidate;
                if (IsSamePlace(*later_[i], *earlier_[candidate])) break;
            }
            if (best) Take(i, *best);
        }
    }

    void MatchUniqueGuids() {
        std::map<GuidPair, std::vector<std::size_t>> open;
        for (std::size_t i = 0; i < later_.size(); ++i) {
            if (!matches_[i]) open[GuidPairOf(*later_[i])].push_back(i);
        }
        for (const auto& [guids, items] : open) {
            const auto bucket = byGuids_.find(guids);
            if (items.size() != 1 || bucket == byGuids_.end()) continue;
            std::vector<std::size_t> left;
            std::copy_if(bucket->second.begin(), bucket->second.end(), std::back_inserter(left),
                         [&](std::size_t candidate) { return !taken_[candidate]; });
            if (left.size() == 1) Take(items.front(), left.front());
        }
    }

    void Take(std::size_t later, std::size_t earlier) {
        matches_[later] = earlier;
        taken_[earlier] = true;
    }

    const Items& later_;
    const Items& earlier_;
    std::map<GuidPair, std::vector<std::size_t>> byGuids_;
    Matches matches_;
    std::vector<bool> taken_;
};

void CarryOver(const KyResultItem& from, KyResultItem& to) {
    to.SetDisposeState(from.GetDisposeState());
    to.SetRemark(from.GetRemark());
    to.SetViewport(from.GetViewport());
    to.SetPicture(from.GetPicuuid(), from.GetPicmd5(), from.GetPicsize());
}

// Tells which clashes of an earlier run this one would have found if they were still there.
class RetestCheck {
  public:
    RetestCheck(const RunScope& scope, const PreviousResults& previous) : scope_(scope) {
        for (const auto* items : {&previous.open, &previous.gone}) {
            for (const ResultItemPtr& item : *items) {
                Recognise(ComponentA(*item));
                Recognise(ComponentB(*item));
            }
        }
        for (const auto& [earlier, now] : projectNow_)
            recognised_.insert(now);
    }

    bool WasRetested(const KyResultItem& item) const {
        return scope_.isComplete && WasChecked(ComponentA(item), item.GetFloorA()) &&
               WasChecked(ComponentB(item), item.GetFloorB());
    }

  private:
    // Where a component of the earlier run stands now.
    std::optional<FloorKey> PlaceOf(const Component& component) const {
        const auto found = scope_.places.find(component.second);
        return found == scope_.places.end() ? std::nullopt : std::optional(found->second);
    }

    void Recognise(const Component& component) {
        const auto place = PlaceOf(component);
        if (!place) return;
        const int earlier = component.first;
        if (place->first == earlier) {
            projectNow_[earlier] = earlier;
        } else {
            projectNow_.try_emplace(earlier, place->first);
        }
    }

    // The id that a model of the earlier run has in this one; nothing when it was not given.
    std::optional<int> ProjectNow(int earlier) const {
        const auto known = projectNow_.find(earlier);
        if (known != projectNow_.end()) return known->second;
        return recognised_.count(earlier) != 0 ? std::nullopt : std::optional(earlier);
    }

    bool WasChecked(const Component& component, const std::wstring& floor) const {
        if (const auto place = PlaceOf(component)) return scope_.floors.count(*place) != 0;
        const auto project = ProjectNow(component.first);
        return project && scope_.floors.count({*project, floor}) != 0;
    }

    const RunScope& scope_;
    std::map<int, int> projectNow_;  ///< by the project id in the earlier run
    std::set<int> recognised_;       ///< the ids in this run that it leads to
};

// Gives matched clashes the handling of their earlier selves, and empties the places of these. A
// clash whose status is decided keeps both.
void ApplyMatches(const Matches& matches, std::vector<ResultItemPtr>& earlier, ClashStatus status,
                  std::vector<TrackedClash>& clashes) {
    for (std::size_t i = 0; i < matches.size(); ++i) {
        if (!matches[i]) continue;
        if (clashes[i].status == ClashStatus::New) {
            CarryOver(*earlier[*matches[i]], *clashes[i].item);
            clashes[i].status = status;
        }
        earlier[*matches[i]].reset();
    }
}

std::vector<const KyResultItem*> Borrow(const std::vector<TrackedClash>& clashes) {
    std::vector<const KyResultItem*> items;
    for (const TrackedClash& clash : clashes)
        items.push_back(clash.item.get());
    return items;
}

}  // namespace

std::string_view StatusText(ClashStatus status) {
    switch (status) {
        case ClashStatus::New:
            return "new";
        case ClashStatus::StillOpen:
            return "still open";
        case ClashStatus::Returned:
            return "returned";
        case ClashStatus::Gone:
            return "gone";
        case ClashStatus::NotRetested:
            break;
    }
    return "not re-tested";
}

bool IsHandled(const KyResultItem& item) {
    return item.GetDisposeState() != 0 || !item.GetRemark().empty() ||
           !item.GetViewport().empty() || !item.GetPicuuid().empty();
}

bool IsSamePlace(const KyResultItem& a, const KyResultItem& b) try {
    return a.IsSameResult_OtherInfo(&b);
} catch (const std::logic_error&) {
    return false;
}

Matches MatchClashes(const std::vector<const KyResultItem*>& later,
                     const std::vector<const KyResultItem*>& earlier) {
    return Matcher(later, earlier).Run();
}

std::vector<const KyResultItem*> BorrowItems(const std::vector<ResultItemPtr>& items) {
    std::vector<const KyResultItem*> borrowed;
    for (const ResultItemPtr& item : items)
        borrowed.push_back(item.get());
    return borrowed;
}

std::optional<std::vector<ResultItemPtr>> ReadResultFile(const std::filesystem::path& file,
                                                         std::string& error) {
    const auto container = KyWorksetResultData::Create(KyModelTypeDefault, 0);
    bool isRead = false;
    try {
        isRead = container->InitByXml(ifchost::FromUtf8(ifchost::PathText(file)));
    } catch (const boost::bad_lexical_cast&) {
        isRead = false;
    }
    if (!isRead) {
        error = ifchost::ToUtf8(container->GetErrorText());
        return std::nullopt;
    }
    std::map<FloorKey, std::vector<KyResultItem*>> all;
    container->GetAllResultItems(all);
    std::vector<ResultItemPtr> items;
    for (const auto& [key, floorItems] : all) {
        for (const KyResultItem* item : floorItems)
            items.push_back(std::make_unique<KyResultItem>(*item));
    }
    return items;
}

std::filesystem::path GoneFileOf(const std::filesystem::path& resultFile) {
    return resultFile.parent_path() / (resultFile.stem().string() + "-gone.xml");
}

std::optional<PreviousResults> ReadPreviousResults(const std::filesystem::path& file,
                                                   std::string& error) {
    PreviousResults previous;
    auto open = ReadResultFile(file, error);
    if (!open) return std::nullopt;
    previous.open = std::move(*open);
    const std::filesystem::path goneFile = GoneFileOf(file);
    std::error_code unreadable;
    if (!std::filesystem::exists(goneFile, unreadable)) return previous;
    auto gone = ReadResultFile(goneFile, error);
    if (!gone) return std::nullopt;
    previous.gone = std::move(*gone);
    return previous;
}

std::vector<TrackedClash> TrackClashes(std::vector<ResultItemPtr> found, PreviousResults previous,
                                       const RunScope& scope) {
    std::vector<TrackedClash> clashes;
    for (ResultItemPtr& item : found)
        clashes.push_back({std::move(item), ClashStatus::New});
    const RetestCheck retest(scope, previous);
    const auto items = Borrow(clashes);
    const Matches inOpen = MatchClashes(items, BorrowItems(previous.open));
    const Matches inGone = MatchClashes(items, BorrowItems(previous.gone));
    ApplyMatches(inOpen, previous.open, ClashStatus::StillOpen, clashes);
    ApplyMatches(inGone, previous.gone, ClashStatus::Returned, clashes);

    std::vector<TrackedClash> gone;
    for (ResultItemPtr& item : previous.open) {
        if (!item) continue;
        const bool isGone = retest.WasRetested(*item);
        auto& list = isGone ? gone : clashes;
        list.push_back({std::move(item), isGone ? ClashStatus::Gone : ClashStatus::NotRetested});
    }
    for (ResultItemPtr& item : previous.gone) {
        if (item) gone.push_back({std::move(item), ClashStatus::Gone});
    }
    std::move(gone.begin(), gone.end(), std::back_inserter(clashes));
    return clashes;
}

std::array<std::size_t, kClashStatusCount> CountStatuses(const std::vector<TrackedClash>& clashes) {
    std::array<std::size_t, kClashStatusCount> counts{};
    for (const TrackedClash& clash : clashes)
        ++counts[static_cast<std::size_t>(clash.status)];
    return counts;
}

}  // namespace kyclash
