// SPDX-License-Identifier: Apache-2.0
#include "support/FakeDataSource.h"

#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"
#include "KYCollisionBase/platform/QuadTree.h"

#include <algorithm>
#include <stdexcept>

namespace kycb::test {

namespace {

using KYTOOLS::GRAPH::BoundingBox2d;

std::wstring IdText(const boost::any& id) {
    return boost::any_cast<std::wstring>(id);
}

BoundingBox2d PlanOf(const TestAxis& axis) {
    return {std::min(axis.x0, axis.x1), std::min(axis.y0, axis.y1), std::max(axis.x0, axis.x1),
            std::max(axis.y0, axis.y1)};
}

}  // namespace

void FakeDataSource::Record(RecordedCall call) const {
    calls.push_back(call);
    const int count = ++counts_[call.call];
    if (onCall) onCall(call);
    const auto failing = throwAt_.find(call.call);
    if (failing != throwAt_.end() && failing->second == count) {
        throw std::runtime_error("host failure");
    }
}

std::vector<RecordedCall> FakeDataSource::CallsOf(HostCall call) const {
    std::vector<RecordedCall> found;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                 [&](const RecordedCall& recorded) { return recorded.call == call; });
    return found;
}

KYCOLLISION::MODEL::ICollisionModel* FakeDataSource::CreateCollisionModel() {
    Record({.call = HostCall::kCreateModel});
    return hasModel ? scene_.BuildModel().release() : nullptr;
}

Opcode::Model* FakeDataSource::CreateOpcodeModel(int projectId, const boost::any& objectId,
                                                 int bodyOffset) {
    const std::wstring id = IdText(objectId);
    Record({.call = HostCall::kCreateMesh,
            .projectId = projectId,
            .id = id,
            .bodyOffset = bodyOffset});
    const SceneComponent* component = scene_.Find(id);
    const auto mesh = component ? component->body(bodyOffset) : std::nullopt;
    return mesh ? MakeOpcodeModel(*mesh) : nullptr;
}

bool FakeDataSource::GetObjAttributes(int projectId, const boost::any& objectId,
                                      std::map<std::wstring, std::wstring>& attributes) const {
    const std::wstring id = IdText(objectId);
    Record({.call = HostCall::kAttributes, .projectId = projectId, .id = id});
    const SceneComponent* component = scene_.Find(id);
    if (!component) return false;
    attributes.insert(component->attributes.begin(), component->attributes.end());
    return true;
}

void FakeDataSource::GetFloorAxisInfo(int projectId, const std::wstring& floorName,
                                      std::vector<SQNGIAxisItem*>& items,
                                      KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>& tree) const {
    using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
    using QNIM::GeometryPrimitiveResource::CQNIMPosition;
    BoundingBox2d bounds;
    for (const TestAxis& axis : axes_) {
        auto item = std::make_unique<SQNGIAxisItem>();
        item->axisName = axis.name;
        item->axisCurve = std::make_unique<CQNIMLineSegment>(CQNIMPosition(axis.x0, axis.y0, 0.0),
                                                             CQNIMPosition(axis.x1, axis.y1, 0.0));
        items.push_back(item.release());
        bounds.Add(PlanOf(axis));
    }
    tree = KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>(bounds);
    for (std::size_t i = 0; i < axes_.size(); ++i) {
        tree.Insert(items[i], PlanOf(axes_[i]));
    }
    // Last, so that a failure finds items that were already handed over.
    Record({.call = HostCall::kAxes, .projectId = projectId, .floorName = floorName});
}

void FakeDataSource::ShowProgress(const std::wstring&) {}

std::wstring FakeDataSource::GetObjDisplayName(int, const boost::any&) const {
    return {};
}

void FakeDataSource::HighlightObj(int, const boost::any&) {}

std::wstring FakeDataSource::GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                               const std::wstring& guid) const {
    Record({.call = HostCall::kXiaoLeiName,
            .projectId = projectId,
            .id = guid,
            .floorName = floorName});
    return L"显示" + guid;
}

}  // namespace kycb::test
