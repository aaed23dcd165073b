#include "app/Application.h"

#include "support/Title.h"

namespace rivenfall {

DataNodes* Application::Compilers() const {
    return pobjCompilers.get();
}

int Application::ContentActive() const {
    return plngContentActive;
}

rivenfall::Execution* Application::Execution() const {
    return pobjExecution.get();
}

QString Application::FileTitle() const {
    return FileTitleOf(QString(pstrFileName).replace(u'/', u'\\'));
}

DataNodes* Application::Variables() const {
    return pobjVariables.get();
}

frmMain* Application::Form() const {
    return pobjForm.get();
}

bool Application::HandleEvents() const {
    return plngHandleEvents >= 0;
}

void Application::SetHandleEvents(bool Enable) {
    plngHandleEvents += Enable ? 1 : -1;
}

DataNodes* Application::ActiveCollection() const {
    return plngContentActive == CompilersContent ? pobjCompilers.get() : pobjVariables.get();
}

} // namespace rivenfall
