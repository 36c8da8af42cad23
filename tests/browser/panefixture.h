// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/observeddictionary.h"
#include "browser/browsercontroller.h"
#include "browser/endpoint.h"
#include "browser/movenotices.h"
#include "browser/panehost.h"
#include "tests/support/screenshot.h"
#include "tests/support/site.h"
#include "tests/support/unavailablemounter.h"

#include <QLabel>
#include <QMainWindow>

#include <filesystem>

namespace luma::test {

/// A report that records its log.
class Recorder final : public ProgressReporter
{
public:
    QString log;
    JobEnd lastEnd;
    std::function<void()> whenAppended;

    void begin(const QString& /*status*/, Place /*place*/) override
    {
        m_isRunning = true;
        log.clear();
        emit began();
    }
    void setStatus(const QString& /*status*/) override {}
    void append(const QString& text) override
    {
        log += text;
        if (whenAppended)
            std::exchange(whenAppended, {})();
    }
    void finish(const JobEnd& end) override
    {
        m_isRunning = false;
        lastEnd = end;
        emit ended();
    }
    [[nodiscard]] bool isRunning() const override { return m_isRunning; }
    [[nodiscard]] QString lineText(int number) const override
    {
        return log.split(QLatin1Char('\n')).value(number);
    }

private:
    bool m_isRunning = false;
};

/// A window with one pane on a small site in a temporary folder.
class PaneFixture final : public PaneHost
{
public:
    explicit PaneFixture(std::shared_ptr<VolumeMounter> mounter = std::make_shared<UnavailableMounter>())
    {
        endpoint->setValue(endpoint::protocol, QString(endpoint::fileProtocol));
        endpoint->setValue(endpoint::path, QString::fromStdString(folder.root()));
        endpoint->setValue(endpoint::autoconnect, 1);
        pane = new BrowserController(QStringLiteral("Source"), endpoint, std::move(mounter), *this, &window);
        window.setCentralWidget(pane->widget());
        window.resize(900, 360);
        window.show();
    }

    [[nodiscard]] std::filesystem::path at(const char* name) const { return folder.at(name); }
    void put(const char* name) const { folder.put(name); }
    template <class Widget>
    [[nodiscard]] Widget* find(const char* name) const
    {
        return window.findChild<Widget*>(QLatin1String(name));
    }
    [[nodiscard]] QString text(const char* label) const { return find<QLabel>(label)->text(); }

    void checkConnectionOK() override {}
    ProgressReporter& progress() override { return report; }
    MoveNotices& moveNotices() override { return notices; }
    ReportChoices reportChoices() const override { return choices; }
    void setKeptItems(const std::vector<std::string>& items) override { choices.keptItems = items; }
    void stopAsking() override { choices.askAbove.reset(); }
    std::vector<std::filesystem::path> siteFolders() const override { return {}; }

    Site folder{{{"index.html", ""},
                 {"css/main.css", ""},
                 {"css/print.css", ""},
                 {"images/logo.png", ""},
                 {".htaccess", ""}}};
    Recorder report;
    MoveNotices notices;
    ReportChoices choices;
    std::shared_ptr<ObservedDictionary> endpoint = std::make_shared<ObservedDictionary>();
    QMainWindow window;
    BrowserController* pane = nullptr;
};

} // namespace luma::test
