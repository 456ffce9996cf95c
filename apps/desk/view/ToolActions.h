// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QKeySequence>
#include <QString>

class QAction;
class QWidget;

namespace desk {

/// A new action of a widget, whose key works while the widget is visible in the active window. The
/// tooltip says the key too; `name` is the object's.
QAction* NewAction(QWidget& owner, const QString& text, const char* name, const QKeySequence& key,
                   const QString& tip);

}  // namespace desk
