// SPDX-License-Identifier: Apache-2.0
// What a result item takes afresh from the collision model.
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/ICollisionModel.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/result/KyResultItem.h"

namespace KYCOLLISION::RESULT {

namespace {

// What the model knows of one side of a clash.
void Refresh(const LOGIC::IModelDataSource* source, const MODEL::ObjectModelInfo& component,
             SObjAttInfo& info, std::wstring& height) {
    if (const MODEL::AttCategoryModelInfo* kind = component.GetBelongCategoryModel()) {
        const MODEL::AttCategory& category = kind->GetAttCategory();
        info.Specialty = category.specialty;
        info.Category = category.dalei;
        info.Subcategory = category.xiaolei;
    }
    info.Name = component.GetObjAttname();
    info.SysCode = component.GetObjSyscode();
    height = component.GetObjAttHeight(source);
}

}  // namespace

void KyResultItem::InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                               const MODEL::ICollisionModel* model) {
    if (!source || !model) return;
    const auto refreshSide = [&](int project, const std::wstring& floor, const std::wstring& guid,
                                 SObjAttInfo& info, std::wstring& height) {
        if (project <= 0 || floor.empty() || guid.empty()) return;
        const MODEL::ObjectModelInfo* component = model->GetObjectModelInfo({project, floor}, guid);
        if (component) Refresh(source, *component, info, height);
    };
    refreshSide(ProjectA, FloorA, ObjGuidA, AttInfoA, HeightA);
    refreshSide(ProjectB, FloorB, ObjGuidB, AttInfoB, HeightB);
}

}  // namespace KYCOLLISION::RESULT
