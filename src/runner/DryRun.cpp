#include "runner/DryRun.h"

#include "runner/Child.h"
#include "runner/Output.h"
#include "runner/ShellText.h"
#include "system/CurrentDirectory.h"
#include "system/ErrorReason.h"

#include <QSet>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// Goes the way of a run through the directories and looks at what it would start.
class Survey {
public:
    void ChangeTo(const QString& path) {
        if (!PlaceKnown && !path.startsWith(u'/')) {
            return;
        }
        const int error = ChangeDirectory(path);
        PlaceKnown = error == 0;
        Seen.removeIf([](const QString& program) { return program.contains(u'/'); });
        if (error != 0) {
            Tell(u"cd %1"_s.arg(path).trimmed() + u": "_s + ReasonOf(error));
        }
    }

    void LookFor(const QString& program) {
        if (!PlaceKnown && program.contains(u'/') && !program.startsWith(u'/')) {
            return;
        }
        const qsizetype seen = Seen.size();
        Seen.insert(program);
        if (const int error = Seen.size() > seen ? LookForProgram(program) : 0; error != 0) {
            Tell(u"%1: %2"_s.arg(program, ReasonOf(error)));
        }
    }

private:
    /// The current directory is the one that the run will be in. It isn't behind a change to one
    /// that may be made only by a command before it.
    bool PlaceKnown = true;
    /// The programs that were looked for, those with a path since the last change of directory.
    QSet<QString> Seen;
};

} // namespace

void PrintCommands(const std::vector<Command>& commands, Output& output) {
    const ShellNotation notation =
        output.IsTerminal() ? ShellNotation::Visible : ShellNotation::Posix;
    QString lines;
    for (const Command& command : commands) {
        lines += ShellLine(command, notation);
    }
    output.Write(lines.toUtf8());
    Survey survey;
    for (const Command& command : commands) {
        if (command.Directory) {
            survey.ChangeTo(*command.Directory);
        } else {
            survey.LookFor(command.Items.Item(1));
        }
    }
}

} // namespace rivenfall
