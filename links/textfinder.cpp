// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/textfinder.h"

#include "base/usertext.h"
#include "base/utf8.h"
#include "html/characterdata.h"
#include "html/characterreferences.h"
#include "html/htmlscanner.h"
#include "html/parse.h"
#include "html/readtext.h"
#include "html/servercode.h"
#include "html/treecomparison.h"
#include "links/linesandcolumns.h"
#include "links/webrules.h"

#include <algorithm>
#include <map>

namespace luma {

using html::SourceRange;

namespace {

constexpr qsizetype mostAround = 120; // characters of a line on each side of what is found

QString inOneLine(QStringView text)
{
    QString line = text.toString();
    for (QChar& c : line) {
        if (c < u' ')
            c = u' ';
    }
    return line;
}

QString withoutBlanks(QString text)
{
    text.removeIf([](QChar c) { return c.isSpace(); });
    return text;
}

Error notReplaced()
{
    return Error{userText(QT_TRANSLATE_NOOP(
        "luma::Engines", "its text can't be replaced without changing more, so it stays as it is"))};
}

/// Where the texts of a page's nodes are written.
class WrittenTexts final
{
public:
    /// The stretch of the source that holds these bytes of the node's text; nothing where there is none.
    std::optional<SourceRange> placeOf(const TextMatch::Piece& piece)
    {
        const Written* const written = writtenOf(*piece.node);
        if (!written)
            return std::nullopt;
        const auto& boundaries = written->read.boundaries;
        const std::size_t from = written->dropped + piece.from;
        const std::size_t to = written->dropped + piece.to;
        const auto isBefore = [](const ValueBoundary& boundary, std::size_t at) {
            return boundary.decoded < at;
        };
        const auto isBehind = [](std::size_t at, const ValueBoundary& boundary) {
            return at < boundary.decoded;
        };
        const auto begin = std::upper_bound(boundaries.begin(), boundaries.end(), from, isBehind);
        const auto end = std::lower_bound(boundaries.begin(), boundaries.end(), to, isBefore);
        if (begin == boundaries.begin() || std::prev(begin)->decoded != from || end == boundaries.end() ||
            end->decoded != to)
            return std::nullopt;
        return SourceRange{written->begin + static_cast<std::uint32_t>(std::prev(begin)->raw),
                           written->begin + static_cast<std::uint32_t>(end->raw)};
    }

private:
    struct Written
    {
        std::uint32_t begin = 0;
        html::ReadText read;
        std::size_t dropped = 0; // bytes at the begin that the parser drops: the line end behind <pre>
    };

    const Written* writtenOf(const html::Node& node)
    {
        const auto [known, isNew] = m_written.try_emplace(&node);
        if (isNew && node.origin().source) {
            const html::PageSource& source = *node.origin().source;
            const html::SourceRecord& record = html::PageSource::recordOf(node);
            for (const SourceRange& range : {record.extent, record.start}) {
                html::ReadText read = html::readText(source.text(range), html::TextPlace::Text);
                const std::string& text = *html::textOf(node);
                if (!read.text.ends_with(text) || read.text.size() > text.size() + 1)
                    continue;
                const std::size_t dropped = read.text.size() - text.size();
                known->second = Written{range.begin, std::move(read), dropped};
                break;
            }
        }
        return known->second ? &*known->second : nullptr;
    }

    std::map<const html::Node*, std::optional<Written>> m_written;
};

} // namespace

TextFinder::TextFinder(const TextQuery& query, QRegularExpression expression, SearchedText searched)
    : m_expression(std::move(expression)),
      m_isExpression(query.isExpression),
      m_letters(query.isExpression ? QString() : withoutBlanks(query.text)),
      m_searched(searched)
{}

Result<void> TextFinder::read(std::string_view bytes, std::string_view name)
{
    m_bytes = bytes;
    m_name = name;
    m_found.clear();
    m_matches.clear();
    m_places.clear();
    m_page.reset();
    const bool isWeb = webFileKind(name) != WebFileKind::Other;
    m_file.read(bytes, isWeb ? markupLanguage(name) : MarkupLanguage::Css, DecodedFile::Places::Known);
    return m_searched == SearchedText::Shown ? readShown() : readSource();
}

// A quick look at the page's text without its tags, since a tree takes much longer. Where a program writes the page, it can't be
// told what is text.
bool TextFinder::mayBeShown() const
{
    if (m_letters.isEmpty() || !serverCodeIn(m_file.text()).empty())
        return true;
    const bool isXml = webFileKind(m_name) == WebFileKind::XmlPage;
    std::string text;
    std::size_t done = 0;
    const auto add = [&](std::string_view raw) {
        text += needsDecoding(raw) ? decodeCharacters(raw, ReferenceContext::Text) : std::string(raw);
    };
    HtmlScanner scanner(m_file.text(), isXml ? HtmlScanner::Markup::Xml : HtmlScanner::Markup::Html);
    HtmlToken token;
    while (scanner.next(token)) {
        add(m_file.text().substr(done, token.begin - done));
        if (token.kind == HtmlTokenKind::Cdata)
            add(token.content);
        done = token.end;
    }
    add(m_file.text().substr(done));
    return withoutBlanks(QString::fromStdString(text)).contains(m_letters, Qt::CaseInsensitive);
}

Result<void> TextFinder::readShown()
{
    if (!mayBeShown())
        return {};
    auto page = html::parseWithSource(m_file.text());
    if (!page)
        return page.error();
    auto matches = matchesIn(**page, m_expression);
    if (!matches)
        return matches.error();
    m_page = *std::move(page);
    m_matches = *std::move(matches);
    WrittenTexts texts;
    LinesAndColumns place(m_file.text());
    for (const TextMatch& match : m_matches) {
        const TextMatch::Piece& first = match.pieces.front();
        std::size_t at = 0;
        if (const auto written = texts.placeOf(first))
            at = written->begin;
        else if (first.node->origin().source)
            at = html::PageSource::recordOf(*first.node).start.begin;
        place.goTo(at);
        m_found.push_back({place.line(), place.column(), {}, {}, match.match.capturedTexts()});
        const qsizetype start = match.match.capturedStart();
        m_found.back().before =
            inOneLine(QStringView(match.run).first(start).last(std::min(start, mostAround)));
        m_found.back().after =
            inOneLine(QStringView(match.run).sliced(match.match.capturedEnd()).left(mostAround));
    }
    return {};
}

Result<void> TextFinder::readSource()
{
    const QString text =
        QString::fromUtf8(m_file.text().data(), static_cast<qsizetype>(m_file.text().size()));
    const auto matches = matchesInText(text, m_expression);
    if (!matches)
        return matches.error();
    LinesAndColumns place(m_file.text());
    qsizetype counted = 0; // characters, and their bytes
    std::size_t bytes = 0;
    const auto placeOf = [&](qsizetype at) {
        bytes += static_cast<std::size_t>(QStringView(text).sliced(counted, at - counted).toUtf8().size());
        counted = at;
        return static_cast<std::uint32_t>(bytes);
    };
    for (const QRegularExpressionMatch& match : *matches) {
        const std::uint32_t begin = placeOf(match.capturedStart());
        m_places.push_back({begin, placeOf(match.capturedEnd())});
        place.goTo(begin);
        const qsizetype start = match.capturedStart();
        const qsizetype lineStart =
            std::max(start > 0 ? text.lastIndexOf(u'\n', start - 1) + 1 : 0, start - mostAround);
        const qsizetype feed = text.indexOf(u'\n', match.capturedEnd());
        const qsizetype lineEnd = std::min(feed < 0 ? text.size() : feed, match.capturedEnd() + mostAround);
        m_found.push_back(
            {place.line(), place.column(), inOneLine(QStringView(text).sliced(lineStart, start - lineStart)),
             inOneLine(QStringView(text).sliced(match.capturedEnd(), lineEnd - match.capturedEnd())),
             match.capturedTexts()});
    }
    return {};
}

// Edits of one page in the order of the source, which need not be that of the text.
Result<std::vector<TextFinder::TextEdit>> TextFinder::shownEdits(const std::vector<bool>& isWanted,
                                                                 const QString& replacement) const
{
    const bool isXml = webFileKind(m_name) == WebFileKind::XmlPage;
    WrittenTexts texts;
    std::vector<TextEdit> edits;
    for (std::size_t i = 0; i < m_matches.size(); ++i) {
        if (!isWanted[i])
            continue;
        std::string anew =
            html::escapedText(replacementFor(m_found[i].captured, replacement, m_isExpression).toStdString(),
                              html::TextPlace::Text, m_page->origin().source->lineEnd());
        // XML knows but five names.
        for (std::size_t at = anew.find("&nbsp;"); isXml && at != std::string::npos;
             at = anew.find("&nbsp;", at))
            anew.replace(at, 6, "&#160;");
        for (const TextMatch::Piece& piece : m_matches[i].pieces) {
            const auto place = texts.placeOf(piece);
            if (!place)
                return notReplaced();
            edits.push_back({place->begin, place->end, std::exchange(anew, {}), i});
        }
    }
    std::sort(edits.begin(), edits.end(),
              [](const TextEdit& a, const TextEdit& b) { return a.begin < b.begin; });
    return edits;
}

std::vector<TextFinder::TextEdit> TextFinder::sourceEdits(const std::vector<bool>& isWanted,
                                                          const QString& replacement) const
{
    std::vector<TextEdit> edits;
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        if (isWanted[i])
            edits.push_back({m_places[i].begin, m_places[i].end,
                             replacementFor(m_found[i].captured, replacement, m_isExpression).toStdString(),
                             i});
    }
    return edits;
}

// `text` with what the file's encoding lacks written otherwise.
std::optional<std::string> TextFinder::spelled(std::string_view text) const
{
    const Encoding& encoding = m_file.encoding().encoding;
    if (encoding.encoded(text))
        return std::string(text);
    const WebFileKind kind = webFileKind(m_name);
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view character =
            text.substr(at, std::max<std::size_t>(characterLength(text.substr(at)), 1));
        at += character.size();
        const auto number = static_cast<std::uint32_t>(codePoint(character));
        if (encoding.encoded(character))
            result += character;
        else if (kind == WebFileKind::Other)
            return std::nullopt;
        else if (kind == WebFileKind::StyleSheet)
            result += '\\' + QByteArray::number(number, 16).toStdString() + ' ';
        else
            result += "&#" + std::to_string(number) + ';';
    }
    return result;
}

Result<std::vector<LinkEdit>> TextFinder::edits(const std::vector<bool>& isWanted, const QString& replacement)
{
    if (m_found.empty())
        return std::vector<LinkEdit>();
    std::vector<TextEdit> planned;
    if (m_searched == SearchedText::Shown) {
        auto shown = shownEdits(isWanted, replacement);
        if (!shown)
            return shown.error();
        planned = *std::move(shown);
    } else {
        planned = sourceEdits(isWanted, replacement);
    }
    std::vector<LinkEdit> edits;
    std::string text;
    std::size_t done = 0;
    for (const TextEdit& edit : planned) {
        const auto anew = spelled(edit.text);
        if (!anew)
            return Error{
                userText(QT_TRANSLATE_NOOP("luma::Engines",
                                           "it would hold a character that %1 lacks, so it stays as it is"),
                         {m_file.encoding().encoding.name()})};
        if (edit.begin < done)
            return notReplaced();
        text.append(m_file.text().substr(done, edit.begin - done)).append(*anew);
        done = edit.end;
        const std::size_t begin = m_file.placeInFile(edit.begin);
        const std::size_t end = m_file.placeInFile(edit.end);
        const FoundText& found = m_found[edit.found];
        edits.push_back({begin, std::string(m_bytes.substr(begin, end - begin)),
                         *m_file.encoding().encoding.encoded(*anew), found.line,
                         found.captured.front().toStdString(), *anew});
    }
    text.append(m_file.text().substr(done));
    if (m_searched == SearchedText::Shown)
        replaceInTree(isWanted, replacement);
    if (!readsAsPlanned(withEdits(m_bytes, edits), text))
        return notReplaced();
    return edits;
}

void TextFinder::replaceInTree(const std::vector<bool>& isWanted, const QString& replacement)
{
    std::vector<TextMatch> wanted;
    for (std::size_t i = 0; i < m_matches.size(); ++i) {
        if (isWanted[i])
            wanted.push_back(m_matches[i]);
    }
    for (auto& [node, text] : textsAfter(wanted, replacement, m_isExpression)) {
        if (text.empty())
            node->remove();
        else
            static_cast<html::CharacterData*>(node)->setData(std::move(text));
    }
}

// A page that declares another encoding now is read in that one, as the user wants it.
bool TextFinder::readsAsPlanned(std::string_view bytes, const std::string& text)
{
    const bool isWeb = webFileKind(m_name) != WebFileKind::Other;
    DecodedFile after;
    after.read(bytes, isWeb ? markupLanguage(m_name) : MarkupLanguage::Css, DecodedFile::Places::Known);
    const bool isSameEncoding = after.encoding().encoding == m_file.encoding().encoding;
    if (m_searched == SearchedText::Source)
        return !isSameEncoding || after.text() == text;
    const auto page = html::parseWithSource(after.text());
    return page && !html::smallestDifferent(*m_page, **page);
}

} // namespace luma
