#include "system/PropertyBag.h"

#include <QtEndian>

#include <algorithm>
#include <limits>
#include <utility>

namespace rivenfall {

namespace {

// Major types and simple values of CBOR (RFC 8949, sections 3.1 and 3.3).
constexpr int UnsignedInteger = 0;
constexpr int NegativeInteger = 1;
constexpr int ByteString = 2;
constexpr int TextString = 3;
constexpr int Map = 5;
constexpr int SimpleValue = 7;
constexpr quint64 SimpleFalse = 20;
constexpr quint64 SimpleTrue = 21;

/// Below this number of entries a walk is faster than an index.
constexpr qsizetype EntriesWorthAnIndex = 8;

/// The longest head of a data item: its first byte and an argument of eight bytes.
constexpr qsizetype LongestHead = 9;

using HeadBytes = QVarLengthArray<char, LongestHead>;

HeadBytes HeadOf(int majorType, quint64 argument) {
    HeadBytes bytes;
    const auto first = static_cast<quint8>(majorType << 5);
    if (argument < 24) {
        bytes.append(static_cast<char>(first | argument));
        return bytes;
    }
    const int sizeCode = argument <= 0xFF         ? 0
                         : argument <= 0xFFFF     ? 1
                         : argument <= 0xFFFFFFFF ? 2
                                                  : 3;
    const quint64 bigEndian = qToBigEndian(argument);
    const int size = 1 << sizeCode;
    bytes.append(static_cast<char>(first | (24 + sizeCode)));
    bytes.append(reinterpret_cast<const char*>(&bigEndian) + (8 - size), size);
    return bytes;
}

/// What @p value holds, which is of the type @p Type, without a copy.
template <typename Type>
const Type& HeldBy(const QVariant& value) {
    return *static_cast<const Type*>(value.constData());
}

void AppendString(QByteArray& bytes, int majorType, QByteArrayView content) {
    bytes.append(HeadOf(majorType, static_cast<quint64>(content.size())));
    bytes.append(content);
}

} // namespace

/// Walks over an image from its front and checks every length against what is there.
class PropertyBag::Reader {
public:
    explicit Reader(const QByteArray& bytes) : Bytes(bytes) {}

    qsizetype Position() const { return Next; }

    quint64 ReadMapHead() {
        const Head head = ReadHead();
        if (head.MajorType != Map) {
            throw PropertyBagError{QStringLiteral("the data isn't a document's")};
        }
        return head.Argument;
    }

    Entry ReadEntry() {
        Entry entry = {};
        const Head name = ReadHead();
        if (name.MajorType != TextString) {
            throw PropertyBagError{QStringLiteral("a name isn't a text")};
        }
        entry.NameLength = LengthOf(name);
        entry.NameBegin = Skip(entry.NameLength);
        ReadValue(entry);
        return entry;
    }

private:
    struct Head {
        int MajorType;
        quint64 Argument;
    };

    Head ReadHead() {
        const auto first = static_cast<quint8>(Bytes[Skip(1)]);
        const int majorType = first >> 5;
        const int code = first & 0x1F;
        if (code < 24) {
            return {majorType, static_cast<quint64>(code)};
        }
        if (code > 27) {
            throw PropertyBagError{QStringLiteral("a length is missing")};
        }
        const int size = 1 << (code - 24);
        quint64 argument = 0;
        for (qsizetype position = Skip(size); position < Next; ++position) {
            argument = argument << 8 | static_cast<quint8>(Bytes[position]);
        }
        return {majorType, argument};
    }

    void ReadValue(Entry& entry) {
        const Head head = ReadHead();
        entry.MajorType = head.MajorType;
        switch (head.MajorType) {
        case UnsignedInteger:
        case NegativeInteger:
            if (head.Argument > static_cast<quint64>(std::numeric_limits<int>::max())) {
                throw PropertyBagError{QStringLiteral("a number is too large")};
            }
            entry.Number = static_cast<int>(head.Argument);
            entry.Number = head.MajorType == NegativeInteger ? -1 - entry.Number : entry.Number;
            break;
        case ByteString:
        case TextString:
            entry.ValueLength = LengthOf(head);
            entry.ValueBegin = Skip(entry.ValueLength);
            if (head.MajorType == TextString &&
                !QByteArrayView(Bytes).sliced(entry.ValueBegin, entry.ValueLength).isValidUtf8()) {
                throw PropertyBagError{QStringLiteral("a text isn't UTF-8")};
            }
            break;
        case SimpleValue:
            if (head.Argument == SimpleFalse || head.Argument == SimpleTrue) {
                entry.Number = head.Argument == SimpleTrue;
                break;
            }
            [[fallthrough]];
        default:
            throw PropertyBagError{QStringLiteral("a value is of an unknown kind")};
        }
    }

    qsizetype LengthOf(const Head& head) const {
        if (head.Argument > static_cast<quint64>(Bytes.size() - Next)) {
            throw PropertyBagError{QStringLiteral("the data ends too early")};
        }
        return static_cast<qsizetype>(head.Argument);
    }

    /// Passes over @p length bytes and gives the position of the first of them.
    qsizetype Skip(qsizetype length) {
        if (length > Bytes.size() - Next) {
            throw PropertyBagError{QStringLiteral("the data ends too early")};
        }
        const qsizetype begin = Next;
        Next += length;
        return begin;
    }

    const QByteArray& Bytes;
    qsizetype Next = 0;
};

QByteArray PropertyBag::Contents() const {
    QByteArray contents;
    contents.reserve(LongestHead + Encoded.size() - EntriesBegin);
    contents.append(HeadOf(Map, static_cast<quint64>(Entries.size())));
    contents.append(QByteArrayView(Encoded).sliced(EntriesBegin));
    return contents;
}

void PropertyBag::SetContents(const QByteArray& contents) {
    *this = PropertyBag();
    PropertyBag read;
    Reader reader(contents);
    const quint64 count = reader.ReadMapHead();
    read.EntriesBegin = reader.Position();
    for (quint64 number = 0; number < count; ++number) {
        read.Entries.append(reader.ReadEntry());
    }
    read.Encoded = contents;
    read.Encoded.truncate(reader.Position());
    *this = std::move(read);
}

QVariant PropertyBag::ReadProperty(QByteArrayView name, const QVariant& fallback) const {
    const Entry* entry = Find(name);
    return entry ? ValueOf(*entry) : fallback;
}

void PropertyBag::WriteProperty(QByteArrayView name, const QVariant& value,
                                const QVariant& fallback) {
    if (fallback.isValid() && value == fallback) {
        return;
    }
    Entry entry = {};
    AppendName(entry, name);
    switch (value.typeId()) {
    case QMetaType::QString:
        AppendStringValue(entry, TextString, HeldBy<QString>(value).toUtf8());
        break;
    case QMetaType::QByteArray:
        AppendStringValue(entry, ByteString, HeldBy<QByteArray>(value));
        break;
    case QMetaType::Bool:
        entry.MajorType = SimpleValue;
        entry.Number = value.toBool();
        Encoded.append(HeadOf(SimpleValue, value.toBool() ? SimpleTrue : SimpleFalse));
        break;
    default:
        entry.Number = value.toInt();
        entry.MajorType = entry.Number < 0 ? NegativeInteger : UnsignedInteger;
        Encoded.append(
            HeadOf(entry.MajorType,
                   static_cast<quint64>(entry.Number < 0 ? -1 - entry.Number : entry.Number)));
    }
    Entries.append(entry);
}

/// The bag to be filled. It writes into this bag's bytes, behind room for its heads.
PropertyBag PropertyBag::BeginBag(QByteArrayView name) {
    Entry entry = {};
    AppendName(entry, name);
    entry.MajorType = ByteString;
    entry.ValueBegin = Encoded.size();
    Entries.append(entry);

    PropertyBag inner;
    inner.EntriesBegin = Encoded.size() + 2 * LongestHead;
    inner.Encoded = std::move(Encoded);
    inner.Encoded.resize(inner.EntriesBegin);
    return inner;
}

/// Takes the bytes back from @p inner and puts its heads where there is room for them.
void PropertyBag::EndBag(PropertyBag& inner) {
    Entry& entry = Entries.last();
    const HeadBytes mapHead = HeadOf(Map, static_cast<quint64>(inner.Entries.size()));
    entry.ValueLength = mapHead.size() + inner.Encoded.size() - inner.EntriesBegin;
    const HeadBytes stringHead = HeadOf(ByteString, static_cast<quint64>(entry.ValueLength));

    Encoded = std::move(inner.Encoded);
    char* place = Encoded.data() + entry.ValueBegin;
    place = std::copy(stringHead.begin(), stringHead.end(), place);
    std::copy(mapHead.begin(), mapHead.end(), place);
    entry.ValueBegin += stringHead.size();
    const qsizetype headsEnd = entry.ValueBegin + mapHead.size();
    Encoded.remove(headsEnd, inner.EntriesBegin - headsEnd);
}

void PropertyBag::AppendName(Entry& entry, QByteArrayView name) {
    AppendString(Encoded, TextString, name);
    entry.NameLength = name.size();
    entry.NameBegin = Encoded.size() - name.size();
}

void PropertyBag::AppendStringValue(Entry& entry, int majorType, const QByteArray& value) {
    AppendString(Encoded, majorType, value);
    entry.MajorType = majorType;
    entry.ValueLength = value.size();
    entry.ValueBegin = Encoded.size() - value.size();
}

QByteArrayView PropertyBag::NameOf(const Entry& entry) const {
    return QByteArrayView(Encoded).sliced(entry.NameBegin, entry.NameLength);
}

QVariant PropertyBag::ValueOf(const Entry& entry) const {
    const QByteArrayView bytes =
        QByteArrayView(Encoded).sliced(entry.ValueBegin, entry.ValueLength);
    switch (entry.MajorType) {
    case TextString:
        return QString::fromUtf8(bytes);
    case ByteString:
        return bytes.toByteArray();
    case SimpleValue:
        return entry.Number != 0;
    default:
        return entry.Number;
    }
}

const PropertyBag::Entry* PropertyBag::Find(QByteArrayView name) const {
    if (NextEntry < Entries.size() && NameOf(Entries[NextEntry]) == name) {
        return &Entries[NextEntry++];
    }
    if (Entries.size() > EntriesWorthAnIndex) {
        return FindInIndex(name);
    }
    for (const Entry& entry : Entries) {
        if (NameOf(entry) == name) {
            return &entry;
        }
    }
    return nullptr;
}

const PropertyBag::Entry* PropertyBag::FindInIndex(QByteArrayView name) const {
    if (IndexedEntries != Entries.size()) {
        IndexedEntries = Entries.size();
        IndexedNames.clear();
        IndexedNames.reserve(Entries.size());
        for (qsizetype position = Entries.size() - 1; position >= 0; --position) {
            IndexedNames.insert(NameOf(Entries[position]).toByteArray(), position);
        }
    }
    const auto found = IndexedNames.constFind(name.toByteArray());
    return found == IndexedNames.constEnd() ? nullptr : &Entries[*found];
}

} // namespace rivenfall
