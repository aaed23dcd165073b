#pragma once

#include "CoreHarness.h"

#include "app/Application.h"
#include "app/modMain.h"
#include "controls/MultiLineTextBox.h"
#include "run/desktop/Execution.h"
#include "system/MessageBox.h"
#include "window/frmMain.h"

#include <QTest>

namespace rivenfall {

/// What the program asked its user, and what the user will answer.
struct User {
    /// Each message box: its text, style and title, joined by "|".
    QStringList Asked;
    /// The answers to the next message boxes; Cancel where there is none left.
    QList<MessageBoxAnswer> Answers;
    /// The paths that the next file dialogs give; cancelled where there is none left.
    QStringList Files;
    /// The caption of each file dialog.
    QStringList Dialogs;
};

/// A test with a running program: the Application with its windows, on no screen.
class ProgramTest : public testing::Test {
public:
    ProgramTest();
    ~ProgramTest() override;

protected:
    Application& Program() { return *GlobalApplication(); }
    frmMain& Window() { return *Program().Form(); }
    rivenfall::Execution& Runner() { return *Program().Execution(); }
    QString Log() { return Runner().Log().Text(); }

    /// The path of the file @p name in a folder that goes with the test.
    QString Path(const QString& name) const { return Folder.filePath(name); }
    QString Path(const char* name) const { return Path(QString::fromUtf8(name)); }

    User TheUser;
    QTemporaryDir Folder;

private:
    QString FormerDirectory;
};

} // namespace rivenfall
