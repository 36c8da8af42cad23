// SPDX-License-Identifier: GPL-3.0-or-later
// A window on a real display for tst_realdrags, which drives the mouse. Answers each line of its standard
// input, fields between tabs, with one line:
//     drag_helper site FOLDER     the window of the site in a TwoFolders
//         open PANE NAME...           selects along the names                     ok
//         place PANE COLUMN NAME      the middle of a row; below the rows without NAME  X Y
//         over PANE COLUMN NAME       whether a drag was last seen there          yes or no
//         log                         what the progress panel says, or "running"  \n as |
//     drag_helper peer PATH...    another program: a window that offers files and takes any
//         place                                                                   X Y
//         moves                       how often a drag was seen over it           N
//         taken                       the text/uri-list that was dropped          \r\n as |

#include "browser/dragrecord.h"
#include "browser/filesystemmodel.h"
#include "tests/site/sitewindow.h"

#include <QDialog>
#include <QDrag>
#include <QSocketNotifier>

#include <cstdio>
#include <functional>
#include <iostream>

using luma::BrowserController;
using luma::BrowserListView;
using luma::test::SiteWindow;

namespace {

QString shown(QPoint place)
{
    return QStringLiteral("%1 %2").arg(place.x()).arg(place.y());
}

// Remembers where a drag was last seen.
class DragWatch final : public QObject
{
public:
    QPointer<QObject> viewport;
    QPoint position;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::DragMove && watched->isWidgetType()) {
            viewport = watched;
            position = static_cast<QDragMoveEvent*>(event)->position().toPoint();
        }
        return QObject::eventFilter(watched, event);
    }
};

class Site final
{
public:
    explicit Site(const std::filesystem::path& folder) : m_site(folder / "sending", folder / "receiving")
    {
        m_site.window->setGeometry(0, 0, 1000, 760);
        qApp->installEventFilter(&m_watch);
    }

    QString answer(const QStringList& command)
    {
        const QString& what = command.constFirst();
        if (what == "log")
            return m_site.window->progress().isRunning()
                       ? "running"
                       : m_site.log().replace(QLatin1Char('\n'), QLatin1Char('|'));
        if (!m_site.isConnected())
            return "not connected";
        BrowserController& pane = command.value(1) == "source" ? m_site.source() : m_site.destination();
        if (what == "open") {
            luma::Browser::Path path;
            for (const QString& name : command.mid(2))
                path.push_back(name.toStdString());
            pane.browser().setPath(path);
            return "ok";
        }
        BrowserListView& list = SiteWindow::list(pane, command.value(2).toInt());
        const QModelIndex row =
            SiteWindow::item(pane, command.value(2).toInt(), command.value(3).toUtf8().constData());
        if (what == "over")
            return m_watch.viewport == list.viewport() && list.indexAt(m_watch.position) == row ? "yes"
                                                                                                : "no";
        const QPoint place = row.isValid()
                                 ? list.visualRect(row).center()
                                 : QPoint(list.viewport()->width() / 2, list.viewport()->height() - 8);
        return shown(list.viewport()->mapToGlobal(place));
    }

private:
    DragWatch m_watch;
    SiteWindow m_site;
};

class Peer final : public QWidget
{
public:
    explicit Peer(QByteArray offered) : m_offered(std::move(offered))
    {
        setAcceptDrops(true);
        setGeometry(1100, 100, 300, 300);
        show();
    }

    QString answer(const QStringList& command) const
    {
        if (command.constFirst() == "place")
            return shown(mapToGlobal(rect().center()));
        if (command.constFirst() == "moves")
            return QString::number(m_moves);
        return QString::fromUtf8(m_taken).replace("\r\n", "|");
    }

protected:
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!(event->buttons() & Qt::LeftButton))
            return;
        auto* const drag = new QDrag(this);
        auto* const offer = new QMimeData;
        offer->setData("text/uri-list", m_offered);
        drag->setMimeData(offer);
        drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    }
    void dragEnterEvent(QDragEnterEvent* event) override { event->acceptProposedAction(); }
    void dragMoveEvent(QDragMoveEvent* event) override
    {
        ++m_moves;
        event->acceptProposedAction();
    }
    void dropEvent(QDropEvent* event) override
    {
        m_taken = event->mimeData()->data("text/uri-list");
        event->setDropAction(Qt::CopyAction);
        event->accept();
    }

private:
    QByteArray m_offered;
    QByteArray m_taken;
    int m_moves = 0;
};

int serve(const std::function<QString(const QStringList&)>& answer)
{
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, qApp, [&] {
        std::string line;
        if (!std::getline(std::cin, line))
            QCoreApplication::quit();
        else
            std::cout << answer(QString::fromStdString(line).split(QLatin1Char('\t'))).toStdString()
                      << std::endl;
    });
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    if (argc == 3 && std::string_view(argv[1]) == "site") {
        Site site(argv[2]);
        return serve([&site](const QStringList& command) { return site.answer(command); });
    }
    if (argc > 2 && std::string_view(argv[1]) == "peer") {
        const Peer peer(luma::uriList({argv + 2, argv + argc}));
        return serve([&peer](const QStringList& command) { return peer.answer(command); });
    }
    return 2;
}
