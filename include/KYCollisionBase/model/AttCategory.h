// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <map>
#include <string>

namespace KYCOLLISION::MODEL {

/// The classification of a component: specialty, major category ("dalei") and minor category
/// ("xiaolei"), with the fixed knowledge about the families that the clearance tables and filters
/// speak of. A plain value.
///
/// All names are compared whole and case-sensitively, as the host's category configuration spells
/// them.
///
/// Threads: values are independent. The priority map is shared and loaded without a lock, so
/// priorities are asked for on one thread at a time.
class KYCB_API AttCategory {
  public:
    AttCategory() = default;
    AttCategory(std::wstring specialtyName, std::wstring daleiName, std::wstring xiaoleiName);

    /// Equal in all three names.
    bool operator==(const AttCategory& other) const = default;

    /// The category path, the key of a component kind; empty without a specialty or major category.
    ///
    /// The three names joined by "/", an empty minor category leaving a trailing "/", except that
    /// a "Revit" path ends after the major category, and that a "Tekla" component counts as
    /// "钢结构" (when its minor category is one of the five steel kinds, or its major category
    /// says so) or as "混凝土", whatever major category it came with.
    std::wstring categoryIndex();

    /// True for water pipes, air ducts and cable trays. The library itself does not ask.
    bool IsSgFgQj_RP() const;

    /// True for walls, columns, beams and slabs of the civil works and reinforcement specialties.
    bool IsQzlb_JJP() const;

    /// The kind of services run that clearances depend on: 1 air duct, 2 cable tray, 3 drainage
    /// pipe, 4 cold-water or pressure pipe, 5 hot-water pipe, 0 none of them. Narrower than
    /// IsSgFgQj_RP: flexible ducts, hoses and busways have no kind.
    int IsFgQjPsLsRs_JJP() const;

    /// True for the water-carrying pipes, whose nominal diameter a rule item may filter.
    bool IsNeedFiter() const;

    /// The priority of this kind: a smaller number ranks higher. 1000 when the priority file does
    /// not list the kind.
    ///
    /// The file is loaded by the first call, and again by every call that finds the map empty; a
    /// failed load shows the message "属性优先级文件错误" each time.
    int GetAttPriority() const;

    /// Clears s_typePriorityMap and loads it from CollisionData\TypePriorityMap.xml under the
    /// system root.
    ///
    /// The file's root element holds groups, which hold one element per kind with the attributes
    /// "att" (a category path) and "priority" (a decimal number; 0 when it is none). The names of
    /// the elements do not count, a later entry replaces an earlier one for the same kind, and a
    /// comment or text among the elements of a level ends that level.
    ///
    /// False when the file is missing or cannot be read as XML; the map is empty then. False also
    /// at an entry whose "att" or "priority" is empty or absent; what was read before it stays.
    static bool InitTypePriorityMap();

    std::wstring specialty;  ///< trade, e.g. "给排水"
    std::wstring dalei;      ///< major category, e.g. "管道"
    std::wstring xiaolei;    ///< minor category, e.g. "给水管"

    /// The priorities by category path, for the life of the process.
    static std::map<std::wstring, int> s_typePriorityMap;
};

}  // namespace KYCOLLISION::MODEL
