#pragma once

#include "support/StringList.h"

#include <optional>
#include <vector>

namespace rivenfall {

class DataNodes;

/// One step of a run: the start of a program, or a change of the current directory.
struct Command {
    /// Where a change of directory leads, as ChangeDirectory takes it; nothing for a program.
    std::optional<QString> Directory;
    /// The program and its arguments, or what the path of the directory is made of.
    StringList Items;

    /// What frames and messages show: the program's command line, or "cd" and the path.
    QString Text() const;
};

/// What a run of a document will do: one command per active compiler of @p compilers, in order,
/// with the values of @p variables in place. Both are roots of a document, and whatever happens to
/// it afterwards doesn't change the commands. @p unresolved gets each name that a reference found
/// no value for, once. A command that is too long for any start may lack its last items.
std::vector<Command> AssembleCommands(const DataNodes& compilers, const DataNodes& variables,
                                      QStringList* unresolved = nullptr);

} // namespace rivenfall
