#include "data/NodeKey.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"

namespace rivenfall {

QString MakeNodeKey(int first, int second, int third) {
    return u'c' + QString::number(first) + u'p' + QString::number(second) + u'v' +
           QString::number(third);
}

int NodeKeyCompiler(const QString& key) {
    return QStringView(key).sliced(1, key.indexOf(u'p', 1) - 1).toInt();
}

int NodeKeyParameter(const QString& key) {
    const qsizetype begin = key.indexOf(u'p', 1) + 1;
    return QStringView(key).sliced(begin, key.indexOf(u'v') - begin).toInt();
}

int NodeKeyValue(const QString& key) {
    return QStringView(key).sliced(key.indexOf(u'v') + 1).toInt();
}

std::shared_ptr<DataNode> NodeFromKey(const QString& key, const DataNodes& root) {
    std::shared_ptr<DataNode> node = root.Item(NodeKeyCompiler(key));
    const int second = NodeKeyParameter(key);
    if (second == 0) {
        return node;
    }
    node = node->Childs()->Item(second);
    const int third = NodeKeyValue(key);
    return third == 0 ? node : node->Childs()->Item(third);
}

} // namespace rivenfall
