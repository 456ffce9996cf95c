// SPDX-License-Identifier: Apache-2.0
#include "desk/view/SystemRoot.h"

#include "KYCollisionBase/platform/HostServices.h"

#include <QCoreApplication>
#include <QDir>

namespace desk {

void UseSystemRoot() {
    if (!qEnvironmentVariableIsEmpty("KYCOLLISION_SYSTEM_ROOT")) return;
    const QString installed =
        QCoreApplication::applicationDirPath() + "/../share/kyclash-desk/system-root";
    for (const QString& folder : {installed, QStringLiteral(KYCLASH_DESK_SYSTEM_ROOT)}) {
        if (!QDir(folder).exists()) continue;
        BASETOOLS::SetSysRoot((QDir::cleanPath(folder) + "/").toStdWString());
        return;
    }
}

}  // namespace desk
