#include "controls/DataObject.h"

#include <QMimeData>
#include <QUrl>

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The path of the file that @p address names; empty if it names something else.
QString PathOf(QUrl address) {
    if (address.host() == u"localhost"_s) {
        address.setHost({});
    }
    return address.toLocalFile();
}

} // namespace

DataObject::DataObject(const QMimeData& data) : pobjData(data) {}

bool DataObject::GetFormat(DataObjectFormat Format) const {
    return Format == DataObjectFormat::Text ? !GetData(Format).isNull() : Files().Count() > 0;
}

StringList DataObject::Files() const {
    StringList paths;
    for (const QUrl& address : pobjData.urls()) {
        if (const QString path = PathOf(address); !path.isEmpty()) {
            paths.Add(path, false);
        }
    }
    return paths;
}

QString DataObject::GetData(DataObjectFormat) const {
    // QMimeData::hasText also speaks for a mere list of files.
    if (!pobjData.hasFormat(u"text/plain"_s) &&
        !pobjData.hasFormat(u"text/plain;charset=utf-8"_s)) {
        return {};
    }
    const QString text = pobjData.text();
    const QList<QUrl> addresses = pobjData.urls();
    const QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    const bool repeatsFiles =
        Files().Count() > 0 && lines.size() == addresses.size() &&
        std::equal(lines.begin(), lines.end(), addresses.begin(),
                   [](const QString& line, const QUrl& address) {
                       const QString place = line.trimmed();
                       return QUrl(place) == address || place == PathOf(address);
                   });
    return repeatsFiles ? QString() : text.isNull() ? QLatin1StringView("") : text;
}

} // namespace rivenfall
