// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stylesheeteditor.h"

#include "base/files.h"
#include "base/pathtext.h"
#include "editor/savequestion.h"
#include "links/movedlinks.h"
#include "page/cssmenu.h"
#include "page/csstidy.h"
#include "page/pagetree.h"
#include "web/codeedit.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTextCursor>

#include <algorithm>
#include <utility>

namespace fs = std::filesystem;

namespace luma {

namespace {

constexpr int longestName = 24; // characters of a sheet's name in its tab

// The place of `tidied` that was at `line` and `column`, counted from 1, before a sheet was tidied: only its white space has
// changed. In a text with other changes, the end or a place near it.
qsizetype placeInTidied(const QString& text, const QString& tidied, unsigned line, unsigned column)
{
    qsizetype begin = 0;
    for (unsigned i = 1; i < line; ++i) {
        const qsizetype feed = text.indexOf(u'\n', begin);
        if (feed < 0)
            return tidied.size();
        begin = feed + 1;
    }
    const qsizetype end = std::min(begin + static_cast<qsizetype>(column) - 1, text.size());
    auto left = std::count_if(text.begin(), text.begin() + end, [](QChar c) { return !c.isSpace(); });
    for (qsizetype i = 0; i < tidied.size(); ++i) {
        if (!tidied[i].isSpace() && left-- == 0)
            return i;
    }
    return tidied.size();
}

// Where the sheet was and where it is now; a style block counts as a sheet beside the page.
MovedItem placesOf(const QString& title, const SiteFolder& before, const SiteFolder& after,
                   const std::vector<MovedItem>& items)
{
    if (isStyleBlock(title))
        return {before.page().parent_path() / "style.css", after.page().parent_path() / "style.css"};
    const std::string link = title.toStdString();
    const fs::path beside = (before.page().parent_path() / fs::path(link).relative_path()).lexically_normal();
    for (const fs::path& file : {beside, before.fileOfLink(link).value_or(beside)}) {
        fs::path place = file;
        for (const MovedItem& item : items)
            place = placeAfterMove(place, item);
        if (itemExists(place))
            return {file, place};
    }
    return {beside, beside};
}

} // namespace

StyleSheetEditor::StyleSheetEditor(const Controls& controls, PageTree& tree, std::function<SiteFolder()> site,
                                   QObject* parent)
    : QObject(parent), m_controls(controls), m_tree(tree), m_site(std::move(site))
{
    connect(controls.cssMenu, &QComboBox::activated, this, &StyleSheetEditor::selectCSS);
    connect(controls.cssField, &QPlainTextEdit::textChanged, this, &StyleSheetEditor::textDidChange);
    connect(controls.cssButton, &QPushButton::clicked, this, &StyleSheetEditor::updateCSS);
    connectTabs();
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &StyleSheetEditor::noteChange);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &StyleSheetEditor::noteChange);
}

void StyleSheetEditor::connectTabs()
{
    QTabBar& tabs = *m_controls.cssTabs;
    const auto select = [this](int row) {
        m_controls.cssMenu->setCurrentIndex(row);
        selectCSS();
    };
    connect(&tabs, &QTabBar::currentChanged, this, select);
    const auto addKey = [this, &tabs](const QKeySequence& key, int step) {
        auto* const shortcut = new QShortcut(key, tabs.parentWidget());
        shortcut->setContext(Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [&tabs, step] {
            if (tabs.count() > 0)
                tabs.setCurrentIndex((tabs.currentIndex() + step + tabs.count()) % tabs.count());
        });
    };
    addKey(Qt::CTRL | Qt::Key_PageDown, 1);
    addKey(Qt::CTRL | Qt::Key_PageUp, -1);
    tabs.hide();
}

void StyleSheetEditor::updateTabs()
{
    QTabBar& tabs = *m_controls.cssTabs;
    const QSignalBlocker quiet(tabs);
    const int count = m_controls.cssMenu->count();
    while (tabs.count() > count)
        tabs.removeTab(tabs.count() - 1);
    while (tabs.count() < count)
        tabs.addTab(QString());
    for (int i = 0; i < count; ++i) {
        const QString title = m_controls.cssMenu->itemText(i);
        const bool isDraft = m_drafts.contains(title);
        QString name = isStyleBlock(title) ? title : title.section(u'/', -1).section(u'?', 0, 0);
        name = tabs.fontMetrics().elidedText(name.isEmpty() ? title : name, Qt::ElideMiddle,
                                             longestName * tabs.fontMetrics().averageCharWidth());
        tabs.setTabText(i, QString(name).replace(u'&', QStringLiteral("&&")) +
                               (isDraft ? QStringLiteral("*") : QString()));
        tabs.setTabToolTip(i, title.toHtmlEscaped());
        tabs.setAccessibleTabName(i, isDraft ? tr("%1, not saved").arg(title) : title);
    }
    tabs.setCurrentIndex(m_controls.cssMenu->currentIndex());
    tabs.setVisible(count > 1);
}

void StyleSheetEditor::buildCSSMenu()
{
    m_controls.cssMenu->clear();
    m_controls.cssMenu->addItems(titles());
    m_controls.cssMenu->setCurrentIndex(m_controls.cssMenu->count() - 1);
    m_controls.cssMenu->setEnabled(m_controls.cssMenu->count() > 0);
    selectCSS();
}

void StyleSheetEditor::updateCSSMenu()
{
    QStringList shown;
    for (int i = 0; i < m_controls.cssMenu->count(); ++i)
        shown.append(m_controls.cssMenu->itemText(i));
    if (m_tree.document() && shown != titles())
        buildCSSMenu();
    else if (isStyleBlock(shownTitle()) && !m_drafts.contains(shownTitle()) &&
             textOf(shownTitle()) != m_shown)
        selectCSS();
}

QStringList StyleSheetEditor::titles() const
{
    return m_tree.document() ? cssMenuTitles(*m_tree.document()) : QStringList();
}

QString StyleSheetEditor::shownTitle() const
{
    return m_controls.cssMenu->currentText();
}

fs::path StyleSheetEditor::fileOf(const QString& title) const
{
    const SiteFolder site = m_site();
    fs::path beside = site.page().parent_path() / fs::path(title.toStdString()).relative_path();
    if (itemExists(beside))
        return beside;
    const std::optional<fs::path> linked = site.fileOfLink(title.toStdString());
    return linked && itemExists(*linked) ? *linked : beside;
}

StyleSheetFile& StyleSheetEditor::sheetFile(const QString& title)
{
    StyleSheetFile& file = m_files[title];
    if (const fs::path path = fileOf(title); file.path() != path) {
        file = StyleSheetFile(path);
        (void)file.read(); // its encoding
    }
    return file;
}

std::optional<std::string> StyleSheetEditor::textOf(const QString& title)
{
    if (isStyleBlock(title)) {
        const html::Element* block = m_tree.document() ? styleBlock(*m_tree.document(), title) : nullptr;
        return block ? std::optional(block->html()) : std::nullopt;
    }
    if (title.isEmpty())
        return {};
    auto text = sheetFile(title).read();
    return text ? std::optional(*std::move(text)) : std::nullopt;
}

void StyleSheetEditor::selectCSS()
{
    const QString title = shownTitle();
    const auto draft = m_drafts.constFind(title);
    const bool isDraft = draft != m_drafts.constEnd() && (isStyleBlock(title) || itemExists(fileOf(title)));
    // The file of a draft stays as it was read: what changed in it since must not be overwritten unasked.
    const auto text = isDraft && !isStyleBlock(title) ? std::optional<std::string>() : textOf(title);
    QString css = isDraft ? *draft : QString();
    if (text && !isDraft && !text->empty())
        css = QString::fromStdString(tidyCSS(*text));
    {
        const QSignalBlocker quiet(m_controls.cssField);
        m_controls.cssField->setPlainText(css);
    }
    m_shown = text;
    const bool isEditable = isDraft || text;
    // A sheet that can't be read must not be overwritten.
    m_controls.cssField->setReadOnly(!isEditable);
    m_controls.cssField->setEnabled(isEditable);
    m_controls.cssButton->setText(isStyleBlock(title) ? tr("Update CSS") : tr("Save CSS"));
    m_controls.cssButton->setEnabled(isDraft);
    updateTabs();
    followFile(title.isEmpty() || isStyleBlock(title) ? fs::path() : fileOf(title));
}

// The watch ends when another program replaces the file by a new one, so the folder is watched too.
void StyleSheetEditor::followFile(const fs::path& file)
{
    if (const QStringList watched = m_watcher.files() + m_watcher.directories(); !watched.isEmpty())
        m_watcher.removePaths(watched);
    if (!file.empty() && itemExists(file))
        m_watcher.addPaths({luma::textOf(file), luma::textOf(file.parent_path())});
}

void StyleSheetEditor::noteChange()
{
    const QString title = shownTitle();
    if (!title.isEmpty() && !isStyleBlock(title) && !m_drafts.contains(title) &&
        sheetFile(title).changedOnDisk())
        selectCSS();
}

void StyleSheetEditor::textDidChange()
{
    m_editedTexts.remove(shownTitle());
    setDraft(shownTitle(), CodeEdit::textIn(*m_controls.cssField));
    m_controls.cssButton->setEnabled(true);
}

void StyleSheetEditor::setDraft(const QString& title, const QString& css)
{
    const bool isFirst = !m_drafts.contains(title);
    m_drafts[title] = css;
    if (isFirst)
        updateTabs();
    if (!isStyleBlock(title))
        emit draftChanged(sheetFile(title).path(), css.toUtf8());
}

void StyleSheetEditor::dropDraft(const QString& title)
{
    m_editedTexts.remove(title);
    if (m_drafts.remove(title) == 0)
        return;
    updateTabs();
    if (!isStyleBlock(title))
        emit draftChanged(sheetFile(title).path(), std::nullopt);
}

// A sheet that no link in the page's head leads to, such as an imported one, has the link that would.
QString StyleSheetEditor::titleOf(const fs::path& file) const
{
    const QStringList linked = titles();
    for (const QString& title : linked) {
        if (!isStyleBlock(title) && fileOf(title).lexically_normal() == file.lexically_normal())
            return title;
    }
    return QString::fromStdString(file.lexically_relative(m_site().page().parent_path()).string());
}

std::optional<std::string> StyleSheetEditor::textOfFile(const fs::path& file)
{
    const QString title = titleOf(file);
    const auto draft = m_drafts.constFind(title);
    return draft != m_drafts.constEnd() ? std::optional(draft->toStdString()) : textOf(title);
}

void StyleSheetEditor::editFile(const fs::path& file, const CssEdit& edit)
{
    const QString title = titleOf(file);
    const auto before = textOfFile(file);
    if (!before)
        return;
    if (!m_drafts.contains(title))
        m_editedTexts[title] = QString::fromStdString(*before);
    const QString after = QString::fromStdString(edit.applied(*before));
    if (m_editedTexts.contains(title) && m_editedTexts[title] == after)
        dropDraft(title);
    else
        setDraft(title, after);
    if (title == shownTitle())
        selectCSS();
}

bool StyleSheetEditor::uses(const fs::path& file) const
{
    return titles().contains(titleOf(file)) && itemExists(file);
}

void StyleSheetEditor::showPlace(const fs::path& file, unsigned line, unsigned column)
{
    const QString title = titleOf(file);
    m_controls.cssMenu->setCurrentIndex(
        m_controls.cssMenu->findText(title, Qt::MatchExactly | Qt::MatchCaseSensitive));
    selectCSS();
    const std::string stored = textOf(title).value_or(std::string());
    const QString shown = CodeEdit::textIn(*m_controls.cssField);
    QTextCursor cursor = m_controls.cssField->textCursor();
    cursor.setPosition(static_cast<int>(placeInTidied(QString::fromStdString(stored), shown, line, column)));
    m_controls.cssField->setTextCursor(cursor);
    m_controls.cssField->centerCursor();
    m_controls.cssField->setFocus();
}

void StyleSheetEditor::updateCSS()
{
    const QString title = shownTitle();
    // Failures are ignored: the text stays in the field, and the user can save again.
    store(title, CodeEdit::textIn(*m_controls.cssField), [this, title](const Result<void>&) {
        if (!isStyleBlock(title) && title == shownTitle())
            selectCSS();
    });
}

void StyleSheetEditor::storeDrafts(const std::function<void()>& then)
{
    storeNext(m_drafts.keys(), then);
}

void StyleSheetEditor::followLinks(const LinksUpdate& update, const std::function<void()>& updatePage)
{
    const QStringList before = titles();
    const SiteFolder oldSite = m_site();
    const int shown = m_controls.cssMenu->currentIndex();
    const QMap<QString, QString> drafts = m_drafts;
    const QMap<QString, QString> editedTexts = m_editedTexts;
    for (auto draft = drafts.begin(); draft != drafts.end(); ++draft)
        dropDraft(draft.key());
    updatePage();
    const QStringList after = titles();
    auto files = std::exchange(m_files, {});
    for (auto draft = drafts.begin(); draft != drafts.end(); ++draft) {
        const MovedItem places = placesOf(draft.key(), oldSite, m_site(), update.items);
        const auto css = update.updated ? update.updated(draft.value().toStdString(), places.from, places.to)
                                        : Result<std::string>(draft.value().toStdString());
        const qsizetype row = before.size() == after.size() ? before.indexOf(draft.key()) : -1;
        const QString& title = row < 0 ? draft.key() : after[row];
        if (const auto file = files.find(draft.key()); file != files.end()) {
            file->second.follow(fileOf(title), update.files);
            m_files[title] = file->second;
        }
        if (editedTexts.contains(draft.key()))
            m_editedTexts[title] = QString(); // the saved text has other links now
        setDraft(title, css ? QString::fromStdString(*css) : draft.value());
    }
    buildCSSMenu();
    if (before.size() == after.size() && shown >= 0) {
        m_controls.cssMenu->setCurrentIndex(shown);
        selectCSS();
    }
}

void StyleSheetEditor::storeNext(QStringList titles, const std::function<void()>& then)
{
    if (titles.isEmpty()) {
        selectCSS();
        then();
        return;
    }
    const QString title = titles.takeFirst();
    store(title, m_drafts.value(title), [this, titles, then](const Result<void>& stored) {
        if (!stored)
            emit failed(QString::fromStdString(stored.error().text));
        storeNext(titles, then);
    });
}

void StyleSheetEditor::store(const QString& title, const QString& css, const Stored& then)
{
    if (isStyleBlock(title)) {
        dropDraft(title);
        emit styleBlockRequested(title, css);
        then({});
    } else if (sheetFile(title).changedOnDisk()) {
        // The sheet may have moved before the answer comes; its text is kept under its new title then.
        SaveQuestion::askToReplace(m_controls.cssField->window(), this, title, [this, title, css, then] {
            if (m_drafts.contains(title))
                then(write(title, css));
        });
    } else {
        then(write(title, css));
    }
}

Result<void> StyleSheetEditor::write(const QString& title, const QString& css)
{
    const fs::path file = sheetFile(title).path();
    const std::string text = css.toStdString();
    if (const auto written = sheetFile(title).write(m_editedTexts.contains(title) ? text : tidyCSS(text));
        !written)
        return written.error();
    dropDraft(title);
    emit fileStored(file);
    return {};
}

} // namespace luma
