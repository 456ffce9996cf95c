// SPDX-License-Identifier: Apache-2.0
// The check of one component against its neighbours, and the rank of two components of one kind.
#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/CollisionAlgorithm.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/platform/CodePage.h"
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <algorithm>
#include <atomic>
#include <cmath>

#include "model/ClashRegion.h"

namespace KYCOLLISION::MODEL {

namespace {

// A support that is smaller by less than this still ranks first (mm), so that measuring noise does
// not decide.
constexpr double kRankMargin = 0.1;
// Section widths that differ by less than this count as equal (mm); then the heights decide.
constexpr double kSameWidth = 0.001;

struct SupportSection {
    double width = 0.0;
    double height = 0.0;
    double radius = 0.0;
};

Rule::KyCollisionRuleItem* RuleItemOf(const ObjectModelInfo& obj) {
    const AttCategoryModelInfo* category = obj.GetBelongCategoryModel();
    return category ? category->GetCollisionRuleItem() : nullptr;
}

bool ComesBefore(const std::wstring& a, const std::wstring& b) {
    return KYTOOLS::CodePage::ToAnsi(a) < KYTOOLS::CodePage::ToAnsi(b);
}

bool HasLargerSection(const SupportSection& own, const SupportSection& other) {
    if (own.width > 0.0 && own.height > 0.0 && other.width > 0.0 && other.height > 0.0) {
        return std::abs(own.width - other.width) >= kSameWidth
                   ? own.width + kRankMargin > other.width
                   : own.height + kRankMargin > other.height;
    }
    if (!(own.radius > 0.0) || !(other.radius > 0.0)) return true;
    return own.radius + kRankMargin > other.radius;
}

}  // namespace

struct ObjectModelInfo::RelatedGuids {
    std::vector<std::wstring> objs;
    std::vector<std::wstring> fits;

    RelatedGuids(const IModelDataSource* source, const ObjectModelInfo& owner) {
        owner.GetRelatedObjs(source, objs, fits);
    }
    bool Contain(const std::wstring& guid) const {
        return std::find(objs.begin(), objs.end(), guid) != objs.end() ||
               std::find(fits.begin(), fits.end(), guid) != fits.end();
    }
};

void ObjectModelInfo::CollisionCheck(IModelDataSource* source, int& checkedCount) {
    // Another thread polls the counter.
    std::atomic_ref<int>(checkedCount).fetch_add(1, std::memory_order_relaxed);
    const Rule::KyCollisionRuleItem* item = RuleItemOf(*this);
    if (!item) return;
    const auto* filter = dynamic_cast<const Rule::KyAttrRangeFilter*>(item->GetFilter());
    if (IsFilteredOut(source, filter)) return;
    const RelatedGuids related(source, *this);
    for (ObjectModelInfo* other : boxRelatedObjs_) {
        if (other && IsToBeTestedWith(source, related, other, filter)) TestWith(source, other);
    }
}

bool ObjectModelInfo::IsFilteredOut(IModelDataSource* source,
                                    const Rule::KyAttrRangeFilter* filter) const {
    if (!filter || !category_ || !category_->IsDiameterFiltered()) return false;
    double diameter = 0.0;
    return GetPipeGCZJ(source, diameter) && !filter->IsMeetCondition(diameter);
}

// The order of the tests decides which attributes the data source is asked for, and is kept. The
// filter is that of this component's rule, also where the other one is measured by it.
bool ObjectModelInfo::IsToBeTestedWith(IModelDataSource* source, const RelatedGuids& related,
                                       ObjectModelInfo* other,
                                       const Rule::KyAttrRangeFilter* filter) const {
    if (IsSameComponent(*other)) return false;
    if (related.Contain(other->guid_)) return false;
    if (RelatedGuids(source, *other).Contain(guid_)) return false;
    if (CQNIMPosition ignored; IsHadCollisionWith(other, ignored)) return false;
    const Rule::KyCollisionRuleItem* otherItem = RuleItemOf(*other);
    if (!otherItem) return false;
    if (other->IsFilteredOut(source, filter)) return false;
    return RuleItemOf(*this)->IsCollisionWith(other->category_->GetCategoryPath()) &&
           otherItem->IsCollisionWith(category_->GetCategoryPath());
}

void ObjectModelInfo::TestWith(IModelDataSource* source, ObjectModelInfo* other) {
    CollisionAlgorithm algorithm(this, other);
    algorithm.SetDataSource(source);
    algorithm.SetCollisionMode(RuleItemOf(*this)->GetMode(), RuleItemOf(*other)->GetMode());
    CQNIMPosition high;
    CQNIMPosition low;
    if (!algorithm.CollisionCheck(high, low)) return;
    int ownOffset = 0;
    int otherOffset = 0;
    algorithm.GetBodyOffset(ownOffset, otherOffset);
    const CQNIMPosition point = kycb::model::Midpoint(high, low);
    AppendCollisionObj({other, point, ownOffset, otherOffset});
    other->AppendCollisionObj({this, point, otherOffset, ownOffset});
}

bool ObjectModelInfo::IsPriorityHigher(IModelDataSource* source,
                                       const ObjectModelInfo* other) const {
    if (!other) return false;
    if (name_ == other->name_) {
        CQNIMPosition start;
        CQNIMPosition end;
        CQNIMPosition otherStart;
        CQNIMPosition otherEnd;
        if (GetPipeDuctSupportSEPt(source, start, end) &&
            other->GetPipeDuctSupportSEPt(source, otherStart, otherEnd)) {
            return start.DistToPt(end) + kRankMargin > otherStart.DistToPt(otherEnd);
        }
        return ComesBefore(guid_, other->guid_);
    }
    SupportSection own;
    SupportSection its;
    if (GetPipeDuctSupportSect(source, own.width, own.height, own.radius) &&
        other->GetPipeDuctSupportSect(source, its.width, its.height, its.radius)) {
        return HasLargerSection(own, its);
    }
    return ComesBefore(name_, other->name_);
}

}  // namespace KYCOLLISION::MODEL
