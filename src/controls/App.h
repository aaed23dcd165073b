#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QApplication;

namespace rivenfall {

/// The process of the desktop program: its screen, its place and its event loop. There is one, made
/// first in `main`.
class App {
public:
    /// Connects to the screen and has message boxes appear there. Where there is no usable display,
    /// tells so on standard error and ends the process with status 1. @p argc and @p argv are
    /// main's.
    App(int argc, char** argv);
    ~App();

    App(const App&) = delete;
    App& operator=(const App&) = delete;

    /// Calls @p start as the event loop's first work and carries the loop on until EndEventLoop.
    void RunEventLoop(const std::function<void()>& start);

    /// Ends the event loop behind the work at hand.
    static void EndEventLoop();

    /// The folder of the program file.
    static QString Path();

    /// The command line behind the program's own name, as its items.
    static QStringList Arguments();

private:
    int plngArgumentCount;
    std::unique_ptr<QApplication> pobjApplication;
};

} // namespace rivenfall
