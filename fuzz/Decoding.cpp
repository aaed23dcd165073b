#include "Fuzz.h"

#include "run/OutputDecoder.h"

#include <algorithm>

namespace rivenfall {

namespace {

struct Row {
    unsigned FirstLow, FirstHigh, SecondLow, SecondHigh;
    size_t Size;
};

/// The well-formed sequences as the table of RFC 3629, section 4, has them.
constexpr Row Rows[] = {
    {0x00, 0x7F, 0, 0, 1},       {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
    {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
    {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};

/// The length of the well-formed sequence at @p place, 0 if there is none.
size_t SequenceAt(const uint8_t* data, size_t size, size_t place) {
    for (const Row& row : Rows) {
        if (data[place] < row.FirstLow || data[place] > row.FirstHigh) {
            continue;
        }
        if (row.Size > size - place) {
            return 0;
        }
        for (size_t next = 1; next < row.Size; ++next) {
            const unsigned byte = data[place + next];
            if (byte < (next == 1 ? row.SecondLow : 0x80) ||
                byte > (next == 1 ? row.SecondHigh : 0xBF)) {
                return 0;
            }
        }
        return row.Size;
    }
    return 0;
}

QString PlainText(const uint8_t* data, size_t size) {
    QString text;
    for (size_t place = 0; place < size;) {
        const size_t length = SequenceAt(data, size, place);
        if (length == 0) {
            text += QChar::ReplacementCharacter;
            ++place;
            continue;
        }
        constexpr unsigned masks[] = {0, 0x7F, 0x1F, 0x0F, 0x07};
        char32_t character = data[place] & masks[length];
        for (size_t next = 1; next < length; ++next) {
            character = character << 6 | (data[place + next] & 0x3FU);
        }
        text += QChar::fromUcs4(character);
        place += length;
    }
    return text;
}

/// The first byte tells how long the chunks are in which the others come, as in a run.
void Compare(const uint8_t* data, size_t size) {
    const size_t chunk = size > 0 ? size_t(data[0]) % 64 + 1 : 1;
    QString text;
    QByteArray unfinished;
    for (size_t place = 1; place < size; place += chunk) {
        unfinished += Input(data + place, std::min(chunk, size - place));
        const qsizetype whole = unfinished.size() - UnfinishedLength(unfinished);
        Demand(unfinished.size() - whole < 4);
        text += DecodedOutput(QByteArrayView(unfinished).first(whole));
        unfinished.remove(0, whole);
    }
    text += DecodedOutput(unfinished);
    Demand(size == 0 || text == PlainText(data + 1, size - 1));
}

} // namespace

} // namespace rivenfall

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    rivenfall::Compare(data, size);
    return 0;
}
