// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class MetaSheet;
}

namespace luma {

/// The small sheet for editing the page's title. Main thread.
class MetaSheet final : public QDialog
{
    Q_OBJECT

public:
    explicit MetaSheet(QWidget* parent);
    ~MetaSheet() override;

    /// Opens the sheet with `text` in its field, which gets the keyboard focus.
    void begin(const QString& label, const QString& text);

signals:
    void confirmed(const QString& text);

private:
    /// Closes the sheet; a sender whose "tag" is 1 confirms.
    void closeSheet(QObject* sender);

    std::unique_ptr<Ui::MetaSheet> m_ui;
};

} // namespace luma
