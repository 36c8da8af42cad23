// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/stylerules.h"

#include <QObject>
#include <QPersistentModelIndex>
#include <QVariant>

#include <deque>
#include <functional>

namespace luma {

class BoxView;
class CssVocabulary;
class StyleEdits;
class StyleRulesReader;
class ViewController;

/// Shows the box of the element whose rules were read, and makes the edits of its numbers: in the declaration that sets the
/// number, or in the style attribute where none does. A number alone is one of pixels. The rendering shows a value while it is
/// typed. Main thread.
class BoxPanel final : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        ViewController& rendering;
        StyleRulesReader& reader;
        StyleEdits& edits;
        CssVocabulary& vocabulary;
    };

    /// All of them outlive it.
    BoxPanel(BoxView& view, const Parts& parts, QObject* parent);

    /// The row of an OutlineModel whose element is shown from now on.
    void setRow(const QPersistentModelIndex& row) { m_row = row; }
    /// Shows the element that was read; without one, an empty box.
    void show(const std::vector<StyleGroup>& groups);

signals:
    void refused(const QString& reason);

private:
    /// An edit waits until the rules are read as they are then.
    struct Edit
    {
        QPersistentModelIndex row;
        QString property;
        QString text;
    };

    void take(const QVariantMap& box);
    void preview(const QString& property, const QString& text);
    void choose(const QString& property, const QString& text);
    void readForEdit();
    void takeRules(const std::vector<StyleGroup>& groups);
    void make(const Edit& edit, const QVariantMap& box);
    /// The rule that sets the property, and the place of its declaration; null and -1 if none does.
    struct Source
    {
        const StyleRule* rule = nullptr;
        int declaration = -1;
        QString value = {};
    };
    [[nodiscard]] Source sourceOf(const QString& property, const QVariantMap& box) const;

    BoxView& m_view;
    Parts m_parts;
    QPersistentModelIndex m_row;
    std::vector<StyleRule> m_rules; // of the element itself
    QVariantMap m_box;
    std::deque<Edit> m_edits;
};

} // namespace luma
