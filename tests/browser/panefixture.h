// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"
#include "browser/browsercontroller.h"
#include "browser/endpoint.h"
#include "tests/support/screenshot.h"

#include <QLabel>
#include <QMainWindow>
#include <QTemporaryDir>

#include <filesystem>
#include <fstream>

namespace luma::test {

/// A window with one pane over a small site in a temporary folder.
class PaneFixture final
{
public:
    PaneFixture()
    {
        put("index.html");
        put("css/main.css");
        put("css/print.css");
        put("images/logo.png");
        put(".htaccess");
        endpoint->setValue(endpoint::protocol, QString(endpoint::fileProtocol));
        endpoint->setValue(endpoint::path, folder.path());
        endpoint->setValue(endpoint::autoconnect, 1);
        pane = new BrowserController(QStringLiteral("Source"), endpoint, nullptr, &window);
        window.setCentralWidget(pane->widget());
        window.resize(900, 360);
        window.show();
    }

    [[nodiscard]] std::filesystem::path at(const char* name) const
    {
        return std::filesystem::path(folder.path().toStdString()) / name;
    }
    void put(const char* name) const
    {
        std::filesystem::create_directories(at(name).parent_path());
        std::ofstream(at(name)) << name;
    }
    template <class Widget>
    [[nodiscard]] Widget* find(const char* name) const
    {
        return window.findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] QString text(const char* label) const { return find<QLabel>(label)->text(); }

    QTemporaryDir folder;
    std::shared_ptr<ObservedDictionary> endpoint = std::make_shared<ObservedDictionary>();
    QMainWindow window;
    BrowserController* pane = nullptr;
};

} // namespace luma::test
