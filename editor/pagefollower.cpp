// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/pagefollower.h"

#include "base/pathbelow.h"
#include "editor/outlineselection.h"
#include "editor/stylesheeteditor.h"
#include "links/movedlinks.h"
#include "page/pagestore.h"
#include "web/viewcontroller.h"

#include <QUndoStack>

namespace luma {

namespace fs = std::filesystem;

void PageFollower::followItem(const MovedItem& item, const fs::path& site)
{
    if (!m.store.hasFile())
        return;
    const fs::path place = placeAfterMove(m.store.docURL(), item);
    if (place == m.store.docURL())
        return;
    m.store.followFile(place);
    if (!isAtOrBelow(place.native(), m.site.native()) && isAtOrBelow(place.native(), site.native()))
        m.site = site;
    emit fileMoved();
}

void PageFollower::followLinks(const std::shared_ptr<const LinksUpdate>& update)
{
    m.rendering.whenCaughtUp(this, [this, update] { this->update(*update); });
}

void PageFollower::update(const LinksUpdate& update)
{
    const bool hasMoved = m.store.linkBase() != m.store.docURL();
    const int before = m.stack.index();
    Result<void> done;
    m.styleSheets.followLinks(update, [&] {
        const auto quiet = m.selection.quietly();
        done = m.store.updateLinks(update);
    });
    if (!done)
        emit failed(QString::fromStdString(done.error().text));
    if (m.store.hasPage() && (hasMoved || m.stack.index() != before))
        m.rendering.show(ViewController::Position::Keep);
    emit linksUpdated();
}

} // namespace luma
