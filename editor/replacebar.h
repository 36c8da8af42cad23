// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "html/textsearch.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QToolButton;
class QUndoStack;
class QWidget;

namespace luma {

class OutlineSelection;
class PageStore;
class PageTree;
class ViewController;

/// The bar above the rendering that finds and replaces: in the text as the page shows it, where matches reach across inline
/// elements and keep them, in the source, or in the style sheet shown. Each replacement is one step, also that of all matches. A page that changes is
/// searched again. Expressions may take long, so it searches on another thread. Main thread.
class ReplaceBar final : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QWidget* bar;
        QLineEdit* field;
        QLineEdit* replacement;
        QToolButton* caseButton;
        QToolButton* wordsButton;
        QToolButton* expressionButton;
        QToolButton* sourceButton;
        QLabel* result;
        QToolButton* previousButton;
        QToolButton* nextButton;
        QToolButton* closeButton;
        QPushButton* replaceButton;
        QPushButton* replaceAllButton;
    };
    struct Parts
    {
        PageTree& tree;
        QUndoStack& stack;
        PageStore& store;
        OutlineSelection& selection;
        ViewController& rendering;
        QPlainTextEdit& sheet;
    };

    /// All of them outlive it.
    ReplaceBar(const Controls& controls, const Parts& parts, QObject* parent);
    ~ReplaceBar() override;

    /// Shows the bar for the page, or for the style sheet if that has the focus, and puts the focus there.
    void begin();
    [[nodiscard]] bool isShown() const;
    /// Selects the match behind or in front of the one selected last; after the last comes the first.
    void next() { step(1); }
    void previous() { step(-1); }

signals:
    /// The bar was closed by the user, who goes on in the page.
    void closed();
    /// The text was edited; the rendering has to repeat it. The source was: it has to be shown anew.
    void textEdited();
    void sourceEdited();
    void refused(const QString& reason);

private:
    struct SourceSearch;

    void connectControls();
    void takePlace(bool inSheet);
    void noteSheet();
    [[nodiscard]] bool searchesSource() const;
    [[nodiscard]] std::vector<QString> searchedTexts();
    void takeFound(const Result<RunMatches>& matches);
    void endSearch();
    void afterSearch(const std::function<void()>& then);
    [[nodiscard]] bool isSearching() const { return m_delay.isActive() || m_search; }
    void close();
    void forget();
    void search();
    void searchNow();
    [[nodiscard]] TextQuery query() const;
    [[nodiscard]] std::size_t count() const;
    void step(int direction);
    void show(std::size_t match);
    void showInText(const TextMatch& match);
    void showInSource(const QRegularExpressionMatch& match);
    void showInSheet(const QRegularExpressionMatch& match);
    void replace();
    void replaceAll();
    void replaceMatches(std::size_t first, std::size_t end, const QString& name);
    void replaceInSource(std::size_t first, std::size_t end, const QString& name);
    void replaceInSheet(std::size_t first, std::size_t end);
    void tellResult();

    Controls m_controls;
    Parts m_parts;
    QTimer m_delay;
    WorkItemPointer m_search; // that is under way
    std::function<void()> m_afterSearch;
    std::vector<TextMatch> m_found;
    std::unique_ptr<SourceSearch> m_source; // instead, while the source or the sheet is searched
    bool m_inSheet = false;
    QString m_error;           // of the expression
    std::size_t m_current = 0; // match; none if it is the number of matches
    qsizetype m_place = 0;     // where the next search begins, in characters
    bool m_jumps = false;      // to a match, once the page is searched
};

} // namespace luma
