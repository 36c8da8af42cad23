// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace luma {

class OutlineModel;
class OutlineSelection;
class ViewController;

/// Hides elements in the rendering, for looking only: the page, its file and its undo history don't know of it. Main
/// thread.
class HiddenElements final : public QObject
{
    Q_OBJECT

public:
    /// All of them outlive it.
    HiddenElements(OutlineModel& outline, const OutlineSelection& selection, ViewController& rendering,
                   QObject* parent);

    /// Hides the selected element, or shows it again.
    void toggleSelected();

signals:
    /// The selected element can't be hidden, for this reason.
    void refused(const QString& reason);

private:
    void showInPage();

    OutlineModel& m_outline;
    const OutlineSelection& m_selection;
    ViewController& m_rendering;
};

} // namespace luma
