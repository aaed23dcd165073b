#include "Fuzz.h"

#include "data/DataNode.h"
#include "data/DataNodes.h"
#include "system/PropertyBag.h"

#include <QCborMap>
#include <QCborValue>
#include <QList>

#include <algorithm>

namespace rivenfall {

namespace {

QVariant PlainValue(const QCborValue& value) {
    switch (value.type()) {
    case QCborValue::String:
        return value.toString();
    case QCborValue::ByteArray:
        return value.toByteArray();
    case QCborValue::Integer:
        return static_cast<int>(value.toInteger());
    default:
        Demand(value.isBool());
        return value.toBool();
    }
}

/// What the bag has read must be what an independent reader of CBOR finds.
void CompareBag(const PropertyBag& bag, const QByteArray& input) {
    const QCborValue image = QCborValue::fromCbor(input);
    Demand(image.isMap());
    const QCborMap map = image.toMap();
    QList<QString> names;
    for (const auto [name, value] : map) {
        Demand(name.isString());
        names += name.toString();
    }
    std::sort(names.begin(), names.end());
    // Of a name that stands twice, either may be taken.
    if (std::adjacent_find(names.begin(), names.end()) != names.end()) {
        return;
    }
    for (const auto [name, value] : map) {
        Demand(bag.ReadProperty(name.toString().toUtf8()) == PlainValue(value));
    }
}

QByteArray Saved(const DataNodes& root) {
    return root.SaveToBag().Contents();
}

bool Load(DataNodes& root, const QByteArray& bytes) {
    try {
        PropertyBag bag;
        bag.SetContents(bytes);
        root.LoadFromBag(bag);
        return true;
    } catch (const PropertyBagError&) {
        return false;
    }
}

void Compare(const QByteArray& input) {
    try {
        PropertyBag bag;
        bag.SetContents(input);
        CompareBag(bag, input);
    } catch (const PropertyBagError& error) {
        Demand(!error.Reason.isEmpty());
    }
    // What is read from a saved tree is that tree.
    for (const NodeKind kind : {NodeKind::Compiler, NodeKind::Variable}) {
        DataNodes root, again;
        root.SetDataNodesType(kind);
        again.SetDataNodesType(kind);
        if (Load(root, input)) {
            const QByteArray bytes = Saved(root);
            Demand(Load(again, bytes) && again.Count() == root.Count());
            Demand(Saved(again) == bytes);
        }
    }
}

} // namespace

} // namespace rivenfall

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    rivenfall::Compare(rivenfall::Input(data, size));
    return 0;
}
