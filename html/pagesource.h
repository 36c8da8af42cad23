// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace luma::html {

class Document;
class Node;

/// A stretch of a page's text, in bytes.
struct SourceRange
{
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    [[nodiscard]] bool isEmpty() const { return begin == end; }
    [[nodiscard]] bool contains(const SourceRange& other) const
    {
        return begin <= other.begin && other.end <= end;
    }
    bool operator==(const SourceRange&) const = default;
};

/// What the parser tells of a node: its start tag, or the whole of a text, comment or doctype, and its end tag.
struct SourceMarks
{
    SourceRange start;
    SourceRange end;
    std::vector<SourceRange> strayParts = {}; // of a text, behind other markup: a table gave them up
};

/// What the page's text says about one node of the tree that was parsed from it.
struct SourceRecord
{
    SourceRange start;  // the start tag; the whole of what is no element; empty where the markup has none
    SourceRange end;    // the end tag; empty where the markup has none
    SourceRange extent; // all that belongs to the node
    std::uint32_t after = 0;   // the first record behind the node's own: children follow, in document order
    std::uint32_t content = 0; // of the contentHash() of the node as it was parsed, half

    /// Whether the node still is what a node of this contentHash() was when it was parsed, as far as half of it tells.
    [[nodiscard]] bool hasContent(std::uint64_t hash) const
    {
        return content == static_cast<std::uint32_t>(hash);
    }
};

/// The text that a tree was parsed from, and what it says about each node: unchanging, and shared by the nodes that came
/// from it (Node::origin), so that an undone deletion still finds its bytes. It lives as long as one of them or a
/// shared pointer. Any thread; the nodes that have it as their origin belong to one thread at a time.
class PageSource final : public std::enable_shared_from_this<PageSource>
{
public:
    /// Takes the text of a page, UTF-8 without a byte-order mark, and makes it the origin of all nodes of `document`, the
    /// tree parsed from it. `marks` are the parser's, in any order: a node's own is the one whose number its origin has.
    static std::shared_ptr<const PageSource> attach(std::string text, Document& document,
                                                    const std::vector<SourceMarks>& marks);

    /// Makes the nodes of `to` come from where the same nodes of `from` came from; the two are the same tree, but for text
    /// nodes that touch.
    static void transfer(Document& from, Document& to);

    [[nodiscard]] std::string_view text() const { return held().text; }
    [[nodiscard]] std::string_view text(const SourceRange& range) const
    {
        return text().substr(range.begin, range.end - range.begin);
    }
    /// The line end that the text uses: that of its first line, a line feed where it has one line.
    [[nodiscard]] std::string_view lineEnd() const;
    [[nodiscard]] const SourceRecord& record(std::uint32_t number) const { return held().records[number]; }
    /// Whether no markup of another node lies in the record's extent, and the extent lies inside the parent's: the bytes
    /// can be written in another place.
    [[nodiscard]] bool isWhole(std::uint32_t number) const { return held().whole[number]; }
    /// What the source of a node, which has one, says about it.
    [[nodiscard]] static const SourceRecord& recordOf(const Node& node);
    [[nodiscard]] static bool isWhole(const Node& node);
    /// The record of the document itself is 0.
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(held().records.size()); }

    /// Compresses all that it holds until it is next asked for something, to save memory between two saves. Views and
    /// references that it gave before end.
    void pack() const;

    /// A hash of what a node itself says: its kind, name, attributes or text, without its children.
    static std::uint64_t contentHash(const Node& node);
    /// The contentHash() of a text node with this text.
    static std::uint64_t textHash(std::string_view text);

    /// A hash of all that the tree held when it was parsed, and of what a tree holds now: equal for equal trees, whatever their
    /// text nodes that touch. Of different trees that hold the same nodes in the same order it may be equal, too.
    [[nodiscard]] std::uint64_t treeHash() const;
    static std::uint64_t treeHash(const Document& document);

private:
    friend class Node;
    void addNode() const;
    void removeNode() const;

    struct Contents
    {
        std::string text;
        std::vector<SourceRecord> records; // in document order
        std::vector<bool> whole;           // by record number
    };

    explicit PageSource(std::string text) : m_held{std::move(text), {}, {}} {}

    const Contents& held() const
    {
        if (!m_packedText.isEmpty())
            unpack();
        return m_held;
    }
    void unpack() const;

    /// Gives the parents' numbers.
    std::vector<std::uint32_t> addRecords(const std::vector<Node*>& nodes,
                                          const std::vector<SourceMarks>& marks);
    void claimEndTags(const std::vector<Node*>& nodes);
    void setExtents(const std::vector<Node*>& nodes, const std::vector<std::uint32_t>& parents);
    void claimFormEnd(SourceRecord& record) const;
    void findWholeOnes(const std::vector<Node*>& nodes, const std::vector<std::uint32_t>& parents,
                       const std::vector<SourceMarks>& marks);

    mutable Contents m_held; // empty while it is packed, but for `whole`
    mutable QByteArray m_packedText;
    mutable QByteArray m_packedRecords;
    mutable std::size_t m_nodes = 0;                  // that have it as their origin
    mutable std::shared_ptr<const PageSource> m_self; // while there are any
};

} // namespace luma::html
