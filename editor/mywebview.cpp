#include "editor/mywebview.h"

#include "editor/scriptcall.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>

namespace luma {

namespace {

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
        action->setCheckable(!action->isSeparator());
        action->setChecked(titles.contains(action->text()));
    }
}

} // namespace

MyWebView::MyWebView(QWidget* parent)
    : QWebEngineView(parent),
      m_profile(EditorProfile::shared()),
      m_page(std::make_unique<EditorPage>(*m_profile))
{
    setPage(m_page.get());
}

MyWebView::~MyWebView() = default;

void MyWebView::setMenus(QMenu* fontSubMenu, QMenu* justificationSubMenu)
{
    m_fontSubMenu = fontSubMenu;
    m_justificationSubMenu = justificationSubMenu;
}

void MyWebView::updateMenuMarks()
{
    const QPointer<MyWebView> self = this;
    const QVariant styles = ScriptCall::wait(m_page.get(), QStringLiteral("getTextTags()"));
    if (!self)
        return;
    check(m_fontSubMenu, styles.toStringList());
    const QVariant justification =
        ScriptCall::wait(m_page.get(), QStringLiteral("getCurrentJustification()"));
    if (self)
        check(m_justificationSubMenu, justification.toStringList());
}

void MyWebView::contextMenuEvent(QContextMenuEvent* event)
{
    const QPoint where = event->globalPos();
    event->accept();
    const QPointer<MyWebView> self = this;
    updateMenuMarks();
    if (!self)
        return;
    auto* menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("webViewMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Inspect Element"), this, &MyWebView::inspectElementWanted);
    if (m_fontSubMenu) {
        m_fontSubMenu->setTitle(tr("Text Style"));
        menu->addMenu(m_fontSubMenu);
    }
    if (m_justificationSubMenu) {
        m_justificationSubMenu->setTitle(tr("Text Justification"));
        menu->addMenu(m_justificationSubMenu);
    }
    menu->popup(where);
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
