#include "Fuzz.h"

#include "system/CommandLine.h"

namespace rivenfall {

namespace {

/// The input is a list of items with a control character between them, which are to come back from
/// their command line.
void Compare(const QByteArray& input) {
    constexpr char16_t between = 0x1F;
    const QStringList items = QString::fromUtf8(input).split(QChar(between));
    Demand(SplitCommandLine(JoinCommandLine(items)) == items);
}

} // namespace

} // namespace rivenfall

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    rivenfall::Compare(rivenfall::Input(data, size));
    return 0;
}
