// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/cssvocabulary.h"

#include "web/viewcontroller.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

namespace luma {

namespace {

QString asArgument(const QJsonArray& values)
{
    return QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact));
}

CssVocabulary::Verdict verdictNamed(const QString& name)
{
    using Verdict = CssVocabulary::Verdict;
    return name == u"property"   ? Verdict::UnknownProperty
           : name == u"value"    ? Verdict::UnknownValue
           : name == u"selector" ? Verdict::UnknownSelector
                                 : Verdict::Known;
}

QString keyOfItem(const CssVocabulary::Item& item)
{
    return item.property + u':' + item.text;
}

} // namespace

CssVocabulary::CssVocabulary(ViewController& rendering, QObject* parent)
    : QObject(parent), m_rendering(rendering)
{}

void CssVocabulary::ask(QObject* context, const TakeWords& take)
{
    m_rendering.ask(QStringLiteral("styleVocabulary()"), context, [take](const QVariant& answer) {
        const QVariantMap words = answer.toMap();
        const auto list = [&words](const char* name) {
            return words.value(QLatin1String(name)).toStringList();
        };
        take({list("properties"), list("customProperties"), list("classes"), list("ids"), list("tags")});
    });
}

void CssVocabulary::askForValues(const QString& property, QObject* context, const TakeValues& take)
{
    if (const auto known = m_values.constFind(property); known != m_values.constEnd()) {
        take(*known);
        return;
    }
    m_rendering.ask(scriptCall(QStringLiteral("styleValues"), property), context,
                    [this, property, take](const QVariant& answer) {
                        if (answer.isValid())
                            m_values.insert(property, answer.toStringList());
                        take(answer.toStringList());
                    });
}

// The engine stays the same, so each is asked once.
void CssVocabulary::judge(const QList<Item>& items, QObject* context, const TakeVerdicts& take)
{
    QStringList unknown;
    QSet<QString> seen;
    QJsonArray asked;
    for (const Item& item : items) {
        const QString key = keyOfItem(item);
        if (m_verdicts.contains(key) || seen.contains(key))
            continue;
        seen.insert(key);
        unknown.append(key);
        asked.append(item.property.isEmpty() ? QJsonArray{item.text} : QJsonArray{item.property, item.text});
    }
    const auto tell = [this, items, take] {
        QList<Verdict> verdicts;
        for (const Item& item : items)
            verdicts.append(m_verdicts.value(keyOfItem(item), Verdict::Known));
        take(verdicts);
    };
    if (unknown.isEmpty()) {
        tell();
        return;
    }
    m_rendering.ask(QStringLiteral("judgedStyles(%1)").arg(asArgument(asked)), context,
                    [this, unknown, tell](const QVariant& answer) {
                        const QStringList names = answer.toStringList();
                        for (qsizetype i = 0; i < names.size() && i < unknown.size(); ++i)
                            m_verdicts.insert(unknown[i], verdictNamed(names[i]));
                        tell();
                    });
}

} // namespace luma
