#include "document/TreeBags.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The name of the node at @p position of a collection.
QByteArray ItemName(int position) {
    return QByteArrayLiteral("Item") + QByteArray::number(position);
}

/// The value under @p name, which must be there and of the type @p Type.
template <typename Type>
Type Required(const PropertyBag& bag, const QByteArray& name) {
    const QVariant value = bag.ReadProperty(name);
    if (value.typeId() != qMetaTypeId<Type>()) {
        throw PropertyBagError{
            (value.isValid() ? u"\"%1\" is of the wrong kind"_s : u"\"%1\" is missing"_s)
                .arg(QString::fromUtf8(name))};
    }
    return value.value<Type>();
}

} // namespace

PropertyBag TreeBags::SaveToBag(const DataNode& node) {
    PropertyBag bag;
    bag.WriteProperty("Value", node.Value());
    bag.WriteProperty("Active", node.Active(), true);
    if (MayHoldNodes(node.DataNodeType())) {
        bag.WriteProperty("Childs", SaveToBag(*node.Childs()).Contents());
    }
    return bag;
}

PropertyBag TreeBags::SaveToBag(const DataNodes& collection) {
    PropertyBag bag;
    bag.WriteProperty("Count", collection.Count());
    for (const std::shared_ptr<DataNode>& node : collection) {
        bag.WriteProperty(ItemName(node->Index()), SaveToBag(*node).Contents());
    }
    return bag;
}

void TreeBags::LoadFromBag(DataNodes& collection, const PropertyBag& bag) {
    collection.Clear();
    const int count = Required<int>(bag, "Count");
    if (count < 0) {
        throw PropertyBagError{u"\"Count\" is negative"_s};
    }
    for (int position = 1; position <= count; ++position) {
        const std::shared_ptr<DataNode> node = collection.MakeNode();
        LoadFromBag(*node, ReadBag(bag, ItemName(position)));
        collection.pobjItems.push_back(node);
        // At once: where a later node is broken, the collection deletes its nodes by their numbers.
        node->SetIndex(position);
    }
}

PropertyBag TreeBags::ReadBag(const PropertyBag& bag, const QByteArray& name) {
    PropertyBag inner;
    inner.SetContents(Required<QByteArray>(bag, name));
    return inner;
}

void TreeBags::LoadFromBag(DataNode& node, const PropertyBag& bag) {
    node.pstrValue = Required<QString>(bag, "Value");
    const QVariant active = bag.ReadProperty("Active", true);
    if (active.typeId() != QMetaType::Bool) {
        throw PropertyBagError{u"\"Active\" is of the wrong kind"_s};
    }
    node.pblnActive = active.toBool();
    if (MayHoldNodes(node.DataNodeType())) {
        LoadFromBag(*node.Childs(), ReadBag(bag, "Childs"));
    }
}

} // namespace rivenfall
