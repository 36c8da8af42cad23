// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"

#include <QHash>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlSchemeHandler>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace luma {

/// Answers requests under the private scheme for all open pages: the page itself from the given markup, of
/// any size, every other path from the page's SiteFolder. A page gets no other page's files. Files are opened
/// on the thread pool, as a mount may be slow. Main thread.
class SiteSchemeHandler final : public QWebEngineUrlSchemeHandler
{
    Q_OBJECT

public:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;

    /// Sets the content of page `host`: UTF-8 markup and the site's files.
    void serve(const QString& host, const QByteArray& markup, const SiteFolder& files);
    void withdraw(const QString& host);
    /// Gives page `host` this markup (UTF-8) for another page's file of the site.
    void servePage(const QString& host, const std::filesystem::path& file, const QByteArray& markup);
    /// Gives page `host` this text (UTF-8) for a style sheet's file of the site, or the file again if there is none.
    void serveDraft(const QString& host, const std::filesystem::path& file,
                    const std::optional<QByteArray>& text);

    /// The texts that all pages have, by the file's path; `host` decides where several pages have one for a file.
    [[nodiscard]] QHash<QString, QByteArray> drafts(const QString& host) const;
    /// Lets page `host` get for the address of a folder the first page of these names that is in it.
    void serveFolders(const QString& host, const std::vector<std::string>& indexNames);

    /// The address of a file for page `host`.
    static QUrl address(const QString& host, const std::filesystem::path& file);

    void requestStarted(QWebEngineUrlRequestJob* job) override;

signals:
    /// A request for this address got no answer: it is not of the site, or there is no such file.
    void refused(const QUrl& url);

private:
    struct Page
    {
        QHash<QString, QByteArray> pages = {}; // markup by file, that of the page itself included
        SiteFolder files = {};
        QHash<QString, QByteArray> drafts = {}; // of style sheets, by file
        std::vector<std::string> indexNames = {};
    };

    static void answerText(QWebEngineUrlRequestJob* job, const QByteArray& text, const QByteArray& type);
    void refuse(QWebEngineUrlRequestJob* job, QWebEngineUrlRequestJob::Error error);
    void answerFile(QWebEngineUrlRequestJob* job, const Page& page, const std::filesystem::path& file);

    QHash<QString, Page> m_pages;
};

} // namespace luma
