// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPlainTextEdit>

namespace luma {

/// A text field for code: fixed pitch, no wrapping, line numbers unless switched off, and the bracket that matches the one
/// at the cursor is marked. If wanted, the margin shows the first colour that a line names.
class CodeEdit final : public QPlainTextEdit
{
    Q_OBJECT
    Q_PROPERTY(bool lineNumbers READ lineNumbers WRITE setLineNumbers)
    Q_PROPERTY(bool swatches READ swatches WRITE setSwatches)

public:
    explicit CodeEdit(QWidget* parent = nullptr);

    /// The text exactly as set or typed. QPlainTextEdit::toPlainText() would turn no-break spaces into blanks
    /// and line separators into line ends.
    static QString textIn(const QPlainTextEdit& field);

    [[nodiscard]] bool lineNumbers() const { return m_lineNumbers; }
    void setLineNumbers(bool shown);
    [[nodiscard]] bool swatches() const { return m_swatches; }
    void setSwatches(bool shown);

    /// The first colour in a line of CSS: #rgb, rgb(), hsl() or a name behind a colon; invalid if there is none.
    static QColor colourIn(const QString& line);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    void paintNumbers(const QRect& area);
    [[nodiscard]] int numberWidth() const;
    [[nodiscard]] int swatchWidth() const;
    void markBrackets();

    QWidget* m_margin = nullptr;
    bool m_lineNumbers = true;
    bool m_swatches = false;
};

} // namespace luma
