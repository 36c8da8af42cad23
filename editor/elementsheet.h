// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/elementplaces.h"

#include <QDialog>

#include <memory>

namespace Ui {
class ElementSheet;
}

namespace luma {

class OutlineSelection;

/// The sheet that offers every element, and a comment, for a place at the selected node or for the caret in it, and tells
/// of those that can't stand there why. The place chosen last is chosen again.
/// Main thread.
class ElementSheet final : public QDialog
{
    Q_OBJECT

public:
    /// The selection outlives it.
    ElementSheet(const OutlineSelection& selection, QWidget* parent);
    ~ElementSheet() override;

    /// Does nothing if there is no such place.
    void begin();

signals:
    /// As for elementOffers().
    void confirmed(const QString& tag, InsertPlace place);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fillPlaces();
    void fillElements();
    [[nodiscard]] InsertPlace place() const;
    void filter(const QString& letters);
    void update();

    std::unique_ptr<Ui::ElementSheet> m_ui;
    const OutlineSelection& m_selection;
    InsertPlace m_lastPlace = InsertPlace::Caret;
};

} // namespace luma
