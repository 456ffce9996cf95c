// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CWnd.h"

const CRuntimeClass CWnd::classCWnd{"CWnd", nullptr};

namespace {

// Whether a line of a message map is meant for this message.
bool Takes(const MessageMapEntry& entry, UINT message, const void* argument) {
    if (entry.message != message) return false;
    if (message != WM_NOTIFY) return true;
    const auto* header = static_cast<const NMHDR*>(argument);
    return header != nullptr && header->code == entry.notification &&
           header->idFrom >= entry.firstId && header->idFrom <= entry.lastId;
}

UINT ControlId(UINT message, const void* argument) {
    if (message != WM_NOTIFY || argument == nullptr) return 0;
    return static_cast<UINT>(static_cast<const NMHDR*>(argument)->idFrom);
}

}  // namespace

LRESULT CWnd::SendMessage(UINT message, UINT_PTR parameter, void* argument) {
    for (const MessageMapEntry& entry : GetMessageMap()) {
        if (!Takes(entry, message, argument)) continue;
        LRESULT result = 0;
        if (entry.handle(*this, ControlId(message, argument), argument, &result) != 0) {
            return message == WM_NOTIFY ? 1 : result;
        }
    }
    return DefWindowProc(message, parameter, argument);
}

LRESULT CWnd::DefWindowProc(UINT /*message*/, UINT_PTR /*parameter*/, void* /*argument*/) {
    return 0;
}
