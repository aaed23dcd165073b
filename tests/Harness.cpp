#include "Harness.h"

#include "controls/App.h"
#include "support/desktop/FileDialog.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

namespace rivenfall {

ProgramTest::ProgramTest() : FormerDirectory(QDir::currentPath()) {
    SetMessageBoxHandler([this](const QString& text, MessageBoxStyle style, const QString& title) {
        TheUser.Asked += u"%1|%2|%3"_s.arg(text).arg(static_cast<int>(style)).arg(title);
        return TheUser.Answers.isEmpty() ? MessageBoxAnswer::Cancel : TheUser.Answers.takeFirst();
    });
    SetFileDialogHandler([this](const QString& title, const QString&) {
        TheUser.Dialogs += title;
        return TheUser.Files.isEmpty() ? QString() : TheUser.Files.takeFirst();
    });
    SetGlobalApplication(std::make_shared<Application>());
}

ProgramTest::~ProgramTest() {
    SetGlobalApplication(nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // The program has ended its event loop. A loop takes that, or the next dialog would end at
    // once.
    QTimer::singleShot(0, [] { QCoreApplication::exit(); });
    QCoreApplication::exec();
    QDir::setCurrent(FormerDirectory);
    SetMessageBoxHandler({});
    SetFileDialogHandler({});
}

} // namespace rivenfall

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // A folder in the tester's own that may not be read would turn "no such program" into "no
    // permission".
    qputenv("PATH", "/usr/local/bin:/usr/bin:/bin");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // That windows can't be raised where there is no screen is no news.
    qputenv("QT_LOGGING_RULES", "*.warning=false;*.info=false");
    rivenfall::App app(argc, argv);
    return RUN_ALL_TESTS();
}
