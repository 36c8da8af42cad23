// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/csscheck.h"

#include "editor/csssyntax.h"
#include "editor/cssvocabulary.h"
#include "html/cssrules.h"
#include "html/servercode.h"

#include <QLabel>
#include <QLocale>
#include <QShortcut>
#include <QTextBlock>
#include <QToolButton>

#include <algorithm>
#include <string>
#include <vector>

namespace luma {

namespace {

constexpr int delayAfterLetter = 400; // milliseconds
constexpr qsizetype mostProblems = 1000;
constexpr qsizetype longestValue = 40; // characters of a value in a reason

/// A piece of a sheet that the engine is asked about, in bytes.
struct CheckedPiece
{
    CssRange place;
    CssVocabulary::Item item;
};

QString textOfRange(const CssRange& range, const std::string& sheet)
{
    return QString::fromStdString(std::string(range.of(sheet)));
}

/// Meant for another browser.
bool hasForeignPrefix(const QString& text)
{
    for (const char* const prefix : {"-moz-", "-ms-", "-o-", "-khtml-"}) {
        if (text.contains(QLatin1String(prefix), Qt::CaseInsensitive))
            return true;
    }
    return false;
}

/// What a server writes in the place of its code can't be judged.
bool holdsCode(const CssRange& place, const std::vector<ServerCode>& code)
{
    const auto next =
        std::upper_bound(code.begin(), code.end(), place.begin,
                         [](std::size_t begin, const ServerCode& each) { return begin < each.end; });
    return next != code.end() && next->begin < place.end;
}

void appendPieces(const std::vector<CssRule>& rules, const std::string& sheet,
                  const std::vector<ServerCode>& code, std::vector<CheckedPiece>& pieces)
{
    const auto add = [&](const CssRange& place, const CssVocabulary::Item& item) {
        if (!hasForeignPrefix(item.property) && !hasForeignPrefix(item.text) && !holdsCode(place, code))
            pieces.push_back({place, item});
    };
    for (const CssRule& rule : rules) {
        if (rule.name.empty())
            add(rule.prelude, {{}, textOfRange(rule.prelude, sheet)});
        for (const CssDeclaration& each : rule.declarations) {
            const QString name = textOfRange(each.name, sheet);
            if (!each.isOff && !name.startsWith(QLatin1String("--")))
                add({each.name.begin, each.value.end}, {name, textOfRange(each.value, sheet)});
        }
        appendPieces(rule.rules, sheet, code, pieces);
    }
}

QString reasonOf(CssVocabulary::Verdict verdict, const CssVocabulary::Item& item)
{
    using Verdict = CssVocabulary::Verdict;
    switch (verdict) {
    case Verdict::UnknownProperty:
        return CssCheck::tr("The web engine knows no property “%1”.").arg(item.property);
    case Verdict::UnknownValue:
        return item.text.isEmpty() ? CssCheck::tr("“%1” has no value.").arg(item.property)
                                   : CssCheck::tr("“%1” takes no value “%2”.")
                                         .arg(item.property, item.text.simplified().left(longestValue));
    case Verdict::UnknownSelector:
        return CssCheck::tr("The web engine can't read this selector and leaves out the rule.");
    case Verdict::Known:
        break;
    }
    return {};
}

/// The places of a text's bytes in UTF-16, asked in any order.
class CharacterPlaces final
{
public:
    explicit CharacterPlaces(const std::string& text) : m_places(text.size() + 1)
    {
        int place = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            m_places[i] = place;
            const auto byte = static_cast<unsigned char>(text[i]);
            place += byte >= 0xf0 ? 2 : byte >= 0xc0 || byte < 0x80 ? 1 : 0;
        }
        m_places[text.size()] = place;
    }
    int operator[](std::size_t byte) const { return m_places[std::min(byte, m_places.size() - 1)]; }

private:
    std::vector<int> m_places;
};

} // namespace

CssCheck::CssCheck(const Controls& controls, CssVocabulary& vocabulary, QObject* parent)
    : QObject(parent), m_controls(controls), m_vocabulary(vocabulary)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(delayAfterLetter);
    connect(&m_delay, &QTimer::timeout, this, &CssCheck::check);
    connect(controls.field->document(), &QTextDocument::contentsChanged, this, &CssCheck::noteChange);
    connect(controls.field, &CodeEdit::problemsChanged, this, &CssCheck::tell);
    connect(controls.field, &CodeEdit::cursorPositionChanged, this, &CssCheck::tell);
    connect(controls.nextButton, &QToolButton::clicked, controls.field, &CodeEdit::goToNextProblem);
    auto* const shortcut = new QShortcut(Qt::CTRL | Qt::Key_Period, controls.field->parentWidget());
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, controls.field, &CodeEdit::goToNextProblem);
    tell();
}

void CssCheck::check()
{
    judge(CodeEdit::textIn(*m_controls.field));
}

void CssCheck::judge(const QString& sheet)
{
    const std::string text = sheet.toStdString();
    std::vector<CheckedPiece> pieces;
    const std::vector<ServerCode> code = serverCodeIn(text);
    appendPieces(readCssRules(text), text, code, pieces);
    QList<CssVocabulary::Item> items;
    for (const CheckedPiece& each : pieces)
        items.append(each.item);
    m_vocabulary.judge(
        items, this,
        [this, sheet, text, pieces, isPure = code.empty()](const QList<CssVocabulary::Verdict>& verdicts) {
            if (CodeEdit::textIn(*m_controls.field) != sheet)
                return; // and checked again soon
            QList<CodeProblem> problems;
            for (const CssFlaw& flaw : isPure ? cssFlaws(sheet) : std::vector<CssFlaw>())
                problems.append({static_cast<int>(flaw.at), static_cast<int>(flaw.at) + 1, flaw.reason});
            const CharacterPlaces places(text);
            for (std::size_t i = 0; i < pieces.size() && problems.size() < mostProblems; ++i) {
                const QString reason = reasonOf(verdicts[static_cast<qsizetype>(i)], pieces[i].item);
                if (!reason.isEmpty())
                    problems.append({places[pieces[i].place.begin], places[pieces[i].place.end], reason});
            }
            std::stable_sort(problems.begin(), problems.end(),
                             [](const CodeProblem& a, const CodeProblem& b) { return a.from < b.from; });
            m_controls.field->setProblems(problems);
        });
}

void CssCheck::tell() const
{
    const CodeEdit& field = *m_controls.field;
    const qsizetype count = field.problemCount();
    const QString here = field.problemsOfLine(field.textCursor().blockNumber());
    const QString all = count == 1 ? tr("1 problem") : tr("%1 problems").arg(QLocale().toString(count));
    // More than one would leave a narrow column no room for the sheet; the others are in the tips of their marks.
    const QStringList reasons = here.split(u'\n');
    m_controls.label->setText(here.isEmpty() ? all
                              : reasons.size() == 1
                                  ? here
                                  : tr("%1 (and %2 more)").arg(reasons.first()).arg(reasons.size() - 1));
    m_controls.field->setAccessibleDescription(here);
    m_controls.label->setVisible(count > 0);
    m_controls.nextButton->setVisible(count > 0);
}

} // namespace luma
