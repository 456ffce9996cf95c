// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CWnd.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// A window that notes which handler got which message.
class Window : public CWnd {
  public:
    std::vector<std::string> calls;
    BOOL firstTakes = 1;

    void GetWindowRect(RECT* rect) const override { *rect = {}; }

    std::span<const MessageMapEntry> GetMessageMap() const override { return kMap; }

  protected:
    LRESULT DefWindowProc(UINT message, UINT_PTR, void*) override {
        calls.push_back("default " + std::to_string(message));
        return -1;
    }

  private:
    static BOOL First(CWnd& window, UINT id, void*, LRESULT* result) {
        auto& self = static_cast<Window&>(window);
        self.calls.push_back("first " + std::to_string(id));
        *result = 42;
        return self.firstTakes;
    }
    static BOOL Second(CWnd& window, UINT id, void*, LRESULT*) {
        static_cast<Window&>(window).calls.push_back("second " + std::to_string(id));
        return 1;
    }

    static const MessageMapEntry kMap[3];
};

const MessageMapEntry Window::kMap[3] = {
    {WM_MEASUREITEM, 0, 0, 0, First},
    {WM_NOTIFY, TTN_NEEDTEXTW, 10, 20, First},
    {WM_NOTIFY, TTN_NEEDTEXTW, 0, 0xFFFF, Second},
};

NMHDR Notification(UINT code, UINT_PTR id) {
    return {nullptr, id, code};
}

}  // namespace

TEST(CWnd, SendsAMessageToItsHandlerAndReturnsTheResult) {
    Window window;
    EXPECT_EQ(window.SendMessage(WM_MEASUREITEM, 0, nullptr), 42);
    EXPECT_THAT(window.calls, ElementsAre("first 0"));
}

TEST(CWnd, SendsOtherMessagesToTheDefault) {
    Window window;
    EXPECT_EQ(window.SendMessage(WM_VSCROLL, SB_TOP, nullptr), -1);
    EXPECT_THAT(window.calls, ElementsAre("default 277"));
}

TEST(CWnd, PicksNotificationsByCodeAndControlId) {
    Window window;
    NMHDR inRange = Notification(TTN_NEEDTEXTW, 10);
    NMHDR outside = Notification(TTN_NEEDTEXTW, 21);
    NMHDR tooLarge = Notification(TTN_NEEDTEXTW, 0x10000);
    NMHDR otherCode = Notification(TTN_NEEDTEXTA, 10);
    for (NMHDR* header : {&inRange, &outside, &tooLarge, &otherCode})
        window.SendMessage(WM_NOTIFY, 0, header);
    EXPECT_THAT(window.calls, ElementsAre("first 10", "second 21", "default 78", "default 78"));
}

TEST(CWnd, GoesOnWithTheNextEntryWhenAHandlerDeclines) {
    Window window;
    window.firstTakes = 0;
    NMHDR header = Notification(TTN_NEEDTEXTW, 15);
    EXPECT_EQ(window.SendMessage(WM_NOTIFY, 0, &header), 1);
    EXPECT_THAT(window.calls, ElementsAre("first 15", "second 15"));
}

TEST(CWnd, SendsANotificationWithoutARecordToTheDefault) {
    Window window;
    EXPECT_EQ(window.SendMessage(WM_NOTIFY, 0, nullptr), -1);
}

TEST(CWnd, KnowsItsClassAndItsBases) {
    static const CRuntimeClass derived{"Derived", &CWnd::classCWnd};
    EXPECT_TRUE(derived.IsDerivedFrom(&derived));
    EXPECT_TRUE(derived.IsDerivedFrom(&CWnd::classCWnd));
    EXPECT_FALSE(CWnd::classCWnd.IsDerivedFrom(&derived));
    const Window window;
    EXPECT_TRUE(window.IsKindOf(&CWnd::classCWnd));
    EXPECT_FALSE(window.IsKindOf(&derived));
}

TEST(CWnd, IsItsOwnHandle) {
    Window window;
    EXPECT_EQ(window.GetSafeHwnd(), &window);
}

TEST(WindowTypes, PacksColoursWithRedInTheLowestByte) {
    EXPECT_EQ(RGB(0x11, 0x22, 0x33), 0x332211U);
    EXPECT_EQ(GetRValue(0x332211U), 0x11);
    EXPECT_EQ(GetGValue(0x332211U), 0x22);
    EXPECT_EQ(GetBValue(0x332211U), 0x33);
    EXPECT_EQ(RGB(0, 0, 0), 0U);
}
