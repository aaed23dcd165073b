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

    bool IsQuiet() const { return pblnQuiet; }

    /// Somebody sits before it: what comes out of a document may not steer the terminal.
    bool IsTerminal() const { return pblnTerminal; }

    /// Writes @p bytes as they are, all of them, however long their reader takes.
    void Write(QByteArrayView bytes);

    /// Something couldn't be written.
    bool Failed() const { return pblnFailed; }

private:
    bool pblnQuiet;
    bool pblnTerminal;
    bool pblnFailed = false;
};

/// Writes @p message as one line to standard error, behind the program's name and without what
/// could steer a terminal.
void Tell(const QString& message);

} // namespace rivenfall
