// SPDX-License-Identifier: Apache-2.0
// The window vocabulary that the controls are written in: scalar types, message records, codes.
// Names and values are those of the desktop that the controls were designed for, so that a host's
// code for them keeps its meaning; nothing here talks to an operating system.
#pragma once

#include <cstdint>
#include <string>

class CWnd;

using BOOL = int;
using UINT = unsigned int;
using UINT_PTR = std::uintptr_t;
using LRESULT = std::intptr_t;
/// A window's handle is the window object itself; null is "no window".
using HWND = CWnd*;
/// The toolkit's text is the wide text of the rest of the library.
using CString = std::wstring;

/// A colour as 0x00bbggrr; 0 is black.
using COLORREF = std::uint32_t;

constexpr COLORREF RGB(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return static_cast<COLORREF>(red) | (static_cast<COLORREF>(green) << 8U) |
           (static_cast<COLORREF>(blue) << 16U);
}
constexpr std::uint8_t GetRValue(COLORREF color) {
    return static_cast<std::uint8_t>(color);
}
constexpr std::uint8_t GetGValue(COLORREF color) {
    return static_cast<std::uint8_t>(color >> 8U);
}
constexpr std::uint8_t GetBValue(COLORREF color) {
    return static_cast<std::uint8_t>(color >> 16U);
}

/// A point in logical pixels; which origin it counts from is said where it is used.
struct POINT {
    int x = 0;
    int y = 0;
};

/// A rectangle in logical pixels; right and bottom lie just outside.
struct RECT {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

/// Relations that CTreeCtrl::GetNextItem follows.
inline constexpr UINT TVGN_ROOT = 0;
inline constexpr UINT TVGN_NEXT = 1;
inline constexpr UINT TVGN_PREVIOUS = 2;
inline constexpr UINT TVGN_PARENT = 3;
inline constexpr UINT TVGN_CHILD = 4;
/// What CTreeCtrl::Expand does.
inline constexpr UINT TVE_COLLAPSE = 1;
inline constexpr UINT TVE_EXPAND = 2;
inline constexpr UINT TVE_TOGGLE = 3;
/// Bits of CTreeCtrl::GetItemState.
inline constexpr UINT TVIS_SELECTED = 0x0002;
inline constexpr UINT TVIS_EXPANDED = 0x0020;

/// Messages that the controls send to themselves or handle.
inline constexpr UINT WM_MEASUREITEM = 0x002C;
inline constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
inline constexpr UINT WM_NOTIFY = 0x004E;
inline constexpr UINT WM_VSCROLL = 0x0115;
/// Scroll request of WM_VSCROLL: to the first line.
inline constexpr UINT_PTR SB_TOP = 6;

/// What a WINDOWPOS leaves as it is.
inline constexpr UINT SWP_NOSIZE = 0x0001;
inline constexpr UINT SWP_NOMOVE = 0x0002;
inline constexpr UINT SWP_NOZORDER = 0x0004;
inline constexpr UINT SWP_NOACTIVATE = 0x0010;
inline constexpr UINT SWP_NOOWNERZORDER = 0x0200;

/// A window's new place: the argument of WM_WINDOWPOSCHANGED.
struct WINDOWPOS {
    HWND hwnd = nullptr;
    HWND hwndInsertAfter = nullptr;
    int x = 0;
    int y = 0;
    int cx = 0;  ///< width
    int cy = 0;  ///< height
    UINT flags = 0;
};

/// The size of a list's rows: the argument of WM_MEASUREITEM, which comes with the list's own
/// measure and may be changed.
struct MEASUREITEMSTRUCT {
    UINT CtlType = 0;
    UINT CtlID = 0;
    UINT itemID = 0;
    UINT itemWidth = 0;   ///< logical pixels
    UINT itemHeight = 0;  ///< logical pixels
    UINT_PTR itemData = 0;
};

/// Who notifies of what; the first member of every notification record.
struct NMHDR {
    HWND hwndFrom = nullptr;
    UINT_PTR idFrom = 0;  ///< a control id, or a window handle's value where the record says so
    UINT code = 0;
};

/// A tooltip asks for its text, in narrow or in wide characters.
inline constexpr UINT TTN_NEEDTEXTA = static_cast<UINT>(-520);
inline constexpr UINT TTN_NEEDTEXTW = static_cast<UINT>(-530);
/// The notification's control id is a window handle's value.
inline constexpr UINT TTF_IDISHWND = 0x0001;
/// Characters (wide form) or bytes (narrow form) of a tooltip's text, terminator included.
inline constexpr int kToolTipTextSize = 80;

/// The wide form of a tooltip's question.
struct TOOLTIPTEXTW {
    NMHDR hdr;
    wchar_t* lpszText = nullptr;
    wchar_t szText[kToolTipTextSize] = {};
    UINT uFlags = 0;
};

/// The narrow form, in the bytes of the thread's code page. A text that fills the buffer has no
/// terminator.
struct TOOLTIPTEXTA {
    NMHDR hdr;
    char* lpszText = nullptr;
    char szText[kToolTipTextSize] = {};
    UINT uFlags = 0;
};

/// Where a point of a list lies.
inline constexpr UINT LVHT_NOWHERE = 0x0001;
inline constexpr UINT LVHT_ONITEMICON = 0x0002;
inline constexpr UINT LVHT_ONITEMLABEL = 0x0004;

/// A hit test: the point is given in client coordinates, the rest is the answer.
struct LVHITTESTINFO {
    POINT pt;
    UINT flags = 0;
    int iItem = -1;     ///< row, or -1
    int iSubItem = -1;  ///< column, or -1
};
