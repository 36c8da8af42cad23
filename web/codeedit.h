// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

namespace luma {

/// A text field for code: fixed pitch, no wrapping, line numbers unless switched off.
class CodeEdit final : public QPlainTextEdit
{
    Q_OBJECT
    Q_PROPERTY(bool lineNumbers READ lineNumbers WRITE setLineNumbers)

public:
    explicit CodeEdit(QWidget* parent = nullptr);

    /// The text exactly as set or typed. QPlainTextEdit::toPlainText() would turn no-break spaces into blanks
    /// and line separators into line ends.
    static QString textIn(const QPlainTextEdit& field);

    [[nodiscard]] bool lineNumbers() const { return m_lineNumbers; }
    void setLineNumbers(bool shown);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    void paintNumbers(const QRect& area);
    [[nodiscard]] int numberWidth() const;

    QWidget* m_margin = nullptr;
    bool m_lineNumbers = true;
};

} // namespace luma
