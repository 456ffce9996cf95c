// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace kyclash {

/// How the report is written.
enum class ReportFormat {
    Text,  ///< for people, in a terminal
    Json,  ///< for programs
};

/// How many pairs of each floor the text report names.
enum class PairListing {
    Shortened,  ///< the first ones, with a word about how many were left out
    Complete,
};

/// One component of a reported clash. Texts are UTF-8.
struct ReportedComponent {
    std::string file;      ///< the model it comes from
    std::string guid;      ///< IFC GlobalId, 22 characters
    std::string ifcClass;  ///< as "IfcDuctSegment"
    std::string name;
    std::string category;  ///< category path
};

/// One clashing pair.
struct ReportedClash {
    ReportedComponent main;
    ReportedComponent second;
    std::array<double, 3> point{};  ///< world coordinates of the files (mm)
    std::string bodyOffsets;        ///< with which the two bodies were tested (mm), as "-2,200"
};

/// One floor as the user sees it; floors of the same name in several models are one.
struct ReportedFloor {
    std::string name;
    std::size_t components = 0;      ///< that take part in the model, checked or not
    std::size_t candidatePairs = 0;  ///< neighbours by their boxes
    std::vector<ReportedClash> clashes;
};

/// One input file.
struct ReportedModel {
    std::string file;
    std::string schema;
    std::string contentHash;
    std::size_t products = 0;
    std::size_t checked = 0;  ///< components that the collision model holds
    std::size_t triangles = 0;
    /// Why products take no part, with the number of products: adds up with `checked`.
    std::map<std::string, std::size_t> skipped;
    std::vector<std::string> warnings;
};

/// Seconds by the clock and what the process needed.
struct ReportedCost {
    double readSeconds = 0.0;
    double buildSeconds = 0.0;
    double checkSeconds = 0.0;
    double resultSeconds = 0.0;
    std::size_t peakMegabytes = 0;  ///< of this process, without the readers
};

/// Everything that `kyclash check` has to say about a run.
struct CheckReport {
    std::vector<ReportedModel> models;
    std::array<double, 3> localOrigin{};          ///< taken off before single precision (mm)
    std::map<std::string, std::size_t> unmapped;  ///< elements that no mapping rule matched
    std::vector<ReportedFloor> floors;
    ReportedCost cost;
    bool stopped = false;  ///< the user stopped the run: the list is not complete
};

/// Writes `report` to `out` (UTF-8).
void WriteReport(const CheckReport& report, ReportFormat format, PairListing listing,
                 std::ostream& out);

}  // namespace kyclash
