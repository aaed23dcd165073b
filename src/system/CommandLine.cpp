#include "system/CommandLine.h"

#include <algorithm>
#include <utility>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

bool IsBlank(QChar character) {
    return character == u' ' || character == u'\t' || character == u'\n' || character == u'\r';
}

bool NeedsQuotes(const QString& item) {
    return item.isEmpty() || item.contains(u'"') || std::any_of(item.begin(), item.end(), IsBlank);
}

QString Quoted(const QString& item) {
    QString text = u"\""_s;
    qsizetype backslashes = 0;
    for (const QChar character : item) {
        if (character == u'"') {
            text += QString(backslashes + 1, u'\\');
        }
        backslashes = character == u'\\' ? backslashes + 1 : 0;
        text += character;
    }
    return text + QString(backslashes, u'\\') + u'"';
}

} // namespace

QString JoinCommandLine(const QStringList& items) {
    QStringList written;
    for (const QString& item : items) {
        written += NeedsQuotes(item) ? Quoted(item) : item;
    }
    return written.join(u' ');
}

QStringList SplitCommandLine(const QString& text) {
    QStringList items;
    bool betweenItems = true;
    bool quoted = false;
    qsizetype backslashes = 0;
    for (const QChar character : text) {
        if (!quoted && IsBlank(character)) {
            betweenItems = true;
            backslashes = 0;
            continue;
        }
        if (std::exchange(betweenItems, false)) {
            items += QString();
        }
        QString& item = items.last();
        if (character == u'"') {
            item.chop(backslashes - backslashes / 2);
        }
        if (character == u'"' && backslashes % 2 == 0) {
            quoted = !quoted;
        } else {
            item += character;
        }
        backslashes = character == u'\\' ? backslashes + 1 : 0;
    }
    return items;
}

} // namespace rivenfall
