// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/filesystemnode.h"

#include <QDialog>

class QKeyEvent;

namespace luma {

class IconPreviewController;

/// The preview of an item in a large window of its own. Space and Escape close it; the arrow keys are passed on, so that
/// one walks through a folder with it open. Not modal. Main thread only.
class EnlargedPreview final : public QDialog
{
    Q_OBJECT

public:
    explicit EnlargedPreview(QWidget* parent);

    void showNode(const FileSystemNodePointer& node);

signals:
    void arrowPressed(int key);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    IconPreviewController* m_preview;
};

} // namespace luma
