// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

namespace kycb {

/// Every field of a result item under the name, and in the order, that it has in a result file.
struct ResultItemAccess {
    /// The number of fields.
    static constexpr int kFieldCount = 28;

    /// Calls `visit(name, field)` for each field of `item`, a KyResultItem or a const one.
    template <class Item, class Visitor>
    static void VisitFields(Item& item, Visitor&& visit) {
        visit("resultId", item.ResultId);
        visit("projectA", item.ProjectA);
        visit("floorA", item.FloorA);
        visit("objectA", item.ObjGuidA);
        visit("projectB", item.ProjectB);
        visit("floorB", item.FloorB);
        visit("objectB", item.ObjGuidB);
        visit("clashPoint", item.Position);
        visit("clashModel", item.ClashModel);
        visit("dispose", item.DisposeState);
        visit("remark", item.Remark);
        visit("viewport", item.Viewport);
        visit("picuuid", item.Picuuid);
        visit("picmd5", item.Picmd5);
        visit("picsize", item.Picsize);
        visit("specA", item.AttInfoA.Specialty);
        visit("bigA", item.AttInfoA.Category);
        visit("smallA", item.AttInfoA.Subcategory);
        visit("attnameA", item.AttInfoA.Name);
        visit("syscodeA", item.AttInfoA.SysCode);
        visit("heightA", item.HeightA);
        visit("specB", item.AttInfoB.Specialty);
        visit("bigB", item.AttInfoB.Category);
        visit("smallB", item.AttInfoB.Subcategory);
        visit("attnameB", item.AttInfoB.Name);
        visit("syscodeB", item.AttInfoB.SysCode);
        visit("heightB", item.HeightB);
        visit("axisPos", item.AxisPos);
    }
};

}  // namespace kycb
