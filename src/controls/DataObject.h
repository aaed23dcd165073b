#pragma once

#include "support/StringList.h"

#include <QFlags>
#include <QString>

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

/// What a drag carries. Lives as long as the event that hands it over.
class DataObject {
public:
    /// @p data stays the drag's own.
    explicit DataObject(const QMimeData& data);

    /// True if the drag carries the format @p Format. A text that only repeats where the dragged
    /// files are, as file managers add it, doesn't count as one.
    bool GetFormat(DataObjectFormat Format) const;

    /// The text that the drag carries, the one format that is a text; null if it carries none.
    QString GetData(DataObjectFormat Format) const;

    /// The full paths of the files that the drag carries; empty if it carries none.
    StringList Files() const;

private:
    const QMimeData& pobjData;
};

} // namespace rivenfall
