// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/trash.h"

#include <QString>

#include <filesystem>
#include <functional>
#include <vector>

class QMessageBox;
class QWidget;

/// How files are deleted in every window: asked once, to the trash, and where there is none asked again.
namespace luma {

/// Items that were to go to the trash.
struct TrashOutcome
{
    std::vector<TrashedItem> trashed;
    std::vector<std::filesystem::path> left; // could not be moved
    std::string reason;                      // for the first of them
};

/// Moves the items to the trash, one after another, as long as `isWanted` says so. Blocks; any thread.
TrashOutcome moveAllToTrash(const std::vector<std::filesystem::path>& items,
                            const std::function<bool()>& isWanted);

/// Opens a sheet named `name` on the window of `parent` with the question and the buttons "Delete" and "No", the
/// default. `accepted` is called for "Delete" while `parent` lives. The sheet deletes itself when it is closed.
QMessageBox* askToDelete(QWidget& parent, const QString& name, const QString& question,
                         std::function<void()> accepted);

/// What to ask about items that could not be moved to the trash.
QString questionAbout(const TrashOutcome& outcome);

/// The names of the items for a question: all of a few, else the first ones and how many more.
QString namesOf(const std::vector<std::filesystem::path>& items);

} // namespace luma
