#include "document/DocumentFile.h"
#include "run/LogFrame.h"
#include "runner/Choices.h"
#include "runner/DocumentRun.h"
#include "runner/DocumentText.h"
#include "runner/DryRun.h"
#include "runner/Options.h"
#include "runner/Output.h"
#include "system/CurrentDirectory.h"
#include "system/ErrorReason.h"
#include "system/OpenStreams.h"

#include <csignal>
#include <new>

namespace rivenfall {

using namespace Qt::StringLiterals;

/// The exit statuses of the program.
enum class Status { Success = 0, NothingToRun = 1, WrongCall = 2, Failure = 3 };

namespace {

constexpr char VersionText[] =
    "rivenfall-run (OMRA Rivenfall Compiler Controller) " RIVENFALL_VERSION "\n"
    "Copyright (C) 2026 The OMRA Rivenfall Compiler Controller developers\n"
    "License MIT: <https://opensource.org/license/mit>.\n"
    "There is NO WARRANTY, to the extent permitted by law.\n";

/// Changes to the directories of the call and opens its document. Tells, and gives False, where
/// that fails.
bool OpenDocument(const Options& options, DocumentContent& content) {
    for (const QString& directory : options.Directories) {
        if (const int error = ChangeDirectory(directory); error != 0) {
            Tell(u"The directory %1 can't be changed to: %2."_s.arg(
                directory.isEmpty() ? u"''"_s : directory, ReasonOf(error)));
            return false;
        }
    }
    const QString failure = ReadDocumentFile(options.Document, content);
    if (!failure.isEmpty()) {
        Tell(failure);
    }
    return failure.isEmpty();
}

void TellUnresolved(const QStringList& names) {
    for (const QString& name : names) {
        Tell(u"${%1}: no value found"_s.arg(name));
    }
}

/// Gives the status as far as @p output took all.
Status UseDocument(const Options& options, Output& output) {
    DocumentContent content;
    if (!OpenDocument(options, content) || !ApplyChoices(options, content)) {
        return Status::WrongCall;
    }
    if (options.Has(Option::Print) || options.Has(Option::List)) {
        output.Write(options.Has(Option::List) ? DocumentList(content) : DocumentText(content));
        return Status::Success;
    }
    QStringList unresolved;
    const std::vector<Command> commands =
        AssembleCommands(content.Compilers, content.Variables, &unresolved);
    if (options.Has(Option::Strict) && !unresolved.isEmpty()) {
        TellUnresolved(unresolved);
        return Status::WrongCall;
    }
    if (commands.empty()) {
        if (!options.Has(Option::DryRun)) {
            output.WriteFrame(NothingToRunIssue.toString(), NothingToRunResult.toString());
        }
        Tell(NothingToRunIssue.toString() + u' ' + NothingToRunResult.toString());
        return Status::NothingToRun;
    }
    if (options.Has(Option::DryRun)) {
        PrintCommands(commands, output);
        TellUnresolved(unresolved);
        return Status::Success;
    }
    return CarryOut(commands, options, output) ? Status::Success : Status::Failure;
}

Status Main(int argc, char** argv) {
    const std::optional<Options> options = ReadOptions(argc, argv);
    if (!options) {
        return Status::WrongCall;
    }
    Output output(options->Has(Option::Quiet));
    Status status = Status::Success;
    if (options->Has(Option::Help) || options->Has(Option::Version)) {
        output.Write(options->Has(Option::Help) ? HelpText : VersionText);
    } else {
        status = UseDocument(*options, output);
    }
    return status == Status::Success && output.Failed() ? Status::Failure : status;
}

} // namespace

} // namespace rivenfall

int main(int argc, char** argv) {
    rivenfall::OpenStandardStreams();
    // A limit on the size of files is told like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return static_cast<int>(rivenfall::Main(argc, argv));
    } catch (const std::bad_alloc&) {
        rivenfall::Tell(QStringView(u"the run takes more memory than there is").toString());
        return static_cast<int>(rivenfall::Status::Failure);
    }
}
