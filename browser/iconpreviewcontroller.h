// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"
#include "browser/filesystemnode.h"

#include <QImage>
#include <QObject>

class QLabel;
class QWidget;

namespace luma {

/// Shows one node: as the preview of a leaf (layout PreviewView, large in EnlargedView: thumbnail, name, size and
/// time) or as the header of a column (layout HeaderView: icon and name). What is read from the disk comes from the
/// background, and is dropped if another node is set or the view is destroyed first. Main thread only.
class IconPreviewController final : public QObject
{
    Q_OBJECT

public:
    enum class Layout { PreviewView, EnlargedView, HeaderView };

    /// `parent` owns the view.
    IconPreviewController(Layout layout, QWidget* parent);
    ~IconPreviewController() override;

    [[nodiscard]] QWidget* view() const { return m_view; }
    [[nodiscard]] const FileSystemNodePointer& representedNode() const { return m_node; }
    void setRepresentedNode(FileSystemNodePointer node);

private:
    Layout m_layout;
    QWidget* m_view = nullptr;
    QLabel* iconImageView = nullptr;
    QLabel* label = nullptr;
    QLabel* details = nullptr;
    FileSystemNodePointer m_node;
    WorkItemPointer m_workItem; // while the disk is read
    bool m_isOutdated = false;  // another node was set since

    void viewWillAppear();
    void showIcon(const QSize& size);
    void look();
    void endLook(const QImage& thumbnail);
};

} // namespace luma
