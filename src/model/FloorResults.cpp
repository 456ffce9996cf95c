// SPDX-License-Identifier: Apache-2.0
// From the clashes recorded on a floor's components to result items, counts and openings.
#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/platform/CodePage.h"
#include "KYCollisionBase/platform/QuadTree.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include <cstdint>
#include <utility>

#include "platform/Text.h"
#include "result/FloorAxes.h"

namespace KYCOLLISION::MODEL {

namespace {

using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using RESULT::KyResultItem;
namespace text = kycb::text;

constexpr const wchar_t* kTekla = L"Tekla";
constexpr const wchar_t* kRevit = L"Revit";

// One component of a pair, as it goes into a result.
struct Side {
    ObjectModelInfo* obj = nullptr;
    int projId = -1;
    std::wstring floorName;
    std::wstring guid;
    AttCategory category;
    int priority = 0;
    std::wstring attName;
    std::wstring sysCode;
    std::wstring height;

    bool IsOf(const wchar_t* specialty) const { return category.specialty == specialty; }
    SObjAttInfo Summary(const std::wstring& xiaolei) const {
        return {category.specialty, category.dalei, xiaolei, attName, sysCode};
    }
    std::wstring ModelText(int bodyOffset) const {
        return IsOf(kTekla) ? category.dalei : text::FromInt(bodyOffset);
    }
};

AttCategory CategoryOf(const ObjectModelInfo& obj) {
    const AttCategoryModelInfo* category = obj.GetBelongCategoryModel();
    return category ? category->GetAttCategory() : AttCategory();
}

std::wstring PointText(const CQNIMPosition& point) {
    return text::FromFixed(point.GetX(), 2) + L"," + text::FromFixed(point.GetY(), 2) + L"," +
           text::FromFixed(point.GetZ(), 2);
}

// Ordinal order of two texts as the code page shows them: what it cannot show counts as "?".
int CompareInCodePage(const std::wstring& a, const std::wstring& b) {
    return KYTOOLS::CodePage::RoundTrip(a).compare(KYTOOLS::CodePage::RoundTrip(b));
}

// Wider than a priority, which can be as large as its type.
std::int64_t SumOf(int priorityA, int priorityB) {
    return std::int64_t{priorityA} + priorityB;
}

std::int64_t StoredPrioritySum(const KyResultItem& item) {
    const AttCategory a(item.GetSpecialtyA(), item.GetCategoryA(), item.GetSubcategoryA());
    const AttCategory b(item.GetSpecialtyB(), item.GetCategoryB(), item.GetSubcategoryB());
    return SumOf(a.GetAttPriority(), b.GetAttPriority());
}

}  // namespace

// One run of result generation over a floor.
class FloorModelInfo::ResultBuilder {
  public:
    ResultBuilder(FloorModelInfo& floor, LOGIC::IModelDataSource* source)
        : floor_(floor), source_(source) {
        if (source_) {
            source_->GetFloorAxisInfo(floor_.GetProjId(), floor_.name_, axes_.items, axes_.tree);
        }
    }

    void AddResultsOf(ObjectModelInfo& obj) {
        const Side a = ReadMainSide(obj);
        // The loop takes records away, also from this very list when a component meets itself.
        const std::vector<SCollisionWithObj> records = obj.GetCollisionObjs();
        for (const SCollisionWithObj& record : records) {
            if (record.other) AddResult(a, record);
        }
    }

    // Hands the items over in the order of their keys.
    void MoveTo(std::vector<KyResultItem*>& results) {
        results.reserve(results.size() + items_.size());
        for (auto& [key, item] : items_) {
            results.push_back(item.release());
        }
    }

  private:
    Side ReadMainSide(ObjectModelInfo& obj) const {
        Side side;
        side.obj = &obj;
        side.projId = floor_.GetProjId();
        side.floorName = floor_.name_;
        side.guid = obj.GetObjGuid();
        side.category = CategoryOf(obj);
        side.attName = obj.GetObjAttname();
        side.sysCode = obj.GetObjSyscode();
        side.priority = side.category.GetAttPriority();
        side.height = obj.GetObjAttHeight(source_);
        return side;
    }

    // The minor category that this floor knows the GUID under takes the place of the component's
    // own; the main component gets no such substitution.
    Side ReadSecondSide(ObjectModelInfo& obj) const {
        Side side;
        side.obj = &obj;
        side.projId = obj.GetProjId();
        side.floorName = obj.GetFloorName();
        side.guid = obj.GetObjGuid();
        side.category = CategoryOf(obj);
        std::wstring inlineXiaolei = floor_.GetXiaoLeiInlineGuid(side.guid);
        if (!inlineXiaolei.empty()) side.category.xiaolei = std::move(inlineXiaolei);
        side.attName = obj.GetObjAttname();
        side.sysCode = obj.GetObjSyscode();
        side.height = obj.GetObjAttHeight(source_);
        side.priority = side.category.GetAttPriority();
        return side;
    }

    void AddResult(const Side& a, const SCollisionWithObj& record) {
        const Side b = ReadSecondSide(*record.other);
        if (!floor_.GetIsMainObj(source_, a.obj, a.category, b.obj, b.category)) return;
        Store(a, b, record.clashPoint, CreateItem(a, b, record));
        b.obj->RemoveCollisionObj(a.obj);  // so that B's own walk does not yield the pair again
    }

    std::unique_ptr<KyResultItem> CreateItem(const Side& a, const Side& b,
                                             const SCollisionWithObj& record) const {
        const std::wstring clashModel =
            a.ModelText(record.ownBodyOffset) + L"," + b.ModelText(record.otherBodyOffset);
        // The host's display name goes into the summary alone; ranks are made of the category.
        const std::wstring xiaoleiB =
            b.IsOf(kRevit) && source_ ? source_->GetObjXiaoLeiName(b.projId, b.floorName, b.guid)
                                      : b.category.xiaolei;
        const std::wstring floorKey =
            text::FromInt(a.projId) + a.floorName + text::FromInt(b.projId) + b.floorName;
        return std::unique_ptr<KyResultItem>(floor_.CreateNewResultItem(
            a.projId, a.floorName, a.guid, b.projId, b.floorName, b.guid,
            PointText(record.clashPoint), clashModel, a.Summary(a.category.xiaolei),
            b.Summary(xiaoleiB), a.obj, b.obj, floorKey, a.height, b.height, axes_.tree));
    }

    // Tekla models hold one component as several parts, whose clashes count once.
    void Store(const Side& a, const Side& b, const CQNIMPosition& point,
               std::unique_ptr<KyResultItem> item) {
        std::unique_ptr<KyResultItem>& stored = items_[a.guid + L"&" + b.guid];
        const bool once = a.IsOf(kTekla) || b.IsOf(kTekla);
        if (stored && once && !Replaces(SumOf(a.priority, b.priority), point, *stored)) return;
        stored = std::move(item);
    }

    static bool Replaces(std::int64_t prioritySum, const CQNIMPosition& point,
                         const KyResultItem& stored) {
        const std::int64_t storedSum = StoredPrioritySum(stored);
        if (prioritySum != storedSum) return prioritySum < storedSum;
        const CQNIMPosition origin;
        return origin.DistToPt(stored.GetClashQNIMPoint()) > origin.DistToPt(point);
    }

    FloorModelInfo& floor_;
    LOGIC::IModelDataSource* source_;
    kycb::FloorAxes axes_;
    std::map<std::wstring, std::unique_ptr<KyResultItem>> items_;
};

void FloorModelInfo::GetFloorCollisionResult(LOGIC::IModelDataSource* source,
                                             std::vector<KyResultItem*>& results) {
    ResultBuilder builder(*this, source);
    for (const auto& [path, category] : categories_) {
        for (const auto& [guid, obj] : category->GetObjects()) {
            builder.AddResultsOf(*obj);
        }
    }
    builder.MoveTo(results);
}

int FloorModelInfo::GetFloorResultTempNum(LOGIC::IModelDataSource* source) {
    int count = 0;
    for (const auto& [path, category] : categories_) {
        for (const auto& [guid, obj] : category->GetObjects()) {
            for (const SCollisionWithObj& record : obj->GetCollisionObjs()) {
                if (record.other && GetIsMainObj(source, obj, category->GetAttCategory(),
                                                 record.other, CategoryOf(*record.other))) {
                    ++count;
                }
            }
        }
    }
    return count;
}

void FloorModelInfo::GetFloorExistingHoles(
    LOGIC::IModelDataSource* source,
    std::vector<std::shared_ptr<RESULT::CExistingHole>>& holes) const {
    for (const auto& [path, category] : categories_) {
        for (const auto& [guid, obj] : category->GetObjects()) {
            if (auto hole = obj->GetExistingHole(source)) holes.push_back(std::move(hole));
        }
    }
}

bool FloorModelInfo::GetIsMainObj(LOGIC::IModelDataSource* source, ObjectModelInfo* a,
                                  const AttCategory& categoryA, ObjectModelInfo* b,
                                  const AttCategory& categoryB) {
    const bool isTeklaA = categoryA.specialty == kTekla;
    const bool isTeklaB = categoryB.specialty == kTekla;
    if (isTeklaA != isTeklaB) return isTeklaA;
    if (isTeklaA) {
        const int byName = CompareInCodePage(a->GetObjAttname(), b->GetObjAttname());
        if (byName != 0) return byName < 0;
        return CompareInCodePage(a->GetObjGuid(), b->GetObjGuid()) < 0;
    }
    const int priorityA = categoryA.GetAttPriority();
    const int priorityB = categoryB.GetAttPriority();
    if (priorityA != priorityB) return priorityA < priorityB;
    const int byKind = CompareInCodePage(AttCategory(categoryA).categoryIndex(),
                                         AttCategory(categoryB).categoryIndex());
    if (byKind != 0) return byKind < 0;
    return a->IsPriorityHigher(source, b);
}

KyResultItem* FloorModelInfo::CreateNewResultItem(
    int projIdA, std::wstring floorNameA, std::wstring guidA, int projIdB, std::wstring floorNameB,
    std::wstring guidB, std::wstring clashPoint, std::wstring clashModel, const SObjAttInfo& infoA,
    const SObjAttInfo& infoB, ObjectModelInfo* /*a*/, ObjectModelInfo* /*b*/, std::wstring floorKey,
    std::wstring heightA, std::wstring heightB, const AxisTree& axisTree) {
    auto item = std::make_unique<KyResultItem>();
    item->SetBaseInfo(projIdA, std::move(floorNameA), std::move(guidA), projIdB,
                      std::move(floorNameB), std::move(guidB), std::move(clashPoint));
    item->InitResultId(std::move(floorKey));
    item->SetObjAttInfo_Main(infoA);
    item->SetObjAttInfo_Second(infoB);
    item->SetClashModel(std::move(clashModel));
    item->SetHeightA(std::move(heightA));
    item->SetHeightB(std::move(heightB));
    item->ReCatulateAxisInfo(axisTree);
    return item.release();
}

std::wstring FloorModelInfo::GetXiaoLeiInlineGuid(const std::wstring& guid) {
    for (const auto& [path, category] : categories_) {
        if (category->GetObjects().contains(guid)) return category->GetAttCategory().xiaolei;
    }
    return {};
}

}  // namespace KYCOLLISION::MODEL
