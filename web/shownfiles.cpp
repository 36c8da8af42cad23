// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/shownfiles.h"

#include "base/pathtext.h"
#include "page/sitefolder.h"
#include "web/editorpage.h"
#include "web/pagescheme.h"
#include "web/scriptcall.h"

#include <QFile>
#include <QUrl>

#include <utility>

namespace luma {

namespace {

constexpr int pauseAfterChange = 100; // milliseconds
constexpr int mostFiles = 200;
constexpr int pauseBetweenQuestions = 50; // milliseconds
constexpr int mostQuestions = 60;         // whether the files are loaded; one of them may never come

} // namespace

ShownFiles::ShownFiles(EditorPage& page, std::function<SiteFolder()> site, QObject* parent)
    : QObject(parent), m_page(page), m_site(std::move(site))
{
    m_update.setSingleShot(true);
    m_update.setInterval(pauseAfterChange);
    connect(&m_update, &QTimer::timeout, this, &ShownFiles::update);
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseAfterChange);
    connect(&m_pause, &QTimer::timeout, this, &ShownFiles::renewAll);
    m_loading.setSingleShot(true);
    m_loading.setInterval(pauseBetweenQuestions);
    connect(&m_loading, &QTimer::timeout, this, &ShownFiles::askIfLoaded);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &ShownFiles::noteChange);
    connect(&page, &EditorPage::shown, this, &ShownFiles::update);
}

void ShownFiles::update()
{
    m_isAsking = true;
    ScriptCall::ask(&m_page, QStringLiteral("shownFiles()"), this,
                    [this, generation = m_page.generation()](const QVariant& answer) {
                        if (generation != m_page.generation())
                            return;
                        if (const auto addresses = ScriptCall::strings(answer))
                            watch(*addresses);
                        m_isAsking = false;
                        if (!m_changed.isEmpty())
                            m_pause.start();
                    });
}

// The addresses come from the page: only those of its site are files.
void ShownFiles::watch(const QStringList& addresses)
{
    m_addresses.clear();
    const SiteFolder site = m_site();
    for (const QString& address : addresses) {
        const QUrl url(address);
        if (m_addresses.size() >= mostFiles || url.scheme().toLatin1() != PageScheme::name())
            continue;
        const auto file = site.fileAt(url.path(QUrl::FullyEncoded).toStdString());
        if (file && site.realPath(*file))
            m_addresses.insert(textOf(*file), address);
    }
    const QStringList watched = m_watcher.files();
    for (const QString& file : watched) {
        if (!m_addresses.contains(file))
            m_watcher.removePath(file);
    }
    for (auto each = m_addresses.keyBegin(); each != m_addresses.keyEnd(); ++each) {
        if (!watched.contains(*each) && QFile::exists(*each))
            m_watcher.addPath(*each);
    }
}

void ShownFiles::renew(const std::filesystem::path& file)
{
    noteChange(textOf(file));
}

void ShownFiles::noteChange(const QString& file)
{
    m_changed.insert(file);
    m_pause.start();
}

// A file that another program replaced is a new one and has to be watched anew.
void ShownFiles::renewAll()
{
    if (m_isAsking || !m_page.isComplete())
        return;
    QStringList addresses;
    for (const QString& file : std::exchange(m_changed, {})) {
        if (!m_addresses.contains(file)) {
            // An imported sheet is unknown while the one that imports it is being loaded.
            m_changed.insert(file);
            continue;
        }
        addresses.append(u'\'' + quotedForScript(m_addresses.value(file)) + u'\'');
        if (!m_watcher.files().contains(file) && QFile::exists(file))
            m_watcher.addPath(file);
    }
    if (addresses.isEmpty())
        return;
    ScriptCall::run(&m_page, QStringLiteral("renewFiles([%1])").arg(addresses.join(u',')));
    m_questionsLeft = mostQuestions;
    m_loading.start();
}

void ShownFiles::askIfLoaded()
{
    const bool isLast = --m_questionsLeft <= 0;
    ScriptCall::ask(&m_page,
                    isLast ? QStringLiteral("tellIfRenewed(true)") : QStringLiteral("tellIfRenewed(false)"),
                    this, [this, isLast](const QVariant& isTold) {
                        if (!isTold.toBool() && !isLast)
                            m_loading.start();
                    });
}

} // namespace luma
