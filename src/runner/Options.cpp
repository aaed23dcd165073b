#include "runner/Options.h"

#include "files/FilePath.h"
#include "runner/Output.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView Usage = u"Usage: rivenfall-run [OPTION]... DOCUMENT [NAME=VALUE]...\n";

constexpr QStringView Statuses = u"\n"
                                 "Exit status:\n"
                                 "  0  everything was started and ended with status 0\n"
                                 "  1  there is nothing to run\n"
                                 "  2  the call is wrong, or the document can't be opened\n"
                                 "  3  something failed\n"
                                 "\n"
                                 "Home page: <https://omra.org/rivenfall>\n";

/// The options of the program, in the order in which --help shows them.
struct Parser : QCommandLineParser {
    Parser() {
        setApplicationDescription(
            u"Carry out the compilers of DOCUMENT that have a check mark, in order, and print the "
            "log."_s);
        addOptions({Directory, StopOnError, IgnoreErrors, DryRun, Print, Help, Version});
        addPositionalArgument(u"DOCUMENT"_s, u"The document (*.tvq)."_s);
        addPositionalArgument(
            u"NAME=VALUE"_s,
            u"The variable NAME has this value for this run, whatever is ticked."_s);
    }

    const QCommandLineOption Directory{
        {u"C"_s, u"directory"_s},
        u"Change to DIR first. DOCUMENT and every relative path count from there."_s,
        u"DIR"_s};
    const QCommandLineOption StopOnError{{u"e"_s, u"stop-on-error"_s},
                                         u"End behind the first failure."_s};
    const QCommandLineOption IgnoreErrors{
        {u"i"_s, u"ignore-errors"_s},
        u"End with status 0 in spite of failures. They are told all the same."_s};
    const QCommandLineOption DryRun{
        {u"n"_s, u"dry-run"_s},
        u"Start nothing. Print the command lines, quoted for a POSIX shell."_s};
    const QCommandLineOption Print{{u"p"_s, u"print"_s},
                                   u"Start nothing. Print the document as text."_s};
    const QCommandLineOption Help{u"help"_s, u"Print this help and end."_s};
    const QCommandLineOption Version{u"version"_s, u"Print the program's version and end."_s};
};

bool IsText(int argc, char** argv) {
    for (int position = 1; position < argc; ++position) {
        if (!QByteArrayView(argv[position]).isValidUtf8()) {
            Tell(u"The argument %1 is no UTF-8 text."_s.arg(QString::fromUtf8(argv[position])));
            return false;
        }
    }
    return true;
}

/// The reason why the call is wrong, empty where it isn't.
QString ReadArguments(Parser& parser, const QStringList& arguments, Options& options) {
    if (!parser.parse(arguments)) {
        return parser.errorText();
    }
    if (parser.isSet(parser.Help) || parser.isSet(parser.Version)) {
        options.What = parser.isSet(parser.Help) ? Action::Help : Action::Version;
        return {};
    }
    options.StopOnError = parser.isSet(parser.StopOnError);
    options.IgnoreErrors = parser.isSet(parser.IgnoreErrors);
    if (options.StopOnError && options.IgnoreErrors) {
        return u"The options -e and -i exclude each other."_s;
    }
    if (parser.isSet(parser.DryRun) && parser.isSet(parser.Print)) {
        return u"The options -n and -p exclude each other."_s;
    }
    if (parser.isSet(parser.DryRun)) {
        options.What = Action::DryRun;
    }
    if (parser.isSet(parser.Print)) {
        options.What = Action::Print;
    }
    options.Directories = parser.values(parser.Directory);
    QStringList names = parser.positionalArguments();
    if (names.isEmpty() || names.first().isEmpty()) {
        return u"The name of a document is missing."_s;
    }
    options.Document = names.takeFirst();
    for (const QString& setting : names) {
        const qsizetype sign = setting.indexOf(u'=');
        if (sign < 0) {
            return u"The argument %1 isn't of the form NAME=VALUE."_s.arg(setting);
        }
        options.Settings.emplace_back(setting.first(sign), setting.sliced(sign + 1));
    }
    if (options.What == Action::Print && !options.Settings.empty()) {
        return u"The option -p shows the document as it is and takes no NAME=VALUE."_s;
    }
    return {};
}

} // namespace

std::optional<Options> ReadOptions(int argc, char** argv) {
    if (!IsText(argc, argv)) {
        return {};
    }
    QStringList arguments;
    for (int position = 0; position < argc; ++position) {
        arguments += PathText(argv[position]);
    }
    Parser parser;
    Options options;
    const QString failure = ReadArguments(parser, arguments, options);
    if (!failure.isEmpty()) {
        Tell(failure);
        Tell(u"'rivenfall-run --help' tells more."_s);
        return {};
    }
    return options;
}

QString HelpText(int argc, char** argv) {
    // Qt's text asks it for the program's name.
    const QCoreApplication application(argc, argv);
    const QString text = Parser().helpText();
    // Qt writes the call in a form of its own.
    return Usage.toString() + text.sliced(text.indexOf(u'\n') + 1) + Statuses.toString();
}

} // namespace rivenfall
