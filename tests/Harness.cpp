#include "Harness.h"

#include "controls/App.h"
#include "support/desktop/FileDialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

namespace rivenfall {

User::User() {
    Former = SetMessageBoxHandler(
        [this](const QString& text, MessageBoxStyle style, const QString& title) {
            Asked += u"%1|%2|%3"_s.arg(text).arg(static_cast<int>(style)).arg(title);
            if (Answers.empty()) {
                return style == MessageBoxStyle::YesNoCancel ? MessageBoxAnswer::Cancel
                       : style == MessageBoxStyle::YesNo     ? MessageBoxAnswer::No
                                                             : MessageBoxAnswer::Ok;
            }
            const MessageBoxAnswer answer = Answers.front();
            Answers.pop_front();
            return answer;
        });
    SetFileDialogHandler([this](const QString& title, const QString&) {
        Dialogs += title;
        if (Files.empty()) {
            return QString();
        }
        QString file = Files.front();
        Files.pop_front();
        return file;
    });
}

User::~User() {
    SetMessageBoxHandler(Former);
    SetFileDialogHandler({});
}

ProgramTest::ProgramTest() : FormerDirectory(QDir::currentPath()) {
    SetGlobalApplication(std::make_shared<Application>());
}

void ProgramTest::StartAnew() {
    TakeDown();
    SetGlobalApplication(std::make_shared<Application>());
}

ProgramTest::~ProgramTest() {
    TakeDown();
    QDir::setCurrent(FormerDirectory);
}

void ProgramTest::TakeDown() {
    SetGlobalApplication(nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // The program has ended its event loop. A loop takes that, or the next dialog would end at
    // once.
    QTimer::singleShot(0, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
}

} // namespace rivenfall

/// That windows can't be raised where there is no screen is no news.
static void ReportFaultsOnly(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // A folder in the tester's own that may not be read would turn "no such program" into "no
    // permission".
    qputenv("PATH", "/usr/local/bin:/usr/bin:/bin");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    rivenfall::App app(argc, argv);
    qInstallMessageHandler(ReportFaultsOnly);
    return RUN_ALL_TESTS();
}
