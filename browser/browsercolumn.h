// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPersistentModelIndex>
#include <QWidget>

#include <memory>

namespace luma {

class BrowserListView;
class DropTarget;
class FileSystemModel;
class IconPreviewController;

/// One column of a Browser: the header that names the folder, the rows, and the handle that sets the width.
/// Main thread only.
class BrowserColumn final : public QWidget
{
    Q_OBJECT

public:
    static constexpr int smallestWidth = 96;
    static constexpr int largestWidth = 4000;

    /// `model` and `dropTarget` outlive the column; `number` counts from 0 at the root.
    BrowserColumn(FileSystemModel& model, DropTarget& dropTarget, const QModelIndex& folder, int number,
                  QWidget* parent);
    ~BrowserColumn() override;

    [[nodiscard]] QModelIndex folder() const { return m_folder; }
    [[nodiscard]] bool isRoot() const { return m_isRoot; }
    [[nodiscard]] BrowserListView& list() const { return *m_list; }
    [[nodiscard]] QModelIndexList selectedRows() const;
    /// Disconnects the rows from the model; call before the folder is removed.
    void detach();
    /// Reads the header and the text for an empty column from the node again.
    void updateTexts();

signals:
    /// `width` is in pixels.
    void resizedByUser(int width);

private:
    FileSystemModel& m_model;
    QPersistentModelIndex m_folder;
    bool m_isRoot = false;
    BrowserListView* m_list = nullptr;
    std::unique_ptr<IconPreviewController> m_header;

    void connectHandle();
    void changeWidth(int delta);
    void fitWidth();
};

} // namespace luma
