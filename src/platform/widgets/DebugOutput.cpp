// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/DebugOutput.h"

#include <QLoggingCategory>
#include <QString>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(uiLog, "kycollision.ui", QtWarningMsg)

std::function<void(const std::wstring&)>& Receiver() {
    static std::function<void(const std::wstring&)> receiver;
    return receiver;
}

}  // namespace

namespace BASETOOLS {

void OutputDebugString(const std::wstring& text) {
    if (Receiver()) {
        Receiver()(text);
    } else {
        qCDebug(uiLog).noquote() << QString::fromStdWString(text);
    }
}

void SetDebugOutput(std::function<void(const std::wstring&)> receive) {
    Receiver() = std::move(receive);
}

}  // namespace BASETOOLS
