// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/AttCategoryModelInfo.h"

#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"

#include <utility>

namespace KYCOLLISION::MODEL {

AttCategoryModelInfo::AttCategoryModelInfo(const AttCategory& category)
    : category_(category),
      path_(category_.categoryIndex()),
      runKind_(category.IsFgQjPsLsRs_JJP()),
      structural_(category.IsQzlb_JJP()),
      diameterFiltered_(category.IsNeedFiter()) {}

AttCategoryModelInfo::~AttCategoryModelInfo() {
    DeleteObjects();
}

void AttCategoryModelInfo::AppendObject(ObjectModelInfo* obj) {
    if (!obj) return;
    objects_.emplace(obj->GetObjGuid(), obj);
    obj->SetBelongCategory(this);
    if (floor_) floor_->NoteAddedObject();
}

void AttCategoryModelInfo::ReleaseModel() {
    if (floor_ && !objects_.empty()) {
        floor_->DropQuadTree();
        ProjectModelInfo* project = floor_->GetBelongProject();
        WorkSetModelInfo* workSet = project ? project->GetBelongWorkSetModel() : nullptr;
        if (workSet) workSet->ForgetComponentsOf({this});
    }
    DeleteObjects();
}

void AttCategoryModelInfo::DeleteObjects() {
    for (const auto& [guid, obj] : std::exchange(objects_, {})) {
        delete obj;
    }
}

}  // namespace KYCOLLISION::MODEL
