#include "runner/ShellText.h"

#include "run/CommandAssembly.h"
#include "runner/Output.h"
#include "support/DeceptiveText.h"

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The words that dash, bash, busybox, ksh or mksh take for more than the name of a program.
constexpr QStringView ShellWords =
    u" . : [ [[ alias autoload bg bind break builtin caller case cat cd chdir command compgen "
    u"complete compopt continue coproc declare dirs disown do done echo elif else enable "
    u"enum esac eval exec exit export false fc fg fi float for function functions getconf "
    u"getopts global hash help hist history if in integer jobs kill let local logout mapfile "
    u"mknod nameref newgrp nohup popd print printf pushd pwd read readarray readonly "
    u"realpath rename return select set shift shopt sleep source stop suspend test then time "
    u"times trap true type typeset ulimit umask unalias unset until wait whence while ";

bool IsShellWord(const QString& word) {
    return !word.contains(u' ') && ShellWords.contains(u' ' + word + u' ');
}

bool IsPlain(QChar character) {
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z') ||
           (character >= u'0' && character <= u'9') ||
           QStringView(u"%+,-./:@_").contains(character);
}

/// @p character in octal: all shells that know such escapes end them behind three digits.
QString OctalOf(char32_t character) {
    QString escapes;
    for (const char byte : QString::fromUcs4(&character, 1).toUtf8()) {
        escapes += u"\\%1"_s.arg(static_cast<uchar>(byte), 3, 8, QChar(u'0'));
    }
    return escapes;
}

/// @p text as one word of the shell.
QString Word(QString text, ShellNotation notation) {
    if (!text.isEmpty() && std::all_of(text.begin(), text.end(), IsPlain)) {
        return text;
    }
    if (notation == ShellNotation::Visible && VisibleText(text) != text) {
        text.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s);
        return u"$'"_s + MarkDeceptive(text, OctalOf) + u'\'';
    }
    return u'\'' + text.replace(u'\'', u"'\\''"_s) + u'\'';
}

QString DirectoryChangeLine(const QString& path, ShellNotation notation) {
    // The shell drops a step to the parent together with the link before it, unless told.
    QString line = path.split(u'/').contains(u".."_s) ? u"cd -P "_s : u"cd "_s;
    // Without CDPATH, and without options.
    const QString first = path.section(u'/', 0, 0);
    const bool certain = path.startsWith(u'/') || first == u"." || first == u"..";
    return line + Word(certain ? path : u"./"_s + path, notation);
}

QString ProgramLine(const StringList& items, ShellNotation notation) {
    QStringList words;
    for (int index = 1; index <= items.Count(); ++index) {
        words += Word(items.Item(index), notation);
    }
    const QString line = words.join(u' ');
    // exec looks along PATH alone, never among the shell's own commands. (mksh alone finds its own
    // there too.)
    return (IsShellWord(items.Item(1)) ? u"(exec "_s + line + u')' : line) + u" </dev/null"_s;
}

} // namespace

QString ShellLine(const Command& command, ShellNotation notation) {
    const QString text = command.Text();
    // What no line can express fails, as the start does; and for an empty path a shell goes
    // somewhere, a run doesn't.
    if (text.contains(QChar::Null) || command.Directory == QString()) {
        return u"false # "_s + VisibleText(text) + u'\n';
    }
    return (command.Directory ? DirectoryChangeLine(*command.Directory, notation)
                              : ProgramLine(command.Items, notation)) +
           u'\n';
}

} // namespace rivenfall
