// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/tagcontrols.h"

#include "desktop/icons.h"
#include "editor/outlinemenu.h"
#include "editor/outlineselection.h"
#include "editor/pageedits.h"
#include "page/tagmenu.h"
#include "ui_HTMLDocument.h"

namespace luma {

namespace {

/// The way down to an element, as the foot of the window shows it.
QString pathText(const html::Element& element)
{
    QStringList names;
    for (const html::Element* each = &element; each; each = each->parent()->asElement()) {
        const std::string id(each->attr("id"));
        const QString name = tagNameOf(*each);
        names.prepend(id.empty() ? name : name + u'#' + QString::fromStdString(id));
    }
    return names.join(QStringLiteral(" \u203a "));
}

} // namespace

TagControls::TagControls(Ui::HTMLDocument& ui, const TagRules& rules, const CssNames& names,
                         OutlineSelection& selection, PageEdits& edits, QObject* parent)
    : QObject(parent), m_ui(ui), m_rules(rules), m_names(names), m_selection(selection), m_edits(edits)
{
    auto* const menu = new QMenu(tr("Insert"), ui.addTagButton);
    menu->setObjectName(QStringLiteral("addTagMenu"));
    ui.addTagButton->setMenu(menu);
    ui.addTagButton->setIcon(icons::symbol(QStringLiteral("add")));
    ui.deleteTagButton->setIcon(icons::symbol(QStringLiteral("delete")));
    connect(ui.deleteTagButton, &QPushButton::clicked, &edits, &PageEdits::deleteTag);
    connect(ui.deleteTagAction, &QAction::triggered, &edits, &PageEdits::deleteTag);
    connect(ui.insertMenu, &QMenu::aboutToShow, this, [this] { fillInsertMenu(m_ui.insertMenu); });
    connect(ui.myOutlineView, &OutlineView::deleteRequested, &edits, &PageEdits::deleteTag);
    connect(ui.myOutlineView, &OutlineView::menuRequested, this, &TagControls::menuWillOpen);
}

void TagControls::update()
{
    const html::Element* const element = m_selection.element();
    m_ui.addTagButton->setEnabled(m_rules.canEnable(element));
    fillInsertMenu(m_ui.addTagButton->menu());
    m_ui.insertMenu->setEnabled(m_rules.canEnable(element));
    m_ui.deleteTagButton->setEnabled(m_rules.canDelete(element));
    m_ui.deleteTagAction->setEnabled(m_rules.canDelete(element));
    m_ui.elementPath->setText(element ? pathText(*element) : QString());
}

void TagControls::fillInsertMenu(QMenu* menu)
{
    menu->clear();
    const QStringList titles = insertTitles(m_rules, m_selection.element());
    for (const QString& title : titles)
        menu->addAction(title, &m_edits, [this, title] { m_edits.addTag(title); });
}

void TagControls::menuWillOpen(const QPoint& where)
{
    const auto entries = buildTagMenu(m_rules, m_selection.element(), m_names.classes, m_names.ids);
    if (entries.empty())
        return;
    auto* const menu = new OutlineMenu(entries, m_ui.myOutlineView);
    connect(menu, &OutlineMenu::chosen, &m_edits, &PageEdits::perform, Qt::QueuedConnection);
    menu->popup(where);
}

} // namespace luma
