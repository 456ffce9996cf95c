// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/HostServices.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace {

class HostServicesTest : public testing::Test {
  protected:
    ~HostServicesTest() override {
        BASETOOLS::SetSysRoot(L"");
        BASETOOLS::SetCheckFileExist({});
        BASEUI::SetMessageBox({});
        ::unsetenv("KYCOLLISION_SYSTEM_ROOT");
    }

    kycbtest::TempFolder folder_;
};

TEST_F(HostServicesTest, SysRootComesFromTheEnvironment) {
    ::unsetenv("KYCOLLISION_SYSTEM_ROOT");
    EXPECT_EQ(BASETOOLS::GetSysRoot(), L"");
    ::setenv("KYCOLLISION_SYSTEM_ROOT", "/opt/\xE6\xA2\x81/", 1);
    EXPECT_EQ(BASETOOLS::GetSysRoot(), L"/opt/\u6881/");
}

TEST_F(HostServicesTest, SysRootThatWasSetGoesBeforeTheEnvironment) {
    ::setenv("KYCOLLISION_SYSTEM_ROOT", "/opt/", 1);
    BASETOOLS::SetSysRoot(L"/srv/");
    EXPECT_EQ(BASETOOLS::GetSysRoot(), L"/srv/");
    BASETOOLS::SetSysRoot(L"");
    EXPECT_EQ(BASETOOLS::GetSysRoot(), L"/opt/");
}

TEST_F(HostServicesTest, SysRootEndsWithASeparator) {
    BASETOOLS::SetSysRoot(L"/srv");
    EXPECT_EQ(BASETOOLS::GetSysRoot(), L"/srv/");
    BASETOOLS::SetSysRoot(L"C:\\host\\");
    EXPECT_EQ(BASETOOLS::GetSysRoot(), L"C:\\host\\");
}

TEST_F(HostServicesTest, StringTrimTakesBlanksOffBothEndsOnly) {
    EXPECT_EQ(BASETOOLS::StringTrim(L"  a b  "), L"a b");
    EXPECT_EQ(BASETOOLS::StringTrim(L"   "), L"");
    EXPECT_EQ(BASETOOLS::StringTrim(L""), L"");
    EXPECT_EQ(BASETOOLS::StringTrim(L"\ta\n"), L"\ta\n");
}

TEST_F(HostServicesTest, CheckFileExistFindsRegularFilesOnly) {
    const std::wstring file = folder_.Write("sub/a.xml", "x");
    EXPECT_TRUE(BASETOOLS::CheckFileExist(file));
    EXPECT_FALSE(BASETOOLS::CheckFileExist(folder_.File("sub")));
    EXPECT_FALSE(BASETOOLS::CheckFileExist(folder_.File("sub/b.xml")));
    EXPECT_FALSE(BASETOOLS::CheckFileExist(L""));
    EXPECT_FALSE(BASETOOLS::CheckFileExist(file + std::wstring(1, L'\0') + L"z"));
}

TEST_F(HostServicesTest, CheckFileExistTakesBackslashesAsSeparators) {
    folder_.Write("sub/a.xml", "x");
    EXPECT_TRUE(BASETOOLS::CheckFileExist(folder_.File("sub") + L"\\a.xml"));
}

TEST_F(HostServicesTest, CheckFileExistFindsNamesOutsideAscii) {
    folder_.Write("\xE6\xA2\x81.xml", "x");
    EXPECT_TRUE(BASETOOLS::CheckFileExist(folder_.File("") + L"\u6881.xml"));
}

TEST_F(HostServicesTest, CheckFileExistCanBeReplaced) {
    BASETOOLS::SetCheckFileExist([](const std::wstring& path) { return path == L"mine"; });
    EXPECT_TRUE(BASETOOLS::CheckFileExist(L"mine"));
    EXPECT_FALSE(BASETOOLS::CheckFileExist(folder_.Write("a", "x")));
}

TEST_F(HostServicesTest, MessageBoxWritesOneLineToStandardError) {
    testing::internal::CaptureStderr();
    BASEUI::ShowMessageBox(L"\u6881\nb", 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "\xE6\xA2\x81 b\n");
}

TEST_F(HostServicesTest, MessageBoxCanBeReplaced) {
    std::wstring shown;
    unsigned int shownStyle = 99;
    BASEUI::SetMessageBox([&](const std::wstring& text, unsigned int style) {
        shown = text;
        shownStyle = style;
    });
    BASEUI::ShowMessageBox(L"text", 0);
    EXPECT_EQ(shown, L"text");
    EXPECT_EQ(shownStyle, 0u);
}

}  // namespace
