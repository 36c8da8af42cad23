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

    /// Shows the source, a long one piece by piece, with the caret at `place`, a position in the string.
    void begin(const QString& source, qsizetype place);
    /// Says why the source was not taken, and where the trouble is: a position in the string, -1 if nobody knows. The panel
    /// stays open with the source, its line marked.
    void refuse(const QString& reason, qsizetype place);

    void reject() override;

signals:
    /// The panel is to be closed, or told why not.
    void saveRequested(const QString& source, qsizetype place);

private:
    void fill();
    void textDidChange();
    void showTrouble(const QString& reason);
    void save();
    void find(bool backward);
    void showFind();

    std::unique_ptr<Ui::SourcePanel> m_ui;
    QString m_rest; // of the source, still to be shown
    qsizetype m_line = 0;
    qsizetype m_column = 0;
};

} // namespace luma
