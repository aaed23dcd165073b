#include "run/OutputDecoder.h"

#include <QStringDecoder>

#include <algorithm>
#include <bit>

namespace rivenfall {

qsizetype UnfinishedLength(const QByteArray& bytes) {
    constexpr int continuation = 1;
    constexpr int longest = 4;
    for (qsizetype length = 1; length <= std::min<qsizetype>(bytes.size(), 3); ++length) {
        const auto byte = static_cast<quint8>(bytes[bytes.size() - length]);
        const int size = std::countl_one(byte);
        if (size != continuation) {
            return size > length && size <= longest ? length : 0;
        }
    }
    return 0;
}

QString DecodedOutput(QByteArrayView bytes) {
    // The decoder keeps no state: that of Qt 6.4 loses the byte after an incomplete sequence.
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    return decoder.decode(bytes);
}

} // namespace rivenfall
