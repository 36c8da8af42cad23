// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTimer>

#include <cstddef>
#include <vector>

class QLabel;
class QLineEdit;
class QToolButton;
class QVariant;
class QWidget;

namespace luma::html {
class Node;
}

namespace luma {

class OutlineModel;
class OutlineSelection;
class PageTree;
class ViewController;

/// The find bar above the outline. A node is found if its row holds the text, in any letter case, an element also if the
/// rendering's engine selects it by the text as a CSS selector or an XPath expression. The rows are searched at once; what the engine
/// finds joins them when it answers, unless the page has changed meanwhile. A page that changes is searched again. Main
/// thread.
class OutlineFind final : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QWidget* bar;
        QLineEdit* field;
        QLabel* result;
        QToolButton* previousButton;
        QToolButton* nextButton;
        QToolButton* closeButton;
    };

    /// All of them outlive it.
    OutlineFind(const Controls& controls, OutlineModel& outline, const PageTree& tree,
                OutlineSelection& selection, ViewController& rendering, QObject* parent);

    /// Shows the bar and puts the focus there.
    void begin();
    /// Selects the nearest match behind or in front of the selected row; after the last comes the first.
    void next();
    void previous();

signals:
    /// The bar was closed by the user.
    void closed();

private:
    /// Where the selection goes: to the match that is selected or else the next one, or past it.
    enum class Jump { Nowhere, ToMatch, ToNext, ToPrevious };

    void connectControls();
    void connectChanges();
    void close();
    void forget();
    void forgetMatches();
    void search();
    void searchOn();
    void askEngine(Jump jump);
    void takeAnswer(const QVariant& answer, Jump jump);
    void step(Jump jump);
    void go(Jump jump);
    void tellResult();
    [[nodiscard]] std::size_t matchesBeforeSelected() const;

    Controls m_controls;
    const OutlineModel& m_outline;
    const PageTree& m_tree;
    OutlineSelection& m_selection;
    ViewController& m_rendering;
    QTimer m_delay;
    QTimer m_slices;
    Jump m_jump = Jump::Nowhere;      // when the rows are searched
    html::Node* m_at = nullptr;       // where their search goes on
    int m_searches = 0;               // tells an answer of the engine that comes too late
    std::vector<html::Node*> m_found; // in document order
};

} // namespace luma
