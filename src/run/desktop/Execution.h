#pragma once

#include "system/Process.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class QTimer;

namespace rivenfall {

class MultiLineTextBox;
enum class FormUnloadMode;
class frmExec;

/// Runs one command line at a time and shows what was done and what it printed in one growing
/// text, the log, in a window of its own. The window lives as long as the object; the user can
/// only hide it.
class Execution {
public:
    /// Makes the window, hidden, and starts the clock that reads output.
    Execution();

    /// Takes the window down. A child that still runs is left to itself.
    ~Execution();

    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;

    /// Empties the log.
    void Clear();

    /// Adds a frame to the log: what was done and, where @p Success isn't empty, how it went. Shows
    /// the window if it is hidden.
    void Echo(const QString& Issue, const QString& Success = {});

    /// Starts the program that @p CommandLine names and returns at once. Either way a frame in the
    /// log tells how the start went. False if nothing was started; a command that still runs is
    /// one reason, and a message box tells it.
    bool Execute(const QString& CommandLine);

    /// What the program that was started last has printed so far.
    QString Output() const;

    /// True until the output of the program that was started last has ended and is in the log.
    bool Running() const;

    /// Shows the window in front of the others with a fresh caption.
    void Show();

    /// The log box, for those who watch the log grow. Owned by the window.
    const MultiLineTextBox& Log() const;

private:
    /// Lets go of the window behind the event at hand, which may be one of its own.
    struct FormDeleter {
        void operator()(frmExec* form) const;
    };

    bool StartProcess(const QString& CommandLine);
    void pobjForm_QueryUnload(bool& Cancel, FormUnloadMode UnloadMode);
    void pobjForm_Resize();
    void pobjFormTmrTick_Timer();
    void EnsureShown();
    void AppendOutput(qsizetype length);
    void EndOutput();

    std::unique_ptr<frmExec, FormDeleter> pobjForm;
    MultiLineTextBox* pobjFormTxtOutput = nullptr;
    QString pstrOutput;
    Handle phndInputWrite = 0;
    Handle phndOutputRead = 0;
    Handle phndProcess = 0;
    bool pblnRunning = false;
    QTimer* pobjFormTmrTick = nullptr;

    /// Output that isn't in the log yet: a character that was cut by a chunk's end.
    QByteArray pobjUnfinished;
    /// The receiver of the form's events: what is connected to it ends with the object.
    QObject pobjSinks;
};

} // namespace rivenfall
