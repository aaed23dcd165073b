#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVarLengthArray>
#include <QVariant>

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
/// strings. Names are UTF-8; look-up doesn't depend on their order, but is fastest in it.
class PropertyBag {
public:
    /// The image of everything that the bag holds.
    QByteArray Contents() const;

    /// Replaces what the bag holds by what the image at the front of @p contents holds. Bytes
    /// behind the image are ignored. Throws PropertyBagError for anything but an image, and then
    /// the bag is empty.
    void SetContents(const QByteArray& contents);

    /// The value stored under @p name: a QString, int, bool or QByteArray, as it was stored. Where
    /// there is none it is @p fallback.
    QVariant ReadProperty(QByteArrayView name, const QVariant& fallback = {}) const;

    /// Stores @p value, which is of one of the kinds above, under @p name, which the bag doesn't
    /// hold yet. A value that equals @p fallback isn't stored.
    void WriteProperty(QByteArrayView name, const QVariant& value, const QVariant& fallback = {});

    /// Stores under @p name, as a byte array, the Contents of a bag that @p fill is given empty.
    /// Does what WriteProperty with these Contents does, but moves the bytes only once.
    template <typename Fill>
    void WriteBag(QByteArrayView name, Fill fill) {
        PropertyBag inner = BeginBag(name);
        fill(inner);
        EndBag(inner);
    }

private:
    /// Where one name and its value stand in Encoded. Number holds the value of an integer or
    /// Boolean, the value's place and length that of a text or byte string.
    struct Entry {
        qsizetype NameBegin;
        qsizetype NameLength;
        qsizetype ValueBegin;
        qsizetype ValueLength;
        int MajorType;
        int Number;
    };

    class Reader;

    PropertyBag BeginBag(QByteArrayView name);
    void EndBag(PropertyBag& inner);
    void AppendName(Entry& entry, QByteArrayView name);
    void AppendStringValue(Entry& entry, int majorType, const QByteArray& value);
    QByteArrayView NameOf(const Entry& entry) const;
    QVariant ValueOf(const Entry& entry) const;
    const Entry* Find(QByteArrayView name) const;
    const Entry* FindInIndex(QByteArrayView name) const;

    QByteArray Encoded;
    qsizetype EntriesBegin = 0;
    QVarLengthArray<Entry, 3> Entries;
    /// The entry behind the one found last: names are mostly asked for in their order.
    mutable qsizetype NextEntry = 0;
    mutable QHash<QByteArray, qsizetype> IndexedNames;
    /// How many entries the index knows; a name that stands twice counts twice.
    mutable qsizetype IndexedEntries = 0;
};

} // namespace rivenfall
