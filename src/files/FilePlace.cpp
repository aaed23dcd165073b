#include "files/FilePlace.h"

#include "files/FileError.h"

#include <filesystem>
#include <unistd.h>

namespace rivenfall {

namespace {

/// As many links as the kernel follows.
constexpr int MostLinks = 40;

void SyncFolder(const OpenFile& folder) {
    try {
        folder.Sync();
    } catch (const FileError& error) {
        // Some file systems have nothing to sync in a folder.
        if (error.Number != EINVAL && error.Number != ENOTSUP) {
            throw;
        }
    }
}

} // namespace

FilePlace PlaceOf(const QByteArray& path) {
    std::filesystem::path place(path.toStdString());
    for (int links = 0; links <= MostLinks; ++links) {
        std::error_code error;
        const std::filesystem::path target = std::filesystem::read_symlink(place, error);
        if (!error) {
            place = place.parent_path() / target;
            continue;
        }
        if (error != std::errc::invalid_argument && error != std::errc::no_such_file_or_directory) {
            throw FileErrorOf(error.value());
        }
        const std::string folder = place.has_parent_path() ? place.parent_path().string() : ".";
        return {OpenFile(AT_FDCWD, QByteArray::fromStdString(folder), O_PATH | O_DIRECTORY),
                QByteArray::fromStdString(place.filename().string())};
    }
    throw FileErrorOf(ELOOP);
}

void SyncNames(const FilePlace& place) {
    const int folder = place.Folder.Descriptor();
    try {
        OpenFile listing(folder, ".", O_RDONLY | O_DIRECTORY);
        SyncFolder(listing);
        listing.Close();
    } catch (const FileError& error) {
        if (error.Number != EACCES) {
            throw;
        }
        // The folder lets files be made but not listed. Then all of its file system is synced.
        OpenFile file(folder, place.Name, O_RDONLY | O_NOFOLLOW);
        Checked(syncfs(file.Descriptor()));
        file.Close();
    }
}

} // namespace rivenfall
