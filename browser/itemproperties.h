// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"

#include <QDialog>

#include <filesystem>
#include <vector>

class QFormLayout;
class QLabel;

namespace luma {

/// Name, kind, place, size, time and permissions of items; of several, their number and size. They are read, and what
/// folders contain is counted, in the background. Not modal; deletes itself when closed. Main thread only.
class ItemProperties final : public QDialog
{
    Q_OBJECT

public:
    /// `items` is not empty.
    ItemProperties(const std::vector<std::filesystem::path>& items, QWidget* parent);
    ~ItemProperties() override;

private:
    struct Facts;

    QFormLayout* m_form;
    QLabel* m_contents = nullptr;
    WorkItemPointer m_count;

    void addRow(const char* name, const QString& title, const QString& text);
    void read(const std::filesystem::path& item);
    void showFacts(const Facts& facts);
    void count(const std::vector<std::filesystem::path>& items);
};

} // namespace luma
