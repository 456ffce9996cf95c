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
/// Object ids are the host's own values: those that the components were constructed with, or a
/// component's part id. A project id is -1 when the component's project is unknown. All lengths
/// are millimetres in world coordinates. Exceptions that an implementation throws pass through the
/// library unchanged.
///
/// Threads: called only from the thread that runs the library's operation.
class KYCB_API IModelDataSource {
  public:
    virtual ~IModelDataSource() = default;

    /// Builds the whole model tree of the current work set, boxes and quad trees included, and
    /// hands it over. Null means that no model could be built.
    virtual MODEL::ICollisionModel* CreateCollisionModel() = 0;

    /// A new mesh of the component's body, in world coordinates, grown (positive) or shrunk
    /// (negative) by `bodyOffset`; null when there is no body. The caller takes ownership of the
    /// model, its mesh interface and the two arrays behind it (allocated with array new).
    virtual Opcode::Model* CreateOpcodeModel(int projectId, const boost::any& objectId,
                                             int bodyOffset) = 0;

    /// Fills every attribute of the component as name -> value text. The result is not used.
    virtual bool GetObjAttributes(int projectId, const boost::any& objectId,
                                  std::map<std::wstring, std::wstring>& attributes) const = 0;

    /// The grid axes of one floor and a quad tree over them. The caller owns the items and the
    /// tree from then on; `tree` may stay null when the floor has no axes.
    virtual void GetFloorAxisInfo(int projectId, const std::wstring& floorName,
                                  std::vector<SQNGIAxisItem*>& items,
                                  KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*>*& tree) const = 0;

    /// For the host's own use; the library never calls it: progress text of a long operation.
    virtual void ShowProgress(const std::wstring& text) = 0;

    /// For the host's own use; the library never calls it: a component's name for display.
    virtual std::wstring GetObjDisplayName(int projectId, const boost::any& objectId) const = 0;

    /// For the host's own use; the library never calls it: marks a component in the host's view.
    virtual void HighlightObj(int projectId, const boost::any& objectId) = 0;

    /// The display name of the minor category of a component, asked for components of Revit models.
    virtual std::wstring GetObjXiaoLeiName(int projectId, const std::wstring& floorName,
                                           const std::wstring& guid) const = 0;
};

}  // namespace KYCOLLISION::LOGIC
