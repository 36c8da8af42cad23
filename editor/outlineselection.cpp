// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/outlineselection.h"

#include "base/console.h"
#include "editor/outlinemodel.h"
#include "editor/outlineview.h"
#include "html/element.h"
#include "web/viewcontroller.h"

#include <utility>

namespace luma {

OutlineSelection::OutlineSelection(OutlineView& view, OutlineModel& model, ViewController& rendering,
                                   QObject* parent)
    : QObject(parent), m_view(view), m_model(model), m_rendering(rendering)
{
    connect(view.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &OutlineSelection::noteChange);
    connect(&model, &OutlineModel::rowsMoved, this, &OutlineSelection::changed);
    connect(&rendering, &ViewController::selectionRestored, this, [this] {
        if (std::exchange(m_waitsForPage, false))
            selectInPage(", false");
    });
}

QPersistentModelIndex OutlineSelection::index() const
{
    const QModelIndexList selected = m_view.selectionModel()->selectedIndexes();
    return selected.isEmpty() ? QModelIndex() : selected.first();
}

html::Node* OutlineSelection::node() const
{
    return OutlineModel::nodeAt(index());
}

html::Element* OutlineSelection::element() const
{
    return OutlineModel::elementAt(index());
}

bool OutlineSelection::hasAllNodes() const
{
    return m_model.showsAllNodes();
}

bool OutlineSelection::holdsCaret() const
{
    return m_model.activeElement().isValid() && m_model.activeElement() == index();
}

void OutlineSelection::select(const html::Node* node)
{
    const QModelIndex index = m_model.indexOf(node);
    m_view.setCurrentIndex(index);
    m_view.scrollTo(index); // also where it was the current one
}

void OutlineSelection::setActiveElement(const std::vector<int>& path)
{
    const auto quiet = quietly();
    const QModelIndex index = m_model.indexAtPath(path);
    if (!index.isValid())
        m_view.clearSelection();
    m_model.setActiveElement(index);
    m_view.setCurrentIndex(index);
    m_view.scrollTo(index);
}

void OutlineSelection::noteChange()
{
    if (!m_quiet) {
        m_model.setActiveElement({});
        emit selectedByUser();
    }
    emit changed();
}

void OutlineSelection::showInPage()
{
    selectInPage("");
}

void OutlineSelection::selectInPage(const char* options)
{
    const html::Node* const selected = node();
    const bool isText = selected && selected->kind() == html::Node::Kind::Text;
    const html::Element* const shown = isText ? selected->parent()->asElement() : element();
    if (!shown)
        return;
    const QString selector = QString::fromStdString(shown->cssSelector());
    printDiagnostic("OutlineView = " + selector.toStdString());
    m_rendering.evaluate(QStringLiteral("selectText(document.querySelector('%1')%2)")
                             .arg(quotedForScript(selector), QLatin1String(options)));
}

} // namespace luma
