// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/sitefolder.h"

#include <QHash>
#include <QWebEngineUrlSchemeHandler>

namespace luma {

/// Answers the requests of every open page under the private scheme: the page itself from the markup handed
/// over, of any size, every other path from the page's SiteFolder, and nothing else. Files are opened on the
/// thread pool, as a mount may be slow; a page asks for its own files only. Main thread.
class SiteSchemeHandler final : public QWebEngineUrlSchemeHandler
{
    Q_OBJECT

public:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;

    /// What page `host` is from now on: UTF-8 markup and the files beside it.
    void serve(const QString& host, const QByteArray& markup, const SiteFolder& files);
    void withdraw(const QString& host);

    /// The address of a file as page `host` sees it.
    static QUrl address(const QString& host, const std::filesystem::path& file);

    void requestStarted(QWebEngineUrlRequestJob* job) override;

private:
    struct Page
    {
        QByteArray markup;
        SiteFolder files;
    };

    static void answerMarkup(QWebEngineUrlRequestJob* job, const QByteArray& markup);
    static void answerFile(QWebEngineUrlRequestJob* job, const SiteFolder& files,
                           const std::filesystem::path& file);

    QHash<QString, Page> m_pages;
};

} // namespace luma
