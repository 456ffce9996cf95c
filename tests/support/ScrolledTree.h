// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/widgets/CTreeCtrl.h"

#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

namespace kycbtest {

inline int ScrolledBy(const CTreeCtrl& tree) {
    return tree.verticalScrollBar()->value();
}

inline void ScrollToTheBottom(CTreeCtrl& tree) {
    tree.scrollToBottom();
    ASSERT_GT(ScrolledBy(tree), 0);
}

/// Shows the tree with a hundred more items below `parent`, in a window too small for them.
inline void ShowWithManyRows(CTreeCtrl& tree, HTREEITEM parent) {
    for (int i = 0; i < 100; ++i)
        tree.InsertItem(L"row", parent);
    tree.resize(200, 150);
    tree.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&tree));
}

}  // namespace kycbtest
