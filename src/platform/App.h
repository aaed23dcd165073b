#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class QApplication;

namespace rivenfall {

/// Where a program's windows appear.
enum class Screen {
    Desktop, ///< On the user's screen.
    None     ///< Nowhere: the windows exist, and no display is needed.
};

/// The process: its screen, its place and its event loop. There is one, made first in `main`.
class App {
public:
    /// Connects to the screen. Where there is no usable display, tells so on standard error and
    /// ends the process with status 1. @p argc and @p argv are main's.
    App(int argc, char** argv, Screen screen);
    ~App();

    /// Calls @p start as the event loop's first work and carries the loop on until EndEventLoop.
    void RunEventLoop(const std::function<void()>& start);

    /// Ends the event loop behind the work at hand.
    static void EndEventLoop();

    /// The folder of the program file.
    static QString Path();

    /// The command line behind the program's own name, as its items.
    static QStringList Arguments();

    /// The path @p name as a full path, seen from the directory that is current now.
    static QString FullPath(const QString& name);

private:
    std::vector<char*> pobjArguments;
    int plngArgumentCount;
    std::unique_ptr<QApplication> pobjApplication;
};

} // namespace rivenfall
