// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linksupdate.h"

#include <QObject>

#include <filesystem>
#include <memory>

namespace luma {

/// Tells those who show files of a site, such as the windows of open pages, what becomes of them. One object may serve all
/// windows. Main thread only.
class MoveNotices final : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    /// An item has another path now, in the folder `site`: the user has renamed or moved it, or that was taken back. Emitted
    /// before anything else can happen on the main thread; its links may still be being updated.
    void itemMoved(const luma::MovedItem& item, const std::filesystem::path& site);
    /// A job that moved items has ended: their links are updated, or the job has failed.
    void linksUpdated(const std::shared_ptr<const luma::LinksUpdate>& update);
};

} // namespace luma
