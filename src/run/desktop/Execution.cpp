#include "run/desktop/Execution.h"

#include "app/Application.h"
#include "app/modMain.h"
#include "run/LogFrame.h"
#include "run/OutputDecoder.h"
#include "run/desktop/frmExec.h"
#include "support/Title.h"
#include "system/MessageBox.h"

#include <algorithm>
#include <array>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int TickMilliseconds = 100;
constexpr int BytesPerTick = 64;
constexpr int LowestBoxHeight = 32;

} // namespace

void Execution::FormDeleter::operator()(frmExec* form) const {
    form->deleteLater();
}

Execution::Execution() : pobjForm(new frmExec) {
    // No exit code is ever read, and a child may end long after its output did.
    ReapChildrenInKernel();
    pobjForm->SetCaption(u"[Output] - "_s + ProgramTitle());
    pobjFormTmrTick = &pobjForm->tmrTick;
    pobjFormTmrTick->setTimerType(Qt::PreciseTimer);
    pobjFormTmrTick->start(TickMilliseconds);
    pobjFormTxtOutput = &pobjForm->txtOutput;

    QObject::connect(
        pobjForm.get(), &Form::QueryUnload, &pobjSinks,
        [this](bool& cancel, FormUnloadMode mode) { pobjForm_QueryUnload(cancel, mode); });
    QObject::connect(pobjForm.get(), &Form::Resize, &pobjSinks, [this] { pobjForm_Resize(); });
    QObject::connect(pobjFormTmrTick, &QTimer::timeout, &pobjSinks,
                     [this] { pobjFormTmrTick_Timer(); });
    pobjForm_Resize();
}

Execution::~Execution() {
    pobjForm->Hide();
    pobjFormTxtOutput = nullptr;
    pobjFormTmrTick->stop();
    pobjFormTmrTick = nullptr;
    pobjForm->Unload();
}

void Execution::Clear() {
    pobjFormTxtOutput->SetText({});
}

void Execution::Echo(const QString& Issue, const QString& Success) {
    EnsureShown();
    pobjFormTxtOutput->AppendText(
        LogFrame(Issue, Success, pobjFormTxtOutput->TextLength() > 0, u"\r\n"_s));
    pobjFormTxtOutput->SetSelStartToEnd();
}

bool Execution::Execute(const QString& CommandLine) {
    const bool started = StartProcess(CommandLine);
    Echo(CommandLine, ResultOfStart(started, LastError()));
    return started;
}

QString Execution::Output() const {
    return pstrOutput;
}

bool Execution::Running() const {
    return pblnRunning;
}

void Execution::Show() {
    QString caption = u"[Output] - "_s + ProgramTitle();
    // A run that goes on after the program was told to quit has no document any more.
    if (const std::shared_ptr<Application> application = GlobalApplication()) {
        caption.prepend(application->FileTitle() + u" - "_s);
    }
    pobjForm->SetCaption(caption);
    pobjForm->Show();
    pobjForm->ZOrder(0);
}

const MultiLineTextBox& Execution::Log() const {
    return *pobjFormTxtOutput;
}

bool Execution::StartProcess(const QString& CommandLine) {
    if (pblnRunning) {
        MessageBox(u"Still running!"_s, MessageBoxStyle::Exclamation, ProgramTitle());
        return false;
    }
    StandardStreams streams;
    if (!CreatePipes(streams, phndInputWrite, phndOutputRead)) {
        MessageBox(u"CreatePipe failed. Error: %1"_s.arg(LastError()), MessageBoxStyle::Plain);
        return false;
    }
    pblnRunning = CreateProcess(CommandLine, streams, phndProcess);
    CloseHandle(streams.Input);
    CloseHandle(streams.Output);
    pstrOutput.clear();
    if (!pblnRunning) {
        EndOutput();
    }
    return pblnRunning;
}

void Execution::pobjForm_QueryUnload(bool& Cancel, FormUnloadMode UnloadMode) {
    if (UnloadMode != FormUnloadMode::Code) {
        Cancel = true;
        pobjForm->Hide();
    }
}

void Execution::pobjForm_Resize() {
    if (pobjForm->WindowState() == FormWindowState::Minimized) {
        return;
    }
    const int height = std::max(pobjForm->ScaleHeight(), LowestBoxHeight);
    pobjFormTxtOutput->Move(0, 0, pobjForm->ScaleWidth(), height);
}

void Execution::pobjFormTmrTick_Timer() {
    if (!pblnRunning) {
        return;
    }
    std::array<char, BytesPerTick> buffer = {};
    int count = 0;
    switch (ReadFile(phndOutputRead, buffer.data(), BytesPerTick, count)) {
    case ReadOutcome::Nothing:
        break;
    case ReadOutcome::Data:
        pobjUnfinished.append(buffer.data(), count);
        AppendOutput(pobjUnfinished.size() - UnfinishedLength(pobjUnfinished));
        break;
    case ReadOutcome::End:
        EndOutput();
        break;
    }
}

void Execution::EnsureShown() {
    if (!pobjForm->Visible()) {
        Show();
    }
}

/// Moves the first @p length bytes of what isn't in the log yet there.
void Execution::AppendOutput(qsizetype length) {
    if (length == 0) {
        return;
    }
    const QString text = DecodedOutput(QByteArrayView(pobjUnfinished).first(length));
    pobjUnfinished.remove(0, length);
    pstrOutput += text;
    pobjFormTxtOutput->AppendText(text);
    pobjFormTxtOutput->SetSelStartToEnd();
}

void Execution::EndOutput() {
    AppendOutput(pobjUnfinished.size());
    pblnRunning = false;
    CloseHandle(phndInputWrite);
    CloseHandle(phndOutputRead);
    phndProcess = phndInputWrite = phndOutputRead = 0;
}

} // namespace rivenfall
