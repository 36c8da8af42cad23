// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QList>

#include <memory>

namespace Ui {
class CharacterSheet;
}

namespace luma {

/// The sheet with characters that keyboards lack, in groups, and found by their Unicode names. Those inserted last come
/// first, in all windows until the program ends. Main thread.
class CharacterSheet final : public QDialog
{
    Q_OBJECT

public:
    explicit CharacterSheet(QWidget* parent);
    ~CharacterSheet() override;

    void begin();

    /// The characters whose name, in the standard's English, has words that begin with all these words; or the one with this
    /// code ("U+2192", "2192"), or this character itself. No more than fit a list.
    static QList<char32_t> found(const QString& text);
    /// "RIGHTWARDS ARROW"
    static QString nameOf(char32_t character);

signals:
    void confirmed(const QString& character);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill();
    void showGroup(int group);
    void add(char32_t character);
    void tellCurrent();

    std::unique_ptr<Ui::CharacterSheet> m_ui;
};

} // namespace luma
