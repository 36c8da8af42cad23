// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QSet>
#include <QStringList>

#include <memory>

namespace Ui {
class ClassSheet;
}

namespace luma {

/// The sheet that asks for a new class and the style sheet that gets its rule. A name that can't be, or that the page has
/// already, is told and not taken. Main thread.
class ClassSheet final : public QDialog
{
    Q_OBJECT

public:
    explicit ClassSheet(QWidget* parent);
    ~ClassSheet() override;

    /// Opens the sheet; the last of `sheets` is chosen. `known`: the classes of the page and its sheets.
    void begin(const QStringList& sheets, const QSet<QString>& known);

signals:
    /// `sheet` is the number of the chosen one.
    void confirmed(const QString& name, int sheet);

private:
    void check();

    std::unique_ptr<Ui::ClassSheet> m_ui;
    QSet<QString> m_known;
};

} // namespace luma
