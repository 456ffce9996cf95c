// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/widgets/KyCustomTreeCtrl.h"

#include "KYCollisionBase/platform/widgets/DebugOutput.h"

const CRuntimeClass KyCustomTreeCtrl::classKyCustomTreeCtrl{"KyCustomTreeCtrl",
                                                            &CThreeStateTree::classCThreeStateTree};

KyCustomTreeCtrl::KyCustomTreeCtrl(QWidget* parent) : CThreeStateTree(parent) {}

void KyCustomTreeCtrl::ExpandByLevel(bool expand) {
    std::map<int, std::vector<HTREEITEM>> levels;
    GetExpandNodeLevel(GetNextItem(nullptr, TVGN_ROOT), levels);
    TraceLevels(levels);
    if (levels.empty()) return;

    const auto& [depth, items] = expand || levels.size() == 1 ? *levels.begin() : *levels.rbegin();
    if (depth < 1) return;
    for (const HTREEITEM item : items) {
        if (expand) {
            Expand(item, TVE_EXPAND);
        } else {
            Expand(GetNextItem(item, TVGN_PARENT), TVE_COLLAPSE);
        }
    }
    SendMessage(WM_VSCROLL, SB_TOP, nullptr);
}

void KyCustomTreeCtrl::TraceLevels(const std::map<int, std::vector<HTREEITEM>>& levels) {
    for (const auto& [depth, items] : levels) {
        BASETOOLS::OutputDebugString(L"\n=====Level\uFF1A" + std::to_wstring(depth) + L"=====\n");
        for (const HTREEITEM item : items)
            BASETOOLS::OutputDebugString(L"\n" + GetPathByItem(item));
    }
}

void KyCustomTreeCtrl::GetExpandNodeLevel(HTREEITEM item,
                                          std::map<int, std::vector<HTREEITEM>>& levels) {
    if (item == nullptr) return;
    if (!ItemHasChildren(item) || GetItemState(item, TVIS_EXPANDED) == 0) {
        levels[GetItemLevel(item)].push_back(item);
        return;
    }
    for (HTREEITEM child = GetNextItem(item, TVGN_CHILD); child != nullptr;
         child = GetNextItem(child, TVGN_NEXT)) {
        GetExpandNodeLevel(child, levels);
    }
}

CString KyCustomTreeCtrl::GetPathByItem(HTREEITEM item) {
    CString path = GetItemText(item);
    for (HTREEITEM each = GetNextItem(item, TVGN_PARENT); each != nullptr;
         each = GetNextItem(each, TVGN_PARENT)) {
        path = GetItemText(each) + L"/" + path;
    }
    return path;
}

int KyCustomTreeCtrl::GetItemLevel(HTREEITEM item) {
    int level = 0;
    for (; item != nullptr; item = GetNextItem(item, TVGN_PARENT))
        ++level;
    return level;
}

bool KyCustomTreeCtrl::NeedAction(HTREEITEM /*item*/, bool /*checked*/) {
    return isValidCheck_;
}
