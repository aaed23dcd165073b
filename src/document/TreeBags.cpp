#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "system/PropertyBag.h"

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// The name of the node at @p position of a collection.
QByteArray ItemName(int position) {
    return QByteArrayLiteral("Item") + QByteArray::number(position);
}

} // namespace

PropertyBag DataNode::SaveToBag() const {
    PropertyBag bag;
    bag.WriteProperty("Value", pstrValue);
    bag.WriteProperty("Active", pblnActive, true);
    if (pobjChilds) {
        bag.WriteProperty("Childs", pobjChilds->SaveToBag().Contents());
    }
    return bag;
}

void DataNode::LoadFromBag(const PropertyBag& bag) {
    pstrValue = bag.Required<QString>("Value");
    pblnActive = bag.Required<bool>("Active", true);
    if (pobjChilds) {
        pobjChilds->LoadFromBag(bag.ReadBag("Childs"));
    }
}

PropertyBag DataNodes::SaveToBag() const {
    PropertyBag bag;
    bag.WriteProperty("Count", Count());
    for (const std::shared_ptr<DataNode>& node : pobjItems) {
        bag.WriteProperty(ItemName(node->Index()), node->SaveToBag().Contents());
    }
    return bag;
}

void DataNodes::LoadFromBag(const PropertyBag& bag) {
    Clear();
    const int count = bag.Required<int>("Count");
    if (count < 0) {
        throw PropertyBagError{u"\"Count\" is negative"_s};
    }
    for (int position = 1; position <= count; ++position) {
        const std::shared_ptr<DataNode> node = MakeNode();
        node->LoadFromBag(bag.ReadBag(ItemName(position)));
        pobjItems.push_back(node);
        // At once: where a later node is broken, the collection deletes its nodes by their numbers.
        node->SetIndex(position);
    }
}

} // namespace rivenfall
