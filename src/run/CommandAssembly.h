#pragma once

#include "support/StringList.h"

#include <vector>

namespace rivenfall {

class DataNodes;

/// What a run of a document will do: the items of one command line per active compiler of
/// @p compilers, in order, with the values of @p variables in place. Both are roots of a document,
/// and whatever happens to it afterwards doesn't change the lists. @p unresolved gets each name
/// that a reference found no value for, once. A list that no program can be handed may lack its
/// last items. Throws std::bad_alloc.
std::vector<StringList> AssembleCommands(const DataNodes& compilers, const DataNodes& variables,
                                         QStringList* unresolved = nullptr);

/// True where @p items, one of the lists above, stand for a change of the current directory to the
/// path that the items behind the first one make.
bool IsDirectoryChange(const StringList& items);

/// The path of the directory change @p items, as the log shows it and as ChangeDirectory takes it.
QString PathOfDirectoryChange(StringList items);

} // namespace rivenfall
