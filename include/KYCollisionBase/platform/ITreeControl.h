// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <string>

struct TREEITEM_;
/// An item of a tree control, opaque to the library; null means "no item".
using HTREEITEM = TREEITEM_*;

/// What the library needs of a tree control, so that the core stays free of any toolkit.
class KYCB_API ITreeControl {
  public:
    virtual ~ITreeControl() = default;

    /// Inserts a plain text item (no image, state or data) after the last child of `parent` (null:
    /// at the top level). Returns null when the control refuses the item.
    virtual HTREEITEM InsertItem(const std::wstring& text, HTREEITEM parent) = 0;
};
