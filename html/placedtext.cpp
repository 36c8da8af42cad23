// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/placedtext.h"

#include <QStringDecoder>

#include <array>

namespace luma {

namespace {

/// Decodes byte by byte, to know which bytes a character comes from.
class PlacedDecoder final
{
public:
    PlacedDecoder(std::string_view bytes, const Encoding& encoding)
        : m_bytes(bytes),
          m_decoder(encoding.codecName(), QStringConverter::Flag::ConvertInitialBom),
          m_holdsAscii(encoding.holdsAscii()),
          m_canSwitch(encoding.canSwitch())
    {}

    PlacedText run()
    {
        for (std::size_t i = 0; i < m_bytes.size(); ++i) {
            std::array<QChar, 64> buffer;
            const QChar* const end =
                m_decoder.appendToBuffer(buffer.data(), QByteArrayView(m_bytes.data() + i, 1));
            m_pending.append(buffer.data(), end - buffer.data());
            if (!m_pending.isEmpty() && !m_pending.back().isHighSurrogate())
                take(i);
        }
        // Bytes that only switch between character sets are no character.
        if (m_begin < m_bytes.size() && !m_canSwitch) {
            m_pending = QChar(QChar::ReplacementCharacter);
            take(m_bytes.size() - 1);
        }
        m_result.places.push_back(static_cast<std::uint32_t>(m_bytes.size()));
        return std::move(m_result);
    }

private:
    // A character that can't be read is often told only with the next one, which has a byte of its own.
    void take(std::size_t last)
    {
        m_result.text += m_pending.toStdString();
        m_result.places.resize(m_result.text.size(), static_cast<std::uint32_t>(m_begin));
        if (m_holdsAscii && m_result.text.back() == m_bytes[last])
            m_result.places.back() = static_cast<std::uint32_t>(last);
        m_begin = last + 1;
        m_pending.clear();
    }

    std::string_view m_bytes;
    QStringDecoder m_decoder;
    bool m_holdsAscii;
    bool m_canSwitch;
    QString m_pending;
    std::size_t m_begin = 0; // of the bytes that belong to m_pending
    PlacedText m_result;
};

} // namespace

PlacedText decodedWithPlaces(std::string_view bytes, const Encoding& encoding)
{
    return PlacedDecoder(bytes, encoding).run();
}

} // namespace luma
