// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "web/codeedit.h"

#include <QObject>
#include <QTimer>

class QLabel;
class QToolButton;

namespace luma {

class CssVocabulary;

/// Marks in the field of the style sheets what is damaged and what the web engine can't read, shortly after each change. A
/// label says what is wrong in the cursor's line, or else how much. Main thread.
class CssCheck final : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        CodeEdit* field;
        QLabel* label;
        QToolButton* nextButton;
    };

    /// All of them outlive it.
    CssCheck(const Controls& controls, CssVocabulary& vocabulary, QObject* parent);

    /// The page has been shown, so that the engine may answer now.
    void noteChange() { m_delay.start(); }

private:
    void check();
    void judge(const QString& sheet);
    void tell() const;

    Controls m_controls;
    CssVocabulary& m_vocabulary;
    QTimer m_delay;
};

} // namespace luma
