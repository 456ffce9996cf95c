// SPDX-License-Identifier: Apache-2.0
#include "desk/view/ToolActions.h"

#include <QAction>
#include <QCoreApplication>
#include <QWidget>

namespace desk {

QAction* NewAction(QWidget& owner, const QString& text, const char* name, const QKeySequence& key,
                   const QString& tip) {
    auto* action = new QAction(text, &owner);
    action->setObjectName(name);
    action->setShortcut(key);
    const QString keyText = key.toString(QKeySequence::NativeText);
    action->setToolTip(
        keyText.isEmpty()
            ? tip
            : QCoreApplication::translate("ToolActions", "%1 (%2)").arg(tip, keyText));
    owner.addAction(action);
    return action;
}

}  // namespace desk
