// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/hiddenelements.h"

#include "editor/outlinemodel.h"
#include "editor/outlineselection.h"
#include "html/element.h"
#include "page/subtreechange.h"
#include "web/viewcontroller.h"

#include <QStringList>

namespace luma {

HiddenElements::HiddenElements(OutlineModel& outline, const OutlineSelection& selection,
                               ViewController& rendering, QObject* parent)
    : QObject(parent), m_outline(outline), m_selection(selection), m_rendering(rendering)
{
    // The page may have been loaded anew, or an element made anew.
    connect(&rendering, &ViewController::selectionRestored, this, [this] {
        if (!m_outline.hidden().isEmpty())
            showInPage();
    });
}

void HiddenElements::toggleSelected()
{
    if (!m_outline.toggleHidden(m_selection.index())) {
        emit refused(tr("Only elements in <body> can be hidden."));
        return;
    }
    m_rendering.whenCaughtUp(this, [this] { showInPage(); });
}

void HiddenElements::showInPage()
{
    QStringList paths;
    for (const QPersistentModelIndex& index : m_outline.hidden()) {
        const html::Element* const element = OutlineModel::elementAt(index);
        const auto path = element ? pathForScript(*element) : std::nullopt;
        if (path)
            paths.append(*path);
    }
    m_rendering.evaluate(QStringLiteral("hideElements([%1])").arg(paths.join(u',')));
}

} // namespace luma
