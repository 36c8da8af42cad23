// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/element.h"

#include <QByteArray>
#include <QJsonArray>
#include <QObject>

namespace luma {

class PageTree;

/// Collects what was changed in a tree since the rendering last showed it, for a page-side script to repeat there.
/// Main thread; the tree outlives it.
class TreeChanges final : public QObject
{
    Q_OBJECT

public:
    TreeChanges(PageTree& tree, QObject* parent);

    /// The changes in order, as JSON: a list of objects, each with the members of a SubtreeChange, or with "path",
    /// "name" and "attributes" (pairs of name and value). Null if they are too many, or reach a place that no path
    /// leads to; then the rendering has to be built anew.
    [[nodiscard]] QByteArray json() const;
    [[nodiscard]] bool isEmpty() const { return m_isComplete && m_changes.isEmpty(); }
    /// The rendering has them.
    void clear();

private:
    void noteExchange(const html::ParentNode& parent, const html::Node* previous, const html::Node* next);
    void noteAttributes(const html::Element& element);
    void add(const QJsonObject& change, std::size_t size);

    QJsonArray m_changes;
    std::size_t m_size = 0;
    bool m_isComplete = true;
};

} // namespace luma
