#pragma once

#include <QString>
#include <QStringList>

namespace rivenfall {

/// The marks that set off the items of a command line from one another.
struct CommandLineMarks {
    QString Separator = QChar(u' ');
    QString QuoteBegin = QChar(u'"');
    QString QuoteEnd = QChar(u'"');
};

/// The command line that holds @p items in order, from which SplitCommandLine gives them back.
///
/// An item that is empty or holds a blank (space, tab, line break) or a quote stands between the
/// quotes, with a backslash before each quote in it and with the backslashes in front of a quote
/// doubled. Every other item stands unchanged.
QString JoinCommandLine(const QStringList& items, const CommandLineMarks& marks = {});

/// The items of @p text, the reverse of JoinCommandLine. Backslashes count only in front of a
/// quote: two stand for one, and one takes the quote's meaning away. Items are set off by blanks
/// outside of quotes; a quote that is never closed reaches to the end. There is no shell: no other
/// character has a meaning.
QStringList SplitCommandLine(const QString& text, const CommandLineMarks& marks = {});

} // namespace rivenfall
