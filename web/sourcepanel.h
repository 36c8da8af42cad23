// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class SourcePanel;
}

namespace luma {

/// The sheet for editing the page's source as text, with line numbers, colours and find. Asks before it
/// discards unsaved edits. Main thread.
class SourcePanel final : public QDialog
{
    Q_OBJECT

public:
    explicit SourcePanel(QWidget* parent);
    ~SourcePanel() override;

    void begin(const QString& source);

    void reject() override;

signals:
    void saved(const QString& source);

private:
    void textDidChange();
    void save();
    void find(bool backward);
    void showFind();

    std::unique_ptr<Ui::SourcePanel> m_ui;
};

} // namespace luma
