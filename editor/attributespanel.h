// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/element.h"

#include <QObject>
#include <QPersistentModelIndex>

#include <string>
#include <vector>

class QAction;
class QCheckBox;
class QLabel;
class QPushButton;
class QTreeView;
class QWidget;

namespace luma {

class AttributesModel;
struct ElementAttribute;
class OutlineSelection;
class PageEdits;
class PageTree;
class ViewController;

/// The panel of the selected element's attributes. Each value that is edited there is one undo step of the page. An image
/// without a text says so, its size keeps its ratio if the box is checked, and a button makes a link of it. Main thread.
class AttributesPanel final : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QLabel* title;
        QTreeView* table;
        QWidget* altNotice;
        QLabel* altText; ///< in the notice
        QPushButton* decorativeButton;
        QCheckBox* ratioBox;
        QPushButton* linkButton;
        QAction* makeLinkAction;
        QAction* editLinkAction;
    };

    /// All of them outlive it.
    AttributesPanel(const Controls& controls, const PageTree& tree, OutlineSelection& selection,
                    PageEdits& edits, ViewController& rendering, QObject* parent);

signals:
    /// A value was not taken, for this reason.
    void refused(const QString& reason);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showSelected();
    void fitNames();
    void update();
    void updateControls(const html::Element* element);
    void setValue(const ElementAttribute& attribute, const QString& value);
    void remove(const ElementAttribute& attribute);
    void setSize(const std::string& side, int length);
    void editLink();

    Controls m_controls;
    AttributesModel* m_model;
    OutlineSelection& m_selection;
    PageEdits& m_edits;
    ViewController& m_rendering;
    QPersistentModelIndex m_row;
};

} // namespace luma
