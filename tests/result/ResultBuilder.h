// SPDX-License-Identifier: Apache-2.0
// Result items and a data source of axes for tests.
#pragma once

#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"
#include "KYCollisionBase/platform/QuadTree.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kycbtest {

using KYCOLLISION::RESULT::KyResultItem;

/// An item at the origin whose component A has this project, floor and GUID.
inline std::unique_ptr<KyResultItem> NewItem(int projectA, const std::wstring& floorA,
                                             const std::wstring& guidA,
                                             const std::wstring& position = L"0.00,0.00,0.00") {
    auto item = std::make_unique<KyResultItem>();
    item->SetBaseInfo(projectA, floorA, guidA, projectA, floorA, L"b", position);
    return item;
}

/// The GUIDs of the components A, in order.
inline std::vector<std::wstring> GuidsA(const std::vector<KyResultItem*>& items) {
    std::vector<std::wstring> guids;
    for (const KyResultItem* item : items)
        guids.push_back(item->GetObjGuidA());
    return guids;
}

/// An axis line that counts how many of its kind live.
class CountedLine : public QNIM::GeometryPrimitiveResource::CQNIMLineSegment {
  public:
    using CQNIMPosition = QNIM::GeometryPrimitiveResource::CQNIMPosition;

    CountedLine(const CQNIMPosition& start, const CQNIMPosition& end)
        : CQNIMLineSegment(start, end) {
        ++living;
    }
    ~CountedLine() override { --living; }
    CountedLine(const CountedLine&) = delete;
    CountedLine& operator=(const CountedLine&) = delete;

    static inline int living = 0;
};

/// Gives every floor one axis along x = 0, named by project and floor, and nothing else.
class AxisSource : public KYCOLLISION::LOGIC::IModelDataSource {
  public:
    using Item = KYCOLLISION::LOGIC::SQNGIAxisItem;
    using Tree = KYTOOLS::GRAPH::QuadTree<Item*>;

    /// Throws once the axes have been handed over.
    bool throws = false;
    /// The floors asked for, in order.
    mutable std::vector<std::pair<int, std::wstring>> asked;

    void GetFloorAxisInfo(int projectId, const std::wstring& floorName, std::vector<Item*>& items,
                          Tree& tree) const override {
        asked.emplace_back(projectId, floorName);
        auto item = std::make_unique<Item>();
        item->axisName = std::to_wstring(projectId) + floorName;
        item->axisCurve = std::make_unique<CountedLine>(CountedLine::CQNIMPosition(0, -9000, 0),
                                                        CountedLine::CQNIMPosition(0, 9000, 0));
        tree = Tree({-9000, -9000, 9000, 9000});
        tree.Insert(item.get(), {0, -9000, 0, 9000});
        items.push_back(item.release());
        if (throws) throw std::runtime_error("no more axes");
    }

    KYCOLLISION::MODEL::ICollisionModel* CreateCollisionModel() override { return nullptr; }
    Opcode::Model* CreateOpcodeModel(int, const boost::any&, int) override { return nullptr; }
    bool GetObjAttributes(int, const boost::any&,
                          std::map<std::wstring, std::wstring>& attributes) const override {
        attributes[L"heighttype"] = L"1";
        attributes[L"oneheight"] = L"2800";
        return true;
    }
    void ShowProgress(const std::wstring&) override {}
    std::wstring GetObjDisplayName(int, const boost::any&) const override { return {}; }
    void HighlightObj(int, const boost::any&) override {}
    std::wstring GetObjXiaoLeiName(int, const std::wstring&, const std::wstring&) const override {
        return {};
    }
};

}  // namespace kycbtest
