#pragma once

#include "system/MessageBox.h"

namespace rivenfall {

/// The MessageBoxHandler of the desktop: shows a box over the active window and waits for the
/// user's answer.
MessageBoxAnswer ShowMessageDialog(const QString& text, MessageBoxStyle style,
                                   const QString& title);

} // namespace rivenfall
