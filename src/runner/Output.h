#pragma once

#include <QByteArrayView>
#include <QString>

namespace rivenfall {

/// Standard output. Its first failure is told on standard error; what is written behind that goes
/// nowhere, and the run goes on.
class Output {
public:
    /// @p quiet leaves the frames out.
    explicit Output(bool quiet);

    /// Somebody sits before it: what comes out of a document may not steer the terminal.
    bool IsTerminal() const { return pblnTerminal; }

    /// Writes @p bytes as they are, all of them, however long their reader takes.
    void Write(QByteArrayView bytes);

    /// Writes the frame of a step, as LogFrame makes it, set off from the one before.
    void WriteFrame(const QString& issue, const QString& result);

    /// Something couldn't be written.
    bool Failed() const { return pblnFailed; }

private:
    bool pblnQuiet;
    bool pblnTerminal;
    bool pblnFramed = false;
    bool pblnFailed = false;
};

/// Writes @p message as one line to standard error, behind the program's name and without what
/// could steer a terminal.
void Tell(const QString& message);

/// @p text on one line and without a character that could steer a terminal or deceive its reader:
/// those that MarkDeceptive names stand in the notation of C. Everything else, a backslash
/// included, stands as it is.
QString VisibleText(const QString& text);

} // namespace rivenfall
