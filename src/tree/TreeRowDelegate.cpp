#include "tree/TreeRowDelegate.h"

#include "tree/RowText.h"

#include <QPainter>
#include <QWidget>

namespace rivenfall {

QRect TreeRowDelegate::CheckBox(QStyleOptionViewItem option, const QModelIndex& index) const {
    initStyleOption(&option, index);
    return option.widget->style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option,
                                                  option.widget);
}

QString TreeRowDelegate::displayText(const QVariant& value, const QLocale&) const {
    // An option keeps its dash in front where the layout runs from right to left.
    return u'\u2066' + RowText(value.toString());
}

QSize TreeRowDelegate::sizeHint(const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 2);
}

void TreeRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    QStyledItemDelegate::paint(painter, option, index);
    // Some styles draw an outline that vanishes on dark and on selected rows.
    painter->save();
    QColor outline = option.palette.color(QPalette::Text);
    outline.setAlphaF(0.5F);
    painter->setPen(outline);
    painter->drawRect(CheckBox(option, index).adjusted(0, 0, -1, -1));
    // Most of them show a selected row alike with and without the keyboard.
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        painter->setPen(option.palette.color(QPalette::HighlightedText));
        painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
    }
    painter->restore();
}

bool TreeRowDelegate::editorEvent(QEvent*, QAbstractItemModel*, const QStyleOptionViewItem&,
                                  const QModelIndex&) {
    return false;
}

} // namespace rivenfall
