// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagesaver.h"

#include "base/aside.h"
#include "base/pathbelow.h"
#include "base/pathtext.h"
#include "editor/savequestion.h"
#include "editor/templatesheet.h"
#include "page/pagestore.h"
#include "web/viewcontroller.h"

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

#include <functional>
#include <memory>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

QFileDialog* panelOf(QWidget* window, const QString& title, const QString& name)
{
    auto* const panel = new QFileDialog(window, title, QString(),
                                        PageSaver::tr("Pages (*.html *.xhtml *.xml);;All files (*)"));
    panel->setObjectName(name);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    return panel;
}

} // namespace

PageSaver::PageSaver(QWidget* window, PageStore& store, ViewController& rendering, const fs::path& siteFolder,
                     Writer write)
    : QObject(window),
      m_window(window),
      m_store(store),
      m_rendering(rendering),
      m_siteFolder(siteFolder),
      m_write(std::move(write)),
      m_templateFolder(&TemplateSheet::usualFolder)
{}

QString PageSaver::name() const
{
    return m_store.hasFile() ? textOf(m_store.docURL().filename()) : tr("Untitled");
}

void PageSaver::whenCaughtUp(const Then& then)
{
    const bool tidies = m_store.hasPage() && m_store.tidiesWhenSaving();
    const auto next = [this, then, tidies](const ViewController::Paths& inLines) {
        if (!m_store.hasPage())
            return;
        if (tidies)
            m_store.setShownInLines(inLines);
        then();
    };
    if (tidies)
        m_rendering.whenCaughtUpWithLooks(this, next);
    else
        m_rendering.whenCaughtUp(this, [next] { next({}); });
}

void PageSaver::save(const Then& then)
{
    whenCaughtUp([this, then] {
        if (!m_store.hasFile())
            chooseName(then);
        else
            replaceUnlessChanged(then);
    });
}

void PageSaver::replaceUnlessChanged(const Then& then)
{
    const auto isLate = std::make_shared<bool>(false);
    *isLate = !runAside(
        *this, [file = m_store.file()] { return file.changedOnDisk(); },
        [this, then, isLate](bool hasChanged) {
            if (*isLate)
                emit waiting(false);
            hasChanged ? askToOverwrite(then) : replace(then);
        });
    if (*isLate)
        emit waiting(true);
}

void PageSaver::replace(const Then& then)
{
    const PageStore::Loss loss = m_store.lossOfSaving();
    const Then next = [this, then, loss] {
        if (loss.elements.empty())
            m_write(m_store.docURL(), then);
        else
            askToLeaveOut(loss.elements, then);
    };
    if (loss.isXml)
        askToSaveAsHtml(next);
    else
        next();
}

void PageSaver::saveAs(const Then& then)
{
    whenCaughtUp([this, then] { chooseName(then); });
}

void PageSaver::chooseName(const Then& then)
{
    QFileDialog* const panel = panelOf(m_window, tr("Save As"), QStringLiteral("savePanel"));
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setDefaultSuffix(QStringLiteral("html"));
    if (m_store.hasFile())
        panel->selectFile(textOf(m_store.docURL()));
    else if (!m_siteFolder.empty())
        panel->setDirectory(textOf(m_siteFolder));
    connect(panel, &QFileDialog::fileSelected, this,
            [this, then](const QString& file) { saveUnder(pathOf(file), then); });
    panel->open();
}

void PageSaver::saveUnder(const fs::path& path, const Then& then)
{
    if (m_store.hasFile() && path == m_store.docURL())
        replace(then);
    else
        m_write(path, then);
}

void PageSaver::openPanel()
{
    choosePage(tr("Open"), QStringLiteral("openPanel"),
               [this](const fs::path& page) { emit openRequested(page); });
}

void PageSaver::newFromPanel()
{
    choosePage(tr("New Page From"), QStringLiteral("newFromPanel"), [this](const fs::path& page) {
        const fs::path folder = m_templateFolder();
        const bool isTemplate = isAtOrBelow(page.native(), folder.native());
        emit newFromRequested({page, isTemplate ? folder : fs::path()});
    });
}

void PageSaver::newFromTemplate()
{
    if (!m_templates) {
        m_templates = new TemplateSheet([this] { return m_templateFolder(); }, m_window);
        connect(m_templates, &TemplateSheet::confirmed, this, &PageSaver::newFromRequested);
    }
    m_templates->begin();
}

void PageSaver::saveAsTemplate()
{
    whenCaughtUp([this] {
        QFileDialog* const panel =
            panelOf(m_window, tr("Save as Template"), QStringLiteral("saveTemplatePanel"));
        std::error_code error;
        const fs::path folder = m_templateFolder();
        fs::create_directories(folder, error);
        panel->setAcceptMode(QFileDialog::AcceptSave);
        panel->setDefaultSuffix(QStringLiteral("html"));
        panel->setDirectory(textOf(folder));
        panel->selectFile(m_store.hasFile() ? name() : tr("Untitled") + QStringLiteral(".html"));
        connect(panel, &QFileDialog::fileSelected, this, [this](const QString& file) {
            if (const auto saved = m_store.saveCopy(pathOf(file)); !saved)
                emit templateFailed(QString::fromStdString(saved.error().text));
        });
        panel->open();
    });
}

void PageSaver::choosePage(const QString& title, const QString& name, const Chosen& chosen)
{
    QFileDialog* const panel = panelOf(m_window, title, name);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setDirectory(textOf(m_store.hasFile() ? m_store.docURL().parent_path() : m_siteFolder));
    connect(panel, &QFileDialog::fileSelected, this, [chosen](const QString& file) { chosen(pathOf(file)); });
    panel->open();
}

void PageSaver::askToOverwrite(const Then& then)
{
    SaveQuestion::askToReplace(m_window, this, name(), [this, then] { replace(then); });
}

void PageSaver::askToSaveAsHtml(const Then& then)
{
    SaveQuestion::ask(
        m_window, this, QStringLiteral("xhtmlQuestion"),
        {tr("\u201c%1\u201d is written in XHTML.").arg(name()),
         tr("Your edits can only be written as HTML. Browsers show it, but programs that read XML may refuse "
            "it. To keep this file unchanged, use Save As."),
         tr("Save as HTML")},
        then);
}

void PageSaver::askToLeaveOut(const std::vector<std::string>& elements, const Then& then)
{
    QStringList tags;
    for (const std::string& name : elements)
        tags += u'<' + QString::fromStdString(name) + u'>';
    SaveQuestion::ask(m_window, this, QStringLiteral("lossQuestion"),
                      {tr("\u201c%1\u201d holds elements that can't be edited here.").arg(name()),
                       tr("Saving leaves out everything in <select> except its options: %1. "
                          "To keep this file unchanged, use Save As.")
                           .arg(tags.join(QStringLiteral(", "))),
                       tr("Leave Out")},
                      [this, then] { m_write(m_store.docURL(), then); });
}

void PageSaver::askToSave()
{
    if (m_question)
        return;
    m_question = new QMessageBox(QMessageBox::Question, tr("Close"),
                                 tr("Save the changes to \u201c%1\u201d?").arg(name()),
                                 QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, m_window);
    m_question->setObjectName(QStringLiteral("saveQuestion"));
    m_question->setAttribute(Qt::WA_DeleteOnClose);
    m_question->setTextFormat(Qt::PlainText);
    m_question->setDefaultButton(QMessageBox::Save);
    m_question->button(QMessageBox::Save)->setText(tr("&Save")); // the word of the question and of the menu
    connect(m_question, &QMessageBox::finished, this, [this](int answer) {
        if (answer == QMessageBox::Save)
            emit saveRequested();
        else if (answer == QMessageBox::Discard)
            emit discarded();
    });
    m_question->open();
}

} // namespace luma
