// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "browser/drop.h"

#include <memory>
#include <optional>

class QDropEvent;
class QMimeData;
class QModelIndex;

namespace luma {

class FileSystemModel;

/// Decides what a drag over a browser's columns would do there. Within one browser it moves, unless Control
/// is held; everything else copies. Main thread only; the model outlives it.
class DropTarget final
{
public:
    explicit DropTarget(const FileSystemModel& model) : m_model(model) {}

    /// A drag out of this browser runs for as long as the token lives.
    [[nodiscard]] std::shared_ptr<const void> beginDrag();

    /// The drop of `items` on the row `row` of the column that shows `columnFolder`, or below its rows when
    /// `row` is invalid. Nothing where it is refused: a drag without files, a row that is no folder, a move
    /// of items to where they are already or of a folder onto itself.
    [[nodiscard]] std::optional<Drop> validateDrop(const QDropEvent& event,
                                                   const std::vector<std::filesystem::path>& items,
                                                   const QModelIndex& row,
                                                   const QModelIndex& columnFolder) const;

    /// The files that a drag carries: what a pane wrote, else the file URLs of another program.
    static std::vector<std::filesystem::path> droppedPaths(const QMimeData& data);

private:
    const FileSystemModel& m_model;
    std::weak_ptr<const void> m_drag;
};

} // namespace luma
