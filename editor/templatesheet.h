// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <filesystem>
#include <memory>

namespace Ui {
class TemplateSheet;
}

namespace luma {

/// The sheet that lists the pages in the user's folder of templates. Main thread.
class TemplateSheet final : public QDialog
{
    Q_OBJECT

public:
    explicit TemplateSheet(QWidget* parent);
    ~TemplateSheet() override;

    /// Lists them anew.
    void begin();

    /// The folder, which may not be there yet: "luma/templates" in the user's folder for data of programs.
    static std::filesystem::path folder();

signals:
    void confirmed(const std::filesystem::path& page);

private:
    void openFolder();

    std::unique_ptr<Ui::TemplateSheet> m_ui;
};

} // namespace luma
