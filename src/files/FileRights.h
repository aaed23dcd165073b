#pragma once

namespace rivenfall {

class OpenFile;

/// Gives the file @p to, which this process has just made, all that tells who may use the file
/// @p from: owner, group, mode, access control list; and its extended attributes. At no moment
/// does @p to allow more than @p from does, if its mode was no wider at the start.
///
/// False where the kernel doesn't let this process do all of that. Throws FileError where
/// something goes wrong.
bool CopyRights(const OpenFile& from, const OpenFile& to);

} // namespace rivenfall
