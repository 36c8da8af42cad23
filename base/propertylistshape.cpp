// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/propertylistshape.h"

#include <QXmlStreamReader>

namespace luma {

namespace {

constexpr int maxDepth = 100;
constexpr int maxValues = 1'000'000;
constexpr quint64 trailerSize = 32;

// Walks the references of a binary property list. The layout: a header, the objects, a table of their offsets,
// and a trailer with the widths of offsets and references, the number of objects, the top object and the
// table's offset.
class BinaryWalk final
{
public:
    explicit BinaryWalk(const QByteArray& bytes) : m_bytes(bytes) {}

    bool isReadable()
    {
        if (size() < trailerSize + 8)
            return false;
        const quint64 trailer = size() - trailerSize;
        m_offsetWidth = number(trailer + 6, 1);
        m_referenceWidth = number(trailer + 7, 1);
        m_objectCount = number(trailer + 8, 8);
        m_table = number(trailer + 24, 8);
        const bool sane = m_offsetWidth >= 1 && m_offsetWidth <= 8 && m_referenceWidth >= 1 &&
                          m_referenceWidth <= 8 && m_objectCount <= size() && m_table <= trailer &&
                          m_objectCount * m_offsetWidth <= trailer - m_table;
        return sane && visit(number(trailer + 16, 8), 0);
    }

private:
    [[nodiscard]] quint64 size() const { return static_cast<quint64>(m_bytes.size()); }

    [[nodiscard]] bool holds(quint64 offset, quint64 width) const
    {
        return width <= size() && offset <= size() - width;
    }

    // Big-endian. The caller has checked that the bytes exist.
    [[nodiscard]] quint64 number(quint64 offset, quint64 width) const
    {
        quint64 value = 0;
        for (quint64 i = 0; i < width; ++i)
            value = value << 8U | static_cast<unsigned char>(m_bytes[static_cast<qsizetype>(offset + i)]);
        return value;
    }

    bool visit(quint64 object, int depth)
    {
        if (object >= m_objectCount || depth > maxDepth || ++m_visited > maxValues)
            return false;
        quint64 offset = number(m_table + object * m_offsetWidth, m_offsetWidth);
        if (!holds(offset, 1))
            return false;
        const quint64 marker = number(offset++, 1);
        const quint64 kind = marker >> 4U;
        if (kind != 0xA && kind != 0xC && kind != 0xD)
            return true;
        quint64 count = marker & 0xFU;
        if (count == 0xF && !readLongCount(offset, count))
            return false;
        if (kind == 0xD)
            count *= 2;
        if (count > size() || !holds(offset, count * m_referenceWidth))
            return false;
        for (quint64 i = 0; i < count; ++i) {
            if (!visit(number(offset + i * m_referenceWidth, m_referenceWidth), depth + 1))
                return false;
        }
        return true;
    }

    // A count of 15 or more follows as an integer object: a marker with the width as a power of two, then the
    // bytes.
    bool readLongCount(quint64& offset, quint64& count) const
    {
        if (!holds(offset, 1))
            return false;
        const quint64 marker = number(offset, 1);
        const quint64 width = quint64{1} << (marker & 0xFU);
        if (marker >> 4U != 1 || width > 8 || !holds(offset + 1, width))
            return false;
        count = number(offset + 1, width);
        offset += 1 + width;
        return count <= size();
    }

    const QByteArray& m_bytes;
    quint64 m_offsetWidth = 0;
    quint64 m_referenceWidth = 0;
    quint64 m_objectCount = 0;
    quint64 m_table = 0;
    int m_visited = 0;
};

bool isReadableXml(const QByteArray& bytes)
{
    QXmlStreamReader reader(bytes);
    int depth = 0;
    int values = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            if (depth == 0 && reader.name() != QLatin1StringView("plist"))
                return false;
            if (++depth > maxDepth || ++values > maxValues)
                return false;
        } else if (token == QXmlStreamReader::EndElement) {
            --depth;
        }
    }
    return !reader.hasError();
}

} // namespace

bool hasReadableShape(const QByteArray& bytes)
{
    return bytes.startsWith("bplist0") ? BinaryWalk(bytes).isReadable() : isReadableXml(bytes);
}

} // namespace luma
