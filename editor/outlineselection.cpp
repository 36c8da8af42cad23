// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlineselection.h"

#include "base/console.h"
#include "editor/outlinemodel.h"
#include "editor/outlineview.h"
#include "html/element.h"
#include "web/scriptquote.h"
#include "web/viewcontroller.h"

#include <utility>

namespace luma {

OutlineSelection::OutlineSelection(OutlineView& view, OutlineModel& model, ViewController& rendering,
                                   QObject* parent)
    : QObject(parent), m_view(view), m_model(model), m_rendering(rendering)
{
    connect(view.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &OutlineSelection::noteChange);
    connect(&rendering, &ViewController::selectionRestored, this, [this] {
        if (std::exchange(m_waitsForPage, false))
            showInPage();
    });
}

html::Element* OutlineSelection::element() const
{
    const QModelIndexList selected = m_view.selectionModel()->selectedIndexes();
    return selected.isEmpty() ? nullptr : OutlineModel::elementAt(selected.first());
}

void OutlineSelection::select(const html::Element* element)
{
    m_view.setCurrentIndex(m_model.indexOf(element));
}

void OutlineSelection::setActiveElement(const std::vector<int>& path)
{
    const auto quiet = quietly();
    const QModelIndex index = m_model.indexAtPath(path);
    m_view.clearSelection();
    m_model.setActiveElement(index);
    m_view.setCurrentIndex(index);
    m_view.scrollTo(index);
}

void OutlineSelection::noteChange()
{
    if (m_quiet)
        return;
    m_model.setActiveElement({});
    emit didChange();
}

void OutlineSelection::showInPage()
{
    const html::Element* const shown = element();
    if (!shown)
        return;
    const QString selector = QString::fromStdString(shown->cssSelector());
    printLine("OutlineView = " + selector.toStdString());
    m_rendering.evaluate(
        QStringLiteral("selectText(document.querySelector('%1'))").arg(quotedForScript(selector)));
}

} // namespace luma
