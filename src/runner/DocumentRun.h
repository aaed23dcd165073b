#pragma once

#include "run/CommandAssembly.h"

namespace rivenfall {

class Output;
struct Options;

/// Carries @p commands out in order, as far as @p options wants it after a failure. Writes a frame
/// for each to @p output before its program starts and writes there itself. Tells each failure on
/// standard error as it happens, and at the end how many there were. Gives False where some count;
/// whether @p output took all, it tells itself. Doesn't return when a signal has told this program
/// to end.
bool CarryOut(const std::vector<Command>& commands, const Options& options, Output& output);

} // namespace rivenfall
