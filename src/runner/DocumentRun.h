#pragma once

#include "run/CommandAssembly.h"

namespace rivenfall {

class Output;

/// What a run does behind a failure.
enum class BehindFailure { GoOn, Stop };

/// Carries @p commands out in order. Writes a frame for each to @p output before its program starts
/// and writes there itself. Tells each failure on standard error as it happens, and at the end how
/// many there were. Gives True where all went well; whether @p output took all, it tells itself.
/// Doesn't return when a signal has told this program to end.
bool CarryOut(const std::vector<Command>& commands, BehindFailure behind, Output& output);

} // namespace rivenfall
