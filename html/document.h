// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/parentnode.h"

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace luma::html {

/// The root of a page's tree. Its children are the doctype, comments and one `html` element.
class Document final : public ParentNode
{
public:
    Document() : ParentNode(Kind::Document) {}

    /// The `html` element and its two parts; null if the page has none (a page of frames has no body).
    Element* documentElement() const { return firstElement(); }
    Element* head() const { return part("head"); }
    Element* body() const { return part("body"); }

    /// The text of the page's title, simplified(); empty if there is none.
    std::string title() const;
    /// Replaces the text of the title. A page without one gets it as the last child of `head`.
    void setTitle(std::string_view title);

    /// Whether the page began with a byte-order mark; if so, it is serialised with one.
    bool hasByteOrderMark() const { return m_hasByteOrderMark; }
    void setByteOrderMark(bool has) { m_hasByteOrderMark = has; }

    /// The server code of the page: text of an attribute, a title or a text area that is one of these is written as code,
    /// all other is escaped.
    using ServerCodes = std::set<std::string, std::less<>>;
    const ServerCodes& serverCode() const { return m_serverCode; }
    /// Adds the server code of a source whose writer may have code run on the server.
    void trustServerCode(std::string_view source);
    void trustServerCode(const ServerCodes& codes) { m_serverCode.insert(codes.begin(), codes.end()); }

    NodePtr shallowCopy() const;

private:
    Element* part(std::string_view name) const;
    Element* titleElement() const;

    ServerCodes m_serverCode; // line ends are line feeds
    bool m_hasByteOrderMark = false;
};

} // namespace luma::html
