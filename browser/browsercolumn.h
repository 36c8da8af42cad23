// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPersistentModelIndex>
#include <QWidget>

#include <memory>

namespace luma {

class BrowserListView;
class FileSystemModel;
class IconPreviewController;

/// One column of a Browser: the header that names the folder, its rows, and the handle that sets the width.
class BrowserColumn final : public QWidget
{
    Q_OBJECT

public:
    static constexpr int smallestWidth = 96;
    static constexpr int largestWidth = 4000;

    BrowserColumn(FileSystemModel& model, const QModelIndex& folder, int number, QWidget* parent);
    ~BrowserColumn() override;

    [[nodiscard]] QModelIndex folder() const { return m_folder; }
    [[nodiscard]] bool isRoot() const { return m_isRoot; }
    [[nodiscard]] BrowserListView& list() const { return *m_list; }
    [[nodiscard]] QModelIndexList selectedRows() const;
    /// Cuts the rows off from the model, for the folder is about to go.
    void detach();
    /// The header and the text for no rows, once more from the node.
    void updateTexts();

signals:
    /// The user has set this width, in pixels.
    void widthChosen(int width);

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
