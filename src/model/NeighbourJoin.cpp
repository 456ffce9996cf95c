// SPDX-License-Identifier: Apache-2.0
#include "model/NeighbourJoin.h"

#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/platform/Numeric.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <hwy/cache_control.h>

#include "model/BoxSweep.h"

namespace kycb::model {

namespace {

using KYCOLLISION::MODEL::ObjectModelInfo;
using KYTOOLS::GRAPH::BoundingBox3d;

// How many components ahead one is brought near: they lie all over the memory.
constexpr std::uint32_t kAhead = 16;
// Room for more components than this is not kept.
constexpr std::size_t kMostKept = 100'000;

}  // namespace

/// One call of ListNeighbours after the other.
class NeighbourJoin {
  public:
    using Lists = std::unique_ptr<ObjectModelInfo*[]>;

    Lists ListNeighbours(const std::vector<const FloorTree*>& floors, const FloorTree& own,
                         double inset);

    bool IsLarge() const {
        return members_.capacity() > kMostKept ||
               sweep_.within.sure.size() > std::size_t{8} * kMostKept;
    }

  private:
    // The first, an own one, sees the second.
    struct Sighting {
        std::uint32_t seer;
        std::uint32_t seen;
    };

    void TakeMembers(const std::vector<const FloorTree*>& floors, const FloorTree& own);
    void Take(const FloorTree::Member& member, BoxSweep::Role role);
    void SettleDoubt();
    void SettleDoubt(std::uint32_t a, std::uint32_t b);
    void SettleWithin();
    void SettleAcross();
    bool IsOwn(std::uint32_t member) const { return firstOwn_ <= member && member < endOwn_; }
    bool AreSame(std::uint32_t a, std::uint32_t b) const;
    void AddSighting(std::uint32_t seer, std::uint32_t seen);
    void GroupBySeen();
    Lists HandOut();

    double inset_ = 0.0;
    BoxSweep sweep_;
    std::vector<const FloorTree::Member*> members_;  // all that take part, in order of delivery
    // Side by side, where many are asked about: unequal marks tell components apart.
    std::vector<std::uint16_t> guidMarks_;
    std::uint32_t firstOwn_ = 0;
    std::uint32_t endOwn_ = 0;

    std::vector<Sighting> oneWay_;
    std::vector<std::uint32_t> mutual_;  // with how many others each sees the other
    std::vector<std::uint32_t> sees_;    // how many others each sees one way
    std::vector<std::uint32_t> isSeen_;  // and by how many it is seen
    std::vector<std::uint32_t> seers_;   // who sees each member, member by member
    std::vector<std::uint32_t> ends_;    // where those of each member end
    std::vector<std::uint32_t> next_;    // where the next neighbour of each own member goes
};

NeighbourJoin::Lists NeighbourJoin::ListNeighbours(const std::vector<const FloorTree*>& floors,
                                                   const FloorTree& own, double inset) {
    inset_ = inset;
    sweep_.Begin(inset);
    TakeMembers(floors, own);
    oneWay_.clear();
    for (auto* counts : {&mutual_, &sees_, &isSeen_}) {
        counts->assign(members_.size(), 0);
    }
    sweep_.FindPairs();
    SettleDoubt();
    SettleWithin();
    SettleAcross();
    return HandOut();
}

void NeighbourJoin::TakeMembers(const std::vector<const FloorTree*>& floors, const FloorTree& own) {
    members_.clear();
    guidMarks_.clear();
    for (const FloorTree* floor : floors) {
        if (floor == &own) {
            firstOwn_ = static_cast<std::uint32_t>(members_.size());
            for (const FloorTree::Member& member : own.Members()) {
                Take(member, BoxSweep::Role::kAsking);
            }
            endOwn_ = static_cast<std::uint32_t>(members_.size());
            continue;
        }
        for (const FloorTree::Member& member : floor->Members()) {
            if (!member.box.IsIntersect(own.GetReach())) continue;
            Take(member, BoxSweep::Role::kAnswering);
        }
    }
}

void NeighbourJoin::Take(const FloorTree::Member& member, BoxSweep::Role role) {
    members_.push_back(&member);
    guidMarks_.push_back(static_cast<std::uint16_t>(member.guidHash));
    sweep_.Add(member.box, role);
}

// What turns out to be mutual joins the pairs that are sure.
void NeighbourJoin::SettleDoubt() {
    for (const PairBuffer* pairs : {&sweep_.within.inDoubt, &sweep_.across.inDoubt}) {
        for (std::size_t i = 0; i < pairs->size(); ++i) {
            SettleDoubt(pairs->A(i), pairs->B(i));
        }
    }
}

// As a floor answers a single query, to the last bit.
void NeighbourJoin::SettleDoubt(std::uint32_t a, std::uint32_t b) {
    const BoundingBox3d& boxA = members_[a]->box;
    const BoundingBox3d& boxB = members_[b]->box;
    if (!boxA.GetBoundingBox2d().IsIntersect(boxB.GetBoundingBox2d())) return;
    const auto sees = [&](const BoundingBox3d& own, const BoundingBox3d& other) {
        return KYTOOLS::Numeric::IsDoubleRangeOverLap(
            other.GetMinZ(), other.GetMaxZ(), own.GetMinZ() + inset_, own.GetMaxZ() - inset_);
    };
    const bool aSees = sees(boxA, boxB);
    const bool bSees = sees(boxB, boxA);
    if (aSees && bSees && IsOwn(a) && IsOwn(b)) {
        sweep_.within.sure.Add(a, b);
        return;
    }
    if (aSees) AddSighting(a, b);
    if (bSees) AddSighting(b, a);
}

// Counts the mutual pairs, and drops those of one component entered twice.
void NeighbourJoin::SettleWithin() {
    PairBuffer& pairs = sweep_.within.sure;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const std::uint32_t a = pairs.A(i);
        const std::uint32_t b = pairs.B(i);
        if (AreSame(a, b)) continue;
        pairs.Set(kept++, a, b);
        ++mutual_[a];
        ++mutual_[b];
    }
    pairs.Shrink(kept);
}

void NeighbourJoin::SettleAcross() {
    const PairBuffer& pairs = sweep_.across.sure;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        AddSighting(pairs.A(i), pairs.B(i));
        AddSighting(pairs.B(i), pairs.A(i));
    }
}

bool NeighbourJoin::AreSame(std::uint32_t a, std::uint32_t b) const {
    return guidMarks_[a] == guidMarks_[b] &&
           members_[a]->object->IsSameComponent(*members_[b]->object);
}

void NeighbourJoin::AddSighting(std::uint32_t seer, std::uint32_t seen) {
    if (!IsOwn(seer) || AreSame(seer, seen)) return;
    oneWay_.push_back({seer, seen});
    ++sees_[seer];
    ++isSeen_[seen];
}

void NeighbourJoin::GroupBySeen() {
    ends_.resize(members_.size());
    std::uint32_t total = 0;
    for (std::size_t member = 0; member < members_.size(); ++member) {
        ends_[member] = total;
        total += mutual_[member] + isSeen_[member];
    }
    seers_.resize(total);
    const PairBuffer& pairs = sweep_.within.sure;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        seers_[ends_[pairs.B(i)]++] = pairs.A(i);
        seers_[ends_[pairs.A(i)]++] = pairs.B(i);
    }
    for (const Sighting& sighting : oneWay_) {
        seers_[ends_[sighting.seen]++] = sighting.seer;
    }
}

NeighbourJoin::Lists NeighbourJoin::HandOut() {
    GroupBySeen();
    next_.resize(members_.size());
    std::uint32_t total = 0;
    for (std::uint32_t member = firstOwn_; member < endOwn_; ++member) {
        next_[member] = total;
        total += mutual_[member] + sees_[member];
    }
    // With room for one where there are no neighbours: an array of none has no first place.
    Lists lists = std::make_unique_for_overwrite<ObjectModelInfo*[]>(std::max(total, 1U));
    for (std::uint32_t member = firstOwn_; member < endOwn_; ++member) {
        hwy::Prefetch(&members_[std::min(member + kAhead, endOwn_ - 1)]->object->boxRelatedObjs_);
        members_[member]->object->ShowNeighbours(
            {lists.get() + next_[member], mutual_[member] + sees_[member]});
    }
    std::size_t i = 0;
    for (std::size_t seen = 0; seen < members_.size(); ++seen) {
        ObjectModelInfo* object = members_[seen]->object;
        for (const std::size_t end = ends_[seen]; i < end; ++i) {
            lists[next_[seers_[i]]++] = object;
        }
    }
    return lists;
}

std::unique_ptr<ObjectModelInfo* []> ListNeighbours(const std::vector<const FloorTree*>& floors,
                                                    const FloorTree& own, double inset) {
    thread_local NeighbourJoin join;
    auto lists = join.ListNeighbours(floors, own, inset);
    if (join.IsLarge()) join = NeighbourJoin();
    return lists;
}

}  // namespace kycb::model
