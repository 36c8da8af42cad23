// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/itemcommands.h"

#include "base/fileuri.h"
#include "base/pathbelow.h"
#include "base/pathtext.h"
#include "browser/displaytext.h"
#include "browser/dragrecord.h"
#include "browser/itemproperties.h"
#include "desktop/otherprograms.h"
#include "links/addressspelling.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QMimeDatabase>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr char kdeCutType[] = "application/x-kde-cutselection";

// Of the first item.
QString typeOf(const ItemCommands::Selection& selection)
{
    if (selection.areFolders.front())
        return QStringLiteral("inode/directory");
    const QString item = textOf(selection.items.front());
    return QMimeDatabase()
        .mimeTypeForFile(item,
                         selection.isOnServer ? QMimeDatabase::MatchExtension : QMimeDatabase::MatchDefault)
        .name();
}

} // namespace

std::string relativeLink(const fs::path& item, const fs::path& site, bool isFolder)
{
    std::string link;
    const fs::path below = pathBelow(item.native(), site.native()).value_or("");
    for (const fs::path& name : below)
        link += (link.empty() ? "" : "/") + encodedName(name.native());
    // A colon in the first name would end the scheme of an address.
    if (link.substr(0, link.find('/')).find(':') != std::string::npos)
        link.insert(0, "./");
    if (isFolder)
        link += '/';
    return link;
}

ItemCommands::ItemCommands(std::function<Selection()> selection, QWidget* pane)
    : QObject(pane), m_selection(std::move(selection)), m_pane(pane)
{}

void ItemCommands::fillOpenWith(QMenu& menu)
{
    connect(&menu, &QMenu::aboutToShow, this, [this, &menu] { listPrograms(menu); });
}

void ItemCommands::listPrograms(QMenu& menu)
{
    menu.clear();
    const Selection selection = m_selection();
    if (selection.items.empty())
        return;
    const QString type = typeOf(selection);
    for (const auto& application : otherprograms::applicationsFor(type)) {
        QString name = application.name;
        menu.addAction(application.icon, name.replace(u'&', QLatin1String("&&")), this,
                       [this, id = application.id, type] {
                           if (const auto opened = otherprograms::openWith(id, type, m_selection().items);
                               !opened)
                               emit failed(displayText(opened.error().text));
                       });
    }
    if (menu.isEmpty())
        menu.addAction(tr("No program for this kind of file"))->setEnabled(false);
}

void ItemCommands::openInBrowser()
{
    for (const fs::path& item : m_selection().items) {
        if (const auto opened = otherprograms::openInBrowser(item); !opened) {
            emit failed(displayText(opened.error().text));
            return;
        }
    }
}

void ItemCommands::showInFileManager()
{
    otherprograms::showInFileManager(m_selection().items);
}

bool areCut(const QMimeData& clipboard)
{
    return clipboard.data(QLatin1String(fileClipboardType)).startsWith("cut\n") ||
           clipboard.data(QLatin1String(kdeCutType)) == "1";
}

void ItemCommands::copyFiles()
{
    putOnClipboard("copy");
}

void ItemCommands::cutFiles()
{
    putOnClipboard("cut");
}

void ItemCommands::putOnClipboard(const QByteArray& purpose)
{
    const Paths items = m_selection().items;
    if (items.empty())
        return;
    QStringList texts;
    QByteArray forFileManagers = purpose;
    for (const fs::path& item : items) {
        texts.append(textOf(item));
        forFileManagers += '\n' + fileUri(item);
    }
    auto* const files = new QMimeData;
    files->setText(texts.join(u'\n'));
    files->setData(QStringLiteral("text/uri-list"), uriList(items));
    files->setData(QLatin1String(fileClipboardType), forFileManagers);
    files->setData(QLatin1String(kdeCutType), purpose == "cut" ? "1" : "0");
    QGuiApplication::clipboard()->setMimeData(files);
}

void ItemCommands::copyPath()
{
    QStringList paths;
    for (const fs::path& item : m_selection().items)
        paths.append(textOf(item));
    if (!paths.isEmpty())
        QGuiApplication::clipboard()->setText(paths.join(u'\n'));
}

void ItemCommands::copyRelativeLink()
{
    const Selection selection = m_selection();
    QStringList links;
    for (std::size_t i = 0; i < selection.items.size(); ++i)
        links.append(QString::fromStdString(
            relativeLink(selection.items[i], selection.site, selection.areFolders[i])));
    if (!links.isEmpty())
        QGuiApplication::clipboard()->setText(links.join(u'\n'));
}

void ItemCommands::showProperties()
{
    if (const Paths items = m_selection().items; !items.empty())
        (new ItemProperties(items, m_pane->window()))->show();
}

} // namespace luma
