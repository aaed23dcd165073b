#include "run/Execution.h"

#include "app/Application.h"
#include "app/Title.h"
#include "app/modMain.h"
#include "platform/MessageBox.h"
#include "run/frmExec.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <bit>

namespace rivenfall {

namespace {

constexpr int TickMilliseconds = 100;
constexpr int BytesPerTick = 64;
constexpr int LowestBoxHeight = 32;
constexpr qsizetype FrameDashes = 53;

/// The length of the part of a UTF-8 character that @p bytes end with, 0 if they end with a whole
/// one. A decoder with a state of its own would drop the byte behind a part that stays one.
qsizetype UnfinishedLength(const QByteArray& bytes) {
    constexpr int continuation = 1;
    constexpr int longest = 4;
    for (qsizetype length = 1; length <= std::min<qsizetype>(bytes.size(), 3); ++length) {
        const auto byte = static_cast<quint8>(bytes[bytes.size() - length]);
        const int size = std::countl_one(byte);
        if (size != continuation) {
            return size > length && size <= longest ? length : 0;
        }
    }
    return 0;
}

QString Decoded(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    return decoder.decode(bytes);
}

} // namespace

void Execution::FormDeleter::operator()(frmExec* form) const {
    form->deleteLater();
}

Execution::Execution() : pobjForm(new frmExec) {
    pobjForm->SetCaption(QStringLiteral("[Output] - ") + ProgramTitle());
    pobjFormTmrTick = &pobjForm->tmrTick;
    pobjFormTmrTick->SetInterval(TickMilliseconds);
    pobjFormTmrTick->SetEnabled(true);
    pobjFormTxtOutput = &pobjForm->txtOutput;

    QObject::connect(pobjForm.get(), &Form::QueryUnload, &pobjSinks,
                     [this](bool& cancel, int mode) { pobjForm_QueryUnload(cancel, mode); });
    QObject::connect(pobjForm.get(), &Form::Resize, &pobjSinks, [this] { pobjForm_Resize(); });
    QObject::connect(pobjFormTmrTick, &Timer::Tick, &pobjSinks,
                     [this] { pobjFormTmrTick_Timer(); });
    pobjForm_Resize();
}

Execution::~Execution() {
    pobjForm->Hide();
    pobjFormTxtOutput = nullptr;
    pobjFormTmrTick->SetEnabled(false);
    pobjFormTmrTick->SetInterval(0);
    pobjFormTmrTick = nullptr;
    pobjForm->Unload();
}

void Execution::Clear() {
    pobjFormTxtOutput->SetText({});
}

void Execution::Echo(const QString& Issue, const QString& Success) {
    EnsureShown();
    const QString lineBreak = QStringLiteral("\r\n");
    const QString dashes(FrameDashes, u'-');
    QString frame;
    if (pobjFormTxtOutput->TextLength() > 0) {
        frame += lineBreak;
    }
    frame += QStringLiteral("# /") + dashes + lineBreak;
    frame += QStringLiteral("# | ") + Issue + lineBreak;
    if (!Success.isEmpty()) {
        frame += QStringLiteral("# | [") + Success + QStringLiteral("]") + lineBreak;
    }
    frame += QStringLiteral("# \\") + dashes + lineBreak;
    pobjFormTxtOutput->AppendText(frame);
    pobjFormTxtOutput->SetSelStartToEnd();
}

bool Execution::Execute(const QString& CommandLine) {
    const bool started = StartProcess(CommandLine);
    Echo(CommandLine, started
                          ? QStringLiteral("success")
                          : QStringLiteral("error: CreateProcess failed (%1)").arg(LastError()));
    return started;
}

QString Execution::Output() const {
    return pstrOutput;
}

bool Execution::Running() const {
    return pblnRunning;
}

void Execution::Show() {
    QString caption = QStringLiteral("[Output] - ") + ProgramTitle();
    // A run that goes on after the program was told to quit has no document any more.
    if (const std::shared_ptr<Application> application = GlobalApplication()) {
        caption.prepend(application->FileTitle() + QStringLiteral(" - "));
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
        MessageBox(QStringLiteral("Still running!"), MessageBoxExclamation, ProgramTitle());
        return false;
    }
    StandardStreams streams;
    if (!OpenPipes(streams)) {
        MessageBox(QStringLiteral("CreatePipe failed. Error: %1").arg(LastError()),
                   MessageBoxPlain);
        return false;
    }
    pblnRunning = CreateProcess(CommandLine, streams, phndProcess);
    CloseHandle(streams.Input);
    CloseHandle(streams.Output);
    pstrOutput.clear();
    pobjUnfinished.clear();
    if (!pblnRunning) {
        CloseHandle(phndInputWrite);
        CloseHandle(phndOutputRead);
        phndInputWrite = phndOutputRead = phndProcess = 0;
    }
    return pblnRunning;
}

/// Makes the two pipes of a child: its silent input, whose write end stays here, and the one
/// stream for all its output, whose read end stays here. On failure nothing is left open.
bool Execution::OpenPipes(StandardStreams& streams) {
    Handle inputRead = 0;
    if (!CreatePipe(inputRead, phndInputWrite)) {
        return false;
    }
    streams.Input = DuplicateHandle(inputRead);
    CloseHandle(inputRead);
    if (!CreatePipe(phndOutputRead, streams.Output)) {
        CloseHandle(streams.Input);
        CloseHandle(phndInputWrite);
        phndInputWrite = 0;
        return false;
    }
    streams.Error = streams.Output;
    return true;
}

void Execution::pobjForm_QueryUnload(bool& Cancel, int UnloadMode) {
    if (UnloadMode != vbFormCode) {
        Cancel = true;
        pobjForm->Hide();
    }
}

void Execution::pobjForm_Resize() {
    if (pobjForm->WindowState() == vbMinimized) {
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
    const QString text = Decoded(QByteArrayView(pobjUnfinished).first(length));
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
