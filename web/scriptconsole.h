// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QVariant>

#include <memory>

namespace Ui {
class ScriptConsole;
}

namespace luma {

/// The window in which the user writes a script, runs it in the page and sees its answer. Scripts can be saved
/// in the user's data folder. Main thread.
class ScriptConsole final : public QDialog
{
    Q_OBJECT

public:
    explicit ScriptConsole(QWidget* parent);
    ~ScriptConsole() override;

    void showAnswer(const QVariant& answer);
    void addMessage(const QString& message);

    /// The folder for saved scripts.
    static QString scriptFolder();

signals:
    void runRequested(const QString& script);

private:
    void runJS();
    void saveJS();

    std::unique_ptr<Ui::ScriptConsole> m_ui;
};

} // namespace luma
