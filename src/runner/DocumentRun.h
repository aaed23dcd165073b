#pragma once

#include "support/StringList.h"

#include <vector>

namespace rivenfall {

/// Carries @p commands out in order and writes the log to standard output: a frame for each, and
/// behind it what the child writes, byte for byte and as soon as it comes. Returns when the output
/// of the last one has ended.
void CarryOut(const std::vector<StringList>& commands);

/// Writes the log of a document that has nothing to run to standard output.
void ReportNothingToRun();

} // namespace rivenfall
