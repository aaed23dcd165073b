#include "app/Application.h"
#include "app/modMain.h"
#include "controls/App.h"

int main(int argc, char** argv) {
    rivenfall::App app(argc, argv);
    app.RunEventLoop(rivenfall::Main);
    // Where the screen went away and took the event loop with it, the teardown is still owed.
    rivenfall::SetGlobalApplication(nullptr);
    return 0;
}
