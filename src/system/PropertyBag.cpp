#include "system/PropertyBag.h"

#include <QCborStreamReader>
#include <QCborStreamWriter>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <limits>

namespace rivenfall {

using namespace Qt::StringLiterals;

namespace {

/// A walk over so few entries is as fast as an index.
constexpr size_t EntriesWithoutIndex = 8;

void AppendValue(QCborStreamWriter& writer, const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QString:
        writer.append(value.toString());
        break;
    case QMetaType::QByteArray:
        writer.append(value.toByteArray());
        break;
    case QMetaType::Bool:
        writer.append(value.toBool());
        break;
    default:
        writer.append(value.toInt());
    }
}

/// The bytes of the text or byte string at hand, which stay in the image @p contents. A length that
/// the image can't hold is refused.
QByteArrayView ReadBytes(QCborStreamReader& reader, const QByteArray& contents) {
    if (!reader.isLengthKnown()) {
        throw PropertyBagError{u"a length is missing"_s};
    }
    const qsizetype length = reader.currentStringChunkSize();
    if (length < 0 || length > contents.size() - reader.currentOffset()) {
        throw PropertyBagError{u"the data ends too early"_s};
    }
    // QCborStreamReader::next would take a text that is no UTF-8 for the end of the data. So the
    // bytes are read, and thrown away.
    std::array<char, 4096> passed;
    while (reader.readStringChunk(passed.data(), passed.size()).status == QCborStreamReader::Ok) {
    }
    if (reader.lastError() != QCborError::NoError) {
        throw PropertyBagError{u"the data ends too early"_s};
    }
    return QByteArrayView(contents).sliced(reader.currentOffset() - length, length);
}

/// Reads @p bytes as UTF-8 without taking a mark for the byte order off their front, which is a
/// character of the text here.
QString TextOf(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless |
                                                     QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError()) {
        throw PropertyBagError{u"a text isn't UTF-8"_s};
    }
    return text;
}

int ReadInteger(QCborStreamReader& reader) {
    // A negative integer of CBOR counts from -1 downward, and 0 stands for the lowest of them.
    const bool negative = reader.isNegativeInteger();
    const quint64 distance = negative ? static_cast<quint64>(reader.toNegativeInteger()) - 1
                                      : reader.toUnsignedInteger();
    if (distance > static_cast<quint64>(std::numeric_limits<int>::max())) {
        throw PropertyBagError{u"a number is too large"_s};
    }
    reader.next();
    return negative ? -1 - static_cast<int>(distance) : static_cast<int>(distance);
}

QVariant ReadValue(QCborStreamReader& reader, const QByteArray& contents) {
    switch (reader.type()) {
    case QCborStreamReader::String:
        return TextOf(ReadBytes(reader, contents));
    case QCborStreamReader::ByteArray:
        return ReadBytes(reader, contents).toByteArray();
    case QCborStreamReader::UnsignedInteger:
    case QCborStreamReader::NegativeInteger:
        return ReadInteger(reader);
    default:
        if (reader.isBool()) {
            const bool value = reader.toBool();
            reader.next();
            return value;
        }
        throw PropertyBagError{reader.isInvalid() ? u"the data ends too early"_s
                                                  : u"a value is of an unknown kind"_s};
    }
}

} // namespace

QByteArray PropertyBag::Contents() const {
    QByteArray contents;
    QCborStreamWriter writer(&contents);
    writer.startMap(pobjEntries.size());
    for (const Entry& entry : pobjEntries) {
        writer.appendTextString(entry.Name.constData(), entry.Name.size());
        AppendValue(writer, entry.Value);
    }
    writer.endMap();
    return contents;
}

void PropertyBag::SetContents(const QByteArray& contents) {
    *this = PropertyBag();
    QCborStreamReader reader(contents);
    if (!reader.isMap()) {
        throw PropertyBagError{u"the data isn't a document's"_s};
    }
    if (!reader.isLengthKnown()) {
        throw PropertyBagError{u"a length is missing"_s};
    }
    PropertyBag read;
    read.pobjContents = contents;
    read.ReadEntries(reader);
    *this = std::move(read);
}

void PropertyBag::ReadEntries(QCborStreamReader& reader) {
    pobjEntries.reserve(std::min<size_t>(reader.length(), EntriesWithoutIndex));
    reader.enterContainer();
    while (reader.lastError() == QCborError::NoError && reader.hasNext()) {
        if (!reader.isString()) {
            throw PropertyBagError{u"a name isn't a text"_s};
        }
        const QByteArrayView name = ReadBytes(reader, pobjContents);
        if (!name.isValidUtf8()) {
            throw PropertyBagError{u"a name isn't UTF-8"_s};
        }
        WriteProperty(QByteArray::fromRawData(name.data(), name.size()),
                      ReadValue(reader, pobjContents));
    }
    if (reader.lastError() != QCborError::NoError) {
        throw PropertyBagError{u"the data ends too early"_s};
    }
}

QVariant PropertyBag::ReadProperty(const QByteArray& name, const QVariant& fallback) const {
    const Entry* entry = Find(name);
    return entry ? entry->Value : fallback;
}

PropertyBag PropertyBag::ReadBag(const QByteArray& name) const {
    PropertyBag bag;
    bag.SetContents(Required<QByteArray>(name));
    return bag;
}

void PropertyBag::WriteProperty(const QByteArray& name, const QVariant& value,
                                const QVariant& fallback) {
    if ((fallback.isValid() && value == fallback) || Find(name)) {
        return;
    }
    pobjEntries.push_back({name, value});
    if (pobjEntries.size() <= EntriesWithoutIndex) {
        return;
    }
    if (pobjPositions.isEmpty()) {
        for (size_t position = 0; position + 1 < pobjEntries.size(); ++position) {
            pobjPositions.insert(pobjEntries[position].Name, position);
        }
    }
    pobjPositions.insert(name, pobjEntries.size() - 1);
}

const PropertyBag::Entry* PropertyBag::Find(const QByteArray& name) const {
    if (pobjEntries.size() > EntriesWithoutIndex) {
        const auto found = pobjPositions.constFind(name);
        return found == pobjPositions.constEnd() ? nullptr : &pobjEntries[*found];
    }
    for (const Entry& entry : pobjEntries) {
        if (entry.Name == name) {
            return &entry;
        }
    }
    return nullptr;
}

} // namespace rivenfall
