// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/droptarget.h"

#include "browser/dragrecord.h"
#include "browser/filesystemmodel.h"

#include <QDropEvent>
#include <QMimeData>

#include <algorithm>

namespace luma {

namespace fs = std::filesystem;

namespace {

// Usually a slip of the mouse; the move would only fail.
bool movesNothing(const Drop& drop)
{
    return std::all_of(drop.items.begin(), drop.items.end(), [&](const fs::path& item) {
        return item.parent_path() == drop.folder || item == drop.folder;
    });
}

} // namespace

std::shared_ptr<const void> DropTarget::beginDrag()
{
    std::shared_ptr<const void> drag = std::make_shared<bool>(true);
    m_drag = drag;
    return drag;
}

std::vector<fs::path> DropTarget::droppedPaths(const QMimeData& data)
{
    if (data.hasFormat(QLatin1String(dragRecordType)))
        return pathsOfDragRecord(data.data(QLatin1String(dragRecordType)));
    return pathsOfUriList(data.data(QStringLiteral("text/uri-list")));
}

std::optional<Drop> DropTarget::validateDrop(const QDropEvent& event, const std::vector<fs::path>& items,
                                             const QModelIndex& row, const QModelIndex& columnFolder) const
{
    const FileSystemNodePointer folder = m_model.node(row.isValid() ? row : columnFolder);
    if (items.empty() || !folder || folder->isLeaf())
        return {};
    const bool isMove = !m_drag.expired() && !event.modifiers().testFlag(Qt::ControlModifier);
    Drop drop{isMove ? MoveOperation::Move : MoveOperation::Copy, items, folder->url()};
    if (isMove && movesNothing(drop))
        return {};
    return drop;
}

} // namespace luma
