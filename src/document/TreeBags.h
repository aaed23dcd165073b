#pragma once

#include "system/PropertyBag.h"

namespace rivenfall {

class DataNode;
class DataNodes;

/// Turns the trees of a document into bags and back.
class TreeBags {
public:
    /// A bag of @p node and everything below it.
    static PropertyBag SaveToBag(const DataNode& node);

    /// A bag of all nodes of @p collection and everything below them.
    static PropertyBag SaveToBag(const DataNodes& collection);

    /// Replaces the content of @p collection by that of @p bag, without an event for what is new.
    /// Throws PropertyBagError where the bag isn't one of a collection; the collection is then
    /// only good to be thrown away.
    static void LoadFromBag(DataNodes& collection, const PropertyBag& bag);

    /// The bag that @p bag holds under @p name. Throws PropertyBagError where it holds none.
    static PropertyBag ReadBag(const PropertyBag& bag, const QByteArray& name);

private:
    static void LoadFromBag(DataNode& node, const PropertyBag& bag);
};

} // namespace rivenfall
