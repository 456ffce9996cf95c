// SPDX-License-Identifier: Apache-2.0
#include "model/NeighbourJoin.h"

#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/platform/Numeric.h"

#include <algorithm>

namespace kycb::model {

namespace {

// How many components ahead one is brought near: they lie all over the memory.
constexpr std::uint32_t kAhead = 12;

}  // namespace

NeighbourJoin::NeighbourJoin(const std::vector<const FloorTree*>& floors, const FloorTree& own,
                             double inset)
    : inset_(inset), sweep_(inset) {
    members_.reserve(own.Members().size());
    sweep_.Reserve(own.Members().size());
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
    inMutual_.resize(members_.size());
    sees_.resize(members_.size());
    isSeen_.resize(members_.size());
}

void NeighbourJoin::Take(const FloorTree::Member& member, BoxSweep::Role role) {
    members_.push_back(&member);
    sweep_.Add(member.box, role);
}

void NeighbourJoin::ListNeighbours() {
    sweep_.FindPairs();
    SettleMutual();
    SettleAcross();
    SettleDoubt(sweep_.within.inDoubt);
    SettleDoubt(sweep_.across.inDoubt);
    HandOut();
}

void NeighbourJoin::SettleMutual() {
    const PairBuffer& pairs = sweep_.within.sure;
    mutual_.reserve(pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const std::uint32_t a = pairs.A(i);
        const std::uint32_t b = pairs.B(i);
        if (AreSame(a, b)) continue;
        mutual_.push_back({a, b});
        ++inMutual_[a];
        ++inMutual_[b];
    }
}

void NeighbourJoin::SettleAcross() {
    const PairBuffer& pairs = sweep_.across.sure;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        AddSighting(pairs.A(i), pairs.B(i));
        AddSighting(pairs.B(i), pairs.A(i));
    }
}

void NeighbourJoin::SettleDoubt(const PairBuffer& pairs) {
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        if (Sees(pairs.A(i), pairs.B(i))) AddSighting(pairs.A(i), pairs.B(i));
        if (Sees(pairs.B(i), pairs.A(i))) AddSighting(pairs.B(i), pairs.A(i));
    }
}

// As a floor answers a single query, to the last bit.
bool NeighbourJoin::Sees(std::uint32_t seer, std::uint32_t seen) const {
    const BoundingBox3d& own = members_[seer]->box;
    const BoundingBox3d& other = members_[seen]->box;
    return other.GetBoundingBox2d().IsIntersect(own.GetBoundingBox2d()) &&
           KYTOOLS::Numeric::IsDoubleRangeOverLap(other.GetMinZ(), other.GetMaxZ(),
                                                  own.GetMinZ() + inset_, own.GetMaxZ() - inset_);
}

bool NeighbourJoin::AreSame(std::uint32_t a, std::uint32_t b) const {
    return members_[a]->guidHash == members_[b]->guidHash &&
           members_[a]->object->IsSameComponent(*members_[b]->object);
}

void NeighbourJoin::AddSighting(std::uint32_t seer, std::uint32_t seen) {
    if (!IsOwn(seer) || AreSame(seer, seen)) return;
    oneWay_.push_back({seer, seen});
    ++sees_[seer];
    ++isSeen_[seen];
}

// Who sees each member, member by member; `ends` tells where those of each end.
std::vector<std::uint32_t> NeighbourJoin::GroupBySeen(std::vector<std::uint32_t>& ends) const {
    ends.reserve(members_.size());
    std::uint32_t total = 0;
    for (std::size_t member = 0; member < members_.size(); ++member) {
        ends.push_back(total);
        total += inMutual_[member] + isSeen_[member];
    }
    std::vector<std::uint32_t> seers(total);
    for (const Sighting& pair : mutual_) {
        seers[ends[pair.seen]++] = pair.seer;
        seers[ends[pair.seer]++] = pair.seen;
    }
    for (const Sighting& sighting : oneWay_) {
        seers[ends[sighting.seen]++] = sighting.seer;
    }
    return seers;
}

// Where the list of each own component begins.
std::vector<NeighbourJoin::ObjectModelInfo**> NeighbourJoin::MakeRoom() const {
    std::vector<ObjectModelInfo**> lists(members_.size());
    for (std::uint32_t member = firstOwn_; member < endOwn_; ++member) {
        members_[std::min(member + kAhead, endOwn_ - 1)]->object->PrefetchNeighbours();
        lists[member] =
            members_[member]->object->MakeRoomForNeighbours(inMutual_[member] + sees_[member]);
    }
    return lists;
}

void NeighbourJoin::HandOut() {
    std::vector<std::uint32_t> ends;
    const std::vector<std::uint32_t> seers = GroupBySeen(ends);
    std::vector<ObjectModelInfo**> next = MakeRoom();
    std::size_t i = 0;
    for (std::size_t seen = 0; seen < members_.size(); ++seen) {
        for (; i < ends[seen]; ++i) {
            *next[seers[i]]++ = members_[seen]->object;
        }
    }
}

}  // namespace kycb::model
