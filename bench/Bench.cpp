#include "Bench.h"

#include "Sample.h"
#include "app/modMain.h"
#include "controls/App.h"
#include "document/DocumentFile.h"
#include "system/MessageBox.h"
#include "system/Process.h"

#include <QCoreApplication>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>

namespace rivenfall {

using namespace Qt::StringLiterals;

RunningProgram::RunningProgram() {
    SetMessageBoxHandler([](const QString& text, MessageBoxStyle style, const QString&) {
        if (style != MessageBoxStyle::YesNoCancel) {
            std::fprintf(stderr, "Unexpected message: %s\n", qUtf8Printable(text));
            std::exit(EXIT_FAILURE);
        }
        return MessageBoxAnswer::No;
    });
    SetGlobalApplication(std::make_shared<Application>());
    ProcessEvents();
}

RunningProgram::~RunningProgram() {
    SetGlobalApplication(nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    SetMessageBoxHandler({});
}

Application* RunningProgram::operator->() const {
    return GlobalApplication().get();
}

void RunningProgram::OpenSample(int count) {
    const QString fileName = Folder.filePath(u"sample.tvq"_s);
    WriteSample(fileName, count);
    GlobalApplication()->FileOpen(fileName);
    ProcessEvents();
}

void FillCompilers(DataNodes& root, int count) {
    DataNodes* level[] = {nullptr, &root, nullptr, nullptr};
    VisitSample(count, [&](int depth, const QString& text, bool) {
        const std::shared_ptr<DataNode> node = level[depth]->Add(text);
        if (depth < 3) {
            level[depth + 1] = node->Childs();
        }
    });
}

void WriteSample(const QString& fileName, int count) {
    DocumentContent content;
    FillCompilers(content.Compilers, count);
    content.Variables.Add(u"FILE1"_s)->Childs()->Add();
    const QString failure = WriteDocumentFile(fileName, content.Compilers, content.Variables);
    if (!failure.isEmpty()) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(failure));
        std::exit(EXIT_FAILURE);
    }
}

void ProcessEvents() {
    QCoreApplication::processEvents();
}

} // namespace rivenfall

int main(int argc, char** argv) {
    // Getting pages from the kernel anew in each round costs more on some machines than all the
    // work that is measured.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, INT_MAX);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return EXIT_FAILURE;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    rivenfall::App app(argc, argv);
    rivenfall::ReapChildrenInKernel();
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
