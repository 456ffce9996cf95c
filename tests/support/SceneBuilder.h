// SPDX-License-Identifier: Apache-2.0
// Describes a small building in a few words, for tests and benchmarks.
//
//     SceneBuilder scene;
//     scene.Add(L"w1", kWall, {0, 0, 0, 1000, 200, 3000});
//     scene.Add(L"p1", kDrain, {400, -500, 1000, 450, 700, 1050}).Attribute(L"pipegczj", L"50");
//     const auto model = scene.BuildModel();                  // the tree alone, or
//     driver.SetDataSource(new FakeDataSource(scene));         // a host around it
//
// Lengths are millimetres. A component is a solid box with its own bounding box unless it is told
// otherwise, and stands on floor "1F" of project 1 unless another place is chosen with At.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/model/SKyModelInfo.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"

#include <deque>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "support/TestMesh.h"

namespace KYCOLLISION::MODEL {
class FloorModelInfo;
class ObjectModelInfo;
class WorkSetModelInfo;
}  // namespace KYCOLLISION::MODEL

namespace kycb::test {

/// One component of a scene; the setters return the component, so that they can be chained.
struct SceneComponent {
    std::wstring guid;
    KYCOLLISION::MODEL::AttCategory category;
    BoundingBox3d box;  ///< what the model is told; decides who is a neighbour
    Body body;          ///< what the data source meshes
    int projectId = 1;
    std::wstring floorName = L"1F";
    std::wstring objectId;  ///< the host's id: "obj:" and the number of the component from 0
    std::wstring partId;    ///< none when empty
    std::wstring name;
    std::wstring syscode;
    std::map<std::wstring, std::wstring> attributes;

    SceneComponent& Attribute(const std::wstring& key, const std::wstring& value);
    SceneComponent& Name(const std::wstring& text);
    SceneComponent& Syscode(const std::wstring& text);
    SceneComponent& PartId(const std::wstring& id);
    SceneComponent& WithBody(Body other);
    SceneComponent& WithoutBody();
    /// Tells the model a box that is larger than the body by `margin` on each side.
    SceneComponent& BoxGrownBy(double margin);
};

class SceneBuilder {
  public:
    using AttCategory = KYCOLLISION::MODEL::AttCategory;

    /// Where the components that are added from now on stand.
    SceneBuilder& At(int projectId, const std::wstring& floorName);

    /// Adds a component whose body is its box.
    SceneComponent& Add(const std::wstring& guid, const AttCategory& category,
                        const BoundingBox3d& box);

    /// The components in the order in which they were added; addresses stay.
    const std::deque<SceneComponent>& Components() const { return components_; }
    /// The component under an object id or part id, or null.
    const SceneComponent* Find(const std::wstring& id) const;

    /// The whole tree, boxes and quad trees included, as a data source builds it.
    std::unique_ptr<KYCOLLISION::MODEL::WorkSetModelInfo> BuildModel() const;

  private:
    std::deque<SceneComponent> components_;
    int projectId_ = 1;
    std::wstring floorName_ = L"1F";
};

/// A component as the model knows it, not yet appended anywhere.
KYCOLLISION::MODEL::ObjectModelInfo* NewObject(const SceneComponent& component);
KYCOLLISION::MODEL::ObjectModelInfo* NewObject(const std::wstring& guid, const BoundingBox3d& box);

/// All components of the model in the order of its walk: project, floor, category path, GUID.
std::vector<KYCOLLISION::MODEL::ObjectModelInfo*> ObjectsOf(
    const KYCOLLISION::MODEL::WorkSetModelInfo& model);

/// The first component of the model under exactly this GUID; null when there is none.
KYCOLLISION::MODEL::ObjectModelInfo* ObjectOf(const KYCOLLISION::MODEL::WorkSetModelInfo& model,
                                              const std::wstring& guid);
KYCOLLISION::MODEL::FloorModelInfo* FloorOf(const KYCOLLISION::MODEL::WorkSetModelInfo& model,
                                            int projectId = 1,
                                            const std::wstring& floorName = L"1F");

/// The GUIDs of components, in their order.
std::vector<std::wstring> GuidsOf(std::span<KYCOLLISION::MODEL::ObjectModelInfo* const> objects);

}  // namespace kycb::test
