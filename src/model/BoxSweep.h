// SPDX-License-Identifier: Apache-2.0
// Finds the boxes that may see each other, of one set or of two, all at once.
#pragma once

#include "KYCollisionBase/platform/BoundingBox3d.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/RadixSort.h"
#include "model/SweepStrip.h"

namespace kycb::model {

/// Finds the pairs of a set of boxes, and those of the set with other boxes, by a sweep along x
/// over strips of the plan (and, in a crowd, layers of height).
///
/// A box sees another one when they meet in plan and the other one's height overlaps its own
/// narrowed by `inset` at both ends, closed and compared as they stand. Null boxes see nothing.
///
/// Source: sweep and prune as in D. Baraff, "Dynamic simulation of non-penetrating rigid bodies"
/// (1992), section 5.2, here over buckets that hold every box they meet.
class BoxSweep {
  public:
    using BoundingBox3d = KYTOOLS::GRAPH::BoundingBox3d;

    enum class Role {
        kAsking,    ///< its pairs are sought
        kAnswering  ///< those with an asking box are
    };

    /// Forgets all boxes and pairs; their room is used again. `inset` in millimetres.
    void Begin(double inset);
    /// Adds a box, whose number is that of the boxes before it.
    void Add(const BoundingBox3d& box, Role role);

    /// Every pair of two asking boxes, one of which sees the other.
    SweptPairs within;
    /// Every such pair of an asking box and an answering one.
    SweptPairs across;

    /// Fills the two above; once.
    void FindPairs();

  private:
    // Equal cells along one axis; the first and the last one also hold what lies beyond.
    struct Bands {
        float low = 0.0F;
        float perUnit = 0.0F;
        std::uint32_t count = 1;

        std::uint32_t Of(float value) const;
    };
    // How boxes lie along an axis, estimated from some of them (mm).
    struct Spread {
        double low = 0.0;
        double width = 0.0;   // over which they are spread
        double extent = 0.0;  // of an average box
    };
    // The strips that a box stands in.
    struct Stand {
        std::uint32_t firstBand;
        std::uint32_t lastBand;
        std::uint32_t firstLayer;
        std::uint32_t lastLayer;
    };
    /// The strips of one set of boxes, one behind the other.
    struct Table {
        std::array<std::vector<float>, 3> low;
        std::array<std::vector<float>, 3> high;
        std::vector<std::uint32_t> numbers;
        std::vector<std::uint32_t> begins;
        std::vector<std::size_t> starts;
        std::vector<std::size_t> ends;

        void MakeRoom();
        void Place(const FloatBox& box, std::uint32_t number, std::size_t strip,
                   std::uint32_t begun);
        SweepStrip Strip(std::size_t index) const;
    };

    void ChooseBands();
    Spread EstimateSpread(std::size_t axis) const;
    static Bands BandsOf(const Spread& spread, double width);
    Stand StandOf(const FloatBox& box) const;
    template <class Visitor>
    void VisitStrips(const Stand& stand, const Visitor& visit) const;
    void Fill(Table& table, const std::vector<SortEntry>& alongX);

    float inset_ = 0.0F;
    std::vector<FloatBox> boxes_;
    // By number, by lower x once the pairs are sought.
    std::vector<SortEntry> asking_;
    std::vector<SortEntry> answering_;
    Bands across_;  // along y
    Bands upward_;  // along z
    Table askingTable_;
    Table answeringTable_;
    std::vector<Stand> stands_;
    std::vector<SortEntry> sortRoom_;
};

}  // namespace kycb::model
