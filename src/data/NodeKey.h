#pragma once

#include <QString>

#include <memory>

namespace rivenfall {

class DataNode;
class DataNodes;

/// The key "c" @p first "p" @p second "v" @p third: a node's path of positions from 1 in its tree,
/// 0 for a level that it doesn't reach. A key is good only until the tree's next change.
QString MakeNodeKey(int first, int second, int third);

/// The first number of @p key, which MakeNodeKey built.
int NodeKeyCompiler(const QString& key);

/// The second number of @p key, which MakeNodeKey built.
int NodeKeyParameter(const QString& key);

/// The third number of @p key, which MakeNodeKey built.
int NodeKeyValue(const QString& key);

/// The node that @p key leads to in the tree below @p root, which has built the key.
std::shared_ptr<DataNode> NodeFromKey(const QString& key, const DataNodes& root);

} // namespace rivenfall
