#include "run/LogFrame.h"

#include "system/ErrorReason.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype FrameDashes = 53;

} // namespace

QString LogFrame(const QString& Issue, const QString& Success, bool behindText,
                 const QString& lineBreak) {
    const QString dashes(FrameDashes, u'-');
    QString frame;
    if (behindText) {
        frame += lineBreak;
    }
    frame += u"# /"_s + dashes + lineBreak;
    frame += u"# | "_s;
    frame += Issue;
    frame += lineBreak;
    if (!Success.isEmpty()) {
        frame += u"# | ["_s + Success + u"]"_s + lineBreak;
    }
    frame += u"# \\"_s + dashes + lineBreak;
    return frame;
}

QString ResultOfStart(bool started, int error) {
    return started ? u"success"_s : u"error: CreateProcess failed (%1)"_s.arg(error);
}

QString ResultOfChange(int error) {
    return error == 0 ? u"success"_s : u"error "_s + ReasonOf(error);
}

} // namespace rivenfall
