#include "Harness.h"

#include "platform/App.h"
#include "support/FileDialog.h"

#include <QCoreApplication>
#include <QDir>

namespace rivenfall {

User::User() {
    SetMessageBoxResponder([this](const QString& text, int style, const QString& title) {
        Asked += QStringLiteral("%1|%2|%3").arg(text).arg(style).arg(title);
        if (Answers.empty()) {
            return int(style == MessageBoxYesNoCancel ? MessageBoxCancel : MessageBoxOk);
        }
        const int answer = Answers.front();
        Answers.pop_front();
        return answer;
    });
    SetFileDialogResponder([this](const QString& title) {
        Dialogs += title;
        if (Files.empty()) {
            return QString();
        }
        const QString file = Files.front();
        Files.pop_front();
        return file;
    });
}

User::~User() {
    SetMessageBoxResponder({});
    SetFileDialogResponder({});
}

ProgramTest::ProgramTest() : FormerDirectory(QDir::currentPath()) {
    SetGlobalApplication(std::make_shared<Application>());
}

ProgramTest::~ProgramTest() {
    TakeDown();
    QDir::setCurrent(FormerDirectory);
}

void ProgramTest::TakeDown() {
    SetGlobalApplication(nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

bool WaitFor(const std::function<bool()>& condition, int milliseconds) {
    return QTest::qWaitFor(condition, milliseconds);
}

} // namespace rivenfall

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    rivenfall::App app(argc, argv, rivenfall::Screen::None);
    return RUN_ALL_TESTS();
}
