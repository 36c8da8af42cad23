// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWebEngineUrlRequestInterceptor>

namespace luma {

/// What a page in the editor may fetch. Its own files through the private scheme; over http and https what it
/// takes to look as it does in a browser (style sheets, images, fonts, sound and video), without cookies and
/// without telling where from. Scripts, frames, pings and everything under other schemes, file: above all, is
/// refused: a page being edited runs nothing and reads nothing outside its site.
class RequestFilter final : public QWebEngineUrlRequestInterceptor
{
    Q_OBJECT

public:
    using QWebEngineUrlRequestInterceptor::QWebEngineUrlRequestInterceptor;

    void interceptRequest(QWebEngineUrlRequestInfo& request) override;
};

} // namespace luma
