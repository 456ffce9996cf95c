// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "kyclash/ClashHistory.h"
#include "kyclash/ReportFormat.h"

namespace kyclash {

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
    std::string axisPosition;       ///< as "3(+1250mm) / B(-400mm)"; empty away from any grid
    ClashStatus status = ClashStatus::New;
};

/// How many clashes two kinds have with each other, the main one first.
struct ReportedKindPair {
    std::string main;
    std::string second;
    std::size_t count = 0;
};

/// One floor as the user sees it; floors of the same name in several models are one.
struct ReportedFloor {
    std::string name;
    std::size_t components = 0;               ///< that take part in the model, checked or not
    std::size_t candidatePairs = 0;           ///< neighbours by their boxes
    std::vector<ReportedKindPair> kindPairs;  ///< descending by count
    std::vector<ReportedClash> clashes;
};

/// Something odd that did not stop the run.
struct ReportedWarning {
    std::string sort;  ///< the same for all warnings that say the same about different elements
    std::string text;  ///< names the element that it is about, if any
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
    std::vector<ReportedWarning> warnings;
};

/// A kind of the models that was not checked, with its components.
struct ReportedKind {
    std::string path;
    std::size_t components = 0;
};

/// The rules of a run.
struct ReportedRules {
    std::string file;  ///< "built-in" for the rules that need no file
    std::string contentHash;
    std::map<std::string, std::size_t> modes;  ///< kinds that are on, by mode, as "tolerance 5 mm"
    std::map<std::string, std::size_t> filters;  ///< kinds that are on, by filter
    std::vector<std::string> remarks;            ///< place and text
    std::vector<std::string> withoutComponent;   ///< kinds that are on and that no component has
    std::vector<ReportedKind> switchedOff;       ///< kinds of the models whose rule is off
    std::vector<ReportedKind> withoutRule;       ///< kinds of the models that have no rule
};

/// What a run compared itself with.
struct ReportedHistory {
    std::string file;  ///< the earlier result file
    std::array<std::size_t, kClashStatusCount> counts{};
    std::vector<ReportedClash> gone;  ///< those of this run first
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
    std::string version;
    std::string mapping;  ///< name or file of the mapping
    int circleSegments = 0;
    ReportedRules rules;
    std::optional<ReportedHistory> history;
    std::vector<std::string> writtenFiles;
    std::vector<ReportedModel> models;
    std::vector<std::string> warnings;            ///< that concern all models
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
