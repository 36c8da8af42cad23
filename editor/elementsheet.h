// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class ElementSheet;
}

namespace luma {

class OutlineSelection;

/// The sheet that offers every element for the selected one, and tells of those that can't stand there why. Main thread.
class ElementSheet final : public QDialog
{
    Q_OBJECT

public:
    /// The selection outlives it.
    ElementSheet(const OutlineSelection& selection, QWidget* parent);
    ~ElementSheet() override;

    /// Does nothing while no element is selected.
    void begin();

signals:
    void confirmed(const QString& tagName);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void filter(const QString& letters);
    void update();

    std::unique_ptr<Ui::ElementSheet> m_ui;
    const OutlineSelection& m_selection;
};

} // namespace luma
