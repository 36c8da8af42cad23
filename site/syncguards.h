// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "site/syncrow.h"

#include <QStringList>

namespace luma {

/// What speaks against transferring the ticked rows of a comparison, each as sentences that end in a question;
/// none if nothing does. The user should answer them before anything is sent or deleted: an empty sending
/// side, more than a third of the receiving files to be deleted, two folders without a common file, too little
/// room on the receiving disk. Any thread.
QStringList guardQuestions(const std::vector<SyncRow>& rows, const SyncCounts& counts);

} // namespace luma
