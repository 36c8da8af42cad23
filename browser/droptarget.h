#pragma once

#include "browser/drop.h"

#include <optional>

class QDropEvent;
class QMimeData;
class QModelIndex;
class QWidget;

namespace luma {

class FileSystemModel;

/// Decides what a drag over a browser's columns would do there. Within one browser it moves, unless Control
/// is held; everything else copies. Main thread only; browser and model outlive it.
class DropTarget final
{
public:
    DropTarget(const QWidget& browser, const FileSystemModel& model) : m_browser(browser), m_model(model) {}

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
    const QWidget& m_browser;
    const FileSystemModel& m_model;
};

} // namespace luma
