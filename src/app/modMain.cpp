#include "app/modMain.h"

#include "app/Application.h"
#include "controls/App.h"
#include "files/FilePath.h"
#include "support/SupportLibrary.h"
#include "system/CommandLine.h"

namespace rivenfall {

namespace {

std::shared_ptr<Application> CurrentApplication;

} // namespace

void Main() {
    SetGlobalApplication(std::make_shared<Application>());
    StringList tokens = SupportLibrary::CommandLineList();
    tokens.SetText(JoinCommandLine(App::Arguments()));
    if (tokens.Count() > 0) {
        // A run may change the current directory; the document's path must not depend on it.
        // Without a name the user is asked for one.
        const QString name = tokens.Item(1);
        GlobalApplication()->FileOpen(name.isEmpty() ? name : FullPath(name));
    }
}

std::shared_ptr<Application> GlobalApplication() {
    return CurrentApplication;
}

void SetGlobalApplication(std::shared_ptr<Application> application) {
    // The former one may go down here, and then it must find itself gone already.
    std::swap(CurrentApplication, application);
}

} // namespace rivenfall
