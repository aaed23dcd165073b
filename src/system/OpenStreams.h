#pragma once

namespace rivenfall {

/// Opens those of the three standard streams that the program was started without, so that no file
/// of its own takes the place of one. Writing to one of them fails, and a child inherits it so.
/// Each program calls it first.
void OpenStandardStreams();

} // namespace rivenfall
