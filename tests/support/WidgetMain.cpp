// SPDX-License-Identifier: Apache-2.0
// Entry point of test programs that show widgets; without a choice of platform they stay offscreen.
#include <QApplication>

#include <gmock/gmock.h>

// First what g++ says: the toolkit gives it a __has_feature that knows nothing.
#if defined(__SANITIZE_ADDRESS__)
#define KYCB_LEAKS_ARE_LOOKED_FOR
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KYCB_LEAKS_ARE_LOOKED_FOR
#endif
#endif

#ifdef KYCB_LEAKS_ARE_LOOKED_FOR
// What the desktop bus keeps at the end, where there is none to talk to, is none of ours. The leak
// detector asks for this by name.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libdbus-1.so\n";
}
#endif

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
