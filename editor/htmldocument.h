#pragma once

#include "editor/csstidy.h"
#include "editor/pagecommands.h"
#include "editor/pagedocument.h"
#include "editor/pagestore.h"
#include "editor/pagetree.h"
#include "editor/tagmenu.h"
#include "editor/tagrules.h"

#include <QMainWindow>
#include <QStringList>
#include <QUndoStack>

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

class QFileSystemWatcher;
class QMenu;

namespace Ui {
class HTMLDocument;
}

namespace luma {

class MetaSheet;
class OutlineModel;
class StyleSheetEditor;
class ViewController;

/// The document of one page and its window: the outline beside the live rendering and the style sheets. The
/// tree is the master copy; every edit of it is an undo command, after which the rendering is rebuilt; an
/// edit made in the rendering comes back as markup and becomes a command too. The window deletes itself when
/// it is closed, and asks before it gives up unsaved edits. Main thread; most actions may run other events
/// (see ScriptCall).
class HTMLDocument final : public QMainWindow, private PageDocument
{
    Q_OBJECT

public:
    struct Services
    {
        ShellRunner runShell;
        /// The pages opened before, for the menu.
        std::function<std::vector<std::filesystem::path>()> recentPages;
    };

    explicit HTMLDocument(Services services, QWidget* parent = nullptr);
    ~HTMLDocument() override;

    /// The site's folder, whose files the page may show; empty when it is not known.
    std::filesystem::path mountPath;

    /// Takes the location; the page is read when the window has loaded. Without it the page is a new one,
    /// made from the template.
    bool readFromURL(const std::filesystem::path& url);
    /// Reads and shows the page. On a failure the window says why.
    void windowDidLoad();

    /// Reads the page from its file again, as one edit that can be undone.
    void revertDocumentToSaved();
    /// The page's markup: for the source "OutlineView" as it would be saved, for any other as the rendering
    /// has it. Null when there is none.
    [[nodiscard]] QString getHTML(const QString& source);
    /// Rebuilds the rendering after an edit of the tree, and shows the selected element in it again.
    void refreshAfterEdit();
    /// Writes the page to `url`, which becomes its file. On a failure, which the window tells of, the page
    /// stays edited and the file as it was.
    bool writeToURL(const std::filesystem::path& url);
    /// The same, with the links rebased when the folder is another one.
    bool saveToURL(const std::filesystem::path& url) { return writeToURL(url); }

    /// Reads the file again when it has changed on disk: at once in a page without edits, else the window
    /// tells.
    void checkFile();

    [[nodiscard]] const std::filesystem::path& docURL() const { return m_store.docURL(); }
    [[nodiscard]] PageTree& tree() { return m_tree; }
    [[nodiscard]] ViewController& viewController() { return *m_viewController; }
    /// The edits made so far; clean means saved.
    [[nodiscard]] QUndoStack* undoStack() { return &m_stack; }

    [[nodiscard]] QByteArray layoutState() const;
    void restoreLayoutState(const QByteArray& state);

signals:
    void newRequested();
    void openRequested(const std::filesystem::path& page);
    /// The page was read from or saved to this file.
    void locationChanged(const std::filesystem::path& page);
    void windowWillClose();

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // PageDocument
    [[nodiscard]] std::string pageMarkup() const override;
    [[nodiscard]] SiteFolder siteFolder() const override;
    void setHTML(std::string_view markup) override;
    void markEdited(const QString& name) override;
    void reload() override;
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
    void createStyleSheets();
    void createFormatBar();
    void connectFileMenu();
    void connectEditMenu();
    void connectViewMenu();
    void connectChanges();

    enum class Reading { First, Again };
    bool load(Reading reading, const QString& name);

    // Edits of the selected element; each first takes over what the rendering has.
    [[nodiscard]] html::Element* selectedElement() const;
    /// Runs `edit` on the selected element and refreshes. Nothing happens without one.
    void editSelected(const std::function<void(html::Element&)>& edit);
    void addTag(const QString& tagName);
    void deleteTag();
    void editAttributes(TagAction action, const QString& title);
    void perform(TagAction action, const QString& title);
    void handleDoubleClick(const QModelIndex& index);
    void editTitle();
    void changeTitle(const QString& title);
    void acceptDrop(const QPersistentModelIndex& dragged, const QPersistentModelIndex& target, int childIndex,
                    Qt::DropAction action);
    void travelHistory(void (QUndoStack::*step)());
    void updateStyleBlock(const QString& title, const QString& css);

    // Selection
    void outlineViewSelectionDidChange();
    void showSelectionInPage();
    void updateTagControls();
    void menuWillOpen(const QPoint& where);
    void addEntries(QMenu* menu, const std::vector<TagMenuEntry>& entries);
    void fillInsertMenu(QMenu* menu);

    // Files
    void save(const std::function<void()>& then);
    void saveAs(const std::function<void()>& then);
    void askToOverwrite(const std::function<void()>& then);
    void askToSave();
    void openPanel();
    void fillRecentMenu();
    void watchFile();

    void showNotice(const QString& text, bool offersReload);
    void updateTitle();
    void updateActions();
    [[nodiscard]] bool isEdited() const;
    void sendToFocus(const char* slot, int webAction);
    void zoom(double factor);

    std::unique_ptr<Ui::HTMLDocument> m_ui;
    Services m_services;
    TagRules m_rules;
    PageTree m_tree;
    QUndoStack m_stack;
    PageCommands m_commands{m_tree, m_stack};
    PageStore m_store{m_tree, m_stack};
    OutlineModel* m_outline = nullptr;
    ViewController* m_viewController = nullptr;
    StyleSheetEditor* m_styleSheets = nullptr;
    MetaSheet* m_metaSheet = nullptr;
    QFileSystemWatcher* m_watcher = nullptr;
    QStringList m_cssClassArray;
    QStringList m_cssIDArray;
    MarkupDifference m_readBack; // markup taken over that is no command yet
    double m_magnification = 1;
    bool m_quiet = false; // the selection follows an edit or the caret, not the user's hand in the outline
    bool m_selectsWhenShown = false;
    bool m_wasFitted = false;
    bool m_mayClose = false;
};

} // namespace luma
