// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/stylerules.h"
#include "links/webrules.h"
#include "page/cssedits.h"
#include "page/sitefolder.h"
#include "web/boxoverlay.h"

#include <QObject>
#include <QPersistentModelIndex>
#include <QSet>
#include <QTimer>

#include <functional>
#include <optional>
#include <vector>

class QLabel;
class QLineEdit;
class QMenu;
class QStandardItemModel;
class QTabWidget;
class QToolButton;
class QTreeView;
class QVariant;

namespace luma {

class BoxPanel;
class BoxView;
class ClassSheet;
class CssVocabulary;
class OutlineSelection;
class StyleColours;
class StyleEdits;
class StyleRulesModel;
class StyleRulesReader;
class ViewController;

/// The panel of the style rules that apply to the selected element, with its box and its computed values on a second page. It asks the
/// page only while it is visible, shortly after a change. So long the rendering shows the element in the states that the user
/// chose, as if the mouse were over it. Each edit is one undo step. Main thread.
class StyleRulesPanel final : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QLabel* title;
        QTabWidget* pages;
        QTreeView* rules;
        BoxView* box;
        QTreeView* computed;
        QLineEdit* filter;
        QToolButton* newRuleButton;
        QToolButton* statesButton;
    };
    struct Parts
    {
        OutlineSelection& selection;
        ViewController& rendering;
        StyleRulesReader& reader;
        StyleEdits& edits;
        CssVocabulary& vocabulary;
        std::function<SiteFolder()> place;
        std::function<WebRules()> linkRules;
    };

    /// All of them outlive it.
    StyleRulesPanel(const Controls& controls, const Parts& parts, QObject* parent);

    /// The page, its style sheets or the selection have changed.
    void noteChange();

signals:
    /// Something was not done, for this reason.
    void refused(const QString& reason);
    /// The mouse is over this part of the drawing of the row's box; over none if the row is invalid.
    void partHovered(const QModelIndex& row, luma::BoxOverlay::Part part);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createViews();
    static void fitColumns(QTreeView& view);
    void createStates();
    /// Shows the element at the path in the chosen states; no path: as it is.
    void forceStates(const std::optional<std::vector<int>>& path);
    void read();
    void readComputed();
    void show(const std::vector<StyleGroup>& groups);
    void showComputed(const QVariant& answer);
    void setValue(const QModelIndex& index, const QString& value);
    void switchDeclaration(const QModelIndex& index);
    void add(const QModelIndex& index, const QString& text);
    void remove(const QModelIndex& index);
    void fillNewRuleMenu();
    void addRule(const QString& selector);
    void askForClass();
    void askForClassIn(const std::vector<std::pair<StyleSource, std::string>>& sheets,
                       const QSet<QString>& known);
    bool takeKey(int key, Qt::KeyboardModifiers modifiers);
    [[nodiscard]] bool isVisible() const;
    /// The user edits a value, so the rows must stay.
    [[nodiscard]] bool isEditing() const;

    Controls m_controls;
    Parts m_parts;
    StyleRulesModel* m_model;
    StyleColours* m_colours;
    QStandardItemModel* m_computed;
    QMenu* m_newRuleMenu;
    BoxPanel* m_box;
    ClassSheet* m_classSheet = nullptr; // made when it is first needed
    QTimer m_delay;
    QPersistentModelIndex m_row; // of the element shown
    bool m_forcesStates = false;
    QSet<QString> m_closed; // the rules whose declarations the user has hidden, by key
};

} // namespace luma
