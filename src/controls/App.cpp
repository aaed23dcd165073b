#include "controls/App.h"

#include "controls/MessageDialog.h"
#include "files/FilePath.h"

#include <QApplication>
#include <QSettings>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The command line behind the program's name, without the options that are Qt's. Qt's own list
/// can't tell paths apart that aren't UTF-8.
QStringList CommandLineItems;

/// What Qt reports while it connects to the screen. It ends the process by itself where there is
/// none, and a core dump is no answer to a missing display.
void ReportConnection(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtFatalMsg) {
        std::fputs("rivenfall: there is no display to show a window on.\n"
                   "Start it on a desktop, or carry a document out with rivenfall-run.\n",
                   stderr);
        std::_Exit(EXIT_FAILURE);
    }
    if (type == QtWarningMsg || type == QtCriticalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
}

/// Where the screen goes away Qt calls exit() from inside its reader of events, and the windows
/// can't be taken down any more: what of Qt they need is already gone when their turn comes.
void EndUntidily() {
    if (QCoreApplication::instance()) {
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

App::App(int argc, char** argv) : plngArgumentCount(argc) {
    qInstallMessageHandler(ReportConnection);
    pobjApplication = std::make_unique<QApplication>(plngArgumentCount, argv);
    qInstallMessageHandler(nullptr);
    std::atexit(EndUntidily);
    SetMessageBoxHandler(ShowMessageDialog);
    for (int position = 1; position < plngArgumentCount; ++position) {
        CommandLineItems += PathText(argv[position]);
    }

    QApplication::setApplicationName(u"rivenfall"_s);
    QApplication::setOrganizationDomain(u"omra.org"_s);
    QApplication::setDesktopFileName(u"org.omra.Rivenfall"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    // The program keeps no settings, and Qt's file dialog is to keep none in its place.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, u"/dev/null"_s);
}

App::~App() = default;

void App::RunEventLoop(const std::function<void()>& start) {
    QTimer::singleShot(0, pobjApplication.get(), start);
    QApplication::exec();
}

void App::EndEventLoop() {
    QCoreApplication::exit();
}

QString App::Path() {
    return QCoreApplication::applicationDirPath();
}

QStringList App::Arguments() {
    return CommandLineItems;
}

} // namespace rivenfall
