#include "run/LogFrame.h"

#include "system/CurrentDirectory.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype FrameDashes = 53;

} // namespace

QString LogFrame(const QString& Issue, const QString& Success, bool behindText) {
    const QString lineBreak = u"\r\n"_s;
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

QString ResultOfChange(const DirectoryChange& change) {
    if (change.Number == 0) {
        return u"success"_s;
    }
    return u"error "_s +
           (change.Description.isEmpty() ? QString::number(change.Number) : change.Description);
}

} // namespace rivenfall
