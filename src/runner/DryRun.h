#pragma once

#include "run/CommandAssembly.h"

namespace rivenfall {

class Output;

/// Writes @p commands to @p output as lines for a POSIX shell, whose work would be that of the run.
/// Starts nothing. Tells on standard error which programs and directories aren't there, as far as
/// that can be known before the commands have done their work.
void PrintCommands(const std::vector<Command>& commands, Output& output);

} // namespace rivenfall
