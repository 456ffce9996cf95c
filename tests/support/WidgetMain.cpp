// SPDX-License-Identifier: Apache-2.0
// Entry point of test programs that show widgets; without a choice of platform they stay offscreen.
#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleMock(&argc, argv);
    QApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
