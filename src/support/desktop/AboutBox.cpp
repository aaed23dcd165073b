#include "support/SupportLibrary.h"
#include "support/desktop/DialogOwner.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

constexpr int IconPixels = 64;

QLabel* PlainLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QLabel* Heading(const QString& text, QWidget* parent) {
    QLabel* label = PlainLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QLabel* Picture(const QString& icon, QWidget* parent) {
    auto* label = new QLabel(parent);
    label->setPixmap(QIcon(icon + u"/128.png"_s).pixmap(IconPixels));
    label->setAlignment(Qt::AlignTop);
    return label;
}

} // namespace

void SupportLibrary::ShowAbout(const QString& Title, const QString& Icon, const QString& Notice,
                               const std::array<QString, 3>& Lines) {
    QDialog box(DialogOwner());
    box.setWindowTitle(Title);
    auto* layout = new QGridLayout(&box);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->setHorizontalSpacing(16);

    int row = 0;
    layout->addWidget(Heading(Title, &box), row++, 1);
    for (const QString& line : Lines) {
        layout->addWidget(PlainLabel(line, &box), row++, 1);
    }
    if (!Notice.isEmpty()) {
        layout->addWidget(PlainLabel(Notice, &box), row++, 1);
    }
    layout->addWidget(Picture(Icon, &box), 0, 0, row, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, &box);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &box, &QDialog::accept);
    layout->addWidget(buttons, row, 0, 1, 2);
    buttons->button(QDialogButtonBox::Ok)->setFocus();
    box.exec();
}

} // namespace rivenfall
