// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/widgets/CRuntimeClass.h"
#include "KYCollisionBase/platform/widgets/UiExport.h"
#include "KYCollisionBase/platform/widgets/WindowTypes.h"

#include <span>

class CWnd;

/// One line of a control's message map: which message goes to which handler.
struct MessageMapEntry {
    UINT message;       ///< WM_NOTIFY, or another message
    UINT notification;  ///< for WM_NOTIFY the code of the NMHDR; else 0
    UINT firstId;       ///< for WM_NOTIFY the range of control ids; else 0
    UINT lastId;
    /// Handles the message for `window`. `argument` is the message's record. False lets the search
    /// go on with the next entry, and in the end with the default.
    BOOL (*handle)(CWnd& window, UINT id, void* argument, LRESULT* result);
};

/// What every control shares: its run-time class and messages. Mixed into a widget class.
///
/// Threads: the interface thread only, as for all controls.
class KYCB_UI_API CWnd {
  public:
    static const CRuntimeClass classCWnd;

    virtual ~CWnd() = default;

    virtual const CRuntimeClass* GetRuntimeClass() const { return &classCWnd; }
    bool IsKindOf(const CRuntimeClass* base) const {
        return GetRuntimeClass()->IsDerivedFrom(base);
    }

    /// The handle, which is this object.
    HWND GetSafeHwnd() { return this; }

    /// Sends a message and waits for its answer: the message map is asked from its first entry on,
    /// then the control's default. `parameter` and `argument` are the message's own.
    LRESULT SendMessage(UINT message, UINT_PTR parameter, void* argument);

    /// The control's message map in its order; empty unless a control has one.
    virtual std::span<const MessageMapEntry> GetMessageMap() const { return {}; }

    /// The window's frame in global coordinates.
    virtual void GetWindowRect(RECT* rect) const = 0;

  protected:
    /// What happens with a message that no entry of the map takes.
    virtual LRESULT DefWindowProc(UINT message, UINT_PTR parameter, void* argument);
};
