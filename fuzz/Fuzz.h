#pragma once

#include <QByteArray>

#include <cstdlib>

namespace rivenfall {

/// Ends the program where @p holds is False, so that the input is kept and the place is told.
inline void Demand(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// The @p size bytes at @p data without a copy.
inline QByteArray Input(const uint8_t* data, size_t size) {
    return QByteArray::fromRawData(reinterpret_cast<const char*>(data),
                                   static_cast<qsizetype>(size));
}

} // namespace rivenfall
