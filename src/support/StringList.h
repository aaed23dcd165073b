#pragma once

#include <QString>
#include <QStringList>

namespace rivenfall {

/// An ordered list of texts that can be written as one command line and read back from one.
/// Items are numbered from 1.
class StringList {
public:
    /// Adds @p Value as one item at the end, whatever it holds. @p Flag changes nothing: an item
    /// always stays one item, and Text quotes it where it needs to.
    void Add(const QString& Value, bool Flag);

    /// The number of items.
    int Count() const;

    /// The item at @p Index, 1 to Count.
    QString Item(int Index) const;

    /// What stands between two items in Text. It is a blank, which is all that is ever written, as
    /// the quotes below are double quotes.
    void SetSeparator(const QString&) {}

    /// All items in order as one command line, as JoinCommandLine writes it. Writing takes a
    /// command line apart, as SplitCommandLine does, and replaces all items.
    QString Text() const;
    void SetText(const QString& text);

    /// What stands in front of a quoted item in Text.
    void SetQuoteBegin(const QString&) {}

    /// What stands behind a quoted item in Text.
    void SetQuoteEnd(const QString&) {}

    /// Takes the item at @p Index, 1 to Count, out; those behind it move up.
    void Remove(int Index);

private:
    QStringList pobjItems;
};

} // namespace rivenfall
