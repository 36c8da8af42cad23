// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagespelling.h"

#include "page/pagetree.h"
#include "web/scriptcall.h"
#include "web/spellcheck.h"
#include "web/viewcontroller.h"

#include <QAction>
#include <QWidget>

namespace luma {

PageSpelling::PageSpelling(ViewController& rendering, const PageTree& tree, QAction& action, QWidget& window)
    : QObject(&window),
      m_rendering(rendering),
      m_check(rendering.webView()->spellCheck()),
      m_tree(tree),
      m_window(window)
{
    action.setChecked(m_check.isOn());
    connect(&action, &QAction::toggled, &m_check, [this](bool on) {
        m_missing.clear();
        tellLanguages();
        m_check.setOn(on);
    });
    connect(&m_check, &SpellCheck::changed, &action, &QAction::setChecked);
    connect(&m_check, &SpellCheck::languagesUsed, this, &PageSpelling::takeMissing);
    connect(&rendering.webView()->editorPage(), &EditorPage::shown, this, &PageSpelling::showInPage);
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

void PageSpelling::takeMissing(const QStringList& languages)
{
    if (m_check.languages() != m_told)
        return;
    const bool isNews = !languages.isEmpty() && languages != m_missing;
    m_missing = languages;
    showInPage();
    if (isNews)
        emit failed(
            SpellDictionaries::converter()
                ? tr("No spelling dictionary is installed for: %1").arg(languages.join(QStringLiteral(", ")))
                : tr("To check the spelling, install the package qt6-webengine-dev-tools."));
}

void PageSpelling::showInPage()
{
    QStringList names;
    for (const QString& language : m_missing)
        names.append(u'\'' + quotedForScript(language) + u'\'');
    m_rendering.evaluate(QStringLiteral("leaveOutOfSpelling([%1])").arg(names.join(u',')));
}

} // namespace luma
