// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/stylerulesreader.h"

#include "html/element.h"
#include "page/cssedits.h"
#include "page/pagetree.h"
#include "page/subtreechange.h"
#include "page/tagrules.h"
#include "web/scriptcall.h"
#include "web/viewcontroller.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

constexpr int rankOfAttribute = 1'000'000'000; // as rules.js has it

QString inText(const CssRange& range, const std::string& text)
{
    return QString::fromStdString(std::string(range.of(text)));
}

/// An element's name with its id and classes.
QString shortName(const html::Element* element, const QString& name)
{
    if (!element)
        return name;
    QString text = tagNameOf(*element);
    if (element->hasAttr("id"))
        text += u'#' + QString::fromStdString(std::string(element->attr("id")));
    const QString classes = QString::fromStdString(std::string(element->attr("class"))).simplified();
    if (!classes.isEmpty())
        text += u'.' + QString(classes).replace(u' ', u'.');
    return text;
}

StyleState stateNamed(const QString& name)
{
    return name == u"overridden"      ? StyleState::Overridden
           : name == u"invalid"       ? StyleState::Invalid
           : name == u"not inherited" ? StyleState::NotInherited
                                      : StyleState::Applies;
}

std::vector<StyleDeclaration> declarationsOf(const CssRule& rule, const std::string& text)
{
    std::vector<StyleDeclaration> found;
    for (const CssDeclaration& each : rule.declarations)
        found.push_back({inText(each.name, text), inText(each.written, text),
                         each.isOff ? StyleState::Off : StyleState::Applies});
    return found;
}

/// Each rule's text, a rule before the ones in it; a group of rules alone, as what is in it counts by itself.
void appendTexts(const std::vector<CssRule>& rules, const std::string& text, QJsonArray& texts)
{
    for (const CssRule& rule : rules) {
        texts.append(rule.rules.empty() ? inText(rule.all, text)
                                        : inText({rule.all.begin, rule.block.begin}, text) + u'}');
        appendTexts(rule.rules, text, texts);
    }
}

/// The rules of one level that the engine keeps. Imports stand in front of all other rules (CSS Cascade 5, 2).
std::vector<const CssRule*> keptOf(const std::vector<CssRule>& rules, const std::vector<bool>& kept,
                                   std::size_t& at)
{
    std::vector<const CssRule*> found;
    bool mayImport = true;
    for (const CssRule& rule : rules) {
        const bool isImport = rule.name == "import";
        if (isImport ? mayImport : kept[at]) {
            found.push_back(&rule);
            mayImport = mayImport && (isImport || (rule.name == "layer" && !rule.hasBlock));
        }
        ++at;
        if (!rule.rules.empty())
            (void)keptOf(rule.rules, kept, at);
    }
    return found;
}

QString asScript(const QJsonArray& values)
{
    return QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact));
}

QJsonArray asJson(const std::vector<int>& path)
{
    QJsonArray steps;
    for (const int step : path)
        steps.append(step);
    return steps;
}

/// Rules with the declarations that are on, as the scripts take them.
QJsonArray asJson(const std::vector<StyleRule>& rules, const std::vector<int>& layers)
{
    QJsonArray all;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        QJsonArray declarations;
        for (const StyleDeclaration& each : rules[i].declarations) {
            const std::string text = "a:" + each.value.toStdString();
            const auto read = readCssDeclarations(text);
            if (each.state != StyleState::Off && !read.empty())
                declarations.append(
                    QJsonArray{each.name, inText(read.front().value, text), read.front().isImportant()});
            else if (each.state != StyleState::Off)
                declarations.append(QJsonArray{each.name, QString(), false});
        }
        all.append(QJsonObject{{QStringLiteral("layer"), layers[i]},
                               {QStringLiteral("declarations"), declarations}});
    }
    return all;
}

std::size_t countOf(const std::vector<CssRule>& rules)
{
    std::size_t count = rules.size();
    for (const CssRule& rule : rules)
        count += countOf(rule.rules);
    return count;
}

} // namespace

StyleRulesReader::StyleRulesReader(const Parts& parts, QObject* parent) : QObject(parent), m_parts(parts) {}

void StyleRulesReader::read(const std::vector<int>& path)
{
    m_path = path;
    const QString script = QStringLiteral("matchedRules(%1)").arg(asScript(asJson(path)));
    m_parts.rendering.ask(script, this, [this, question = ++m_question](const QVariant& answer) {
        if (question == m_question && m_parts.tree.document())
            takeMatches(answer.toMap());
    });
}

void StyleRulesReader::takeMatches(const QVariantMap& answer)
{
    m_matches = answer;
    readSheets(answer.value(QStringLiteral("sheets")).toList());
    askWhatIsKept(0);
}

void StyleRulesReader::readSheets(const QVariantList& places)
{
    auto before = std::exchange(m_sheets, {});
    const auto sources = std::exchange(m_sources, {});
    const SiteFolder site = m_parts.place();
    for (const QVariant& place : places) {
        const bool isElement = place.userType() == QMetaType::QVariantList;
        StyleSource source = {StyleSource::Kind::Element, ScriptCall::path(place), {}};
        std::optional<std::string> text;
        if (isElement) {
            const html::Element* const element = elementAtPath(*m_parts.tree.document(), source.path);
            if (element && element->is("style"))
                text = element->html();
        } else {
            const QByteArray address = QUrl(place.toString()).path(QUrl::FullyEncoded).toLatin1();
            source = {StyleSource::Kind::File, {}, site.fileAt(address.toStdString()).value_or("")};
            if (!source.file.empty() && site.realPath(source.file))
                text = m_parts.textOf(source.file);
        }
        const auto old = std::find(sources.begin(), sources.end(), source);
        Sheet* const known =
            old == sources.end() ? nullptr : &before[static_cast<std::size_t>(old - sources.begin())];
        if (known && text && known->isRead && known->text == *text)
            m_sheets.push_back(std::move(*known));
        else if (text)
            m_sheets.push_back({*text, readCssRules(*text), true});
        else
            m_sheets.emplace_back();
        m_sources.push_back(std::move(source));
    }
}

std::optional<std::pair<StyleSource, std::string>> StyleRulesReader::newRuleSheet() const
{
    const auto all = sheets();
    return all.empty() ? std::nullopt : std::optional(all.back());
}

std::vector<std::pair<StyleSource, std::string>> StyleRulesReader::sheets() const
{
    std::vector<std::pair<StyleSource, std::string>> all;
    for (std::size_t i = 0; i < m_sheets.size(); ++i) {
        if (m_sheets[i].isRead)
            all.emplace_back(m_sources[i], m_sheets[i].text);
    }
    return all;
}

bool StyleRulesReader::isFound(const QVariantList& groups, std::size_t sheet) const
{
    for (const QVariant& group : groups) {
        const QVariantList rules = group.toMap().value(QStringLiteral("rules")).toList();
        for (const QVariant& rule : rules) {
            const QVariantList matched = rule.toList();
            if (matched.value(0).toUInt() == sheet && !ruleAt(m_sheets[sheet], matched.value(1).toList()))
                return false;
        }
    }
    return true;
}

// The engine leaves rules out that it doesn't know. Where the numbers differ, it is asked which ones.
void StyleRulesReader::askWhatIsKept(std::size_t sheet)
{
    const QVariantList groups = m_matches.value(QStringLiteral("groups")).toList();
    while (sheet < m_sheets.size() &&
           (!m_sheets[sheet].isRead || !m_sheets[sheet].kept.empty() || isFound(groups, sheet)))
        ++sheet;
    if (sheet == m_sheets.size()) {
        buildGroups();
        askForJudgement();
        return;
    }
    QJsonArray texts;
    appendTexts(m_sheets[sheet].rules, m_sheets[sheet].text, texts);
    const QString script = QStringLiteral("keptRules(%1)").arg(asScript(texts));
    m_parts.rendering.ask(script, this, [this, sheet, question = m_question](const QVariant& answer) {
        if (question != m_question)
            return;
        const QVariantList kept = answer.toList();
        for (const QVariant& each : kept)
            m_sheets[sheet].kept.push_back(each.toBool());
        askWhatIsKept(sheet + 1);
    });
}

const CssRule* StyleRulesReader::ruleAt(const Sheet& sheet, const QVariantList& places) const
{
    const std::vector<CssRule>* level = &sheet.rules;
    std::size_t at = 0; // in the list of what is kept
    const CssRule* found = nullptr;
    for (const QVariant& place : places) {
        const std::size_t index = place.toList().value(0).toUInt();
        const std::size_t count = place.toList().value(1).toUInt();
        std::vector<const CssRule*> kept;
        if (sheet.kept.size() == countOf(sheet.rules)) {
            std::size_t from = at;
            kept = keptOf(*level, sheet.kept, from);
        } else {
            for (const CssRule& rule : *level)
                kept.push_back(&rule);
        }
        if (kept.size() != count || index >= count)
            return nullptr;
        found = kept[index];
        for (const CssRule& rule : *level) {
            ++at;
            if (&rule == found)
                break;
            at += countOf(rule.rules);
        }
        level = &found->rules;
    }
    return found;
}

void StyleRulesReader::buildGroups()
{
    m_groups.clear();
    m_layers.clear();
    bool isInherited = false;
    const QVariantList groups = m_matches.value(QStringLiteral("groups")).toList();
    for (const QVariant& each : groups) {
        const QVariantMap answer = each.toMap();
        const std::vector<int> path = ScriptCall::path(answer.value(QStringLiteral("path")));
        StyleGroup group = {shortName(elementAtPath(*m_parts.tree.document(), path),
                                      answer.value(QStringLiteral("name")).toString()),
                            answer.value(QStringLiteral("part")).toString(),
                            false,
                            {},
                            {}};
        const QVariantMap variables = answer.value(QStringLiteral("variables")).toMap();
        for (auto variable = variables.begin(); variable != variables.end(); ++variable)
            group.variables.insert(variable.key(), variable.value().toString());
        group.isInherited = isInherited && group.part.isEmpty();
        isInherited = true;
        m_layers.emplace_back();
        if (group.part.isEmpty())
            addAttribute(group, path);
        const QVariantList rules = answer.value(QStringLiteral("rules")).toList();
        for (const QVariant& rule : rules)
            addRule(group, rule.toList());
        m_groups.push_back(std::move(group));
    }
}

void StyleRulesReader::addAttribute(StyleGroup& group, const std::vector<int>& path)
{
    const html::Element* const element = elementAtPath(*m_parts.tree.document(), path);
    if (!element || (group.isInherited && !element->hasAttr("style")))
        return;
    StyleRule rule;
    rule.source = {StyleSource::Kind::Attribute, path, {}};
    rule.sheet = std::string(element->attr("style"));
    rule.rule.declarations = readCssDeclarations(rule.sheet);
    rule.declarations = declarationsOf(rule.rule, rule.sheet);
    rule.isEditable = true;
    group.rules.push_back(std::move(rule));
    m_layers.back().push_back(rankOfAttribute);
}

void StyleRulesReader::addRule(StyleGroup& group, const QVariantList& matched)
{
    const std::size_t sheet = matched.value(0).toUInt();
    if (sheet >= m_sheets.size())
        return;
    StyleRule rule;
    rule.source = m_sources[sheet];
    rule.selector = matched.value(2).toString();
    rule.conditions = matched.value(3).toStringList();
    rule.number = matched.value(7).toInt();
    const Sheet& read = m_sheets[sheet];
    const CssRule* const place = read.isRead ? ruleAt(read, matched.value(1).toList()) : nullptr;
    if (place) {
        rule.selector = inText(place->prelude, read.text).simplified();
        rule.sheet = read.text;
        rule.rule = *place;
        rule.line = lineOfCss(read.text, place->all.begin);
        rule.declarations = declarationsOf(*place, read.text);
        rule.isEditable = true;
    } else {
        const QVariantList declarations = matched.value(6).toList();
        for (const QVariant& each : declarations) {
            const QStringList written = each.toStringList();
            rule.declarations.push_back(
                {written.value(0),
                 written.value(1) +
                     (written.value(2).isEmpty() ? QString() : QStringLiteral(" !important"))});
        }
    }
    group.rules.push_back(std::move(rule));
    m_layers.back().push_back(matched.value(4).toInt());
}

void StyleRulesReader::askForJudgement()
{
    QJsonArray groups;
    for (std::size_t i = 0; i < m_groups.size(); ++i) {
        groups.append(QJsonObject{{QStringLiteral("scope"), m_groups[i].part},
                                  {QStringLiteral("inherits"), m_groups[i].isInherited},
                                  {QStringLiteral("rules"), asJson(m_groups[i].rules, m_layers[i])}});
    }
    const QString script = QStringLiteral("judgedDeclarations(%1)").arg(asScript(groups));
    m_parts.rendering.ask(script, this, [this, question = m_question](const QVariant& answer) {
        if (question == m_question)
            takeJudgement(answer.toList());
    });
}

void StyleRulesReader::askForBox(QObject* context, const std::function<void(const QVariantMap& box)>& take)
{
    if (m_groups.empty())
        return;
    const QString script =
        QStringLiteral("boxModel(%1, %2)")
            .arg(asScript(asJson(m_path)), asScript(asJson(m_groups.front().rules, m_layers.front())));
    m_parts.rendering.ask(script, context,
                          [self = QPointer(this), question = m_question, take](const QVariant& answer) {
                              if (self && question == self->m_question)
                                  take(answer.toMap());
                          });
}

void StyleRulesReader::takeJudgement(const QVariantList& judged)
{
    for (qsizetype i = 0; i < judged.size() && i < std::ssize(m_groups); ++i) {
        StyleGroup& group = m_groups[static_cast<std::size_t>(i)];
        const QVariantList rules = judged[i].toList();
        for (qsizetype k = 0; k < rules.size() && k < std::ssize(group.rules); ++k) {
            qsizetype at = 0;
            const QStringList states = rules[k].toStringList();
            for (StyleDeclaration& each : group.rules[static_cast<std::size_t>(k)].declarations) {
                if (each.state != StyleState::Off)
                    each.state = stateNamed(states.value(at++));
            }
        }
        if (group.isInherited) {
            std::erase_if(group.rules, [](const StyleRule& rule) {
                return std::all_of(
                    rule.declarations.begin(), rule.declarations.end(), [](const StyleDeclaration& each) {
                        return each.state == StyleState::NotInherited || each.state == StyleState::Off;
                    });
            });
        }
    }
    std::erase_if(m_groups, [](const StyleGroup& group) { return group.isInherited && group.rules.empty(); });
    emit done(m_groups);
}

} // namespace luma
