// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/stylerules.h"
#include "page/sitefolder.h"

#include <QObject>
#include <QVariant>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace luma {

class PageTree;
class ViewController;

/// Finds the style rules that apply to an element: the rendering knows which rules match and what overrides what, the
/// sheets' texts say what is written where. Takes two or three questions to the page. Main thread.
class StyleRulesReader final : public QObject
{
    Q_OBJECT

public:
    /// The text of a sheet's file as the page shows it, UTF-8; nothing if it can't be read.
    using TextOf = std::function<std::optional<std::string>(const std::filesystem::path& file)>;
    struct Parts
    {
        const PageTree& tree;
        ViewController& rendering;
        std::function<SiteFolder()> place; // of the page
        TextOf textOf;
    };

    StyleRulesReader(const Parts& parts, QObject* parent);

    /// Reads the rules of the element with this path; an earlier question's answer is dropped.
    void read(const std::vector<int>& path);

    /// The path that was read last.
    [[nodiscard]] const std::vector<int>& path() const { return m_path; }

    /// Asks for the box of the element that was read last, as boxModel() of the page-side scripts answers; its rules are those
    /// of the first group. Not answered if `context` has been deleted, or if another element is read by then.
    void askForBox(QObject* context, const std::function<void(const QVariantMap& box)>& take);

    /// The last sheet of the page that can be edited, and its text: a rule at its end wins over others like it.
    [[nodiscard]] std::optional<std::pair<StyleSource, std::string>> newRuleSheet() const;
    /// All sheets of the page that can be edited, and their texts.
    [[nodiscard]] std::vector<std::pair<StyleSource, std::string>> sheets() const;

signals:
    void done(const std::vector<luma::StyleGroup>& groups);

private:
    struct Sheet
    {
        std::string text;
        std::vector<CssRule> rules;
        bool isRead = false;
        /// Whether the engine keeps each rule, a rule before the ones in it; empty if that isn't known.
        std::vector<bool> kept = {};
    };

    void takeMatches(const QVariantMap& answer);
    void readSheets(const QVariantList& places);
    void askWhatIsKept(std::size_t sheet);
    void buildGroups();
    void addRule(StyleGroup& group, const QVariantList& matched);
    void addAttribute(StyleGroup& group, const std::vector<int>& path);
    [[nodiscard]] const CssRule* ruleAt(const Sheet& sheet, const QVariantList& places) const;
    [[nodiscard]] bool isFound(const QVariantList& groups, std::size_t sheet) const;
    void askForJudgement();
    void takeJudgement(const QVariantList& judged);

    Parts m_parts;
    int m_question = 0;
    std::vector<int> m_path;
    QVariantMap m_matches;
    std::vector<StyleSource> m_sources;
    std::vector<Sheet> m_sheets;
    std::vector<StyleGroup> m_groups;
    std::vector<std::vector<int>> m_layers; // of the groups' rules
};

} // namespace luma
