#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace rivenfall {

/// The options of the program, by their letters where they have one.
enum class Option {
    Directory = 'C',
    StopOnError = 'e',
    Help = 'h',
    IgnoreErrors = 'i',
    List = 'l',
    DryRun = 'n',
    Print = 'p',
    Quiet = 'q',
    Strict = 'u',
    On = 256,
    Off,
    Only,
    Version,
    /// None of these, or one that lacks its argument.
    Wrong = '?'
};

/// What a call of the program asks for.
struct Options {
    bool Has(Option option) const { return Given.contains(option); }

    std::set<Option> Given;
    /// The directories to change to first, in turn.
    QStringList Directories;
    QString Document;
    /// Names of variables with the values that they have for this run.
    std::vector<std::pair<QString, QString>> Settings;
    /// Texts of entries with the check mark that they get for this run, in turn.
    std::vector<std::pair<QString, bool>> Switches;
    /// Texts of the compilers that alone run, where there are any.
    QStringList Only;
};

/// Reads the arguments of the call. Gives nothing, and tells why on standard error, where they are
/// wrong.
std::optional<Options> ReadOptions(int argc, char** argv);

/// What --help prints.
extern const char* const HelpText;

} // namespace rivenfall
