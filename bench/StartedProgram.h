#pragma once

#include "system/Process.h"

#include <QString>
#include <QStringList>

namespace rivenfall {

/// A program of its own, a Qt program with a window, from its start until the object goes.
class StartedProgram {
public:
    /// Starts @p program and returns when its first window has been painted.
    explicit StartedProgram(const QString& program, const QStringList& arguments = {});

    /// Kills the program.
    ~StartedProgram();

    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    /// False if the program ended before it painted anything.
    bool Painted() const { return HasPainted; }

    /// The bytes of memory that the process holds in RAM now.
    double ResidentBytes() const;

private:
    Handle Process = 0;
    Handle Input = 0;
    Handle Output = 0;
    bool HasPainted = false;
};

} // namespace rivenfall
