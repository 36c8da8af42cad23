// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/mywebview.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <vector>

class QLabel;
class QMenu;
class QVBoxLayout;

namespace luma {

class LinkActions;
class LinkSheet;
class PageDocument;
class RenderingReader;
class ScriptConsole;
class SourcePanel;

/// Runs the rendering of a document's window: turns the user's commands into short script calls inside the
/// page, takes the page's messages, reads the page's markup back and hands it to the document, whose tree is
/// the master copy. It owns the web view, the two menus of its context menu, and the sheets for links, the
/// page's source and the script console. Actions take what was triggered as their sender: its text is the
/// command's title. Main thread; the document outlives it.
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

    /// Shows the document's markup. The scroll position and the caret of what was shown come back when it
    /// stands there, unless `start` asks for the page's beginning.
    enum class Position { Keep, Start };
    void show(Position position);

    /// Hands edits of the rendering to the document that it has not heard of. Call it before the tree is
    /// changed or saved: it waits for the page, for a moment. What the user types meanwhile, and until the
    /// page stands anew when the caller goes on to show it, comes into the page after that.
    void catchUp();

    /// The page's markup as the rendering has it; null when it does not answer.
    [[nodiscard]] QString renderedMarkup() const;

    /// Evaluates in the page. evaluateAndWait may run other events (see ScriptCall).
    void evaluate(const QString& script);
    [[nodiscard]] QVariant evaluateAndWait(const QString& script);

    /// 1 is the page's own size.
    [[nodiscard]] double magnification() const { return m_magnification; }
    void setMagnification(double factor);

public slots:
    void removeLink();
    void applyStyle(QObject* sender);
    void removeStyle(QObject* sender);
    void removeAllStyles();
    void removeJustfication();
    void doExecCommand(QObject* sender);
    /// The command word is the sender's "commandWord" property, or its title when it has none.
    void formatText(QObject* sender);

    void makeLink();
    void editLink();
    void insertImage();
    void showSource();
    void showScriptConsole();
    void inspectElement();

signals:
    /// A page shown anew stands there with its selection; who wants another one says so now, before the user
    /// goes on and before the scroll position comes back.
    void selectionRestored();

private:
    void createMenus();
    void createSheets();
    void connectPage();
    void connectView();
    void takeActiveElement(const QList<int>& path);
    void tellActiveElement();
    void didFinish();
    void restorePosition();
    void waitForKeys();
    void holdUntilReady();
    void goOnAfterHold(int shows);
    /// False when the page has been replaced meanwhile, or the controller has gone.
    [[nodiscard]] bool readPosition();
    void rebuildAfterDeath();
    void showStopped();
    /// Evaluates a script that edits the page; its edit has this name in the undo history.
    void perform(const QString& name, const QString& script);
    void performNow(const QString& name, const QString& script);
    void performCommand(const QString& title);
    void saveSource(const QString& source);
    void runJS(const QString& script);

    PageDocument& m_document;
    QPointer<QWidget> m_contentView;
    QPointer<QLabel> m_infoText;
    MyWebView* m_webView = nullptr;
    RenderingReader* m_reader = nullptr;
    QMenu* m_fontSubMenu = nullptr;
    QMenu* m_justificationSubMenu = nullptr;
    LinkActions* m_links = nullptr;
    SourcePanel* m_sourcePanel = nullptr;
    ScriptConsole* m_console = nullptr;
    QPointer<QWidget> m_stopped;
    QString m_currentScrollPosition;
    QString m_currentCaret;
    std::vector<int> m_activeElement;
    QElapsedTimer m_sinceDeath;
    double m_magnification = 1;
    int m_deaths = 0;
    int m_shows = 0;
    bool m_holdsInput = false;
    bool m_activeElementWaits = false;
};

} // namespace luma
