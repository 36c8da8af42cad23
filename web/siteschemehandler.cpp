// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/siteschemehandler.h"

#include "base/pathtext.h"
#include "base/workitem.h"
#include "web/pagescheme.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QPointer>
#include <QWebEngineUrlRequestJob>

#include <algorithm>

namespace fs = std::filesystem;

namespace luma {

namespace {

constexpr const char* pageType = "text/html;charset=utf-8";

void replyWithFile(const QPointer<QWebEngineUrlRequestJob>& job, FileDescriptor opened,
                   const QByteArray& type)
{
    if (!job)
        return;
    auto* file = new QFile(job);
    if (file->open(opened.get(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        (void)opened.release();
        job->reply(type, file);
    } else {
        job->fail(QWebEngineUrlRequestJob::RequestFailed);
    }
}

// The page that the address of a folder means; another path, and a folder without one, is returned as it is.
fs::path indexPage(const fs::path& file, const std::vector<std::string>& names)
{
    std::error_code error;
    if (names.empty() || !fs::is_directory(file, error))
        return file;
    const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& name) {
        return fs::is_regular_file(file / name, error);
    });
    return found == names.end() ? file : file / *found;
}

QString servedName(const fs::path& file)
{
    return textOf(file.lexically_normal());
}

bool comesFromPage(const QWebEngineUrlRequestJob* job, const QString& host)
{
    return job->initiator().isEmpty() || PageScheme::isOfPage(job->initiator(), host);
}

} // namespace

void SiteSchemeHandler::serve(const QString& host, const QByteArray& markup, const SiteFolder& files)
{
    Page& page = m_pages[host];
    page.pages = {{servedName(files.page()), markup}};
    page.files = files;
}

void SiteSchemeHandler::servePage(const QString& host, const fs::path& file, const QByteArray& markup)
{
    QHash<QString, QByteArray>& pages = m_pages[host].pages;
    if (!pages.contains(servedName(file)))
        pages.insert(servedName(file), markup);
}

void SiteSchemeHandler::serveDraft(const QString& host, const fs::path& file,
                                   const std::optional<QByteArray>& text)
{
    const QString name = servedName(file);
    if (text)
        m_pages[host].drafts.insert(name, *text);
    else
        m_pages[host].drafts.remove(name);
}

QHash<QString, QByteArray> SiteSchemeHandler::drafts(const QString& host) const
{
    QHash<QString, QByteArray> all;
    for (const Page& page : m_pages)
        all.insert(page.drafts);
    all.insert(m_pages.value(host).drafts);
    return all;
}

void SiteSchemeHandler::serveFolders(const QString& host, const std::vector<std::string>& indexNames)
{
    m_pages[host].indexNames = indexNames;
}

void SiteSchemeHandler::withdraw(const QString& host)
{
    m_pages.remove(host);
}

QUrl SiteSchemeHandler::address(const QString& host, const fs::path& file)
{
    const QByteArray path = QByteArray::fromStdString(SiteFolder::addressPath(file));
    return QUrl::fromEncoded(PageScheme::name() + "://" + host.toLatin1() + path, QUrl::StrictMode);
}

void SiteSchemeHandler::requestStarted(QWebEngineUrlRequestJob* job)
{
    const QUrl url = job->requestUrl();
    const auto page = m_pages.constFind(url.host());
    if (page == m_pages.constEnd() || job->requestMethod() != "GET" || !comesFromPage(job, url.host())) {
        refuse(job, QWebEngineUrlRequestJob::RequestDenied);
        return;
    }
    const QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    const auto file = page->files.fileAt(path.toStdString());
    if (!file)
        refuse(job, QWebEngineUrlRequestJob::UrlInvalid);
    else if (const auto markup = page->pages.constFind(servedName(*file)); markup != page->pages.constEnd())
        answerText(job, *markup, pageType);
    else if (const auto draft = page->drafts.constFind(servedName(*file)); draft != page->drafts.constEnd())
        answerText(job, *draft, "text/css;charset=utf-8");
    else
        answerFile(job, *page, *file);
}

void SiteSchemeHandler::refuse(QWebEngineUrlRequestJob* job, QWebEngineUrlRequestJob::Error error)
{
    const QUrl url = job->requestUrl();
    job->fail(error);
    emit refused(url);
}

void SiteSchemeHandler::answerText(QWebEngineUrlRequestJob* job, const QByteArray& text,
                                   const QByteArray& type)
{
    auto* buffer = new QBuffer(job);
    // The byte order mark overrides any encoding that the text declares: what is served is UTF-8.
    buffer->setData(text.startsWith("\xef\xbb\xbf") ? text : "\xef\xbb\xbf" + text);
    buffer->open(QIODevice::ReadOnly);
    job->reply(type, buffer);
}

void SiteSchemeHandler::answerFile(QWebEngineUrlRequestJob* job, const Page& page, const fs::path& file)
{
    // Links of a folder's page count from the folder only if its address ends in a slash.
    QUrl folderAddress = job->requestUrl();
    if (!folderAddress.path().endsWith(u'/'))
        folderAddress.setPath(folderAddress.path(QUrl::FullyEncoded) + u'/', QUrl::TolerantMode);
    else
        folderAddress.clear();
    start(std::make_shared<WorkItem>(),
          [self = QPointer(this), files = page.files, names = page.indexNames, pages = page.pages,
           folderAddress, file, job = QPointer(job)](const WorkItem&) {
              const fs::path found = indexPage(file, names);
              const auto markup = pages.constFind(servedName(found));
              const bool isPage = markup != pages.constEnd();
              const bool isMoved = found != file && !folderAddress.isEmpty();
              auto opened = std::make_shared<Result<FileDescriptor>>(files.open(found));
              const QByteArray type = QByteArray::fromStdString(contentTypeOf(found));
              QMetaObject::invokeMethod(
                  QCoreApplication::instance(),
                  [self, job, opened, type, isMoved, page = isPage ? *markup : QByteArray(), isPage,
                   folderAddress] {
                      if (job && *opened && isMoved)
                          job->redirect(folderAddress);
                      else if (job && isPage)
                          answerText(job, page, pageType);
                      else if (*opened)
                          replyWithFile(job, std::move(**opened), type);
                      else if (self && job)
                          self->refuse(job, QWebEngineUrlRequestJob::UrlNotFound);
                  },
                  Qt::QueuedConnection);
          });
}

} // namespace luma
