#include "Fuzz.h"

#include "run/OutputDecoder.h"

#include <algorithm>

namespace rivenfall {

namespace {

/// The first byte tells how long the chunks are in which the others come, as in a run. They are to
/// become what all at once becomes.
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
    // Behind a letter nothing is taken for a byte order mark.
    Demand(size == 0 || text == QString::fromUtf8("x" + Input(data + 1, size - 1)).sliced(1));
}

} // namespace

} // namespace rivenfall

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    rivenfall::Compare(data, size);
    return 0;
}
