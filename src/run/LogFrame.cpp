#include "run/LogFrame.h"

#include "system/CurrentDirectory.h"

namespace rivenfall {

namespace {

constexpr qsizetype FrameDashes = 53;

} // namespace

QString LogFrame(const QString& Issue, const QString& Success, bool behindText) {
    const QString lineBreak = QStringLiteral("\r\n");
    const QString dashes(FrameDashes, u'-');
    QString frame;
    if (behindText) {
        frame += lineBreak;
    }
    frame += QStringLiteral("# /") + dashes + lineBreak;
    frame += QStringLiteral("# | ");
    frame += Issue;
    frame += lineBreak;
    if (!Success.isEmpty()) {
        frame += QStringLiteral("# | [") + Success + QStringLiteral("]") + lineBreak;
    }
    frame += QStringLiteral("# \\") + dashes + lineBreak;
    return frame;
}

QString ResultOfStart(bool started, int error) {
    return started ? QStringLiteral("success")
                   : QStringLiteral("error: CreateProcess failed (%1)").arg(error);
}

QString ResultOfChange(const DirectoryChange& change) {
    if (change.Number == 0) {
        return QStringLiteral("success");
    }
    return QStringLiteral("error ") +
           (change.Description.isEmpty() ? QString::number(change.Number) : change.Description);
}

} // namespace rivenfall
