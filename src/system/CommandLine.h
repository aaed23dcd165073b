#pragma once

#include <QString>
#include <QStringList>

namespace rivenfall {

/// The command line that holds @p items in order, with a blank between two of them, from which
/// SplitCommandLine gives them back.
///
/// An item that is empty or holds a blank (space, tab, line break) or a double quote stands between
/// double quotes, with a backslash before each quote in it and with the backslashes in front of a
/// quote doubled. Every other item stands unchanged.
QString JoinCommandLine(const QStringList& items);

/// The items of @p text, the reverse of JoinCommandLine. Backslashes count only in front of a
/// quote: two stand for one, and one takes the quote's meaning away. Items are set off by blanks
/// outside of quotes; a quote that is never closed reaches to the end. There is no shell: no other
/// character has a meaning.
QStringList SplitCommandLine(const QString& text);

} // namespace rivenfall
