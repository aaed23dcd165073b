#pragma once

#include <memory>

namespace rivenfall {

class Application;

/// Starts the program: makes the Application, which shows the window, and opens the document that
/// the command line names first, if it names one. Everything else happens on the event loop.
void Main();

/// The one Application; null before Main has made it and once Quit has succeeded.
std::shared_ptr<Application> GlobalApplication();

/// Sets what GlobalApplication gives. Clearing it gives the Application up to whoever holds it.
void SetGlobalApplication(std::shared_ptr<Application> application);

} // namespace rivenfall
