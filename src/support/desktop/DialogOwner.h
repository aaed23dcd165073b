#pragma once

class QWidget;

namespace rivenfall {

/// The window that a dialog is to stand over: the one that the user works in. Null if there is
/// none.
QWidget* DialogOwner();

} // namespace rivenfall
