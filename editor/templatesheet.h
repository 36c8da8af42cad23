// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "page/templatefiles.h"

#include <QDialog>

#include <filesystem>
#include <functional>
#include <memory>

namespace Ui {
class TemplateSheet;
}

namespace luma {

/// The sheet that lists the pages in a folder of templates, and asks whether the files that one uses are to come along. Main
/// thread.
class TemplateSheet final : public QDialog
{
    Q_OBJECT

public:
    /// `folder` is asked for the folder of templates each time.
    TemplateSheet(std::function<std::filesystem::path()> folder, QWidget* parent);
    ~TemplateSheet() override;

    /// Lists them anew, each with its title and first words.
    void begin();

    /// The folder unless the user chose one, which may not be there yet: "luma/templates" in the user's folder for data of
    /// programs.
    static std::filesystem::path usualFolder();

signals:
    void confirmed(const PageTemplate& from);

private:
    void openFolder();
    void countFiles();
    void tellFiles(std::size_t count);

    std::function<std::filesystem::path()> m_folder;
    std::unique_ptr<Ui::TemplateSheet> m_ui;
    WorkItemPointer m_counting;
};

} // namespace luma
