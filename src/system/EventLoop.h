#pragma once

namespace rivenfall {

/// Lets the event loop work off what is pending and, when nothing is, sleeps until the next event
/// and works that off. Every event handler of the program can run inside the call.
void DoEvents();

} // namespace rivenfall
