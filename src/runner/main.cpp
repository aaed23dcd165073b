#include "document/DocumentFile.h"
#include "run/CommandAssembly.h"
#include "run/LogFrame.h"
#include "runner/DocumentRun.h"
#include "system/FilePath.h"
#include "system/OpenStreams.h"

#include <cstdio>

namespace rivenfall {

namespace {

/// The exit statuses of the program.
enum class Status { CarriedOut = 0, NothingToRun = 1, NotOpened = 2 };

Status CarryOutDocument(const QString& fileName) {
    DocumentContent content;
    const QString failure = ReadDocumentFile(FullPath(fileName), content);
    if (!failure.isEmpty()) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(failure));
        return Status::NotOpened;
    }
    if (!content.HasVariables) {
        MakeDefaultVariable(content.Variables);
    }
    const std::vector<StringList> commands = AssembleCommands(content.Compilers, content.Variables);
    if (commands.empty()) {
        ReportNothingToRun();
        std::fprintf(stderr, "%s\n%s\n", qUtf8Printable(NothingToRunIssue.toString()),
                     qUtf8Printable(NothingToRunResult.toString()));
        return Status::NothingToRun;
    }
    CarryOut(commands);
    return Status::CarriedOut;
}

} // namespace

} // namespace rivenfall

int main(int argc, char** argv) {
    rivenfall::OpenStandardStreams();
    if (argc != 2 || *argv[1] == '\0') {
        std::fputs("Usage: rivenfall-run DOCUMENT\n", stderr);
        return static_cast<int>(rivenfall::Status::NotOpened);
    }
    return static_cast<int>(rivenfall::CarryOutDocument(rivenfall::PathText(argv[1])));
}
