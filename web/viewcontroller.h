// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/mywebview.h"
#include "web/renderingreader.h"
#include "web/scriptcall.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

class QLabel;
class QMenu;

namespace luma {

class CatchUp;
class LinkActions;
class LinkSheet;
class PageDocument;
class ProcessRecovery;
class ScriptConsole;
class ShownFiles;
class SourcePanel;
class ViewFrame;

/// The rendering of a document's window: turns the user's commands into short script calls inside the page,
/// receives the page's messages, reads the page's markup back and hands it to the document, whose tree is the
/// master copy. It owns the web view, the two menus of its context menu, and the sheets for links, the page's
/// source and the script console. Actions take their trigger as the sender; its text is the command's title.
/// Main thread; the document outlives it.
class ViewController final : public QObject
{
    Q_OBJECT

public:
    /// The web view is put into `contentView`; `infoText` shows what the page says of the mouse's place.
    ViewController(PageDocument& document, QWidget* contentView, QLabel* infoText);
    ~ViewController() override;

    [[nodiscard]] MyWebView* webView() const { return m_webView; }
    [[nodiscard]] QMenu* fontSubMenu() const { return m_fontSubMenu; }
    [[nodiscard]] QMenu* justificationSubMenu() const { return m_justificationSubMenu; }
    [[nodiscard]] LinkSheet* linkSheet() const;
    [[nodiscard]] SourcePanel* sourcePanel() const { return m_sourcePanel; }
    [[nodiscard]] ScriptConsole* scriptConsole() const { return m_console; }

    /// Shows the document's markup. Scroll position and caret are kept, unless Position::Start asks for the
    /// beginning of the page. What the user types until the page is shown is applied to it then.
    enum class Position { Keep, Start };
    void show(Position position);

    /// Makes the rendering repeat changes of the document's tree (TreeChanges::json), without loading the page anew, so
    /// scroll position and caret stay or, after an undo, the caret goes to the change. Shows the page anew if the
    /// changes are null or the page does not confirm them. To be called from within whenCaughtUp().
    void update(const QByteArray& changes, RenderingReader::Place place);

    /// Shows a style sheet or image again that has changed on disk. Changes by other programs are noticed anyway.
    void renewFile(const std::filesystem::path& file);
    /// Shows the unsaved text (UTF-8) of a style sheet, or its file again.
    void showDraft(const std::filesystem::path& file, const std::optional<QByteArray>& text);
    /// Whether update() will do so in the page shown.
    [[nodiscard]] bool isFollowing() const { return m_reader->isFollowing(); }

    /// Hands over edits of the rendering that the document doesn't know yet, then runs `then`, which may
    /// change or save the tree; not at all if `context` has been deleted by then. Calls are served in order.
    /// What the user types meanwhile comes after `then`, and after the page is shown if `then` calls show().
    void whenCaughtUp(QObject* context, const std::function<void()>& then);
    /// The same, with the paths of the elements that style sheets show in lines (PageStore::setShownInLines).
    using Paths = std::vector<std::vector<int>>;
    void whenCaughtUpWithLooks(QObject* context, const std::function<void(const Paths& inLines)>& then);
    /// whenCaughtUp(), blocking (see ScriptCall::waitInLoop).
    void catchUp();

    /// The page's markup in the rendering; null if it does not answer. Blocks (see ScriptCall::wait).
    [[nodiscard]] QString renderedMarkup() const;

    /// Evaluates in the page (see ScriptCall).
    void evaluate(const QString& script);
    void ask(const QString& script, QObject* context, const ScriptCall::Answered& answered);

    /// As for ViewFrame.
    [[nodiscard]] double magnification() const;
    void setMagnification(double factor);
    void setPageWidth(int width);

    /// What the style sheets are asked for, besides what the desktop tells the engine.
    struct Media
    {
        bool isDark = false;  ///< prefers-color-scheme
        bool isPrint = false; ///< the sheets for paper, on the screen
    };
    void setMedia(const Media& media);
    [[nodiscard]] const Media& media() const { return m_media; }

signals:
    /// A page that was shown again, or updated, has its selection back. To set another one, do so now: before the user
    /// goes on and before the scroll position is restored.
    void selectionRestored();
    /// The titles (English) of the text styles and of the alignment at the selection; the menus are up to date.
    void formatsChanged(const QStringList& titles);
    /// Tab was pressed in the last cell of a table.
    void rowRequested();
    /// What the user wanted could not be done, for this reason.
    void failed(const QString& reason);

public slots:
    void removeLink();
    void applyStyle(QObject* sender);
    void removeStyle(QObject* sender);
    void removeAllStyles();
    void removeJustfication();
    void doExecCommand(QObject* sender);
    /// The command word is the sender's "commandWord" property, or its title when it has none; undo shows the title.
    void formatText(QObject* sender);

    void makeLink();
    void editLink();
    void insertImage();
    /// At the caret, with empty cells.
    void insertTable(int rows, int columns, bool hasHeader);
    /// At the caret, or in place of the selection.
    void insertText(const QString& text);
    /// At the caret, an element in place of the selection; its markup is in UTF-8.
    void insertNode(const QString& name, const std::string& markup);
    void showSource();
    void showScriptConsole();
    void inspectElement();

private:
    void createMenus();
    void createSheets();
    void connectPage();
    void connectView();
    void takeActiveElement(const QList<int>& path);
    void takeFormats(const QStringList& titles);
    void tellActiveElement();
    void showMedia();
    void moveToCell(int step);
    void endUpdate();
    void finishUpdate(const QByteArray& changes);
    void keepPositionAndLoad();
    void load();
    void holdUntilReady();
    void goOnAfterHold(int shows);
    void restorePosition();
    void didFinish();
    /// Evaluates a script that edits the page; its edit has this name in the undo history.
    void perform(const QString& name, const QString& script);
    void performNow(const QString& name, const QString& script);
    void performCommand(const QString& name, const QString& word);
    void saveSource(const QString& source, qsizetype place);

    PageDocument& m_document;
    QPointer<QWidget> m_contentView;
    QPointer<QLabel> m_infoText;
    MyWebView* m_webView = nullptr;
    RenderingReader* m_reader = nullptr;
    CatchUp* m_catchUp = nullptr;
    ViewFrame* m_frame = nullptr;
    ProcessRecovery* m_recovery = nullptr;
    QMenu* m_fontSubMenu = nullptr;
    QMenu* m_justificationSubMenu = nullptr;
    LinkActions* m_links = nullptr;
    SourcePanel* m_sourcePanel = nullptr;
    ScriptConsole* m_console = nullptr;
    ShownFiles* m_files = nullptr;
    QString m_currentScrollPosition;
    QString m_currentCaret;
    std::vector<int> m_activeElement;
    Media m_media;
    int m_shows = 0;
    QTimer m_updateEnd;
    std::function<void()> m_endUpdate; // while that runs
    bool m_holdsInput = false;
    bool m_activeElementWaits = false;
};

} // namespace luma
