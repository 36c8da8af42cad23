// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>

class QAction;
class QWidget;

namespace luma {

class PageTree;
class SpellCheck;
class ViewController;

/// Switches the spell check on and off, and tells it the languages of the page whose window is active. It is one for all
/// windows, so their actions are in step. Main thread.
class PageSpelling final : public QObject
{
    Q_OBJECT

public:
    /// All of them outlive it; the action is checkable.
    PageSpelling(ViewController& rendering, const PageTree& tree, QAction& action, QWidget& window);

    /// The page has been read, or its window is active.
    void update();

signals:
    /// Words can't be checked, for this reason.
    void failed(const QString& reason);

private:
    void tellLanguages();
    void takeMissing(const QStringList& languages);
    /// Leaves parts in languages without a dictionary out.
    void showInPage();

    ViewController& m_rendering;
    SpellCheck& m_check;
    const PageTree& m_tree;
    QWidget& m_window;
    QStringList m_told;    // the languages that the check took from the page
    QStringList m_missing; // those without a dictionary
};

} // namespace luma
