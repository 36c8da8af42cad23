// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "site/textcomparison.h"

#include <QDialog>

#include <filesystem>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace luma {

/// Shows the text of a file on both sides of a site, line beside line, with the differences marked. Deletes itself
/// when closed. Main thread; the files are read and compared in the background.
class ComparisonWindow final : public QDialog
{
    Q_OBJECT

public:
    /// One side's file.
    struct Side
    {
        QString title;              ///< "Source"
        std::filesystem::path file; ///< empty if the side is not connected
    };

    ComparisonWindow(const Side& left, const Side& right, QWidget* parent);
    ~ComparisonWindow() override;

private:
    struct Texts
    {
        std::vector<ComparedLine> lines;
        bool differInLineEnds = false;
    };

    QLabel* m_status = nullptr;
    QPlainTextEdit* m_left = nullptr;
    QPlainTextEdit* m_right = nullptr;
    QPushButton* m_previous = nullptr;
    QPushButton* m_next = nullptr;
    std::vector<int> m_differences; // the first line of each
    WorkItemPointer m_workItem = std::make_shared<WorkItem>();

    static Result<Texts> readTexts(const std::filesystem::path& left, const std::filesystem::path& right,
                                   const WorkItem& item);
    QPlainTextEdit* makeText(const Side& side);
    void buildWindow(const Side& left, const Side& right);
    void compare(const Side& left, const Side& right);
    void showTexts(const Result<Texts>& texts);
    void goTo(int step);
};

} // namespace luma
