// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/characterreferences.h"
#include "html/servercode.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma::html {

/// A page's source as a parser of HTML can read it: its server code gives way to as many bytes that mean nothing, so every
/// place stays the same. Code between tags becomes a comment, which may stand anywhere; code in tags, comments and raw text
/// becomes letters, the same ones for the same code. Any thread.
class MaskedSource final
{
public:
    /// `source` is UTF-8 and must outlive this object.
    explicit MaskedSource(std::string_view source);

    [[nodiscard]] std::string_view text() const
    {
        return m_codes.empty() ? m_source : std::string_view(m_masked);
    }
    [[nodiscard]] bool holdsCode() const { return !m_codes.empty(); }
    [[nodiscard]] const std::vector<ServerCode>& codes() const { return m_codes; }

    /// The code that is exactly this stretch, closed; empty if none is. Line ends are line feeds.
    [[nodiscard]] std::string codeAt(std::size_t begin, std::size_t end) const;
    /// Whether there is code in a stretch of the source.
    [[nodiscard]] bool holdsCode(std::size_t begin, std::size_t end) const;

    /// A part of a stretch: code, or what is between.
    struct Part
    {
        std::size_t begin = 0;
        std::size_t end = 0;
        bool isCode = false;
    };
    [[nodiscard]] std::vector<Part> partsOf(std::size_t begin, std::size_t end) const;
    /// What a stretch of the source says, its references decoded; code stays as it is, but for line ends.
    [[nodiscard]] std::string decoded(std::size_t begin, std::size_t end, ReferenceContext context) const;

    /// The name, of a tag or attribute, that this stretch is: in lower case, its code spelled (spelledCode()).
    [[nodiscard]] std::string name(std::size_t begin, std::size_t end) const;
    /// A comment's or raw text's stretch in the same way; code that does no harm there stays as it is.
    [[nodiscard]] std::string rawText(std::size_t begin, std::size_t end) const;

private:
    void markNodes();

    std::string_view m_source;
    std::string m_masked;
    std::vector<ServerCode> m_codes;
};

} // namespace luma::html
