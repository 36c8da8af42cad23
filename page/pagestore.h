// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/pagecodec.h"
#include "links/linksupdate.h"
#include "page/pagefile.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class QUndoStack;

namespace luma {

class PageTree;

/// Brings a page from its file into the tree and back. What was not edited keeps its bytes in the file. Reading a page
/// again is an edit that can be undone; after reading and writing the undo stack is clean. Main thread.
class PageStore final
{
public:
    PageStore(PageTree& tree, QUndoStack& stack);
    /// Waits for a save.
    ~PageStore();

    /// Where the page was read from: its own file, or the template of a page that has none yet.
    [[nodiscard]] const std::filesystem::path& docURL() const { return m_docURL; }
    [[nodiscard]] bool hasFile() const { return m_hasFile; }
    /// Whether a page has been read.
    [[nodiscard]] bool hasPage() const;
    enum class Origin { File, Template };
    void setLocation(const std::filesystem::path& path, Origin origin);
    /// A new page's template; until it is saved the page counts as standing in `folder`.
    void setTemplate(const std::filesystem::path& path, const std::filesystem::path& folder);
    /// Gives a new page these bytes instead of the template's own.
    void beginWith(std::string bytes) { m_beginning = std::move(bytes); }
    /// The folder of the page's site as its links tell: the highest that one of them needs to reach an existing file, also
    /// from the site's root ("/css/main.css"); else the page's own folder. Never the home folder or one above it.
    [[nodiscard]] std::filesystem::path folderOfLinks() const;

    /// The page's file has been moved to `path`. Until updateLinks(), its links count from where it was: linkBase().
    void followFile(const std::filesystem::path& path);
    /// The place of the page from which its links count.
    [[nodiscard]] const std::filesystem::path& linkBase() const { return m_linkBase; }
    /// Takes over what a job did to the site's links. Where the page has no edits, its file is read again, else its own links
    /// are changed as those in the file were; both are a step on the undo stack. The file counts as unchanged then, unless
    /// another program has changed it, too. Error: a sentence for the user; the links stay as they are.
    Result<void> updateLinks(const LinksUpdate& update);

    /// Reads and parses the file; the step on the undo stack gets the name. The error is a sentence for the user, and the
    /// tree stays unchanged. XML other than XHTML is refused: parsed as HTML it would be something else.
    Result<void> load(const QString& name);

    /// The page as saving writes it (html::patchedPage), UTF-8; empty without a tree.
    [[nodiscard]] std::string markup() const;

    /// Replaces the page by an edited markup() of it, kept as typed, as a step on the undo stack; code for the server is code
    /// there. The error is a sentence for the user.
    Result<void> setMarkup(std::string_view markup);

    /// The same with the line ends of the source, under this name.
    Result<void> setSource(const std::string& source, const QString& name);

    /// Replaces the page by what markup() gave in an earlier run, as setMarkup() does, but with its own line ends.
    Result<void> recover(std::string_view markup);

    /// Writes the page to `path`, which becomes its file, in its encoding as html::PageCodec does. In another folder its links
    /// are rebased, in the tree too, so that they lead to the same files. On an error neither the tree nor a file has changed.
    /// Done on another thread, a small page at once unless its server is silent; `done` is called on the main thread, not any more after the store has gone. The tree may be
    /// edited meanwhile: such edits are not in the file, and the stack is not clean then.
    using Saved = std::function<void(const Result<void>& result)>;
    void startSaving(const std::filesystem::path& path, Saved done);
    [[nodiscard]] bool isSaving() const { return m_saving != nullptr; }
    /// Waits for a save that is under way and ends it, as all functions do that need its result.
    void finishSaving();
    /// The same, but waits only for patienceWithFiles. False if the save is still under way then.
    bool finishSavingSoon();
    /// Saves and waits.
    Result<void> save(const std::filesystem::path& path);

    /// Writes the page to `path` as save() does, with its links rebased, and stays where it is: for a template.
    Result<void> saveCopy(const std::filesystem::path& path);
    /// Rebases the links of a new page that has no file yet, which counts as standing in `folder` from now on.
    void placeIn(const std::filesystem::path& folder);

    /// Prints the page's source anew (html::prettyPrint), as a step on the undo stack; none when it is printed so already.
    /// The error is a sentence for the user.
    Result<void> tidy();
    /// The elements, by their paths (elementAtPath()), that tidying must write as they are, because style sheets show them
    /// in lines. Valid until the tree changes; without a tree there are none.
    void setShownInLines(const std::vector<std::vector<int>>& paths);
    /// Whether the user wants each page tidied when it is saved; asked before each save.
    using TidyChoice = std::function<bool()>;
    void setTidyChoice(TidyChoice choice) { m_tidyChoice = std::move(choice); }
    [[nodiscard]] bool tidiesWhenSaving() const { return m_tidyChoice && m_tidyChoice(); }

    /// Whether the page's file is XHTML.
    [[nodiscard]] bool isXhtml() const { return m_isXhtml; }
    /// What saving now would cost: whether XML that can be read becomes HTML, and the names of the elements in the file
    /// that the tree does not hold (lostElements()) and saving leaves out. Takes the time of a save where the page is such
    /// a one.
    struct Loss
    {
        bool isXml = false;
        std::vector<std::string> elements;
    };
    [[nodiscard]] Loss lossOfSaving();

    /// The page's file as it was last read or written.
    [[nodiscard]] const PageFile& file() const { return m_file; }
    /// Waits for the file, also of a share.
    [[nodiscard]] bool changedOnDisk() const { return m_hasFile && m_file.changedOnDisk(); }

private:
    struct Saving;

    Result<void> takeSaved(Saving& saving);
    Result<void> replaceMarkup(const std::string& text, const QString& name);
    Result<void> changeText(const LinksUpdate& update, const std::filesystem::path& oldPlace);

    PageTree& m_tree;
    QUndoStack& m_stack;
    PageFile m_file;
    html::PageCodec m_codec;
    TidyChoice m_tidyChoice;
    html::ShownInLines m_inLines;
    MarkupLanguage m_language = MarkupLanguage::Html;
    std::filesystem::path m_docURL;
    std::filesystem::path m_linkBase;
    bool m_hasFile = false;
    std::optional<std::string> m_beginning; // of a new page
    bool m_isXhtml = false;
    bool m_isWellFormed = false; // the XHTML
    std::vector<std::string> m_lostElements;
    std::size_t m_size = 0; // of the file, in bytes
    QObject m_receiver;     // of what a save tells
    std::unique_ptr<Saving> m_saving;
};

} // namespace luma
