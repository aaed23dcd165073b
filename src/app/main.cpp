#include "app/Application.h"
#include "app/modMain.h"
#include "controls/App.h"
#include "support/Title.h"
#include "system/OpenStreams.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

constexpr const char* Help = "Usage: rivenfall [DOCUMENT]\n"
                             "Edit and run a chain of command-line compilers.\n"
                             "\n"
                             "  --help     print this text and exit\n"
                             "  --version  print the version and exit\n"
                             "\n"
                             "A document of such a name opens as ./--help.\n"
                             "Home page: <https://omra.org/rivenfall>\n";

constexpr const char* Licence =
    "\n"
    "Copyright (C) 2026 The OMRA Rivenfall Compiler Controller developers\n"
    "License: MIT <https://opensource.org/license/mit>\n"
    "This is free software: you are free to change and redistribute it.\n"
    "There is NO WARRANTY, to the extent permitted by law.\n";

/// What the program answers to @p argument instead of starting; empty if it names a document.
QString AnswerTo(std::string_view argument) {
    if (argument == "--help") {
        return QString::fromLatin1(Help);
    }
    return argument == "--version" ? rivenfall::ProgramTitle() + QString::fromLatin1(Licence)
                                   : QString();
}

} // namespace

int main(int argc, char** argv) {
    rivenfall::OpenStandardStreams();
    // A limit on the size of files is told like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    if (const QString answer = argc == 2 ? AnswerTo(argv[1]) : QString(); !answer.isEmpty()) {
        std::fputs(qUtf8Printable(answer), stdout);
        return std::fflush(stdout) == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    rivenfall::App app(argc, argv);
    app.RunEventLoop(rivenfall::Main);
    // Where the screen went away and took the event loop with it, the teardown is still owed.
    rivenfall::SetGlobalApplication(nullptr);
    return 0;
}
