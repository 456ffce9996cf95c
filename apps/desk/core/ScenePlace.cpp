// SPDX-License-Identifier: Apache-2.0
#include "desk/core/ScenePlace.h"

#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include "desk/core/ResultFilter.h"
#include "ifchost/IfcWorkset.h"

namespace desk {

std::optional<ClashPlace> PlaceOf(const Session& session, const Session::Item& clash) {
    if (session.Workset() == nullptr || !ClashElevation(clash)) return std::nullopt;
    const auto [x, y, z] = clash.GetClashPoint();
    return ClashPlace{session.ComponentIndex(clash.GetProjectA(), clash.GetObjGuidA()),
                      session.ComponentIndex(clash.GetProjectB(), clash.GetObjGuidB()),
                      session.Workset()->ToLocal({x, y, z})};
}

std::optional<OpeningPlace> PlaceOf(const Session& session, const Session::Hole& opening) {
    const auto component = session.ComponentIndex(opening.projId, opening.objGuid);
    if (!component) return std::nullopt;
    const ifchost::IfcWorkset& workset = *session.Workset();
    const auto& box = workset.Components()[*component].box;
    return OpeningPlace{*component, workset.ToLocal(box.min), workset.ToLocal(box.max)};
}

}  // namespace desk
