#include "files/FilePath.h"

#include "files/FileError.h"

#include <QStringDecoder>

#include <filesystem>

namespace rivenfall {

namespace {

using namespace Qt::StringLiterals;

/// Half a character of UTF-16. No file system knows it.
constexpr char16_t NoCharacter = 0xDCFF;

} // namespace

QString PathText(const QByteArray& bytes) {
    // Also the first character of a name may be a byte order mark.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    return bytes.isValidUtf8() ? text : text.replace(QChar::ReplacementCharacter, NoCharacter);
}

QByteArray PathBytes(const QString& path) {
    if (!path.isValidUtf16()) {
        throw FileError{u"its path has bytes that are no UTF-8"_s};
    }
    if (path.contains(QChar::Null)) {
        throw FileErrorOf(EINVAL);
    }
    return path.toUtf8();
}

QString FullPath(const QString& name) {
    std::error_code error;
    const std::filesystem::path directory = std::filesystem::current_path(error);
    return error || name.startsWith(u'/')
               ? name
               : PathText(QByteArray::fromStdString(directory.string())) + u'/' + name;
}

} // namespace rivenfall
