#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}

namespace rivenfall {

using namespace Qt::StringLiterals;

/// A node of a document that is to be written: its value, what is below it, and whether it is
/// active. A list of texts is a list of active nodes with nothing below them.
struct Sketch {
    Sketch(const char* value, std::vector<Sketch> below = {})
        : Sketch(QString::fromUtf8(value), std::move(below)) {}
    Sketch(const QString& value, std::vector<Sketch> below = {})
        : Value(value), Below(std::move(below)) {}

    QString Value;
    std::vector<Sketch> Below;
    bool Active = true;
};

/// The nodes that an outline tells: nodes with commas between them, what is below a node in round
/// brackets, "!" before a node that is switched off, "~" for an empty value.
std::vector<Sketch> Sketches(const char* outline);

/// The bytes of a collection whose nodes have @p levels levels below them.
QByteArray CollectionImage(const std::vector<Sketch>& nodes, int levels);

/// The bytes of a document file.
QByteArray DocumentImage(const std::vector<Sketch>& compilers,
                         const std::vector<Sketch>& variables = {});

/// A compiler that carries out the shell script @p script with @p arguments. A script may not hold
/// a reference to a variable.
Sketch Shell(const QString& script, const QStringList& arguments = {});

/// Writes @p bytes to the file at @p path, and gives @p path.
QString StoreBytes(const QString& path, const QByteArray& bytes);

/// What the file at @p path holds.
QByteArray BytesOf(const QString& path);

/// The frame that the log has for one step.
QString Frame(const QString& issue, const QString& result);

} // namespace rivenfall
