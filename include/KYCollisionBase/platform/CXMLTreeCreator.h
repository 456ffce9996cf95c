// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/platform/IXMLTree.h"

#include <functional>

/// Makes the XML trees that rule files and the category tree are read and written through.
class KYCB_API CXMLTreeCreator {
  public:
    /// A new empty tree that the caller releases with Destroy; null when none can be made.
    static IXMLTree* Allocate();

    /// Replaces the trees by a host's own; an empty function returns to the library's. Not to be
    /// called while another thread allocates.
    static void SetAllocator(std::function<IXMLTree*()> allocate);
};
