#include "BareTree.h"

#include "Sample.h"

#include <QTreeWidget>

namespace rivenfall {

void FillBareTree(QTreeWidget& tree, int count) {
    QList<QTreeWidgetItem*> top;
    QTreeWidgetItem* level[] = {nullptr, nullptr, nullptr, nullptr};
    VisitSample(count, [&](int depth, const QString& text, bool active) {
        auto* item = new QTreeWidgetItem(level[depth - 1]);
        item->setText(0, text);
        item->setCheckState(0, active ? Qt::Checked : Qt::Unchecked);
        level[depth] = item;
        if (depth == 1) {
            top += item;
        }
    });
    tree.insertTopLevelItems(0, top);
    tree.expandAll();
}

} // namespace rivenfall
