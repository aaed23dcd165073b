#include "runner/DryRun.h"

#include "runner/Child.h"
#include "runner/Output.h"
#include "runner/ShellText.h"
#include "runner/VisibleText.h"
#include "system/CurrentDirectory.h"

#include <QHash>
#include <QSet>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// About as many characters as are written in one go.
constexpr qsizetype BlockSize = 1 << 15;

QString LineOf(const Command& command, ShellNotation notation) {
    if (command.Directory) {
        return ShellDirectoryChange(*command.Directory, notation);
    }
    QStringList words;
    words.reserve(command.Items.Count());
    for (int index = 1; index <= command.Items.Count(); ++index) {
        words += command.Items.Item(index);
    }
    return ShellCommand(words, notation);
}

void WriteLines(const std::vector<Command>& commands, Output& output) {
    const ShellNotation notation =
        output.IsTerminal() ? ShellNotation::Visible : ShellNotation::Posix;
    QString block;
    for (const Command& command : commands) {
        block += LineOf(command, notation);
        if (block.size() >= BlockSize) {
            output.Write(block.toUtf8());
            block.resize(0);
        }
    }
    output.Write(block.toUtf8());
}

/// Goes the way of a run through the directories and looks at what it would start.
class Survey {
public:
    void ChangeTo(const QString& path) {
        if (!pblnPlaceKnown && !path.startsWith(u'/')) {
            return;
        }
        const DirectoryChange change = ChangeDirectory(path);
        pblnPlaceKnown = change.Number == 0;
        pobjErrors.clear();
        if (change.Number != 0) {
            TellOnce(u"cd %1"_s.arg(path).trimmed() + u": "_s + change.Description);
        }
    }

    void LookFor(const QString& program) {
        if (!pblnPlaceKnown && program.contains(u'/') && !program.startsWith(u'/')) {
            return;
        }
        const auto known = pobjErrors.constFind(program);
        const int error = known != pobjErrors.constEnd()
                              ? *known
                              : *pobjErrors.insert(program, LookForProgram(program));
        if (error != 0) {
            TellOnce(u"%1: %2"_s.arg(program, ReasonOf(error)));
        }
    }

private:
    void TellOnce(const QString& message) {
        if (!pobjTold.contains(message)) {
            pobjTold.insert(message);
            Tell(message);
        }
    }

    /// The current directory is the one that the run will be in. It isn't behind a change to one
    /// that may be made only by a command before it.
    bool pblnPlaceKnown = true;
    /// What the programs that were looked for came to, in the current directory.
    QHash<QString, int> pobjErrors;
    QSet<QString> pobjTold;
};

} // namespace

void PrintCommands(const std::vector<Command>& commands, Output& output) {
    WriteLines(commands, output);
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
