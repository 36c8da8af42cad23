// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagespelling.h"

#include "page/pagetree.h"
#include "web/spellcheck.h"

#include <QAction>
#include <QWidget>

namespace luma {

PageSpelling::PageSpelling(SpellCheck& check, const PageTree& tree, QAction& action, QWidget& window)
    : QObject(&window), m_check(check), m_tree(tree), m_window(window)
{
    action.setChecked(check.isOn());
    connect(&action, &QAction::toggled, &check, [this, &check](bool on) {
        tellLanguages();
        check.setOn(on);
    });
    connect(&check, &SpellCheck::changed, &action, &QAction::setChecked);
    connect(&check, &SpellCheck::dictionaryMissing, this, &PageSpelling::tellMissing);
    connect(&tree, &PageTree::reset, this, &PageSpelling::update);
    connect(&tree, &PageTree::attributesSwapped, this, [this](const html::Element* element) {
        if (element->hasAttr("lang"))
            update();
    });
}

void PageSpelling::update()
{
    if (m_check.isOn() && m_window.isActiveWindow())
        tellLanguages();
}

void PageSpelling::tellLanguages()
{
    if (!m_tree.document())
        return;
    QStringList languages;
    for (const html::Element* const element : m_tree.document()->select("[lang]")) {
        const QString language = QString::fromStdString(std::string(element->attr("lang"))).trimmed();
        if (!language.isEmpty() && !languages.contains(language))
            languages.append(language);
    }
    m_check.setLanguages(languages);
    m_told = m_check.languages();
}

void PageSpelling::tellMissing(const QStringList& languages)
{
    if (languages != m_told)
        return;
    emit failed(
        SpellDictionaries::converter()
            ? tr("No spelling dictionary is installed for: %1").arg(languages.join(QStringLiteral(", ")))
            : tr("To check the spelling, install the package qt6-webengine-dev-tools."));
}

} // namespace luma
