#pragma once

#include <QString>

namespace rivenfall {

/// The issue and the result of the frame for a run without an active compiler.
inline constexpr QStringView NothingToRunIssue = u"No compilers to run!";
inline constexpr QStringView NothingToRunResult = u"Please select some...";

/// What is added to a log for one step: a frame around @p Issue, which says what was done, and,
/// where it isn't empty, @p Success, which says how it went. @p behindText tells that the log holds
/// something already, from which an empty line sets the frame off. Lines end in @p lineBreak.
QString LogFrame(const QString& Issue, const QString& Success, bool behindText,
                 const QString& lineBreak);

/// The result in the frame of a command; @p error is why nothing was started, as `errno` has it, 0
/// where no call has failed.
QString ResultOfStart(bool started, int error);

/// The result in the frame of a directory change; @p error as above.
QString ResultOfChange(int error);

} // namespace rivenfall
