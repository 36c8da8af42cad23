// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "html/element.h"

#include <functional>
#include <vector>

class QUndoStack;

namespace luma {

class PageTree;

/// Changes the attributes of all elements, those in the tree and those that the history keeps for undo and redo, as if
/// they had always been so: no step of the history. Of the stack only the commands of PageCommands are changed. Main thread.
void changeAttributesEverywhere(PageTree& tree, QUndoStack& stack,
                                const std::function<void(std::vector<html::Attribute>&)>& change);

} // namespace luma
