#include "runner/Options.h"

#include "files/FilePath.h"
#include "runner/Output.h"

#include <algorithm>
#include <getopt.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr option NameOf(const char* name, Option option, int argument = no_argument) {
    return {name, argument, nullptr, static_cast<int>(option)};
}

constexpr option Names[] = {NameOf("directory", Option::Directory, required_argument),
                            NameOf("dry-run", Option::DryRun),
                            NameOf("help", Option::Help),
                            NameOf("ignore-errors", Option::IgnoreErrors),
                            NameOf("list", Option::List),
                            NameOf("off", Option::Off, required_argument),
                            NameOf("on", Option::On, required_argument),
                            NameOf("only", Option::Only, required_argument),
                            NameOf("print", Option::Print),
                            NameOf("quiet", Option::Quiet),
                            NameOf("stop-on-error", Option::StopOnError),
                            NameOf("strict", Option::Strict),
                            NameOf("version", Option::Version),
                            {}};

/// Ends the reading of a wrong call, for a @p reason that isn't told yet.
std::optional<Options> Refuse(const QString& reason = {}) {
    if (!reason.isEmpty()) {
        Tell(reason);
    }
    Tell(u"'rivenfall-run --help' tells more."_s);
    return {};
}

} // namespace

const char* const HelpText =
    R"(Usage: rivenfall-run [OPTION]... DOCUMENT [NAME=VALUE]...
Carry out the compilers of DOCUMENT that have a check mark, in order, and print
the log.

For this run alone:
  NAME=VALUE             The variable NAME has this value, whatever is ticked.
      --on TEXT          Tick the entries of Compilers that have this text.
      --off TEXT         Take their check marks away.
      --only TEXT        Of the compilers, run those of this text alone, ticked
                         or not. May be given several times.

Options:
  -C, --directory DIR    Change to DIR first. DOCUMENT and every relative path
                         count from there.
  -e, --stop-on-error    End after the first failure.
  -i, --ignore-errors    End with status 0 in spite of failures. They are told
                         all the same.
  -q, --quiet            Print no frames, only what the programs print.
  -u, --strict           Start nothing if a reference finds no value.
  -n, --dry-run          Start nothing. Print the command lines, quoted for a
                         POSIX shell.
  -l, --list             Start nothing. List the variables and the compilers.
  -p, --print            Start nothing. Print the document as text.
  -h, --help             Print this help and end.
      --version          Print the program's version and end.

Exit status:
  0  everything was started and ended with status 0
  1  there is nothing to run
  2  the call is wrong, the document can't be opened, or -u finds no value
  3  something failed

Home page: <https://omra.org/rivenfall>
)";

std::optional<Options> ReadOptions(int argc, char** argv) {
    const auto wrong = std::find_if_not(argv, argv + argc, [](const char* argument) {
        return QByteArrayView(argument).isValidUtf8();
    });
    if (wrong != argv + argc) {
        return Refuse(u"The argument %1 is no UTF-8 text."_s.arg(QString::fromUtf8(*wrong)));
    }
    Options options;
    for (int letter; (letter = getopt_long(argc, argv, "C:ehilnpqu", Names, nullptr)) != -1;) {
        const QString value = PathText(optarg);
        const auto option = static_cast<Option>(letter);
        options.Given.insert(option);
        switch (option) {
        case Option::Directory:
            options.Directories += value;
            break;
        case Option::On:
        case Option::Off:
            options.Switches.emplace_back(value, option == Option::On);
            break;
        case Option::Only:
            options.Only += value;
            break;
        case Option::Help:
        case Option::Version:
            return options;
        case Option::Wrong:
            return Refuse();
        default:
            break;
        }
    }
    if (options.Has(Option::StopOnError) && options.Has(Option::IgnoreErrors)) {
        return Refuse(u"The options -e and -i exclude each other."_s);
    }
    if (options.Has(Option::List) + options.Has(Option::DryRun) + options.Has(Option::Print) > 1) {
        return Refuse(u"The options -l, -n and -p exclude each other."_s);
    }
    if (optind == argc || *argv[optind] == '\0') {
        return Refuse(u"The name of a document is missing."_s);
    }
    options.Document = PathText(argv[optind++]);
    for (; optind < argc; ++optind) {
        const QString setting = PathText(argv[optind]);
        const qsizetype sign = setting.indexOf(u'=');
        if (sign < 0) {
            return Refuse(u"The argument %1 isn't of the form NAME=VALUE."_s.arg(setting));
        }
        options.Settings.emplace_back(setting.first(sign), setting.sliced(sign + 1));
    }
    const bool changes =
        !options.Settings.empty() || !options.Switches.empty() || !options.Only.isEmpty();
    if (options.Has(Option::Print) && changes) {
        return Refuse(u"The option -p shows the document as it is, without changes."_s);
    }
    return options;
}

} // namespace rivenfall
