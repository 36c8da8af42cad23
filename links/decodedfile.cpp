// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/decodedfile.h"

#include "base/utf8.h"
#include "html/placedtext.h"
#include "links/webrules.h"

#include <algorithm>

namespace luma {

namespace {

bool isAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// Whether the bytes can be read as they are, because they are valid UTF-8 and mean what it says.
bool needsNoDecoding(std::string_view bytes, const PageEncoding& encoding, MarkupLanguage language)
{
    if (!encoding.encoding.isUtf8()) {
        const bool mayHide = encoding.encoding.canSwitch() && bytes.find('\x1B') != std::string_view::npos;
        return encoding.encoding.holdsAscii() && !mayHide && isAscii(bytes);
    }
    const bool isKnownValid =
        encoding.source == PageEncoding::Source::Guessed && language != MarkupLanguage::Xml;
    return isKnownValid || isValidUtf8(bytes);
}

} // namespace

void DecodedFile::read(std::string_view bytes, MarkupLanguage language, Places places)
{
    m_encoding = encodingOf(bytes, language);
    m_text = bytes.substr(m_encoding.markLength);
    m_places.clear();
    if (needsNoDecoding(m_text, m_encoding, language))
        return;
    if (places == Places::Known) {
        PlacedText decoded = decodedWithPlaces(m_text, m_encoding.encoding);
        m_decoded = std::move(decoded.text);
        m_places = std::move(decoded.places);
    } else {
        m_decoded = m_encoding.encoding.decoded(m_text);
    }
    m_text = m_decoded;
}

MarkupLanguage markupLanguage(std::string_view name)
{
    switch (webFileKind(name)) {
    case WebFileKind::XmlPage:
        return MarkupLanguage::Xml;
    case WebFileKind::StyleSheet:
        return MarkupLanguage::Css;
    default:
        return MarkupLanguage::Html;
    }
}

} // namespace luma
