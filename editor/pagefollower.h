// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/linksupdate.h"

#include <QObject>

#include <filesystem>
#include <memory>

class QUndoStack;

namespace luma {

class OutlineSelection;
class PageStore;
class StyleSheetEditor;
class ViewController;

/// Lets an open page follow its file, and its links those on the disk, when files of its site are moved or renamed. Unsaved
/// edits and the drafts of style sheets are kept. Main thread.
class PageFollower final : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        PageStore& store;
        QUndoStack& stack;
        OutlineSelection& selection;
        StyleSheetEditor& styleSheets;
        ViewController& rendering;
        std::filesystem::path& site; // changes when the page moves to another one
    };

    PageFollower(const Parts& parts, QObject* parent) : QObject(parent), m(parts) {}

    /// An item, perhaps the page or a folder above it, has another path now, in `site`. Its links may still be being updated.
    void followItem(const MovedItem& item, const std::filesystem::path& site);
    /// The job is done. The page's links are changed once the document has every edit made in the rendering.
    void followLinks(const std::shared_ptr<const LinksUpdate>& update);

signals:
    /// The page has another location.
    void fileMoved();
    /// Links or the place that they count from have changed.
    void linksUpdated();
    /// The links could not be updated, for this reason.
    void failed(const QString& reason);

private:
    void update(const LinksUpdate& update);

    Parts m;
};

} // namespace luma
