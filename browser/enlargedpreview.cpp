// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/enlargedpreview.h"

#include "browser/iconpreviewcontroller.h"

#include <QKeyEvent>
#include <QVBoxLayout>

namespace luma {

EnlargedPreview::EnlargedPreview(QWidget* parent)
    : QDialog(parent), m_preview(new IconPreviewController(IconPreviewController::Layout::EnlargedView, this))
{
    setObjectName(QStringLiteral("enlargedPreview"));
    setAttribute(Qt::WA_DeleteOnClose);
    m_preview->setParent(this);
    auto* const all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(m_preview->view());
}

void EnlargedPreview::showNode(const FileSystemNodePointer& node)
{
    m_preview->setRepresentedNode(node);
    setWindowTitle(node->displayName());
    show();
}

void EnlargedPreview::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Space:
        close();
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Left:
    case Qt::Key_Right:
        emit arrowPressed(event->key());
        break;
    default:
        QDialog::keyPressEvent(event);
    }
}

} // namespace luma
