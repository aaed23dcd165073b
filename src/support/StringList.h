#pragma once

#include "system/CommandLine.h"

#include <QString>
#include <QStringList>

namespace rivenfall {

/// An ordered list of texts that can be written as one command line and read back from one.
/// Items are numbered from 1. A new list has a blank as separator and double quotes.
class StringList {
public:
    /// Adds @p Value as one item at the end, whatever it holds. @p Flag changes nothing: an item
    /// always stays one item, and Text quotes it where it needs to.
    void Add(const QString& Value, bool Flag);

    /// The number of items.
    int Count() const;

    /// The item at @p Index, 1 to Count.
    QString Item(int Index) const;

    /// The text between two items in Text.
    void SetSeparator(const QString& separator);

    /// All items in order as one command line, as JoinCommandLine writes it. Writing takes a
    /// command line apart, as SplitCommandLine does, and replaces all items.
    QString Text() const;
    void SetText(const QString& text);

    /// The text in front of a quoted item in Text.
    void SetQuoteBegin(const QString& quote);

    /// The text behind a quoted item in Text.
    void SetQuoteEnd(const QString& quote);

    /// Takes the item at @p Index, 1 to Count, out; those behind it move up.
    void Remove(int Index);

private:
    CommandLineMarks pobjMarks;
    QStringList pobjItems;
};

} // namespace rivenfall
