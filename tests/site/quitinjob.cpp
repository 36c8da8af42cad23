// SPDX-License-Identifier: GPL-3.0-or-later
// Quits with a site's window open in the middle of a job; tst_quitinjob runs it and checks what is left.
//     quit_in_job FOLDER JOB WAY
// FOLDER is a TwoFolders with a site in "sending". The exit code is 0 when quitting ended the program, 3 when
// it went on.

#include "base/quitsignals.h"
#include "browser/filesystemmodel.h"
#include "tests/site/sitewindow.h"

#include <QAction>
#include <QDialog>
#include <QMessageBox>
#include <QThreadPool>
#include <QTimer>

#include <csignal>
#include <functional>
#include <map>

using luma::BrowserListView;
using luma::test::SiteWindow;
namespace fs = std::filesystem;

namespace {

constexpr int wentOn = 3;

bool isWaiting(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 60'000);
}

void drop(const SiteWindow& site, Qt::KeyboardModifiers modifiers)
{
    site.source().browser().setPath({"a"});
    SiteWindow::dragAndDrop(SiteWindow::list(site.source(), 0), SiteWindow::list(site.source(), 0),
                            SiteWindow::item(site.source(), 0, "b"), modifiers);
    // The job begins after the drag has ended.
    (void)isWaiting([&] { return site.window->progress().isRunning(); });
}

void deleteUnlinkedItems(const SiteWindow& site)
{
    site.source().startFindUnlinkedItems();
    auto& remove = site.find<QPushButton>("unlinkedItemsDeleteButton");
    (void)isWaiting([&] { return remove.isEnabled(); });
    remove.click();
    site.find<QMessageBox>("deleteUnlinkedItemsAlert").buttons().first()->click();
}

const std::map<std::string, std::function<void(const SiteWindow&)>> jobs = {
    {"move", [](const SiteWindow& site) { drop(site, Qt::NoModifier); }},
    {"copy", [](const SiteWindow& site) { drop(site, Qt::ControlModifier); }},
    {"rename",
     [](const SiteWindow& site) {
         site.source().browser().model().setData(SiteWindow::item(site.source(), 0, "a"), "z", Qt::EditRole);
     }},
    {"duplicate",
     [](const SiteWindow& site) {
         site.source().browser().setPath({"a"});
         site.source().duplicateItem();
     }},
    {"missing", [](const SiteWindow& site) { site.source().startFindMissingLinks(); }},
    {"links to",
     [](const SiteWindow& site) {
         site.source().browser().setPath({"a"});
         site.source().showLinksToItem();
     }},
    {"unlinked", [](const SiteWindow& site) { site.source().startFindUnlinkedItems(); }},
    {"delete", deleteUnlinkedItems}};

const std::map<std::string, std::function<void(const SiteWindow&)>> ways = {
    {"quit", [](const SiteWindow&) { QCoreApplication::quit(); }},
    {"menu", [](const SiteWindow& site) { site.find<QAction>("quitAction").trigger(); }},
    {"signal", [](const SiteWindow&) { (void)std::raise(SIGTERM); }}};

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (argc != 4 || !jobs.count(argv[2]) || !ways.count(argv[3]))
        return 2;
    const luma::QuitSignals signalsQuit;
    auto site = std::make_unique<SiteWindow>(fs::path(argv[1]) / "sending", fs::path(argv[1]) / "receiving");
    QTimer::singleShot(0, qApp, [&] {
        jobs.at(argv[2])(*site);
        ways.at(argv[3])(*site);
        // Still running after the job has ended: the program did not quit.
        auto* const look = new QTimer(qApp);
        QObject::connect(look, &QTimer::timeout, qApp, [] {
            if (QThreadPool::globalInstance()->activeThreadCount() == 0)
                QCoreApplication::exit(wentOn);
        });
        // A busy machine needs some time to quit.
        look->start(10'000);
    });
    const int code = QApplication::exec();
    // In the order of the real program: first the windows, then the pool with the application object.
    site.reset();
    return code;
}
