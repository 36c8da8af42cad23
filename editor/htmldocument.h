// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/cssnames.h"
#include "editor/pageactions.h"
#include "editor/pagelayout.h"
#include "editor/pagerecovery.h"
#include "editor/pagewatch.h"
#include "links/webrules.h"
#include "page/pagestore.h"
#include "page/pagetree.h"
#include "page/tagrules.h"
#include "page/templatefiles.h"
#include "page/treechanges.h"
#include "web/pagedocument.h"
#include "web/renderingreader.h"

#include <QMainWindow>
#include <QUndoStack>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace Ui {
class HTMLDocument;
}

namespace luma {

class MetaSheet;
class OutlineModel;
class OutlineSelection;
class PageEdits;
class PageFollower;
class PageSaver;
class PageTools;
class StyleSheetEditor;
class TemplateCopies;
class ViewController;

/// The document of one page and its window: the outline beside the live rendering and the style sheets. The
/// tree is the master copy. Each edit of the tree is an undo command, after which the rendering is rebuilt;
/// an edit in the rendering comes back as markup and becomes a command too. The window deletes itself when
/// closed, and asks before discarding unsaved edits. Main thread. Most edits wait for the rendering and
/// happen shortly after the call (see PageEdits).
class HTMLDocument final : public QMainWindow, private PageDocument
{
    Q_OBJECT

public:
    explicit HTMLDocument(PageActions::RecentPages recentPages = {}, QWidget* parent = nullptr);
    ~HTMLDocument() override;

    /// The site's folder, whose files the page may show. If it is empty when the page is read, the page's links tell
    /// it.
    std::filesystem::path mountPath;

    /// Sets the location; the page is read when the window has loaded. Without a location, the window opens a
    /// new page made from the template.
    bool readFromURL(const std::filesystem::path& url);
    /// Makes the new page, which has no location, from this one; its links will be right where it is saved, and the files
    /// that are to come along are in the site then.
    void useTemplate(const PageTemplate& from) { m_template = from; }
    /// What an earlier run has left of the page: windowDidLoad() takes it as an edit.
    void recover(UnsavedPage unsaved) { m_unsaved = std::move(unsaved); }
    /// Reads and shows the page. If that fails, the window shows the reason.
    void windowDidLoad();

    /// Saves the style sheets that are being edited and the page, then calls `then`; not if something is in the way.
    void saveEverything(const std::function<void()>& then);

    /// Saves everything and opens the page with a program of otherprograms::applicationsFor().
    void openWith(const QString& program, const QString& mimeType);

    /// Prints the page's source anew, as one edit that can be undone.
    void tidySource();
    /// Where the user keeps templates of pages; asked each time.
    void setTemplateFolder(const std::function<std::filesystem::path()>& folder);
    /// Whether the user wants each page tidied when it is saved; asked before each save.
    void setTidyChoice(PageStore::TidyChoice choice) { m_store.setTidyChoice(std::move(choice)); }
    /// By which the links of a page are judged; asked for each check. Without it, WebRules() serve.
    using LinkRulesOf = std::function<WebRules(const std::filesystem::path& page)>;
    void setLinkRules(LinkRulesOf rulesOf) { m_linkRules = std::move(rulesOf); }

    /// Reads the page from its file again, as a single edit that can be undone.
    void revertDocumentToSaved();
    /// Rebuilds the rendering, reading style sheets and images from disk again, once it has told all edits.
    void reload();
    /// Opens the sheet for the page's title.
    void editTitle();
    /// The page's markup: for the source "OutlineView" as it would be saved, for any other as it is in the
    /// rendering. Null if there is none.
    [[nodiscard]] QString getHTML(const QString& source);
    /// Repeats an edit of the tree in the rendering, and shows the selected element there.
    void refreshAfterEdit();
    /// Writes the page to `url`, which becomes its file, adjusts the relative links if the folder changes, and calls `then`.
    /// If that fails, the window shows the reason, the page stays modified and the file unchanged. The window goes on
    /// meanwhile.
    void writeToURL(const std::filesystem::path& url, const std::function<void()>& then);
    /// The same at once; whether it was written.
    bool saveToURL(const std::filesystem::path& url);

    /// Reads the file and does nothing else: printing is not supported.
    void printDocument() const;

    /// Selects the element at this place of the page's file, counted from 1, in outline and rendering.
    void showPlace(unsigned line, unsigned column);
    /// Shows a place of this style sheet in the sheets' editor; false if the page does not use it.
    bool showSheetPlace(const std::filesystem::path& sheet, unsigned line, unsigned column);

    /// Called when the file may have changed on disk: reads it again if the page has no edits, else shows a
    /// notice.
    void checkFile();

    /// Lets the page follow its file when that is moved.
    [[nodiscard]] PageFollower& follower() { return *m_follower; }

    [[nodiscard]] const std::filesystem::path& docURL() const { return m_store.docURL(); }
    [[nodiscard]] PageTree& tree() { return m_tree; }
    [[nodiscard]] ViewController& viewController() { return *m_viewController; }
    /// The undo history; clean means saved.
    [[nodiscard]] QUndoStack* undoStack() { return &m_stack; }

    [[nodiscard]] QByteArray layoutState() const { return m_layout->state(); }
    void restoreLayoutState(const QByteArray& state) { m_layout->restore(state); }

signals:
    void newRequested();
    void newFromRequested(const PageTemplate& from);
    void openRequested(const std::filesystem::path& page);
    /// The user wants to publish the page, which has just been saved, with what it needs.
    void publishRequested(const std::filesystem::path& page);
    /// The user wants to look for this text, if there is one, in all files of the page's site.
    void findInSiteRequested(const std::filesystem::path& page, const QString& text);
    /// The user wants to see the classes and ids of the page's site.
    void siteNamesRequested(const std::filesystem::path& page);
    /// The page was read from or saved to this file.
    void locationChanged(const std::filesystem::path& page);
    void windowWillClose();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // PageDocument
    [[nodiscard]] std::string pageMarkup() override;
    [[nodiscard]] SiteFolder siteFolder() const override { return {m_store.linkBase(), mountPath}; }
    void setHTML(std::string_view markup, const QString& name) override;
    bool takeChange(const SubtreeChange& change, const QString& name) override;
    [[nodiscard]] std::uint32_t fingerprint() const override;
    [[nodiscard]] Source source() const override;
    std::optional<Refusal> setSource(const Source& source) override;
    void buildCSSMenu() override;
    void loadCSSNames() override;
    void applyCallbackText(const QString& text) override;
    void setActiveElement(const std::vector<int>& path) override;
    void fitWindowToPage(int width) override;
    [[nodiscard]] QString linkTo(const std::filesystem::path& file) const override;
    void undo() override;
    void redo() override;

    void createOutline();
    void createRendering();
    void createEdits();
    void createStyleSheets();
    void createTools();
    /// The markup of other pages of the site that are open and not saved, by file.
    [[nodiscard]] QHash<QString, QByteArray> unsavedPages() const;
    void createSaver();
    void createFollower();
    void connectChanges();

    enum class Reading { First, Again };
    bool load(Reading reading, const QString& name);
    void loadFirst();
    /// Calls `then` once the page's file can be reached, or is known not to be.
    void whenFileAnswers(const std::function<void()>& then);
    void tellOfWaiting();
    [[nodiscard]] bool isFromElsewhere() const;
    void copyTemplateFiles();
    void takeUnsaved();
    void takeFileChange();
    void noteReturn();

    void handleDoubleClick(const QModelIndex& index);
    void openOutlineMenu(const QPoint& where);
    /// Repeats an edit of the tree in the rendering.
    void refresh(RenderingReader::Place place);
    bool tidy();
    void noteSaved(const std::optional<std::filesystem::path>& before);

    /// Updates the title, the actions and the path at the bottom.
    void updateWindow();
    /// Pages of one name that are open at the same time tell their folders.
    void updateTitle();
    /// Keeps the page's text for the case that the program ends, or forgets it when nothing is unsaved.
    void updateRecovery();
    [[nodiscard]] bool isEdited() const;

    std::unique_ptr<Ui::HTMLDocument> m_ui;
    TagRules m_rules;
    PageTree m_tree;
    TreeChanges m_changes{m_tree, nullptr};
    QUndoStack m_stack;
    PageStore m_store{m_tree, m_stack};
    OutlineModel* m_outline = nullptr;
    ViewController* m_viewController = nullptr;
    OutlineSelection* m_selection = nullptr;
    LinkRulesOf m_linkRules;
    PageEdits* m_edits = nullptr;
    PageTools* m_tools = nullptr;
    StyleSheetEditor* m_styleSheets = nullptr;
    MetaSheet* m_metaSheet = nullptr;
    PageFollower* m_follower = nullptr;
    PageSaver* m_saver = nullptr;
    PageRecovery* m_recovery = nullptr;
    std::optional<UnsavedPage> m_unsaved;
    PageTemplate m_template;            // of a new page
    TemplateCopies* m_copies = nullptr; // of a page with a template that brings files along
    PageActions* m_actions = nullptr;
    PageWatch m_watch{m_store, nullptr};
    std::optional<PageLayout> m_layout; // set once the window is built
    CssNames m_cssNames;
    bool m_mayClose = false;
    bool m_closesWhenSaved = false;
};

} // namespace luma
