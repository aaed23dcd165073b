#pragma once

#include <QStyledItemDelegate>

namespace rivenfall {

/// Draws the rows of a tree and, unlike its base, leaves their check boxes to the tree.
class TreeRowDelegate : public QStyledItemDelegate {
public:
    /// Where the check box of the row at @p index is, whose place and widget @p option tells.
    QRect CheckBox(QStyleOptionViewItem option, const QModelIndex& index) const;

    /// What the row of a node with the text @p value shows.
    QString displayText(const QVariant& value, const QLocale& locale) const override;

    /// High enough that the check boxes of neighbouring rows don't touch.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
};

} // namespace rivenfall
