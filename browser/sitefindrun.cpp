// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/sitefindrun.h"

#include "base/mainhop.h"
#include "browser/displaytext.h"

#include <QLocale>

#include <atomic>
#include <mutex>
#include <utility>

namespace luma {

struct SiteFindRun::Found
{
    std::mutex mutex;
    std::vector<SearchedFile> files;
    std::atomic<std::size_t> places = 0;
};

void SiteFindRun::start(const std::filesystem::path& site, const SiteQuery& query)
{
    stop();
    m_item = std::make_shared<WorkItem>();
    m_found = std::make_shared<Found>();
    const QPointer<SiteFindRun> guard(this);
    luma::start(m_item, [guard, site, query, item = m_item, found = m_found](const WorkItem&) {
        const auto add = [&found](SearchedFile&& file) {
            found->places += file.found.size();
            const std::scoped_lock lock(found->mutex);
            found->files.push_back(std::move(file));
        };
        const auto done = searchSite(site, query, add, [item, found] {
            return !item->isCancelled() && !isMainHopClosed() && found->places < mostPlaces;
        });
        onMain(guard, [&](SiteFindRun& self) {
            if (self.m_item != item)
                return;
            self.m_item.reset();
            const QString tooMany = tr("There is more: the search ended after %1 places.")
                                        .arg(QLocale().toString(static_cast<qulonglong>(found->places)));
            emit self.ended(!done ? displayText(done.error().text) : *done ? QString() : tooMany);
        });
    });
}

void SiteFindRun::stop()
{
    if (m_item)
        m_item->cancel();
    m_item.reset();
    m_found.reset();
}

std::vector<SearchedFile> SiteFindRun::take()
{
    if (!m_found)
        return {};
    const std::scoped_lock lock(m_found->mutex);
    return std::exchange(m_found->files, {});
}

} // namespace luma
