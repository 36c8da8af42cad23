// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

class QUrl;

namespace luma {

/// The private scheme under which pages are served to the editor's web view: "luma://PAGE/path". The host
/// names the open page, which makes every page a separate origin that can't read another's files.
class PageScheme final
{
public:
    static QByteArray name();

    /// Closed: no page of the process reaches the network, whatever it tries, and no name is looked up.
    enum class Network { Open, Closed };

    /// Registers the scheme, asks the web engine to save memory and, for the root user only (containers, CI), switches off
    /// its sandbox. Called once by main(), before it creates the application object.
    static void registerScheme(Network network = Network::Open);

    /// Whether `url` has this scheme and the given page as its host.
    static bool isOfPage(const QUrl& url, const QString& page);
};

} // namespace luma
