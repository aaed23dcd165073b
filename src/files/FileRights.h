#pragma once

namespace rivenfall {

class OpenFile;

/// Gives the file @p to, which this process has just made, all that tells who may use the file
/// @p from: owner, group, mode, access control list; and its extended attributes. At no moment
/// does @p to allow more than @p from does, if its mode was no wider at the start.
///
/// False where not all of that can be done. Throws FileError where it can't be seen.
bool CopyRights(const OpenFile& from, const OpenFile& to);

} // namespace rivenfall
