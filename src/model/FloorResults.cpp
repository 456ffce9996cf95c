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

#include <algorithm>
#include <cstdint>
#include <unordered_map>
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

// A kind of component, as results and ranks need it.
struct Kind {
    AttCategory category;
    int priority = 0;
    std::wstring shownPath;  // as the code page shows it

    explicit Kind(const AttCategory& of)
        : category(of),
          priority(category.GetAttPriority()),
          shownPath(KYTOOLS::CodePage::RoundTrip(category.categoryIndex())) {}

    bool IsOf(const wchar_t* specialty) const { return category.specialty == specialty; }
};

// Kinds by category, each worked out once.
class KindTable {
  public:
    const Kind& Of(const ObjectModelInfo& obj) {
        const AttCategoryModelInfo* category = obj.GetBelongCategoryModel();
        const auto found = kinds_.find(category);
        if (found != kinds_.end()) return found->second;
        const Kind kind(category ? category->GetAttCategory() : AttCategory());
        return kinds_.emplace(category, kind).first->second;
    }

    // With another minor category, unless that is empty.
    const Kind& Of(const ObjectModelInfo& obj, const std::wstring& xiaolei) {
        const Kind& own = Of(obj);
        if (xiaolei.empty() || xiaolei == own.category.xiaolei) return own;
        AttCategory category = own.category;
        category.xiaolei = xiaolei;
        return substituted_
            .try_emplace(std::make_pair(obj.GetBelongCategoryModel(), xiaolei), category)
            .first->second;
    }

  private:
    std::map<const AttCategoryModelInfo*, Kind> kinds_;
    std::map<std::pair<const AttCategoryModelInfo*, std::wstring>, Kind> substituted_;
};

// One component of a pair, as it goes into a result.
struct Side {
    ObjectModelInfo* obj = nullptr;
    const Kind* kind = nullptr;
    int projId = -1;
    std::wstring floorName;
    std::wstring floorKey;
    SObjAttInfo summary;
    std::wstring height;

    Side(ObjectModelInfo& of, const Kind& ofKind, int project, std::wstring floor)
        : obj(&of),
          kind(&ofKind),
          projId(project),
          floorName(std::move(floor)),
          floorKey(text::FromInt(projId) + floorName),
          summary{kind->category.specialty, kind->category.dalei, kind->category.xiaolei,
                  of.GetObjAttname(), of.GetObjSyscode()} {}

    std::wstring ModelText(int bodyOffset) const {
        return kind->IsOf(kTekla) ? kind->category.dalei : text::FromInt(bodyOffset);
    }
};

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

bool IsMain(LOGIC::IModelDataSource* source, const ObjectModelInfo& a, const Kind& kindA,
            const ObjectModelInfo& b, const Kind& kindB) {
    const bool isTeklaA = kindA.IsOf(kTekla);
    if (isTeklaA != kindB.IsOf(kTekla)) return isTeklaA;
    if (isTeklaA) {
        const int byName = CompareInCodePage(a.GetObjAttname(), b.GetObjAttname());
        if (byName != 0) return byName < 0;
        return CompareInCodePage(a.GetObjGuid(), b.GetObjGuid()) < 0;
    }
    if (kindA.priority != kindB.priority) return kindA.priority < kindB.priority;
    const int byKind = kindA.shownPath.compare(kindB.shownPath);
    if (byKind != 0) return byKind < 0;
    return a.IsPriorityHigher(source, &b);
}

// A result under its key, "GUID of A & GUID of B".
struct KeyedResult {
    const std::wstring* guidA;
    const std::wstring* guidB;
    std::unique_ptr<KyResultItem> item;
    bool isOnce;  // of several under the key, the best one counts; otherwise the last one
    std::int64_t prioritySum;
    CQNIMPosition point;

    bool Replaces(const KyResultItem& stored) const {
        if (!isOnce) return true;
        const std::int64_t storedSum = StoredPrioritySum(stored);
        if (prioritySum != storedSum) return prioritySum < storedSum;
        const CQNIMPosition origin;
        return origin.DistToPt(stored.GetClashQNIMPoint()) > origin.DistToPt(point);
    }
};

int CompareKeys(const KeyedResult& a, const KeyedResult& b) {
    if (a.guidA->size() != b.guidA->size()) {
        return (*a.guidA + L"&" + *a.guidB).compare(*b.guidA + L"&" + *b.guidB);
    }
    const int byA = a.guidA->compare(*b.guidA);
    return byA != 0 ? byA : a.guidB->compare(*b.guidB);
}

// The beginning of a key as a number: keys with different numbers are ordered as these are.
std::uint64_t BeginningOf(const KeyedResult& result) {
    constexpr wchar_t kLast = 0xFF;  // stands for whatever comes after it
    const std::size_t sizeA = result.guidA->size();
    const auto at = [&](std::size_t i) {
        if (i < sizeA) return (*result.guidA)[i];
        if (i == sizeA) return L'&';
        const std::size_t inB = i - sizeA - 1;
        return inB < result.guidB->size() ? (*result.guidB)[inB] : L'\0';
    };
    std::uint64_t beginning = 0;
    bool isWhole = true;
    for (std::size_t i = 0; i < sizeof(beginning); ++i) {
        const wchar_t c = isWhole ? std::clamp(at(i), L'\0', kLast) : L'\0';
        beginning = beginning << 8U | static_cast<std::uint64_t>(c);
        isWhole = isWhole && c == at(i) && c != kLast;
    }
    return beginning;
}

// Results in the order in which they were made, to be had in the order of their keys.
class ResultList {
  public:
    void Add(KeyedResult result) { results_.push_back(std::move(result)); }

    // Hands over what counts under each key.
    void MoveTo(std::vector<KyResultItem*>& out) {
        const std::vector<std::size_t> order = SortedByKey();
        std::vector<std::unique_ptr<KyResultItem>> chosen;
        chosen.reserve(order.size());
        for (std::size_t i = 0; i < order.size();) {
            const KeyedResult& first = results_[order[i]];
            chosen.push_back(std::move(results_[order[i]].item));
            for (++i; i < order.size() && CompareKeys(first, results_[order[i]]) == 0; ++i) {
                KeyedResult& next = results_[order[i]];
                if (next.Replaces(*chosen.back())) chosen.back() = std::move(next.item);
            }
        }
        out.reserve(out.size() + chosen.size());
        for (auto& item : chosen) {
            out.push_back(item.release());
        }
    }

  private:
    // Equal keys in the order in which their results were made.
    std::vector<std::size_t> SortedByKey() const {
        struct Place {
            std::uint64_t beginning;
            std::size_t index;
        };
        std::vector<Place> places;
        places.reserve(results_.size());
        for (std::size_t i = 0; i < results_.size(); ++i) {
            places.push_back({BeginningOf(results_[i]), i});
        }
        std::sort(places.begin(), places.end(), [&](const Place& a, const Place& b) {
            if (a.beginning != b.beginning) return a.beginning < b.beginning;
            const int byKey = CompareKeys(results_[a.index], results_[b.index]);
            return byKey != 0 ? byKey < 0 : a.index < b.index;
        });
        std::vector<std::size_t> order;
        order.reserve(places.size());
        for (const Place& place : places) {
            order.push_back(place.index);
        }
        return order;
    }

    std::vector<KeyedResult> results_;
};

}  // namespace

// One run of result generation over a floor. What it works out for a component or kind it keeps;
// heights are asked for afresh, as the host expects.
class FloorModelInfo::ResultBuilder {
  public:
    ResultBuilder(FloorModelInfo& floor, LOGIC::IModelDataSource* source)
        : floor_(floor), source_(source) {
        if (source_) {
            source_->GetFloorAxisInfo(floor_.GetProjId(), floor_.name_, axes_.items, axes_.tree);
        }
    }

    void AddResultsOf(ObjectModelInfo& obj) {
        std::wstring height = obj.GetObjAttHeight(source_);
        if (obj.GetCollisionObjs().empty()) return;
        Side a(obj, kinds_.Of(obj), floor_.GetProjId(), floor_.name_);
        a.height = std::move(height);
        // The loop takes records away, also from this very list when a component meets itself.
        const std::vector<SCollisionWithObj> records = obj.GetCollisionObjs();
        for (const SCollisionWithObj& record : records) {
            if (record.other) AddResult(a, record);
        }
    }

    // Hands the items over in the order of their keys.
    void MoveTo(std::vector<KyResultItem*>& results) { results_.MoveTo(results); }

  private:
    // The minor category that this floor knows the GUID under takes the place of the component's
    // own; the main component gets no such substitution. Only the host can change the height.
    const Side& SecondSide(ObjectModelInfo& obj) {
        auto found = seconds_.find(&obj);
        if (found == seconds_.end()) {
            const Kind& kind = kinds_.Of(obj, floor_.GetXiaoLeiInlineGuid(obj.GetObjGuid()));
            Side side(obj, kind, obj.GetProjId(), obj.GetFloorName());
            found = seconds_.emplace(&obj, std::move(side)).first;
        }
        found->second.height = obj.GetObjAttHeight(source_);
        return found->second;
    }

    void AddResult(const Side& a, const SCollisionWithObj& record) {
        const Side& b = SecondSide(*record.other);
        if (!IsMain(source_, *a.obj, *a.kind, *b.obj, *b.kind)) return;
        // Tekla models hold one component as several parts, whose clashes count once.
        const bool isOnce = a.kind->IsOf(kTekla) || b.kind->IsOf(kTekla);
        results_.Add({&a.obj->GetObjGuid(), &b.obj->GetObjGuid(), CreateItem(a, b, record), isOnce,
                      SumOf(a.kind->priority, b.kind->priority), record.clashPoint});
        b.obj->RemoveCollisionObj(a.obj);  // so that B's own walk does not yield the pair again
    }

    std::unique_ptr<KyResultItem> CreateItem(const Side& a, const Side& b,
                                             const SCollisionWithObj& record) const {
        std::wstring clashModel =
            a.ModelText(record.ownBodyOffset) + L"," + b.ModelText(record.otherBodyOffset);
        // The host's display name goes into the summary alone; ranks are made of the category.
        SObjAttInfo revit;
        if (b.kind->IsOf(kRevit) && source_) {
            revit = b.summary;
            revit.Subcategory =
                source_->GetObjXiaoLeiName(b.projId, b.floorName, b.obj->GetObjGuid());
        }
        return std::unique_ptr<KyResultItem>(floor_.CreateNewResultItem(
            a.projId, a.floorName, a.obj->GetObjGuid(), b.projId, b.floorName, b.obj->GetObjGuid(),
            PointText(record.clashPoint), std::move(clashModel), a.summary,
            revit.Specialty.empty() ? b.summary : revit, a.obj, b.obj, a.floorKey + b.floorKey,
            a.height, b.height, axes_.tree));
    }

    FloorModelInfo& floor_;
    LOGIC::IModelDataSource* source_;
    kycb::FloorAxes axes_;
    KindTable kinds_;
    std::unordered_map<const ObjectModelInfo*, Side> seconds_;
    ResultList results_;
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
    KindTable kinds;
    int count = 0;
    for (const auto& [path, category] : categories_) {
        for (const auto& [guid, obj] : category->GetObjects()) {
            for (const SCollisionWithObj& record : obj->GetCollisionObjs()) {
                if (record.other &&
                    IsMain(source, *obj, kinds.Of(*obj), *record.other, kinds.Of(*record.other))) {
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
    return IsMain(source, *a, Kind(categoryA), *b, Kind(categoryB));
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
