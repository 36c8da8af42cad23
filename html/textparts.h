// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/readtext.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace luma::html {

/// A text of an element whose stretch of the source holds more than the text: tags that mean nothing there (</body> with
/// white space behind it), comments and server code that belong to other nodes, the ends of CDATA sections. Text is UTF-8.
/// Any thread.
class TextParts final
{
public:
    struct Part
    {
        std::size_t begin = 0; // in the stretch, in bytes
        std::size_t end = 0;
        bool isText = false;
        TextPlace place = TextPlace::Text;
        std::string text;
        std::string wanted; // what it is to say after setText()
    };

    /// `raw` must outlive this object. In svg and math there are CDATA sections.
    TextParts(std::string_view raw, bool isForeign);

    [[nodiscard]] const std::vector<Part>& parts() const { return m_parts; }
    /// What all parts say.
    [[nodiscard]] std::string text() const;
    /// Whether the end tag of body or html is between them.
    [[nodiscard]] bool endPage() const;
    /// The bytes of the text without what is between; empty where those of CDATA sections are among them.
    [[nodiscard]] std::string ownBytes() const;
    /// Shares a new text among the parts: what stays, stays where it is. What comes behind the end tag of body or html goes
    /// in front of it, with the white space between: behind it a comment would change its place in the tree.
    void setText(std::string_view text);

private:
    void add(std::size_t begin, std::size_t end, TextPlace place);
    [[nodiscard]] std::size_t partFor(std::size_t place, bool isBlankText) const;

    std::string_view m_raw;
    std::vector<Part> m_parts;
};

} // namespace luma::html
