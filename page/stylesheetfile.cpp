// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/stylesheetfile.h"

#include "base/usertext.h"
#include "base/utf8.h"
#include "html/pageencoding.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <system_error>

namespace fs = std::filesystem;

namespace luma {

namespace {

std::string cssEscape(std::string_view character)
{
    std::array<char, 16> text{};
    (void)std::snprintf(text.data(), text.size(), "\\%X ", static_cast<unsigned>(codePoint(character)));
    return text.data();
}

/// In the encoding, with an escape for each character that it lacks (CSS Syntax 3, 4.3.7).
Result<std::string> encodedWithEscapes(std::string_view text, const Encoding& encoding)
{
    if (auto whole = encoding.encoded(text))
        return *std::move(whole);
    std::string spelled;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        while (end < text.size() && isUtf8Continuation(text[end]))
            ++end;
        const std::string_view character = text.substr(at, end - at);
        spelled +=
            end - at == 1 || encoding.encoded(character) ? std::string(character) : cssEscape(character);
        at = end;
    }
    if (auto whole = encoding.encoded(spelled))
        return *std::move(whole);
    return Error{userText(
        QT_TRANSLATE_NOOP("luma::Engines", "The style sheet's text can't be written in its encoding."))};
}

} // namespace

Result<std::string> StyleSheetFile::read()
{
    const auto bytes = m_file.read();
    if (!bytes)
        return bytes.error();
    const PageEncoding found = encodingOf(*bytes, MarkupLanguage::Css);
    m_encoding = found.encoding;
    m_isDeclared = found.source == PageEncoding::Source::Declared;
    std::string text = m_encoding.decoded(*bytes);
    // Saving would change the rest of such a sheet, too.
    if (m_encoding.encoded(text) != *bytes)
        return Error{userText(QT_TRANSLATE_NOOP(
            "luma::Engines", "The style sheet holds bytes that are no characters of its encoding."))};
    m_hasMark = text.starts_with(utf8ByteOrderMark);
    if (m_hasMark)
        text.erase(0, utf8ByteOrderMark.size());
    return text;
}

void StyleSheetFile::follow(const fs::path& path, const std::vector<LinksUpdate::File>& rewritten)
{
    m_file.setPath(path);
    const auto mine = std::find_if(rewritten.begin(), rewritten.end(), [&](const LinksUpdate::File& file) {
        std::error_code error;
        return fs::equivalent(file.path, path, error);
    });
    if (mine != rewritten.end() && mine->oldHash == m_file.knownHash())
        (void)m_file.adopt(mine->newHash);
}

Encoding StyleSheetFile::encodingWanted(std::string_view text) const
{
    const PageEncoding declared = encodingOf(text, MarkupLanguage::Css);
    if (declared.source == PageEncoding::Source::Declared)
        return declared.encoding;
    return m_isDeclared ? Encoding() : m_encoding;
}

Result<void> StyleSheetFile::write(std::string_view text)
{
    // The text may declare another encoding than before.
    if (!m_hasMark)
        m_encoding = encodingWanted(text);
    const auto bytes = encodedWithEscapes(
        m_hasMark ? std::string(utf8ByteOrderMark).append(text) : std::string(text), m_encoding);
    return bytes ? m_file.write(*bytes) : Result<void>(bytes.error());
}

} // namespace luma
