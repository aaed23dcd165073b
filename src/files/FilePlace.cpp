#include "files/FilePlace.h"

#include "files/FileError.h"

#include <climits>
#include <filesystem>
#include <optional>
#include <unistd.h>

namespace rivenfall {

namespace {

/// As many links as the kernel follows.
constexpr int MostLinks = 40;

/// Where the link @p name in @p folder leads; nothing where there is no link.
std::optional<std::string> TargetOf(const OpenFile& folder, const QByteArray& name) {
    try {
        const OpenFile link(folder.Descriptor(), name, O_PATH | O_NOFOLLOW);
        const struct stat status = link.Status();
        if (!S_ISLNK(status.st_mode)) {
            return {};
        }
        // In a folder that all may write, the kernel follows no link that somebody else may have
        // set as a trap. Whoever follows links without it has to see to that.
        constexpr mode_t Everybodys = S_ISVTX | S_IWOTH;
        const struct stat around = folder.Status();
        if ((around.st_mode & Everybodys) == Everybodys && status.st_uid != geteuid() &&
            status.st_uid != around.st_uid) {
            throw FileErrorOf(EACCES);
        }
        std::string target(PATH_MAX, '\0');
        target.resize(static_cast<size_t>(
            Checked(readlinkat(link.Descriptor(), "", target.data(), target.size()))));
        return target;
    } catch (const FileError& error) {
        if (error.Number != ENOENT) {
            throw;
        }
        return {};
    }
}

} // namespace

FilePlace PlaceOf(const QByteArray& path) {
    std::filesystem::path place(path.toStdString());
    for (int links = 0; links <= MostLinks; ++links) {
        const std::string parent = place.has_parent_path() ? place.parent_path().string() : ".";
        OpenFile folder(AT_FDCWD, QByteArray::fromStdString(parent), O_PATH | O_DIRECTORY);
        const QByteArray name = QByteArray::fromStdString(place.filename().string());
        const std::optional<std::string> target = TargetOf(folder, name);
        if (!target) {
            return {std::move(folder), name};
        }
        place = place.parent_path() / *target;
    }
    throw FileErrorOf(ELOOP);
}

} // namespace rivenfall
