// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <map>
#include <string>
#include <vector>

#include <boost/any.hpp>

namespace Opcode {
class Model;
}
namespace KYTOOLS::GRAPH {
template <class T>
class QuadTree;
}
namespace KYCOLLISION::MODEL {
class ICollisionModel;
}

namespace KYCOLLISION::LOGIC {

struct SQNGIAxisItem;

/// Everything the library asks of a host about its building. The host derives from this class; the
/// order of the virtual operations is binding, because hosts are built separately.
///
/// Object ids are the host's own values: those that the components were constructed with, or (for
/// meshes of Tekla components) a component's part id. A project id is -1 when the component's
/// project is unknown. All lengths are millimetres in world coordinates, z up.
///
/// Errors: exceptions that an implementation throws pass through the library unchanged; nothing is
/// leaked, and what was found up to then stays in the model.
///
/// Threads: called only from the thread that runs the library's operation.
class KYCB_API IModelDataSource {
  public:
    virtual ~IModelDataSource() = default;

    /// Builds the whole model tree of the current work set, boxes and quad trees included, and
    /// hands it over: the driver deletes it. Null means that no model could be built.
    virtual MODEL::ICollisionModel* CreateCollisionModel() = 0;

    /// A new mesh of the component's body in world coordinates, grown (positive offset) or shrunk
    /// (negative offset) by `bodyOffset` millimetres; 0 asks for the plain body. Null when there is
    /// no such body; then the component never clashes and is asked for again at its next pair.
    ///
    /// The caller takes ownership of the model, of its mesh interface (allocated with new) and of
    /// the triangle and vertex arrays behind it (allocated with array new), and frees all four.
    /// One call per component and offset suffices for a run: the answer is kept.
    virtual Opcode::Model* CreateOpcodeModel(int projectId, const boost::any& objectId,
                                             int bodyOffset) = 0;

    /// Adds every attribute of the component to `attributes` as name -> value text. The result is
    /// not used. Called afresh for each attribute read, so it should be quick.
    virtual bool GetObjAttributes(int projectId, const boost::any& objectId,
                                  std::map<std::wstring, std::wstring>& attributes) const = 0;

    /// The grid axes of one floor and a quad tree over them.
    ///
    /// The items are allocated with new and belong to the caller from then on, also those that
    /// were added before an exception. `tree` arrives over the null box: a host that has axes
    /// assigns it a tree over all of them (`tree = QuadTree<SQNGIAxisItem*>(bounds)`) and inserts
    /// each item under the 2-D box of its curve. The tree is gone before the items are.
    virtual void GetFloorAxisInfo(int projectId, const std::wstring& floorName,
                                  std::vector<SQNGIAxisItem*>& items,
                                  KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>& tree) const = 0;

    /// For the host's own use; the library never calls it: progress text of a long operation.
    virtual void ShowProgress(const std::wstring& text) = 0;

    /// For the host's own use; the library never calls it: a component's name for display.
    virtual std::wstring GetObjDisplayName(int projectId, const boost::any& objectId) const = 0;

    /// For the host's own use; the library never calls it: marks a component in the host's view.
    virtual void HighlightObj(int projectId, const boost::any& objectId) = 0;

    /// The display name of the minor category of a component. Asked only for the second component
    /// of a result when it comes from a Revit model; the text goes into the result as it is.
    virtual std::wstring GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                           const std::wstring& guid) const = 0;
};

}  // namespace KYCOLLISION::LOGIC
