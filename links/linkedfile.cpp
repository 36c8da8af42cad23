// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkedfile.h"

#include "base/utf8.h"
#include "html/characterreferences.h"
#include "links/parsedpage.h"

#include <QString>

#include <algorithm>

namespace luma {

namespace {

// Folding costs more than the look at the length; folded text is at most twice as long.
bool startsWithFolded(std::string_view raw, std::string_view foldedPrefix)
{
    if (raw.size() < foldedPrefix.size() / 2)
        return false;
    if (!needsDecoding(raw))
        return caseFolded(raw).starts_with(foldedPrefix);
    return caseFolded(decodeCharacters(raw, ReferenceContext::AttributeValue)).starts_with(foldedPrefix);
}

// Matches url(...) around `name`, blanks inside the brackets, letter case ignored. Invalid when `name` is no
// valid pattern or not UTF-8.
QRegularExpression urlReference(std::string_view name)
{
    if (!isValidUtf8(name))
        return QRegularExpression(QStringLiteral("("));
    const QString pattern = QStringLiteral("url\\( *") +
                            QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) +
                            QStringLiteral(" *\\)");
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption);
}

bool matchesIn(const QRegularExpression& expression, std::string_view text)
{
    return expression.isValid() &&
           expression.match(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()))).hasMatch();
}

} // namespace

LinkedFile::LinkedFile(std::filesystem::path target)
    : m_target(std::move(target)), m_name(m_target.filename().native()), m_nameReference(urlReference(m_name))
{}

bool LinkedFile::isLinkedFrom(const std::filesystem::path& candidate)
{
    const FileKind kind = fileKind(candidate.filename().native());
    if (kind == FileKind::Other)
        return false;
    const auto text = m_reader.read(candidate.native());
    if (!text || !isValidUtf8(*text))
        return false;
    if (kind == FileKind::Page)
        return isLinkedFromPage(*text, candidate.parent_path());
    if (kind == FileKind::StyleSheet)
        return matchesIn(m_nameReference, *text);
    return text->find(m_name) != std::string_view::npos;
}

bool LinkedFile::isLinkedFromPage(std::string_view source, const std::filesystem::path& folder)
{
    if (folder != m_folder) {
        m_folder = folder;
        const std::string prefix = linkedPrefix(relativePath(m_target, folder));
        m_prefix = caseFolded(prefix);
        m_pageReference = urlReference(prefix);
    }
    HtmlScanner scanner(source);
    HtmlToken token;
    bool linked = false;
    while (!linked && scanner.next(token)) {
        if (token.kind == HtmlTokenKind::StartTag)
            forEachLinkOf(token, [&](std::size_t, const HtmlAttribute& attribute) {
                linked = linked || startsWithFolded(attribute.value, m_prefix);
            });
    }
    if (linked)
        return true;
    const std::vector<std::string_view> styles = styleContents(source);
    return std::any_of(styles.begin(), styles.end(),
                       [this](std::string_view style) { return matchesIn(m_pageReference, style); });
}

} // namespace luma
