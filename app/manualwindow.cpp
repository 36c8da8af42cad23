// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/manualwindow.h"

#include "base/pathtext.h"
#include "base/resources.h"
#include "desktop/windowregistry.h"

#include <QAction>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTextBrowser>
#include <QToolBar>

namespace luma {

namespace {

QString folder()
{
    return textOf(resourceFolder() / "manual");
}

QUrl fileOf(const QString& chapter)
{
    return QUrl::fromLocalFile(folder() + u'/' + chapter + QLatin1String(".md"));
}

} // namespace

void ManualWindow::showChapter(const QString& chapter)
{
    static QPointer<ManualWindow> shown;
    if (!shown)
        shown = new ManualWindow;
    shown->open(chapter);
    shown->show();
    WindowRegistry::bringToFront(shown);
}

ManualWindow::ManualWindow(QWidget* parent)
    : QMainWindow(parent),
      m_text(new QTextBrowser(this)),
      m_searchField(new QLineEdit(this)),
      m_notFound(new QLabel(this))
{
    setObjectName(QStringLiteral("manualWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("LUMA Manual"));
    resize(760, 640);
    m_text->setObjectName(QStringLiteral("manualText"));
    m_text->setAccessibleName(tr("Manual"));
    m_text->setOpenExternalLinks(true);
    m_text->setFrameShape(QFrame::NoFrame);
    m_text->document()->setDocumentMargin(16);
    setCentralWidget(m_text);
    createToolBar();
    WindowRegistry::instance().add(this);
}

void ManualWindow::createToolBar()
{
    auto* const bar = addToolBar(tr("Navigation"));
    bar->setMovable(false);
    QAction* const contents = bar->addAction(tr("Contents"), this, [this] { open(QStringLiteral("index")); });
    contents->setShortcut(QKeySequence(QStringLiteral("Alt+Home")));
    QAction* const back = bar->addAction(tr("Back"), m_text, &QTextBrowser::backward);
    back->setShortcut(QKeySequence::Back);
    back->setEnabled(false);
    connect(m_text, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    // The window has no menu that holds them, too.
    for (QAction* action : {contents, back})
        bar->widgetForAction(action)->setFocusPolicy(Qt::TabFocus);
    m_notFound->setObjectName(QStringLiteral("manualNotFound"));
    m_notFound->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_notFound->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_notFound->setContentsMargins(8, 0, 8, 0);
    bar->addWidget(m_notFound);
    m_searchField->setObjectName(QStringLiteral("manualSearch"));
    m_searchField->setPlaceholderText(tr("Search the manual"));
    m_searchField->setAccessibleName(tr("Search the manual"));
    m_searchField->setClearButtonEnabled(true);
    m_searchField->setMaximumWidth(280);
    bar->addWidget(m_searchField);
    connect(m_searchField, &QLineEdit::returnPressed, this, &ManualWindow::findNext);
    connect(m_searchField, &QLineEdit::textChanged, m_notFound, &QLabel::clear);
    auto* const find = new QAction(this);
    find->setShortcut(QKeySequence::Find);
    connect(find, &QAction::triggered, m_searchField, qOverload<>(&QWidget::setFocus));
    connect(find, &QAction::triggered, m_searchField, &QLineEdit::selectAll);
    addAction(find);
}

void ManualWindow::open(const QString& chapter)
{
    m_text->setSource(fileOf(chapter), QTextDocument::MarkdownResource);
}

void ManualWindow::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange && !m_text->source().isEmpty())
        m_text->reload();
    QMainWindow::changeEvent(event);
}

void ManualWindow::findNext()
{
    const QString wanted = m_searchField->text();
    if (wanted.isEmpty() || m_text->find(wanted))
        return;
    const QFileInfoList files =
        QDir(folder()).entryInfoList({QStringLiteral("*.md")}, QDir::Files, QDir::Name);
    const qsizetype shown = files.indexOf(QFileInfo(m_text->source().toLocalFile()));
    for (qsizetype i = 1; i <= files.size(); ++i) {
        const QString next = files[(shown + i) % files.size()].completeBaseName();
        QTextDocument chapter;
        chapter.setMarkdown(QString::fromUtf8(
            m_text->loadResource(QTextDocument::MarkdownResource, fileOf(next)).toByteArray()));
        if (chapter.find(wanted).isNull())
            continue;
        open(next);
        m_text->moveCursor(QTextCursor::Start);
        m_text->find(wanted);
        return;
    }
    m_notFound->setText(tr("Not found"));
}

} // namespace luma
