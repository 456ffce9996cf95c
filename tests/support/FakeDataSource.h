// SPDX-License-Identifier: Apache-2.0
// A host around a scene that records what it is asked and fails on demand.
#pragma once

#include "KYCollisionBase/logic/IModelDataSource.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/SceneBuilder.h"

namespace kycb::test {

/// The operations that the library may call.
enum class HostCall { kCreateModel, kCreateMesh, kAttributes, kAxes, kXiaoLeiName };

/// One call as it came in; fields that a call does not have keep their defaults.
struct RecordedCall {
    HostCall call = HostCall::kCreateModel;
    int projectId = 0;
    std::wstring id{};  ///< object or part id; for kXiaoLeiName the GUID
    int bodyOffset = 0;
    std::wstring floorName{};

    friend bool operator==(const RecordedCall&, const RecordedCall&) = default;
};

/// A straight grid axis in plan (mm).
struct TestAxis {
    std::wstring name;
    double x0 = 0.0;
    double y0 = 0.0;
    double x1 = 0.0;
    double y1 = 0.0;
};

/// Answers from a scene, which it copies. Everything is recorded in `calls`, so operations that the
/// interface has as const are const only in name; one thread at a time.
class FakeDataSource : public KYCOLLISION::LOGIC::IModelDataSource {
  public:
    using ICollisionModel = KYCOLLISION::MODEL::ICollisionModel;
    using SQNGIAxisItem = KYCOLLISION::LOGIC::SQNGIAxisItem;

    explicit FakeDataSource(SceneBuilder scene) : scene_(std::move(scene)) {}

    /// Throws std::runtime_error("host failure") instead of answering the n-th call of a kind,
    /// counted from 1 over the life of the source.
    void ThrowAt(HostCall call, int nth) { throwAt_[call] = nth; }

    /// Axes that every floor has.
    void AddAxis(const TestAxis& axis) { axes_.push_back(axis); }

    /// The calls of one kind, in their order.
    std::vector<RecordedCall> CallsOf(HostCall call) const;

    ICollisionModel* CreateCollisionModel() override;
    Opcode::Model* CreateOpcodeModel(int projectId, const boost::any& objectId,
                                     int bodyOffset) override;
    bool GetObjAttributes(int projectId, const boost::any& objectId,
                          std::map<std::wstring, std::wstring>& attributes) const override;
    void GetFloorAxisInfo(int projectId, const std::wstring& floorName,
                          std::vector<SQNGIAxisItem*>& items,
                          KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>& tree) const override;
    void ShowProgress(const std::wstring& text) override;
    std::wstring GetObjDisplayName(int projectId, const boost::any& objectId) const override;
    void HighlightObj(int projectId, const boost::any& objectId) override;
    /// "显示" and the GUID.
    std::wstring GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                   const std::wstring& guid) const override;

    mutable std::vector<RecordedCall> calls;
    /// Called at the start of each call, after it was recorded; for tests that act in the middle.
    std::function<void(const RecordedCall&)> onCall;
    /// Set by tests that want null from CreateCollisionModel.
    bool hasModel = true;

  private:
    void Record(RecordedCall call) const;

    SceneBuilder scene_;
    std::vector<TestAxis> axes_;
    std::map<HostCall, int> throwAt_;
    mutable std::map<HostCall, int> counts_;
};

}  // namespace kycb::test
