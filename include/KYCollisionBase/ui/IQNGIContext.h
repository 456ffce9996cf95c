// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/ui/IQNGINode.h"

#include <string>

/// A host's 3-D scene, as far as diagnostic drawing needs it. The host implements it.
class KYCB_API IQNGIContext {
  public:
    virtual ~IQNGIContext() = default;

    /// Creates a node under `parent` (kQNGISceneRoot: at the top). Null when there is no such
    /// parent. The context owns the node until its Release.
    virtual IQNGINode* CreateNode(QNGINodeId parent, const std::wstring& name) = 0;

    /// The scene's current state for lines, handed back with each line segment. Its meaning is the
    /// host's.
    virtual int GetLineState() const = 0;
};
