#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVariant>

#include <vector>

class QCborStreamReader;

namespace rivenfall {

/// Thrown when bytes are no image of a bag, or when a bag lacks what is asked of it.
struct PropertyBagError {
    /// What is wrong, a phrase that can follow a colon.
    QString Reason;
};

/// Named values that can be turned into bytes and back.
///
/// The image is one data item of CBOR (RFC 8949): a map of definite length with text-string keys
/// in the order of writing, whose values are text strings, 32-bit integers, Booleans or byte
/// strings. Names are UTF-8; look-up doesn't depend on their order.
class PropertyBag {
public:
    /// The image of everything that the bag holds.
    QByteArray Contents() const;

    /// Replaces what the bag holds by what the image at the front of @p contents holds. Bytes
    /// behind the image are ignored, and of two values under one name the first counts. Throws
    /// PropertyBagError for anything but an image, and then the bag is empty.
    void SetContents(const QByteArray& contents);

    /// The value stored under @p name: a QString, int, bool or QByteArray, as it was stored. Where
    /// there is none it is @p fallback.
    QVariant ReadProperty(const QByteArray& name, const QVariant& fallback = {}) const;

    /// The same for what must be of the type @p Type, and there if it has no @p fallback. Throws
    /// PropertyBagError where it isn't.
    template <typename Type>
    Type Required(const QByteArray& name, const QVariant& fallback = {}) const {
        const QVariant value = ReadProperty(name, fallback);
        if (value.typeId() != qMetaTypeId<Type>()) {
            throw PropertyBagError{(value.isValid() ? QStringLiteral("\"%1\" is of the wrong kind")
                                                    : QStringLiteral("\"%1\" is missing"))
                                       .arg(QString::fromUtf8(name))};
        }
        return value.value<Type>();
    }

    /// The bag whose image is stored under @p name. Throws PropertyBagError where there is none.
    PropertyBag ReadBag(const QByteArray& name) const;

    /// Stores @p value, which is of one of the kinds above, under @p name, unless the bag holds it
    /// already. A value that equals @p fallback isn't stored.
    void WriteProperty(const QByteArray& name, const QVariant& value,
                       const QVariant& fallback = {});

private:
    struct Entry {
        QByteArray Name;
        QVariant Value;
    };

    void ReadEntries(QCborStreamReader& reader);
    const Entry* Find(const QByteArray& name) const;

    /// What was read. The names of its entries stand in it: a bag of a node takes no memory for
    /// them.
    QByteArray pobjContents;
    std::vector<Entry> pobjEntries;
    /// Where each name stands in a bag of many entries; a short one is searched from its front.
    QHash<QByteArray, size_t> pobjPositions;
};

} // namespace rivenfall
