#pragma once

#include "support/StringList.h"

#include <vector>

namespace rivenfall {

class Output;

/// What a run does behind a failure.
enum class BehindFailure { GoOn, Stop };

/// Carries @p commands out in order and writes the log to @p output: a frame for each, and behind
/// it what the child writes, byte for byte and as soon as it comes. Tells each failure on standard
/// error as it happens, and at the end how many there were. Gives True where all went well. Doesn't
/// return when a signal has told the program to end.
bool CarryOut(const std::vector<StringList>& commands, BehindFailure behind, Output& output);

/// Writes the log of a document that has nothing to run to @p output.
void ReportNothingToRun(Output& output);

} // namespace rivenfall
