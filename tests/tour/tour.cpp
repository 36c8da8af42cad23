// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tour/tour.h"

#include "app/sitelistwindow.h"
#include "app/sitetemplate.h"
#include "base/files.h"
#include "desktop/windowregistry.h"
#include "editor/htmldocument.h"
#include "tests/support/screenshot.h"
#include "web/editorpage.h"
#include "web/mywebview.h"
#include "web/viewcontroller.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QElapsedTimer>
#include <QTest>

#include <algorithm>
#include <cstdio>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr int patience = 60'000;

template <class Widget>
Widget* shown(const QWidget& window, const char* name)
{
    auto* found = window.findChild<Widget*>(QLatin1StringView(name));
    return found && found->isVisible() ? found : nullptr;
}

bool clickOn(const QWidget& window, const char* name)
{
    auto* button = shown<QAbstractButton>(window, name);
    if (!button || !button->isEnabled())
        return false;
    QTest::mouseClick(button, Qt::LeftButton);
    return true;
}

// Images come after the text.
bool isPainted(QWidget& widget, QImage& before, QElapsedTimer& unchanged)
{
    const QImage now = widget.grab().toImage();
    if (now != std::exchange(before, now) || !unchanged.isValid())
        unchanged.start();
    return unchanged.elapsed() > 2000;
}

} // namespace

Tour::Tour(fs::path source, fs::path destination)
    : m_source(std::move(source)), m_destination(std::move(destination))
{}

int Tour::run()
{
    showSites();
    publish();
    compareSides();
    editPage();
    m_program.terminate();
    for (const QString& what : m_missing)
        (void)std::fprintf(stderr, "tour: %s\n", qPrintable(what));
    return m_missing.isEmpty() ? 0 : 1;
}

void Tour::miss(const QString& what)
{
    m_missing += what;
}

bool Tour::await(const char* what, const std::function<bool()>& isThere)
{
    const bool appeared = QTest::qWaitFor(isThere, patience);
    if (!appeared)
        miss(QStringLiteral("did not appear: ") + QLatin1StringView(what));
    return appeared;
}

void Tour::picture(QWidget& widget, const QString& name)
{
    QCoreApplication::processEvents();
    if (!test::screenshot(widget, name))
        miss(QStringLiteral("not saved: ") + name);
}

void Tour::showSites()
{
    const auto record = transientRecord(m_source, m_destination);
    if (!record)
        return miss(QString::fromStdString(record.error().text));
    SiteListWindow& window = m_program.delegate().siteListWindow();
    window.show();
    window.editNameOf(m_program.delegate().sites().add(*record));
    if (await("the list of sites", [&] { return window.isVisible() && window.windowHandle()->isExposed(); }))
        picture(window, QStringLiteral("1-sites"));
}

void Tour::publish()
{
    SiteListWindow& list = m_program.delegate().siteListWindow();
    clickOn(list, "openButton");
    QWidget* window = WindowRegistry::instance().windowShowing(
        m_program.delegate().sites().record(list.selectedRow()).get());
    if (!window)
        return miss(QStringLiteral("the site's window did not open"));
    const auto listsFiles = [&](const char* pane) {
        const auto* side = window->findChild<QWidget*>(QLatin1StringView(pane));
        const auto views = side ? side->findChildren<QAbstractItemView*>() : QList<QAbstractItemView*>();
        return std::any_of(views.begin(), views.end(), [](const QAbstractItemView* view) {
            return view->isVisible() && view->model() && view->model()->rowCount(view->rootIndex()) > 0;
        });
    };
    await("the source's files", [&] { return listsFiles("sourceBrowserController"); });
    await("the destination's files", [&] { return listsFiles("destinationBrowserController"); });
    picture(*window, QStringLiteral("2-site"));

    if (!clickOn(*window, "uploadButton"))
        return miss(QStringLiteral("no upload button"));
    auto* rows = window->findChild<QAbstractItemView*>(QStringLiteral("syncTableView"));
    if (!rows ||
        !await("the changed files", [&] { return rows->isVisible() && rows->model()->rowCount() == 4; }))
        return;
    picture(*rows->window(), QStringLiteral("3-changed-files"));
    if (!await("the move button", [&] { return clickOn(*rows->window(), "syncButton"); }))
        return;
    await("the end of the transfer", [&] { return rows->model()->rowCount() == 0 || !rows->isVisible(); });
    picture(*window, QStringLiteral("4-published"));
}

void Tour::editPage()
{
    const fs::path page = m_source / "index.html";
    if (const auto opened = m_program.launch(readCommandLine({page.native()})); !opened)
        return miss(QString::fromStdString(opened.error().text));
    auto* const window = qobject_cast<HTMLDocument*>(m_program.documents().windowOf(page));
    if (!window)
        return miss(QStringLiteral("the page's window did not open"));
    MyWebView* const view = window->viewController().webView();
    QImage image;
    QElapsedTimer unchanged;
    await("the page", [&] { return view->editorPage().isComplete() && isPainted(*view, image, unchanged); });
    // With an element selected, the panels have something to show.
    const auto source = readFile(page);
    const auto lead = source ? source->find("<p class=\"lead\"") : std::string::npos;
    if (lead == std::string::npos)
        return miss(QStringLiteral("the page's first paragraph"));
    const auto begin = source->begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(lead);
    window->showPlace(static_cast<unsigned>(1 + std::count(begin, end, '\n')),
                      static_cast<unsigned>(lead - source->rfind('\n', lead)));
    unchanged.invalidate();
    await("the first paragraph", [&] { return isPainted(*window, image, unchanged); });
    picture(*window, QStringLiteral("5-page"));
    window->close();
}

void Tour::compareSides()
{
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(m_source)) {
        if (!entry.is_regular_file())
            continue;
        const fs::path relative = fs::relative(entry.path(), m_source);
        const auto here = readFile(entry.path());
        const auto there = readFile(m_destination / relative);
        if (!here || !there || *here != *there)
            miss(QStringLiteral("not published: ") + QString::fromStdString(relative.string()));
    }
}

} // namespace luma
