#include "app/Application.h"
#include "app/modMain.h"
#include "platform/App.h"
#include "platform/MessageBox.h"
#include "platform/MultiLineTextBox.h"
#include "run/Execution.h"
#include "support/FileDialog.h"

#include <algorithm>
#include <cstdio>

namespace rivenfall {

namespace {

/// The exit statuses of the program.
enum Status { CarriedOut = 0, NothingToRun = 1, NotOpened = 2 };

int ShowOnStandardError(const QString& text, int style, const QString&) {
    std::fprintf(stderr, "%s\n", QString(text).replace(u"\r\n"_qs, u"\n"_qs).toUtf8().constData());
    return style == MessageBoxYesNoCancel ? MessageBoxCancel : MessageBoxOk;
}

/// Copies what is new in the log to standard output.
class LogCopy {
public:
    explicit LogCopy(const MultiLineTextBox& log) : Log(log) {}

    void Continue() {
        const QString text = Log.Text();
        // A carriage return at the end may be half of a line break.
        Print(text, text.size() - (text.endsWith(u'\r') ? 1 : 0));
    }

    void Finish() { Print(Log.Text(), Log.TextLength()); }

private:
    void Print(const QString& log, qsizetype end) {
        const qsizetype begin = std::min(Printed, end);
        Printed = end;
        QString text = log.sliced(begin, end - begin);
        text.replace(u"\r\n"_qs, u"\n"_qs);
        const QByteArray bytes = text.toUtf8();
        std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
        std::fflush(stdout);
    }

    const MultiLineTextBox& Log;
    qsizetype Printed = 0;
};

bool HasActiveCompiler(const DataNodes& compilers) {
    return std::any_of(compilers.begin(), compilers.end(),
                       [](const std::shared_ptr<DataNode>& node) { return node->Active(); });
}

Status CarryOutDocument(const QString& fileName) {
    SetMessageBoxResponder(ShowOnStandardError);
    SetFileDialogResponder([](const QString&) { return QString(); });
    SetGlobalApplication(std::make_shared<Application>());
    const std::shared_ptr<Application> application = GlobalApplication();
    LogCopy copy(application->Execution()->Log());
    QObject context;
    QObject::connect(&application->Execution()->Log(), &MultiLineTextBox::Change, &context,
                     [&copy] { copy.Continue(); });

    Status status = NotOpened;
    if (application->FileOpen(App::FullPath(fileName))) {
        status = HasActiveCompiler(*application->Compilers()) ? CarriedOut : NothingToRun;
        application->Run();
        copy.Finish();
    }
    application->Quit();
    return status;
}

} // namespace

} // namespace rivenfall

int main(int argc, char** argv) {
    if (argc != 2 || *argv[1] == '\0') {
        std::fputs("Usage: rivenfall-run DOCUMENT\n", stderr);
        return rivenfall::NotOpened;
    }
    rivenfall::App app(argc, argv, rivenfall::Screen::None);
    rivenfall::Status status = rivenfall::NotOpened;
    const QString fileName = QString::fromLocal8Bit(argv[1]);
    app.RunEventLoop([&] { status = rivenfall::CarryOutDocument(fileName); });
    return status;
}
