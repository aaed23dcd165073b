#pragma once

#include <QAbstractItemModel>

namespace rivenfall {

class Node;

/// Presents the nodes of a tree to Qt's item views: one column with text and check box.
///
/// The model never tells of single changes of structure. Between BeginChanges and EndChanges the
/// nodes change as they like, and nobody may read them through the model.
class TreeModel : public QAbstractItemModel {
    Q_OBJECT

public:
    /// Presents what is below @p root, which outlives the model's use.
    explicit TreeModel(Node& root);

    /// True between BeginChanges and EndChanges.
    bool Changing() const { return pblnChanging; }
    void BeginChanges();
    void EndChanges();

    /// Tells the views that a node's own content changed.
    void NodeChanged(const Node& node);

    /// The index of @p node, which is one of this model's.
    QModelIndex IndexOf(const Node& node) const;

    /// The node at an index of a TreeModel, or null for an index that is not valid.
    static Node* NodeAt(const QModelIndex& index);

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    const Node& NodeOrRoot(const QModelIndex& index) const;

    Node& pobjRoot;
    bool pblnChanging = false;
};

} // namespace rivenfall
