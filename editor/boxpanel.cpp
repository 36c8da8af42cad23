// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/boxpanel.h"

#include "editor/boxview.h"
#include "editor/cssvocabulary.h"
#include "editor/outlinemodel.h"
#include "editor/styleedits.h"
#include "editor/stylepreview.h"
#include "editor/stylerulesreader.h"
#include "page/cssedits.h"
#include "page/subtreechange.h"
#include "web/viewcontroller.h"

#include <QRegularExpression>

namespace luma {

namespace {

QString withPixels(const QString& text)
{
    static const QRegularExpression number(QStringLiteral("^[-+]?(\\d+\\.?\\d*|\\.\\d+)$"));
    return number.match(text).hasMatch() && text.toDouble() != 0 ? text + QStringLiteral("px") : text;
}

QString withoutPixels(const QString& text)
{
    return text.endsWith(QLatin1String("px")) ? text.chopped(2) : text;
}

bool isImportant(const StyleRule& rule, int declaration)
{
    return declaration >= 0 &&
           rule.declarations[static_cast<std::size_t>(declaration)].value.contains(QRegularExpression(
               QStringLiteral("!\\s*important$"), QRegularExpression::CaseInsensitiveOption));
}

/// The rule of the style attribute, where what no rule sets is written.
const StyleRule* attributeIn(const std::vector<StyleRule>& rules)
{
    return !rules.empty() && rules.front().source.kind == StyleSource::Kind::Attribute ? &rules.front()
                                                                                       : nullptr;
}

} // namespace

BoxPanel::BoxPanel(BoxView& view, const Parts& parts, QObject* parent)
    : QObject(parent), m_view(view), m_parts(parts)
{
    connect(&view, &BoxView::tried, this, &BoxPanel::preview);
    connect(&view, &BoxView::chosen, this, &BoxPanel::choose);
    connect(&view, &BoxView::givenUp, this, [this] { endStylePreview(m_parts.rendering); });
    connect(&parts.reader, &StyleRulesReader::done, this, &BoxPanel::takeRules);
    // A field that is still open loses the focus with its window, when there is no page any more.
    connect(&parts.rendering, &QObject::destroyed, this, [this] { m_view.disconnect(this); });
}

void BoxPanel::show(const std::vector<StyleGroup>& groups)
{
    if (groups.empty()) {
        m_rules.clear();
        m_view.setNumbers({});
        return;
    }
    m_rules = groups.front().rules;
    m_parts.reader.askForBox(this, [this](const QVariantMap& box) {
        if (!m_view.isEditing())
            take(box);
    });
}

void BoxPanel::take(const QVariantMap& box)
{
    m_box = box;
    QHash<QString, BoxView::Number> numbers;
    const QVariantMap values = box.value(QStringLiteral("values")).toMap();
    const QStringList content = box.value(QStringLiteral("content")).toStringList();
    const bool isShown = box.value(QStringLiteral("isShown")).toBool();
    for (auto value = values.begin(); isShown && value != values.end(); ++value) {
        const bool isSize = value.key() == u"width" || value.key() == u"height";
        const QString whole = value.value().toString();
        const QString shown = isSize ? content.value(value.key() == u"width" ? 0 : 1) : whole;
        const Source source = sourceOf(value.key(), box);
        BoxView::Number number{withoutPixels(shown), source.value.isEmpty() ? whole : source.value};
        number.isEditable = !isSize || whole != u"auto";
        if (!number.isEditable)
            number.hint = tr("An element within lines takes its size from its contents");
        else if (isSize && box.value(QStringLiteral("isWhole")).toBool())
            number.hint = tr("The size in the style sheet counts padding and border, too");
        else if (source.rule && !source.rule->selector.isEmpty())
            number.hint = source.rule->selector;
        numbers.insert(value.key(), number);
    }
    m_view.setNumbers(numbers);
}

BoxPanel::Source BoxPanel::sourceOf(const QString& property, const QVariantMap& box) const
{
    const QVariantList found = box.value(QStringLiteral("sources")).toMap().value(property).toList();
    const std::size_t rule = found.value(0).toUInt();
    if (found.size() != 3 || rule >= m_rules.size())
        return {};
    int left = found[1].toInt();
    const auto& declarations = m_rules[rule].declarations;
    for (std::size_t i = 0; i < declarations.size(); ++i) {
        if (declarations[i].state != StyleState::Off && left-- == 0)
            return {&m_rules[rule], static_cast<int>(i), found[2].toString()};
    }
    return {};
}

void BoxPanel::preview(const QString& property, const QString& text)
{
    const Source source = sourceOf(property, m_box);
    const StyleRule* const rule = source.rule ? source.rule : attributeIn(m_rules);
    if (rule)
        previewStyle(m_parts.rendering, *rule, property,
                     withPixels(text) + (source.rule && isImportant(*rule, source.declaration)
                                             ? QStringLiteral(" !important")
                                             : QString()));
}

void BoxPanel::choose(const QString& property, const QString& text)
{
    endStylePreview(m_parts.rendering);
    const QString value = withPixels(text);
    m_parts.vocabulary.judge(
        {{property, value}}, this,
        [this, row = m_row, property, value](const QList<CssVocabulary::Verdict>& verdicts) {
            if (!value.isEmpty() && verdicts.value(0) != CssVocabulary::Verdict::Known) {
                emit refused(tr("“%1” is no value of %2.").arg(value, property));
                return;
            }
            m_edits.push_back({row, property, value});
            readForEdit();
        });
}

void BoxPanel::readForEdit()
{
    m_parts.rendering.whenCaughtUp(this, [this] {
        while (!m_edits.empty()) {
            const html::Element* const element = OutlineModel::elementAt(m_edits.front().row);
            const auto path = element ? pathOf(*element) : std::nullopt;
            if (path) {
                m_parts.reader.read(*path);
                return;
            }
            m_edits.pop_front();
        }
    });
}

// Another element may have been read meanwhile.
void BoxPanel::takeRules(const std::vector<StyleGroup>& groups)
{
    if (m_edits.empty())
        return;
    const html::Element* const element = OutlineModel::elementAt(m_edits.front().row);
    if (!element || groups.empty() || pathOf(*element) != m_parts.reader.path()) {
        readForEdit();
        return;
    }
    m_rules = groups.front().rules;
    m_parts.reader.askForBox(this, [this](const QVariantMap& box) {
        if (m_edits.empty())
            return;
        const Edit edit = m_edits.front();
        m_edits.pop_front();
        make(edit, box);
        if (!m_edits.empty())
            readForEdit();
    });
}

void BoxPanel::make(const Edit& edit, const QVariantMap& box)
{
    const Source source = sourceOf(edit.property, box);
    const std::string property = edit.property.toStdString();
    const std::string value = edit.text.toStdString();
    if (source.rule && source.rule->isEditable) {
        const StyleRule& rule = *source.rule;
        const CssDeclaration& declaration =
            rule.rule.declarations[static_cast<std::size_t>(source.declaration)];
        const bool isOwn = rule.declarations[static_cast<std::size_t>(source.declaration)].name.compare(
                               edit.property, Qt::CaseInsensitive) == 0;
        if (!value.empty())
            m_parts.edits.make(rule.source, rule.sheet,
                               withCssBoxValue(rule.sheet, declaration, property, value), tr("Change Style"));
        else if (isOwn)
            m_parts.edits.make(rule.source, rule.sheet, withoutCssDeclaration(rule.sheet, declaration),
                               tr("Remove Style"));
        return;
    }
    const StyleRule* const attribute = attributeIn(m_rules);
    if (attribute && !value.empty())
        m_parts.edits.make(
            attribute->source, attribute->sheet,
            withCssDeclaration(
                attribute->sheet, nullptr,
                property + ": " + value +
                    (source.rule && isImportant(*source.rule, source.declaration) ? " !important" : "")),
            tr("Add Style"));
}

} // namespace luma
