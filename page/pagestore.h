// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "page/pagefile.h"

#include <QString>

#include <filesystem>
#include <string>
#include <vector>

class QUndoStack;

namespace luma {

class PageTree;

/// Brings a page from its file into the tree and back. Reading a page again is an edit like any other, which
/// can be undone; after reading and writing the undo stack is clean. Main thread.
class PageStore final
{
public:
    PageStore(PageTree& tree, QUndoStack& stack) : m_tree(tree), m_stack(stack) {}

    /// Where the page was read from: its own file, or the template of a page that has none yet.
    [[nodiscard]] const std::filesystem::path& docURL() const { return m_docURL; }
    [[nodiscard]] bool hasFile() const { return m_hasFile; }
    /// Whether a page has been read.
    [[nodiscard]] bool hasPage() const;
    enum class Origin { File, Template };
    void setLocation(const std::filesystem::path& path, Origin origin);

    /// Reads and parses the file. On an error, a sentence for the reader, the tree stays as it is. XML that
    /// is no page is refused: what the tree would make of it is something else.
    Result<void> load(const QString& name);

    /// The page as it is saved, UTF-8; empty without a tree.
    [[nodiscard]] std::string markup() const;

    /// Writes the page to `path`, which becomes its file. In another folder its links are rebased, in the
    /// tree too, so that they lead to the same files. On an error neither the tree nor a file has changed.
    Result<void> save(const std::filesystem::path& path);

    /// Whether the page's file is XHTML. Saved over it, the page becomes HTML.
    [[nodiscard]] bool isXhtml() const { return m_isXhtml; }

    /// The names of the elements in the page's file that the tree does not hold, and saving leaves out.
    [[nodiscard]] const std::vector<std::string>& lostElements() const { return m_lostElements; }

    [[nodiscard]] bool changedOnDisk() const { return m_hasFile && m_file.changedOnDisk(); }

private:
    PageTree& m_tree;
    QUndoStack& m_stack;
    PageFile m_file;
    std::filesystem::path m_docURL;
    bool m_hasFile = false;
    bool m_isXhtml = false;
    std::vector<std::string> m_lostElements;
};

} // namespace luma
