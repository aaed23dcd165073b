#include "tree/TreeView.h"

#include "tree/TreeRows.h"

namespace rivenfall {

TreeView::TreeView(QWidget* container) : Control(new TreeRows(container)) {
    connect(Rows(), &TreeRows::BranchClosed, this, &TreeView::Collapse);
    connect(Rows(), &TreeRows::BranchOpened, this, &TreeView::Expand);
    connect(Rows(), &TreeRows::CheckChanged, this, &TreeView::NodeCheck);
    connect(Rows(), &TreeRows::RowChosen, this, &TreeView::NodeClick);
}

Nodes& TreeView::Nodes() const {
    return Rows()->Content();
}

Node* TreeView::SelectedItem() const {
    return Rows()->Selected();
}

std::vector<Node*> TreeView::RowsInView() const {
    return Rows()->RowsInView();
}

void TreeView::SetReachable(bool reachable) {
    Rows()->SetReachable(reachable);
}

TreeRows* TreeView::Rows() const {
    return static_cast<TreeRows*>(Widget());
}

} // namespace rivenfall
