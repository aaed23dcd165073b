#include "data/NodeKey.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"

#include <array>
#include <charconv>
#include <utility>

namespace rivenfall {

namespace {

/// A letter and the longest number, with its sign.
constexpr size_t LongestPart = 12;

} // namespace

QString MakeNodeKey(int first, int second, int third) {
    // A rebuild of the tree makes one for every node, so without a text for each of its parts.
    std::array<char, 3 * LongestPart> key;
    char* end = key.data();
    for (const auto& [letter, number] : {std::pair('c', first), {'p', second}, {'v', third}}) {
        *end++ = letter;
        end = std::to_chars(end, key.data() + key.size(), number).ptr;
    }
    return QString::fromLatin1(key.data(), end - key.data());
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
