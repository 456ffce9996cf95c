// SPDX-License-Identifier: Apache-2.0
// Existing openings: components that are doors, windows or holes themselves.
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/result/CExistingHole.h"

#include <stdexcept>

#include "model/HoleKind.h"
#include "platform/Text.h"

namespace KYCOLLISION::MODEL {

namespace {

// One number is a size of its own (a diameter, say), two or more are width and height.
void ReadHoleSize(const std::wstring& size, RESULT::CExistingHole& hole) {
    const std::vector<std::wstring> numbers = kycb::text::Split(size, L',');
    if (numbers.size() == 1) {
        hole.holeSize = kycb::text::ParseInt(numbers[0]);
    } else if (numbers.size() >= 2) {
        hole.holeWidth = kycb::text::ParseInt(numbers[0]);
        hole.holeHeight = kycb::text::ParseInt(numbers[1]);
    }
}

}  // namespace

std::shared_ptr<RESULT::CExistingHole> ObjectModelInfo::GetExistingHole(
    const IModelDataSource* source) const {
    if (!category_) return nullptr;
    const AttCategory& category = category_->GetAttCategory();
    const int kind = kycb::model::HoleKind(category);
    if (kind < 0) return nullptr;
    auto hole = std::make_shared<RESULT::CExistingHole>();
    if (!GetExistingHoleShape(source, hole->holeShape)) return nullptr;
    if (!GetExistingHoleCenter(source, hole->holeCenter)) return nullptr;
    if (!GetExistingHoleElevation(source, hole->holeElev)) return nullptr;
    if (!GetExistingHoleParentId(source, hole->parentId)) return nullptr;
    hole->projId = GetProjId();
    hole->floorName = GetFloorName();
    hole->objGuid = guid_;
    hole->attInfo = {category.specialty, category.dalei, category.xiaolei, name_, syscode_};
    hole->holeType = kind;
    std::wstring size;
    if (GetAttValue(source, L"holesize", size)) ReadHoleSize(size, *hole);
    return hole;
}

bool ObjectModelInfo::GetExistingHoleShape(const IModelDataSource* source, int& shape) const {
    shape = -1;
    std::wstring value;
    if (!GetAttValue(source, L"holeshape", value)) return false;
    try {
        shape = kycb::text::ParseInt(value);
    } catch (const std::logic_error&) {  // not a number, or out of range
        return false;
    }
    return true;
}

bool ObjectModelInfo::GetExistingHoleCenter(const IModelDataSource* source,
                                            std::wstring& center) const {
    return GetAttValue(source, L"holecenter", center);
}

bool ObjectModelInfo::GetExistingHoleElevation(const IModelDataSource* source,
                                               std::wstring& elevation) const {
    return GetAttValue(source, L"holeelev", elevation);
}

bool ObjectModelInfo::GetExistingHoleParentId(const IModelDataSource* source,
                                              std::wstring& parentId) const {
    return GetAttValue(source, L"parentid", parentId);
}

}  // namespace KYCOLLISION::MODEL
