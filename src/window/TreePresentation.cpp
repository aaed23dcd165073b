#include "app/Application.h"
#include "data/NodeKey.h"
#include "support/Title.h"
#include "window/frmMain.h"

#include <algorithm>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

void ShowState(Node& treeNode, const DataNode& node) {
    treeNode.SetChecked(node.Active());
    treeNode.SetExpanded(node.Expanded());
}

/// Adds a tree node for each node below @p owner, whose own tree node is @p ownerNode.
void BuildChilds(Nodes& tree, Node& ownerNode, const DataNode& owner) {
    if (!owner.Childs()) {
        return;
    }
    for (const std::shared_ptr<DataNode>& node : *owner.Childs()) {
        Node& treeNode = tree.Add(ownerNode, tvwChild, node->Key(), node->Text());
        ShowState(treeNode, *node);
        BuildChilds(tree, treeNode, *node);
    }
}

} // namespace

void Application::Refresh() {
    SetHandleEvents(false);
    ShowFileTitle();
    const int topIndex = CoverTree();
    pobjFormTvwContent->Nodes().Clear();
    BuildTree();
    RestoreScrollPosition(topIndex);
    SelectRememberedNode();
    pobjFormTvwContent->ZOrder(0);
    pobjFormTvwContentFake->SetVisible(true);
    SetHandleEvents(true);
}

/// The document first, the program behind it.
void Application::ShowFileTitle() {
    pobjForm->SetCaption(FileTitle() + u" - "_s + ProgramTitle());
}

/// Puts a copy of the rows in view in front of the tree. Gives the index of the top row, or the
/// number of nodes if none is in view.
int Application::CoverTree() {
    Nodes& cover = pobjFormTvwContentFake->Nodes();
    cover.Clear();
    int topIndex = pobjFormTvwContent->Nodes().Count();
    for (const Node* node : pobjFormTvwContent->RowsInView()) {
        topIndex = std::min(topIndex, node->Index());
        cover.Add(node->Key(), node->Text());
    }
    pobjFormTvwContentFake->ZOrder(0);
    return topIndex;
}

void Application::BuildTree() {
    Nodes& tree = pobjFormTvwContent->Nodes();
    for (const std::shared_ptr<DataNode>& node : *ActiveCollection()) {
        Node& treeNode = tree.Add(node->Key(), node->Text());
        ShowState(treeNode, *node);
        BuildChilds(tree, treeNode, *node);
    }
}

/// Brings the row that was at the top there again: down as far as the tree is expanded, and back
/// up.
void Application::RestoreScrollPosition(int topIndex) {
    Nodes& tree = pobjFormTvwContent->Nodes();
    int last = tree.Count();
    while (last > 0 && !tree.Item(last)->Expanded()) {
        --last;
    }
    for (const int index : {last, topIndex}) {
        if (Node* const node = tree.Item(index)) {
            node->EnsureVisible();
        }
    }
}

void Application::SelectRememberedNode() {
    Nodes& tree = pobjFormTvwContent->Nodes();
    if (tree.Count() == 0) {
        ShowNoSelection();
        return;
    }
    // While a document is being opened the position may still be one in the former tree.
    const int position = SelectedPosition();
    Node& node = *tree.Item(std::min(position, tree.Count()));
    node.EnsureVisible();
    node.SetSelected(true);
    pobjFormTvwContent_NodeClick(*pobjFormTvwContent->SelectedItem());
}

/// Adds a tree node for @p DN, the last of its collection. Its check mark and its state come with
/// the next Refresh.
void Application::AddToTree(DataNode& DN) {
    Nodes& tree = pobjFormTvwContent->Nodes();
    if (tree.Count() == 0) {
        tree.Add(DN.Key(), DN.Text());
    } else if (DN.Index() == 1) {
        tree.Add(DN.Parent()->Parent()->Key(), tvwChild, DN.Key(), DN.Text());
    } else {
        tree.Add(DN.Parent()->Item(DN.Index() - 1)->Key(), tvwNext, DN.Key(), DN.Text());
    }
}

void Application::RemoveFromTree(DataNode& DN) {
    pobjFormTvwContent->Nodes().Remove(DN.Key());
}

void Application::pobjCompilers_Add(DataNode& DN) {
    if (plngContentActive == CompilersContent) {
        AddToTree(DN);
    }
}

void Application::pobjCompilers_Move(DataNode&) {}

void Application::pobjCompilers_Remove(DataNode& DN) {
    if (plngContentActive == CompilersContent) {
        RemoveFromTree(DN);
    }
}

void Application::pobjVariables_Add(DataNode& DN) {
    if (plngContentActive == VariablesContent) {
        AddToTree(DN);
    }
}

void Application::pobjVariables_Remove(DataNode& DN) {
    if (plngContentActive == VariablesContent) {
        RemoveFromTree(DN);
    }
}

} // namespace rivenfall
