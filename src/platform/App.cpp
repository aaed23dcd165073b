#include "platform/App.h"

#include <QApplication>
#include <QFileInfo>
#include <QSettings>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace rivenfall {

namespace {

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

/// What Qt reports where windows appear nowhere: that they can't be raised or sized is no news.
void ReportWithoutScreen(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
}

/// Opens those standard streams that the program was started without, so that no file of its own
/// takes the place of one.
void OpenStandardStreams() {
    int descriptor = 0;
    do {
        descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    close(descriptor);
}

std::vector<char*> ArgumentsFor(int argc, char** argv, Screen screen) {
    static char platformOption[] = "-platform";
    static char platformName[] = "offscreen";
    std::vector<char*> arguments(argv, argv + argc);
    if (screen == Screen::None) {
        arguments.insert(arguments.begin() + 1, {platformOption, platformName});
    }
    arguments.push_back(nullptr);
    return arguments;
}

} // namespace

App::App(int argc, char** argv, Screen screen)
    : pobjArguments(ArgumentsFor(argc, argv, screen)),
      plngArgumentCount(static_cast<int>(pobjArguments.size()) - 1) {
    OpenStandardStreams();
    qInstallMessageHandler(screen == Screen::None ? ReportWithoutScreen : ReportConnection);
    pobjApplication = std::make_unique<QApplication>(plngArgumentCount, pobjArguments.data());
    if (screen != Screen::None) {
        qInstallMessageHandler(nullptr);
    }

    QApplication::setApplicationName(QStringLiteral("rivenfall"));
    QApplication::setOrganizationDomain(QStringLiteral("omra.org"));
    QApplication::setDesktopFileName(QStringLiteral("org.omra.Rivenfall"));
    QApplication::setQuitOnLastWindowClosed(false);
    // The program keeps no settings, and Qt's file dialog is to keep none in its place.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
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
    return QCoreApplication::arguments().sliced(1);
}

QString App::FullPath(const QString& name) {
    return QFileInfo(name).absoluteFilePath();
}

} // namespace rivenfall
