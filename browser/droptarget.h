// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linkupdatingmove.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

class QDropEvent;
class QMimeData;
class QModelIndex;

namespace luma {

class FileSystemModel;

/// A drop onto a pane: the items to move or copy into a folder.
struct Drop
{
    MoveOperation operation = MoveOperation::Copy;
    std::vector<std::filesystem::path> items;
    std::filesystem::path folder;
};

/// Decides what a drop onto a browser's columns does. Within one browser it moves, unless Control is held;
/// everything else copies. Main thread only; the model outlives it.
class DropTarget final
{
public:
    explicit DropTarget(const FileSystemModel& model) : m_model(model) {}

    /// Begins a drag out of this browser; it lasts as long as the returned token.
    [[nodiscard]] std::shared_ptr<const void> beginDrag();

    /// The drop of `items` on row `row` of the column that shows `columnFolder`, or into that folder if `row`
    /// is invalid. None if it is refused: a drag without files, a row that is not a folder, or a move of
    /// items into the folder they are in or of a folder onto itself.
    [[nodiscard]] std::optional<Drop> validateDrop(const QDropEvent& event,
                                                   const std::vector<std::filesystem::path>& items,
                                                   const QModelIndex& row,
                                                   const QModelIndex& columnFolder) const;

    /// The files that a drag carries: the record of a pane, or else the file URLs of another program.
    static std::vector<std::filesystem::path> droppedPaths(const QMimeData& data);

private:
    const FileSystemModel& m_model;
    std::weak_ptr<const void> m_drag;
};

} // namespace luma
