// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/document.h"
#include "html/pagesource.h"
#include "html/textsearch.h"
#include "links/decodedfile.h"
#include "links/linkplan.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// What of a file is searched: a page's text as a browser shows it, or all that the file holds.
enum class SearchedText : std::uint8_t { Shown, Source };

/// A place where something is found.
struct FoundText
{
    std::uint32_t line = 1; // of its first character in the file, and the column in characters, from 1
    std::uint32_t column = 1;
    QString before; // in its line or, of shown text, its block; shortened
    QString after;
    QStringList captured; // what the groups caught, first all of it
};

/// Finds text in one file after another, and plans how it is replaced so that no other byte of the file changes. Each thread
/// has one of its own.
class TextFinder final
{
public:
    /// `expression` is that of the query.
    TextFinder(const TextQuery& query, QRegularExpression expression, SearchedText searched);

    /// Searches the file that is called `name` and holds `bytes`, which must outlive what is found. The name's extension says
    /// what it is. Error: it is no page that can be read, or the expression was given up.
    Result<void> read(std::string_view bytes, std::string_view name);
    /// In the order of the text.
    [[nodiscard]] const std::vector<FoundText>& found() const { return m_found; }

    /// The edits that replace the places of found() for which `isWanted` holds; to be called once a read. Where a page's
    /// encoding lacks a character, a reference stands for it, in a sheet an escape. The edited file has been read again, and
    /// nothing else reads differently. Error: that can't be done.
    Result<std::vector<LinkEdit>> edits(const std::vector<bool>& isWanted, const QString& replacement);

private:
    /// A change to the file's text.
    struct TextEdit
    {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::string text;
        std::size_t found = 0; // its number
    };

    [[nodiscard]] bool mayBeShown() const;
    Result<void> readShown();
    Result<void> readSource();
    [[nodiscard]] Result<std::vector<TextEdit>> shownEdits(const std::vector<bool>& isWanted,
                                                           const QString& replacement) const;
    [[nodiscard]] std::vector<TextEdit> sourceEdits(const std::vector<bool>& isWanted,
                                                    const QString& replacement) const;
    [[nodiscard]] std::optional<std::string> spelled(std::string_view text) const;
    [[nodiscard]] bool readsAsPlanned(std::string_view bytes, const std::string& text);
    void replaceInTree(const std::vector<bool>& isWanted, const QString& replacement);

    QRegularExpression m_expression;
    bool m_isExpression;
    QString m_letters; // of a text that is no expression, without its blanks
    SearchedText m_searched;
    std::string_view m_bytes;
    std::string m_name;
    DecodedFile m_file;
    std::unique_ptr<html::Document> m_page;  // of shown text
    std::vector<TextMatch> m_matches;        // in it
    std::vector<html::SourceRange> m_places; // of other text
    std::vector<FoundText> m_found;
};

} // namespace luma
