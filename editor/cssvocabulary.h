// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>
#include <QStringList>

#include <functional>

namespace luma {

class ViewController;

/// What may be written in the style sheets of a page, asked from its web engine: the properties it knows and their values,
/// and the names that page and sheets use. Answers come later; a page that isn't there gives none. Main thread.
class CssVocabulary final : public QObject
{
    Q_OBJECT

public:
    struct Words
    {
        QStringList properties;
        QStringList customProperties; ///< with "--"
        QStringList classes;          ///< without marks, as the ids
        QStringList ids;
        QStringList tags;
    };

    /// The rendering outlives it.
    CssVocabulary(ViewController& rendering, QObject* parent);

    using TakeWords = std::function<void(const Words& words)>;
    /// `take` is not called once `context` has been deleted; so for the others.
    void ask(QObject* context, const TakeWords& take);
    using TakeValues = std::function<void(const QStringList& values)>;
    /// The keywords, colours and functions ("calc()") that a property takes.
    void askForValues(const QString& property, QObject* context, const TakeValues& take);

    /// A declaration, or a selector if it has no property.
    struct Item
    {
        QString property;
        QString text;
    };
    enum class Verdict { Known, UnknownProperty, UnknownValue, UnknownSelector };
    using TakeVerdicts = std::function<void(const QList<Verdict>& verdicts)>;
    /// Whether the engine can read each of them; the verdicts are in their order.
    void judge(const QList<Item>& items, QObject* context, const TakeVerdicts& take);

private:
    ViewController& m_rendering;
    QHash<QString, QStringList> m_values; // by property
    QHash<QString, Verdict> m_verdicts;   // by what was asked
};

} // namespace luma
