// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/propertylist.h"

#include "base/propertylistshape.h"
#include "base/usertext.h"

#include <QDateTime>

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace luma {

namespace {

constexpr qsizetype maxSize = qsizetype{64} << 20U;
// Dates in a property list count from 2001-01-01T00:00:00Z.
constexpr qint64 dateEpoch = 978'307'200;

struct NodeDeleter
{
    void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

struct Release
{
    void operator()(void* memory) const { std::free(memory); }
};
using Text = std::unique_ptr<char, Release>;

// The library takes C strings, which a NUL would end.
QByteArray utf8(const QString& string)
{
    return QString(string).remove(QChar(u'\0')).toUtf8();
}

Node nodeOf(const QVariant& value);

Node arrayOf(const QVariantList& list)
{
    Node array(plist_new_array());
    for (const QVariant& entry : list) {
        Node node = nodeOf(entry);
        if (!node)
            return {};
        plist_array_append_item(array.get(), node.release());
    }
    return array;
}

Node dictionaryOf(const QVariantMap& map)
{
    Node dictionary(plist_new_dict());
    for (auto entry = map.begin(); entry != map.end(); ++entry) {
        Node node = nodeOf(entry.value());
        if (!node)
            return {};
        plist_dict_set_item(dictionary.get(), utf8(entry.key()).constData(), node.release());
    }
    return dictionary;
}

Node dateOf(const QDateTime& date)
{
    const qint64 milliseconds = date.toMSecsSinceEpoch() - dateEpoch * 1000;
    return Node(plist_new_date(static_cast<std::int32_t>(milliseconds / 1000),
                               static_cast<std::int32_t>(milliseconds % 1000 * 1000)));
}

Node nodeOf(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return Node(plist_new_string(utf8(value.toString()).constData()));
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return Node(plist_new_uint(static_cast<std::uint64_t>(value.toLongLong())));
    case QMetaType::Bool:
        return Node(plist_new_bool(value.toBool() ? 1 : 0));
    case QMetaType::Double:
        return Node(plist_new_real(value.toDouble()));
    case QMetaType::QDateTime:
        return dateOf(value.toDateTime());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return Node(plist_new_data(bytes.constData(), static_cast<std::uint64_t>(bytes.size())));
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList:
        return arrayOf(value.toList());
    case QMetaType::QVariantMap:
        return dictionaryOf(value.toMap());
    default:
        return {};
    }
}

QVariant valueOf(plist_t node);

QVariant listIn(plist_t node)
{
    QVariantList list;
    const std::uint32_t count = plist_array_get_size(node);
    list.reserve(static_cast<qsizetype>(count));
    for (std::uint32_t i = 0; i < count; ++i)
        list += valueOf(plist_array_get_item(node, i));
    return list;
}

QVariant mapIn(plist_t node)
{
    QVariantMap map;
    plist_dict_iter rawPosition = nullptr;
    plist_dict_new_iter(node, &rawPosition);
    const std::unique_ptr<void, Release> position(rawPosition);
    for (;;) {
        char* rawKey = nullptr;
        plist_t entry = nullptr;
        plist_dict_next_item(node, rawPosition, &rawKey, &entry);
        const Text key(rawKey);
        if (!entry)
            return map;
        if (key)
            map.insert(QString::fromUtf8(key.get()), valueOf(entry));
    }
}

QVariant stringIn(plist_t node)
{
    char* raw = nullptr;
    plist_get_string_val(node, &raw);
    const Text text(raw);
    return text ? QString::fromUtf8(text.get()) : QString();
}

QVariant dataIn(plist_t node)
{
    char* raw = nullptr;
    std::uint64_t length = 0;
    plist_get_data_val(node, &raw, &length);
    const Text bytes(raw);
    return bytes ? QByteArray(bytes.get(), static_cast<qsizetype>(length)) : QByteArray();
}

QVariant dateIn(plist_t node)
{
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return QDateTime::fromMSecsSinceEpoch((dateEpoch + seconds) * 1000 + microseconds / 1000, Qt::UTC);
}

QVariant numberIn(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t truth = 0;
        plist_get_bool_val(node, &truth);
        return truth != 0;
    }
    case PLIST_UINT: {
        std::uint64_t number = 0;
        plist_get_uint_val(node, &number);
        return static_cast<qlonglong>(number);
    }
    default: {
        double number = 0;
        plist_get_real_val(node, &number);
        return number;
    }
    }
}

QVariant valueOf(plist_t node)
{
    switch (plist_get_node_type(node)) {
    case PLIST_DICT:
        return mapIn(node);
    case PLIST_ARRAY:
        return listIn(node);
    case PLIST_STRING:
        return stringIn(node);
    case PLIST_DATA:
        return dataIn(node);
    case PLIST_DATE:
        return dateIn(node);
    case PLIST_BOOLEAN:
    case PLIST_UINT:
    case PLIST_REAL:
        return numberIn(node);
    default:
        return {};
    }
}

} // namespace

Result<QByteArray> writePropertyList(const QVariant& value, PropertyListFormat format)
{
    const Node node = nodeOf(value);
    if (!node)
        return Error{
            userText(QT_TRANSLATE_NOOP("luma::Engines", "A value cannot be stored in a property list"))};
    char* raw = nullptr;
    std::uint32_t length = 0;
    if (format == PropertyListFormat::Binary)
        plist_to_bin(node.get(), &raw, &length);
    else
        plist_to_xml(node.get(), &raw, &length);
    const Text bytes(raw);
    if (!bytes)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "Out of memory"))};
    return QByteArray(bytes.get(), static_cast<qsizetype>(length));
}

Result<QVariant> readPropertyList(const QByteArray& bytes)
{
    if (bytes.size() > maxSize || !hasReadableShape(bytes))
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "Not a readable property list"))};
    plist_t raw = nullptr;
    const auto length = static_cast<std::uint32_t>(bytes.size());
    if (bytes.startsWith("bplist0"))
        plist_from_bin(bytes.constData(), length, &raw);
    else
        plist_from_xml(bytes.constData(), length, &raw);
    const Node node(raw);
    if (!node)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "Not a readable property list"))};
    return valueOf(node.get());
}

} // namespace luma
