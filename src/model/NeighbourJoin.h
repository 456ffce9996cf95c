// SPDX-License-Identifier: Apache-2.0
// Lists the neighbours of all components of a floor at once.
#pragma once

#include "KYCollisionBase/platform/BoundingBox3d.h"

#include <cstdint>
#include <vector>

#include "model/BoxSweep.h"
#include "model/FloorTree.h"

namespace kycb::model {

/// Gives every component of one floor its list of neighbours, the same and in the same order as if
/// each had asked every floor in turn.
///
/// A sweep finds the pairs in any order. They are handed out by the component that is seen, in the
/// order in which the floors deliver their components, so that every list comes out in that order
/// without being sorted.
class NeighbourJoin {
  public:
    /// `floors` are those that can hold neighbours, in the order in which they are asked; `own` is
    /// one of them, and its components get the lists. The trees are borrowed. All boxes are those
    /// of the trees, and every tree holds all of its components (FloorTree::HoldsAll).
    /// `inset` is by how much a component's vertical range is narrowed at each end (mm).
    NeighbourJoin(const std::vector<const FloorTree*>& floors, const FloorTree& own, double inset);

    /// Replaces the lists; once.
    void ListNeighbours();

  private:
    using BoundingBox3d = KYTOOLS::GRAPH::BoundingBox3d;
    using ObjectModelInfo = KYCOLLISION::MODEL::ObjectModelInfo;

    // The first, an own one, sees the second.
    struct Sighting {
        std::uint32_t seer;
        std::uint32_t seen;
    };

    void Take(const FloorTree::Member& member, BoxSweep::Role role);
    void SettleMutual();
    void SettleAcross();
    void SettleDoubt(const PairBuffer& pairs);
    bool Sees(std::uint32_t seer, std::uint32_t seen) const;
    bool IsOwn(std::uint32_t member) const { return firstOwn_ <= member && member < endOwn_; }
    bool AreSame(std::uint32_t a, std::uint32_t b) const;
    void AddSighting(std::uint32_t seer, std::uint32_t seen);
    std::vector<std::uint32_t> GroupBySeen(std::vector<std::uint32_t>& ends) const;
    std::vector<ObjectModelInfo**> MakeRoom() const;
    void HandOut();

    double inset_;
    BoxSweep sweep_;
    std::vector<const FloorTree::Member*> members_;  // all that take part, in order of delivery
    std::uint32_t firstOwn_ = 0;
    std::uint32_t endOwn_ = 0;

    std::vector<Sighting> mutual_;  // two own ones, each of which sees the other
    std::vector<Sighting> oneWay_;
    std::vector<std::uint32_t> inMutual_;  // how many mutual ones each member is in
    std::vector<std::uint32_t> sees_;      // how many others each sees one way
    std::vector<std::uint32_t> isSeen_;    // and by how many it is seen
};

}  // namespace kycb::model
