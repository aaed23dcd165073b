#pragma once

#include <QFlags>
#include <QString>
#include <QStringList>

class QMimeData;

namespace rivenfall {

/// The formats of dragged data.
enum class DataObjectFormat {
    Text = 1,  ///< A text.
    Files = 15 ///< A list of files.
};

/// What a drag and drop may do with the data.
enum class DropEffect {
    None = 0, ///< No drop.
    Copy = 1, ///< The data is copied.
    Move = 2  ///< The data is moved away from its source.
};
using DropEffects = QFlags<DropEffect>;

/// The files of a drag, numbered from 1.
class DataObjectFileList {
public:
    /// The files at the full paths @p paths.
    explicit DataObjectFileList(QStringList paths);

    /// The full path of the file at @p Index, 1 to Count.
    QString Item(int Index) const;

private:
    QStringList pobjPaths;
};

/// What a drag carries. Lives as long as the event that hands it over.
class DataObject {
public:
    /// @p data stays the drag's own.
    explicit DataObject(const QMimeData& data);

    /// True if the drag carries the format @p Format. A text that only repeats where the dragged
    /// files are, as file managers add it, doesn't count as one.
    bool GetFormat(DataObjectFormat Format) const;

    /// The data in the format @p Format: the text, or the files' paths, one on a line. Empty for
    /// a format that the drag doesn't carry.
    QString GetData(DataObjectFormat Format) const;

    /// The files that the drag carries; empty if it carries none.
    DataObjectFileList Files() const;

private:
    QStringList FilePaths() const;
    QString OwnText() const;

    const QMimeData& pobjData;
};

} // namespace rivenfall
