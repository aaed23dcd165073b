#include "system/CommandLine.h"

#include <algorithm>

namespace rivenfall {

namespace {

bool IsBlank(QChar character) {
    return character == u' ' || character == u'\t' || character == u'\n' || character == u'\r';
}

bool StandsAt(const QString& text, qsizetype position, const QString& mark) {
    return !mark.isEmpty() && QStringView(text).sliced(position).startsWith(mark);
}

/// The length of the quote of @p marks that stands at @p position of @p text, 0 if none does.
qsizetype QuoteLengthAt(const QString& text, qsizetype position, const CommandLineMarks& marks) {
    if (StandsAt(text, position, marks.QuoteBegin)) {
        return marks.QuoteBegin.size();
    }
    return StandsAt(text, position, marks.QuoteEnd) ? marks.QuoteEnd.size() : 0;
}

bool NeedsQuotes(const QString& item, const CommandLineMarks& marks) {
    return item.isEmpty() || std::any_of(item.begin(), item.end(), IsBlank) ||
           (!marks.Separator.isEmpty() && item.contains(marks.Separator)) ||
           (!marks.QuoteBegin.isEmpty() && item.contains(marks.QuoteBegin)) ||
           (!marks.QuoteEnd.isEmpty() && item.contains(marks.QuoteEnd));
}

QString Quoted(const QString& item, const CommandLineMarks& marks) {
    QString text = marks.QuoteBegin;
    qsizetype backslashes = 0;
    for (qsizetype position = 0; position < item.size();) {
        if (const qsizetype length = QuoteLengthAt(item, position, marks); length > 0) {
            text += QString(backslashes + 1, u'\\');
            text += QStringView(item).sliced(position, length);
            backslashes = 0;
            position += length;
            continue;
        }
        backslashes = item[position] == u'\\' ? backslashes + 1 : 0;
        text += item[position++];
    }
    return text + QString(backslashes, u'\\') + marks.QuoteEnd;
}

/// Takes the items of one command line off its text, from the front to the end.
class ItemReader {
public:
    ItemReader(const QString& text, const CommandLineMarks& marks) : Text(text), Marks(marks) {}

    QStringList ReadItems() {
        QStringList items;
        while (SkipBlanks()) {
            items += ReadItem();
        }
        return items;
    }

private:
    bool AtEnd() const { return Position >= Text.size(); }

    qsizetype SeparatorLength() const {
        if (StandsAt(Text, Position, Marks.Separator)) {
            return Marks.Separator.size();
        }
        return IsBlank(Text[Position]) ? 1 : 0;
    }

    bool SkipBlanks() {
        while (!AtEnd() && SeparatorLength() > 0) {
            Position += SeparatorLength();
        }
        return !AtEnd();
    }

    QString ReadItem() {
        QString item;
        bool quoted = false;
        while (!AtEnd() && (quoted || SeparatorLength() == 0)) {
            const qsizetype backslashes = CountBackslashes();
            const qsizetype quote = Position + backslashes < Text.size()
                                        ? QuoteLengthAt(Text, Position + backslashes, Marks)
                                        : 0;
            if (quote == 0) {
                const qsizetype length = std::max<qsizetype>(backslashes, 1);
                item += QStringView(Text).mid(Position, length);
                Position += length;
                continue;
            }
            item += QString(backslashes / 2, u'\\');
            Position += backslashes;
            if (backslashes % 2 == 1) {
                item += QStringView(Text).mid(Position, quote);
            } else {
                quoted = !quoted;
            }
            Position += quote;
        }
        return item;
    }

    qsizetype CountBackslashes() const {
        qsizetype count = 0;
        while (Position + count < Text.size() && Text[Position + count] == u'\\') {
            ++count;
        }
        return count;
    }

    const QString& Text;
    const CommandLineMarks& Marks;
    qsizetype Position = 0;
};

} // namespace

QString JoinCommandLine(const QStringList& items, const CommandLineMarks& marks) {
    QStringList written;
    written.reserve(items.size());
    for (const QString& item : items) {
        written += NeedsQuotes(item, marks) ? Quoted(item, marks) : item;
    }
    return written.join(marks.Separator);
}

QStringList SplitCommandLine(const QString& text, const CommandLineMarks& marks) {
    return ItemReader(text, marks).ReadItems();
}

} // namespace rivenfall
