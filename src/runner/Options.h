#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <utility>
#include <vector>

namespace rivenfall {

/// What the program is called for.
enum class Action { Run, DryRun, Print, Help, Version };

/// What a call of the program asks for.
struct Options {
    Action What = Action::Run;
    bool StopOnError = false;
    bool IgnoreErrors = false;
    /// The directories to change to first, in turn.
    QStringList Directories;
    QString Document;
    /// Names of variables with the values that they have for this run.
    std::vector<std::pair<QString, QString>> Settings;
};

/// Reads the arguments of the call. Gives nothing, and tells why on standard error, where they are
/// wrong.
std::optional<Options> ReadOptions(int argc, char** argv);

/// The text of --help.
QString HelpText(int argc, char** argv);

} // namespace rivenfall
