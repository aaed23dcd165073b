#include "support/SupportLibrary.h"
#include "support/desktop/DialogOwner.h"

#include <QIcon>
#include <QMessageBox>
#include <QStringList>

namespace rivenfall {

using namespace Qt::StringLiterals;

void SupportLibrary::ShowAbout(const QString& Title, const QString& Icon, const QString& Notice,
                               const std::array<QString, 3>& Lines) {
    constexpr int iconPixels = 64;
    QMessageBox box(DialogOwner());
    box.setWindowTitle(Title);
    box.setIconPixmap(QIcon(Icon + u"/128.png"_s).pixmap(iconPixels));
    QStringList lines(Lines.begin(), Lines.end());
    if (!Notice.isEmpty()) {
        lines += Notice;
    }
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setText(u"<p style=\"white-space: pre\"><b>%1</b>\n%2</p>"_s.arg(
        Title.toHtmlEscaped(), lines.join(u'\n').toHtmlEscaped()));
    box.exec();
}

} // namespace rivenfall
