#pragma once

#include "system/PropertyBag.h"

namespace rivenfall {

class DataNode;
class DataNodes;

/// Turns the trees of a document into bags and back.
class TreeBags {
public:
    /// Writes @p node and everything below it into the empty @p bag.
    static void SaveToBag(const DataNode& node, PropertyBag& bag);

    /// Writes all nodes of @p collection and everything below them into the empty @p bag.
    static void SaveToBag(const DataNodes& collection, PropertyBag& bag);

    /// Replaces the content of @p collection by that of @p bag, without an event for what is new.
    /// Throws PropertyBagError where the bag isn't one of a collection; the collection is then
    /// only good to be thrown away.
    static void LoadFromBag(DataNodes& collection, const PropertyBag& bag);

    /// The bag that @p bag holds under @p name. Throws PropertyBagError where it holds none.
    static PropertyBag ReadBag(const PropertyBag& bag, QByteArrayView name);

private:
    static void LoadFromBag(DataNode& node, const PropertyBag& bag);
};

} // namespace rivenfall
