// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/mywebview.h"

#include "web/scriptcall.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QWebEngineContextMenuRequest>

#include <algorithm>

namespace luma {

namespace {

bool isOfKeys(QEvent::Type type)
{
    return type == QEvent::KeyPress || type == QEvent::KeyRelease || type == QEvent::ShortcutOverride ||
           type == QEvent::InputMethod;
}

// What the engine does with these keys is what the window's commands would do.
bool isEditingKey(const QKeyEvent& key)
{
    return key.matches(QKeySequence::Cut) || key.matches(QKeySequence::Copy) ||
           key.matches(QKeySequence::Paste) || key.matches(QKeySequence::SelectAll);
}

// Shortcuts of the window's commands, some of which the engine would use for its own.
bool isCommandKey(const QKeyEvent& key, const QWidget& window)
{
    if (key.matches(QKeySequence::Bold) || key.matches(QKeySequence::Italic) ||
        key.matches(QKeySequence::Underline))
        return true;
    if (isEditingKey(key))
        return false;
    const QKeySequence pressed(key.keyCombination());
    const auto actions = window.findChildren<QAction*>();
    return std::any_of(actions.begin(), actions.end(),
                       [&pressed](const QAction* action) { return action->shortcuts().contains(pressed); });
}

bool carriesFiles(const QMimeData* data)
{
    const QList<QUrl> urls = data->urls();
    return !urls.isEmpty() && urls.first().isLocalFile();
}

void check(QMenu* menu, const QStringList& titles)
{
    if (!menu)
        return;
    const QList<QAction*> actions = menu->actions();
    for (QAction* action : actions) {
        if (action->isCheckable())
            action->setChecked(titles.contains(action->objectName()));
    }
}

} // namespace

MyWebView::MyWebView(QWidget* parent)
    : QWebEngineView(parent),
      m_profile(EditorProfile::shared()),
      m_page(std::make_unique<EditorPage>(*m_profile))
{
    setPage(m_page.get());
    connect(m_page.get(), &EditorPage::ready, this, &MyWebView::watchKeys);
}

MyWebView::~MyWebView() = default;

// The engine receives keys in its own widget, a new one after its process has been replaced.
void MyWebView::watchKeys()
{
    m_countOfKeys = 0;
    if (m_keyReceiver == focusProxy())
        return;
    m_keyReceiver = focusProxy();
    if (!m_keyReceiver)
        return;
    m_keyReceiver->installEventFilter(this);
    m_keyReceiver->setAccessibleName(tr("Page"));
}

bool MyWebView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_keyReceiver || !isOfKeys(event->type()))
        return QWebEngineView::eventFilter(watched, event);
    if (event->type() == QEvent::ShortcutOverride)
        return takeUndoKey(static_cast<QKeyEvent&>(*event)) ||
               isCommandKey(static_cast<QKeyEvent&>(*event), *window());
    if (m_heldInput.isHolding() && event != m_madeUp) {
        keepForLater(*event);
        return true;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    if (takeUndoKey(static_cast<QKeyEvent&>(*event)) || takeTabKey(static_cast<QKeyEvent&>(*event)))
        return true;
    ++m_countOfKeys;
    return false;
}

void MyWebView::keepForLater(const QEvent& event)
{
    m_heldInput.take([this, kept = std::shared_ptr<QEvent>(event.clone())] {
        if (!m_keyReceiver)
            return;
        m_madeUp = kept.get();
        QCoreApplication::sendEvent(m_keyReceiver, kept.get());
        m_madeUp = nullptr;
    });
}

// Moves to the next cell of a table, which gets another row behind its last one. Elsewhere it moves the focus, which the engine would keep in a page that is edited
// as a whole.
bool MyWebView::takeTabKey(const QKeyEvent& key)
{
    const bool isBack =
        key.key() == Qt::Key_Backtab || (key.key() == Qt::Key_Tab && key.modifiers() == Qt::ShiftModifier);
    const bool isForward = key.key() == Qt::Key_Tab && key.modifiers() == Qt::NoModifier;
    if (!isBack && !isForward)
        return false;
    if (!m_isInTable)
        return focusNextPrevChild(isForward);
    emit cellRequested(isForward ? 1 : -1);
    return true;
}

bool MyWebView::takeUndoKey(QKeyEvent& key)
{
    const bool isUndo = key.matches(QKeySequence::Undo);
    const bool isRedo = key.matches(QKeySequence::Redo) ||
                        key.keyCombination() == QKeyCombination(Qt::ControlModifier, Qt::Key_Y);
    if (!isUndo && !isRedo)
        return false;
    key.accept();
    if (key.type() == QEvent::KeyPress)
        isUndo ? emit undoRequested() : emit redoRequested();
    return true;
}

void MyWebView::setMenus(QMenu* fontSubMenu, QMenu* justificationSubMenu)
{
    m_fontSubMenu = fontSubMenu;
    m_justificationSubMenu = justificationSubMenu;
}

void MyWebView::setTableMenu(QMenu* menu)
{
    m_tableMenu = menu;
}

void MyWebView::showFormats(const QStringList& titles)
{
    check(m_fontSubMenu, titles);
    check(m_justificationSubMenu, titles);
}

// A click moves the caret before it opens the menu, so the page is asked first.
void MyWebView::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
    ScriptCall::ask(m_page.get(), QStringLiteral("currentFormats()"), this,
                    [this, where = event->globalPos()](const QVariant& titles) {
                        showFormats(ScriptCall::strings(titles).value_or(QStringList()));
                        openMenu(where);
                    });
}

void MyWebView::openMenu(const QPoint& where)
{
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("webViewMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addSuggestions(*menu);
    menu->addAction(tr("Inspect Element"), this, &MyWebView::inspectElementRequested);
    if (m_fontSubMenu) {
        m_fontSubMenu->setTitle(tr("Text Style"));
        menu->addMenu(m_fontSubMenu);
    }
    if (m_justificationSubMenu) {
        m_justificationSubMenu->setTitle(tr("Text Justification"));
        menu->addMenu(m_justificationSubMenu);
    }
    if (m_tableMenu && m_isInTable)
        menu->addMenu(m_tableMenu);
    menu->popup(where);
}

// For the misspelled word that was clicked; there is none if spelling isn't checked.
void MyWebView::addSuggestions(QMenu& menu)
{
    const QWebEngineContextMenuRequest* const request = lastContextMenuRequest();
    if (!request || request->misspelledWord().isEmpty())
        return;
    const QStringList words = request->spellCheckerSuggestions();
    for (const QString& word : words)
        menu.addAction(QString(word).replace(u'&', QStringLiteral("&&")), m_page.get(),
                       [page = m_page.get(), word] { page->replaceMisspelledWord(word); });
    if (words.isEmpty())
        menu.addAction(tr("No Suggestions"))->setEnabled(false);
    menu.addSeparator();
}

void MyWebView::dragEnterEvent(QDragEnterEvent* event)
{
    if (carriesFiles(event->mimeData()))
        event->acceptProposedAction();
    else
        QWebEngineView::dragEnterEvent(event);
}

void MyWebView::dragMoveEvent(QDragMoveEvent* event)
{
    if (carriesFiles(event->mimeData()))
        event->acceptProposedAction();
    else
        QWebEngineView::dragMoveEvent(event);
}

void MyWebView::dropEvent(QDropEvent* event)
{
    if (!carriesFiles(event->mimeData())) {
        QWebEngineView::dropEvent(event);
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    emit filesDropped(event->mimeData()->urls(), event->position());
}

} // namespace luma
