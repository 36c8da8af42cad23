// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/tagmenu.h"

#include "html/element.h"

#include <QSet>

namespace luma {

namespace {

// The outline's menu translates them; the tree names its undo steps with them.
constexpr QLatin1StringView insertTitle(QT_TRANSLATE_NOOP("luma::OutlineMenu", "Insert"));
constexpr QLatin1StringView addClassTitle(QT_TRANSLATE_NOOP("luma::OutlineMenu", "Add Class"));
constexpr QLatin1StringView removeClassTitle(QT_TRANSLATE_NOOP("luma::OutlineMenu", "Remove Class"));
constexpr QLatin1StringView addIDTitle(QT_TRANSLATE_NOOP("luma::OutlineMenu", "Add ID"));
constexpr QLatin1StringView removeIDTitle(QT_TRANSLATE_NOOP("luma::OutlineMenu", "Remove ID"));
constexpr QLatin1StringView deleteTitle(QT_TRANSLATE_NOOP("luma::OutlineMenu", "Delete"));

QString attributeOf(const html::Element& element, std::string_view name)
{
    const std::string_view value = element.attr(name);
    return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()));
}

QStringList addableClasses(const html::Element& element, const QStringList& cssClassArray)
{
    // A name within a name counts as present: "nav" is not offered beside "navbar".
    const QString present = attributeOf(element, "class");
    QStringList names;
    for (const QString& name : cssClassArray) {
        if (!present.contains(name))
            names.append(name);
    }
    return names;
}

QStringList addableIDs(const html::Element& element, const QStringList& cssIDArray)
{
    QSet<QString> used;
    const html::Node& root = element.root();
    for (const html::Node* node = &root; node; node = node->following(root)) {
        if (const html::Element* other = node->asElement(); other && other->hasAttr("id"))
            used.insert(attributeOf(*other, "id"));
    }
    QStringList names;
    for (const QString& name : cssIDArray) {
        if (!used.contains(name))
            names.append(name);
    }
    return names;
}

/// Collects the entries and knows where separators go.
class MenuBuilder final
{
public:
    void addSubmenu(const QString& title, const QString& submenuTitle, const QStringList& titles,
                    TagAction action)
    {
        TagMenuEntry entry = {title, TagAction::None, false, submenuTitle, {}};
        for (const QString& each : titles)
            entry.submenu.push_back({each, action, false, {}, {}});
        m_entries.push_back(entry);
    }
    void addItem(const QString& title, TagAction action)
    {
        m_entries.push_back({title, action, false, {}, {}});
    }
    void separateFromOthers()
    {
        if (!m_entries.empty())
            m_entries.push_back({{}, TagAction::None, true, {}, {}});
    }
    /// Separated even at the top of the menu.
    void separateUnlessAfter(const QString& title)
    {
        if (m_entries.empty() || m_entries.back().title != title)
            m_entries.push_back({{}, TagAction::None, true, {}, {}});
    }
    std::vector<TagMenuEntry> take() { return std::move(m_entries); }

private:
    std::vector<TagMenuEntry> m_entries;
};

void addClassEntries(MenuBuilder& menu, const TagRules& rules, const html::Element& element,
                     const QStringList& cssClassArray)
{
    const QStringList addable =
        rules.canAddClass(&element) ? addableClasses(element, cssClassArray) : QStringList();
    if (!addable.isEmpty()) {
        menu.separateFromOthers();
        menu.addSubmenu(addClassTitle, {}, addable, TagAction::AddClass);
    }
    const QStringList present = attributeOf(element, "class").split(u' ', Qt::SkipEmptyParts);
    if (rules.canRemoveClass(&element) && !present.isEmpty()) {
        menu.separateUnlessAfter(addClassTitle);
        menu.addSubmenu(removeClassTitle, {}, present, TagAction::RemoveClass);
    }
}

void addIDEntries(MenuBuilder& menu, const TagRules& rules, const html::Element& element,
                  const QStringList& cssIDArray)
{
    const QStringList addable = rules.canAddID(&element) ? addableIDs(element, cssIDArray) : QStringList();
    if (!addable.isEmpty()) {
        menu.separateFromOthers();
        menu.addSubmenu(addIDTitle, {}, addable, TagAction::AddID);
    }
    if (rules.canRemoveID(&element)) {
        menu.separateUnlessAfter(addIDTitle);
        menu.addItem(removeIDTitle, TagAction::RemoveID);
    }
}

} // namespace

std::vector<TagMenuEntry> buildTagMenu(const TagRules& rules, const html::Element* element,
                                       const QStringList& cssClassArray, const QStringList& cssIDArray)
{
    MenuBuilder menu;
    if (!element)
        return {};
    if (rules.canEnable(element))
        menu.addSubmenu(insertTitle, u"Insert /(tagName)"_qs, rules.insertableTags(element),
                        TagAction::AddTag);
    addClassEntries(menu, rules, *element, cssClassArray);
    addIDEntries(menu, rules, *element, cssIDArray);
    if (rules.canDelete(element)) {
        menu.separateFromOthers();
        menu.addItem(deleteTitle, TagAction::DeleteTag);
    }
    return menu.take();
}

} // namespace luma
