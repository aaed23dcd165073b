#include "controls/DataObject.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

DataObjectFileList::DataObjectFileList(QStringList paths) : pobjPaths(std::move(paths)) {}

QString DataObjectFileList::Item(int Index) const {
    return pobjPaths.at(Index - 1);
}

DataObject::DataObject(const QMimeData& data) : pobjData(data) {}

bool DataObject::GetFormat(DataObjectFormat Format) const {
    switch (Format) {
    case DataObjectFormat::Text:
        return !OwnText().isNull();
    case DataObjectFormat::Files:
        return !FilePaths().isEmpty();
    default:
        return false;
    }
}

QString DataObject::GetData(DataObjectFormat Format) const {
    switch (Format) {
    case DataObjectFormat::Text:
        return OwnText();
    case DataObjectFormat::Files:
        return FilePaths().join(u'\n');
    default:
        return {};
    }
}

DataObjectFileList DataObject::Files() const {
    return DataObjectFileList(FilePaths());
}

QStringList DataObject::FilePaths() const {
    QStringList paths;
    for (const QUrl& address : pobjData.urls()) {
        if (address.isLocalFile()) {
            paths += address.toLocalFile();
        }
    }
    return paths;
}

QString DataObject::OwnText() const {
    // QMimeData::hasText also speaks for a mere list of files.
    if (!pobjData.hasFormat(u"text/plain"_s) &&
        !pobjData.hasFormat(u"text/plain;charset=utf-8"_s)) {
        return {};
    }
    const QString text = pobjData.text();
    const QList<QUrl> addresses = pobjData.urls();
    QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    const bool repeatsFiles =
        !addresses.isEmpty() && lines.size() == addresses.size() &&
        std::equal(lines.begin(), lines.end(), addresses.begin(),
                   [](const QString& line, const QUrl& address) {
                       const QString place = line.trimmed();
                       return QUrl(place) == address || place == address.toLocalFile();
                   });
    return repeatsFiles ? QString() : text.isNull() ? QLatin1StringView("") : text;
}

} // namespace rivenfall
