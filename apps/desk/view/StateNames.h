// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QString>

#include "desk/core/DisposeState.h"

namespace desk {

/// The name of a state on the screen; a number that is none of ours is shown as it is.
inline QString StateName(int state) {
    switch (static_cast<DisposeState>(state)) {
        case DisposeState::kOpen:
            return QCoreApplication::translate("State", "Open");
        case DisposeState::kAssigned:
            return QCoreApplication::translate("State", "Assigned");
        case DisposeState::kResolved:
            return QCoreApplication::translate("State", "Resolved");
        case DisposeState::kAccepted:
            return QCoreApplication::translate("State", "Accepted");
    }
    return QCoreApplication::translate("State", "State %1").arg(state);
}

}  // namespace desk
