// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class MetaSheet;
}

namespace luma {

/// The small sheet in which one text of the page's head, its title, is edited. Main thread.
class MetaSheet final : public QDialog
{
    Q_OBJECT

public:
    explicit MetaSheet(QWidget* parent);
    ~MetaSheet() override;

    /// Opens the sheet with the text to begin with, the keyboard in its field.
    void begin(const QString& label, const QString& text);

signals:
    void confirmed(const QString& text);

private:
    /// A sender whose "tag" is 1 confirms.
    void closeSheet(QObject* sender);

    std::unique_ptr<Ui::MetaSheet> m_ui;
};

} // namespace luma
