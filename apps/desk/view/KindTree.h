// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/ui/widgets/KyCustomTreeCtrl.h"

#include <string>
#include <vector>

#include "desk/core/Session.h"
#include "desk/view/KindNames.h"

namespace desk {

/// The tree of kinds: those that are checked take part in the next run. It shows the part of the
/// category tree that occurs in the open models, with the number of components of each kind.
class KindTree : public KyCustomTreeCtrl {
    Q_OBJECT

  public:
    KindTree(const KindNames& names, QWidget* parent = nullptr);

    /// Shows these kinds, all of them checked.
    void SetKinds(const std::vector<KindCount>& kinds);

    /// The category paths of the kinds that are checked.
    std::vector<std::wstring> CheckedKinds() const;

  private:
    HTREEITEM FindOrInsert(HTREEITEM parent, const std::wstring& text);
    void AddCount(HTREEITEM item, std::size_t count);

    const KindNames& names_;
    std::vector<std::pair<HTREEITEM, std::wstring>> leaves_;
};

}  // namespace desk
