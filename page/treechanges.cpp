// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/treechanges.h"

#include "page/pagetree.h"
#include "page/subtreechange.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace luma {

namespace {

constexpr std::size_t mostBytes = std::size_t{256} << 10U;

QJsonArray jsonOf(const std::vector<int>& path)
{
    QJsonArray steps;
    for (const int step : path)
        steps.append(step);
    return steps;
}

} // namespace

TreeChanges::TreeChanges(PageTree& tree, QObject* parent) : QObject(parent)
{
    connect(&tree, &PageTree::reset, this, [this] { m_isComplete = false; });
    connect(&tree, &PageTree::exchanged, this,
            [this](html::ParentNode* changed, html::Node* previous, html::Node* next) {
                noteExchange(*changed, previous, next);
            });
    connect(&tree, &PageTree::attributesSwapped, this,
            [this](html::Element* element) { noteAttributes(*element); });
}

QByteArray TreeChanges::json() const
{
    return m_isComplete ? QJsonDocument(m_changes).toJson(QJsonDocument::Compact) : QByteArray();
}

void TreeChanges::clear()
{
    m_changes = {};
    m_size = 0;
    m_isComplete = true;
}

void TreeChanges::noteExchange(const html::ParentNode& parent, const html::Node* previous,
                               const html::Node* next)
{
    const auto change = m_isComplete ? changeBetween(parent, previous, next) : std::nullopt;
    if (!change) {
        m_isComplete = false;
        return;
    }
    add({{QStringLiteral("path"), jsonOf(change->path)},
         {QStringLiteral("name"), QString::fromStdString(change->name)},
         {QStringLiteral("before"), change->before},
         {QStringLiteral("after"), change->after},
         {QStringLiteral("markup"), QString::fromStdString(change->markup)},
         {QStringLiteral("elements"), change->elements}},
        change->markup.size());
}

void TreeChanges::noteAttributes(const html::Element& element)
{
    const auto path = m_isComplete ? pathOf(element) : std::nullopt;
    if (!path) {
        m_isComplete = false;
        return;
    }
    QJsonArray attributes;
    std::size_t size = 0;
    for (const html::Attribute& attribute : element.attributes()) {
        attributes.append(
            QJsonArray{QString::fromStdString(attribute.name), QString::fromStdString(attribute.value)});
        size += attribute.name.size() + attribute.value.size();
    }
    add({{QStringLiteral("path"), jsonOf(*path)},
         {QStringLiteral("name"), QString::fromStdString(element.tagName())},
         {QStringLiteral("attributes"), attributes}},
        size);
}

void TreeChanges::add(const QJsonObject& change, std::size_t size)
{
    m_size += size;
    m_isComplete = m_size <= mostBytes;
    if (m_isComplete)
        m_changes.append(change);
}

} // namespace luma
