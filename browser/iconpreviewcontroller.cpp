// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/iconpreviewcontroller.h"

#include "base/mainhop.h"
#include "desktop/icons.h"
#include "desktop/thumbnails.h"

#include "ui_HeaderView.h"
#include "ui_PreviewView.h"

#include <QDateTime>
#include <QLocale>

#include <sys/stat.h>

#include <algorithm>
#include <utility>

namespace luma {

namespace {

constexpr QSize thumbnailSize(195, 165);
constexpr QSize enlargedSize(900, 600);
constexpr QSize previewIconSize(96, 96);
constexpr QSize enlargedIconSize(256, 256);
constexpr int smallestHeaderIcon = 16;

/// Size and time of the last change, for display.
QString factsText(const struct stat& status)
{
    const QDateTime changed = QDateTime::fromSecsSinceEpoch(status.st_mtime);
    QString time = QLocale().toString(changed, QLocale::ShortFormat);
    if (S_ISLNK(status.st_mode))
        return IconPreviewController::tr("Symbolic link\n%1").arg(time);
    if (S_ISDIR(status.st_mode))
        return time;
    return QLocale().formattedDataSize(status.st_size) + QLatin1Char('\n') + time;
}

} // namespace

IconPreviewController::IconPreviewController(Layout layout, QWidget* parent)
    : m_layout(layout), m_view(new QWidget(parent))
{
    if (layout != Layout::HeaderView) {
        Ui::PreviewView ui;
        ui.setupUi(m_view);
        iconImageView = ui.iconImageView;
        label = ui.label;
        details = ui.details;
        details->setForegroundRole(QPalette::PlaceholderText);
        // The window does not jump from item to item.
        if (layout == Layout::EnlargedView)
            iconImageView->setFixedSize(enlargedSize);
    } else {
        Ui::HeaderView ui;
        ui.setupUi(m_view);
        iconImageView = ui.iconImageView;
        label = ui.label;
    }
}

IconPreviewController::~IconPreviewController()
{
    if (m_workItem)
        m_workItem->cancel();
}

void IconPreviewController::setRepresentedNode(FileSystemNodePointer node)
{
    m_node = std::move(node);
    if (m_node)
        viewWillAppear();
}

void IconPreviewController::viewWillAppear()
{
    label->setText(m_node->displayName());
    if (m_layout == Layout::HeaderView) {
        // It grows with the text, as those in the column do.
        const int side = std::max(smallestHeaderIcon, m_view->fontMetrics().height() - 4);
        showIcon({side, side});
    } else {
        showIcon(m_layout == Layout::PreviewView ? previewIconSize : enlargedIconSize);
        // As high as the text to come, so that nothing moves.
        details->setText(QStringLiteral("\n"));
        look();
    }
}

void IconPreviewController::showIcon(const QSize& size)
{
    const QIcon icon = m_node->isLeaf() && m_layout != Layout::HeaderView
                           ? icons::forFileName(m_node->displayName())
                           : icons::folder();
    iconImageView->setPixmap(icon.pixmap(size, m_view->devicePixelRatioF()));
}

// One job at a time: a server that is silent holds up a single thread, however many items are selected meanwhile.
void IconPreviewController::look()
{
    if (m_workItem) {
        m_workItem->cancel();
        m_isOutdated = true;
        return;
    }
    m_workItem = std::make_shared<WorkItem>();
    const qreal ratio = m_view->devicePixelRatioF();
    const QSize size = (m_layout == Layout::PreviewView ? thumbnailSize : enlargedSize) * ratio;
    const QPointer<IconPreviewController> guard(this);
    // Not under the item: one that is cancelled before it starts must still reach endLook().
    start(std::make_shared<WorkItem>(),
          [guard, item = m_workItem, path = m_node->url(), size, ratio](const WorkItem&) {
              struct stat status = {};
              const bool isThere = !item->isCancelled() && ::lstat(path.c_str(), &status) == 0;
              onMain(guard, [&](IconPreviewController& self) {
                  if (!item->isCancelled())
                      self.details->setText(isThere ? factsText(status) : QString());
              });
              QImage image = item->isCancelled() ? QImage() : thumbnail(path, size);
              image.setDevicePixelRatio(ratio);
              onMain(guard, [&](IconPreviewController& self) { self.endLook(image); });
          });
}

void IconPreviewController::endLook(const QImage& thumbnail)
{
    m_workItem.reset();
    if (std::exchange(m_isOutdated, false) && m_node)
        look();
    else if (!thumbnail.isNull())
        iconImageView->setPixmap(QPixmap::fromImage(thumbnail));
}

} // namespace luma
