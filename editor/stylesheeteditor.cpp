// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stylesheeteditor.h"

#include "base/files.h"
#include "links/movedlinks.h"
#include "page/cssmenu.h"
#include "page/csstidy.h"
#include "page/pagetree.h"
#include "web/codeedit.h"

#include <QComboBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include <utility>

namespace fs = std::filesystem;

namespace luma {

namespace {

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

std::optional<std::string> StyleSheetEditor::textOf(const QString& title) const
{
    if (isStyleBlock(title)) {
        const html::Element* block = m_tree.document() ? styleBlock(*m_tree.document(), title) : nullptr;
        return block ? std::optional(block->html()) : std::nullopt;
    }
    const auto bytes = title.isEmpty() ? Error{} : readFile(fileOf(title));
    return bytes && QString::fromUtf8(bytes->data(), static_cast<qsizetype>(bytes->size())).toStdString() ==
                        *bytes
               ? std::optional(*bytes)
               : std::nullopt;
}

void StyleSheetEditor::selectCSS()
{
    const QString title = shownTitle();
    const auto text = textOf(title);
    const auto draft = m_drafts.constFind(title);
    const bool isDraft = text && draft != m_drafts.constEnd();
    QString css = isDraft ? *draft : QString();
    if (text && !isDraft && !text->empty())
        css = QString::fromStdString(tidyCSS(*text));
    {
        const QSignalBlocker quiet(m_controls.cssField);
        m_controls.cssField->setPlainText(css);
    }
    // A sheet that can't be read must not be overwritten.
    m_controls.cssField->setReadOnly(!text);
    m_controls.cssField->setEnabled(text.has_value());
    m_controls.cssButton->setText(isStyleBlock(title) ? tr("Update CSS") : tr("Save CSS"));
    m_controls.cssButton->setEnabled(isDraft);
}

void StyleSheetEditor::textDidChange()
{
    m_drafts[shownTitle()] = CodeEdit::textIn(*m_controls.cssField);
    m_controls.cssButton->setEnabled(true);
}

void StyleSheetEditor::updateCSS()
{
    // Failures are ignored: the text stays in the field, and the user can save again.
    (void)store(shownTitle(), CodeEdit::textIn(*m_controls.cssField));
    if (!isStyleBlock(shownTitle()))
        selectCSS();
}

void StyleSheetEditor::storeDrafts()
{
    const QMap<QString, QString> drafts = m_drafts;
    for (auto draft = drafts.begin(); draft != drafts.end(); ++draft) {
        if (const auto stored = store(draft.key(), draft.value()); !stored)
            emit failed(QString::fromStdString(stored.error().text));
    }
    selectCSS();
}

void StyleSheetEditor::followLinks(const LinksUpdate& update, const std::function<void()>& updatePage)
{
    const QStringList before = titles();
    const SiteFolder oldSite = m_site();
    const int shown = m_controls.cssMenu->currentIndex();
    updatePage();
    const QStringList after = titles();
    const QMap<QString, QString> drafts = std::exchange(m_drafts, {});
    for (auto draft = drafts.begin(); draft != drafts.end(); ++draft) {
        const MovedItem places = placesOf(draft.key(), oldSite, m_site(), update.items);
        const auto css = update.updated ? update.updated(draft.value().toStdString(), places.from, places.to)
                                        : Result<std::string>(draft.value().toStdString());
        const qsizetype row = before.size() == after.size() ? before.indexOf(draft.key()) : -1;
        m_drafts[row < 0 ? draft.key() : after[row]] = css ? QString::fromStdString(*css) : draft.value();
    }
    buildCSSMenu();
    if (before.size() == after.size() && shown >= 0) {
        m_controls.cssMenu->setCurrentIndex(shown);
        selectCSS();
    }
}

Result<void> StyleSheetEditor::store(const QString& title, const QString& css)
{
    if (isStyleBlock(title)) {
        m_drafts.remove(title);
        emit styleBlockRequested(title, css);
        return {};
    }
    const std::string tidied = tidyCSS(css.toStdString());
    if (const auto written = writeFile(fileOf(title), tidied); !written)
        return written.error();
    m_drafts.remove(title);
    emit fileStored(fileOf(title));
    return {};
}

} // namespace luma
