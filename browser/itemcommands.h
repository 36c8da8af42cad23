// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

class QMenu;
class QMimeData;
class QWidget;

namespace luma {

/// The commands on a pane's selected items that change nothing: other programs, the clipboard, properties. Each does
/// nothing without a selected item. Main thread only.
class ItemCommands final : public QObject
{
    Q_OBJECT

public:
    using Paths = std::vector<std::filesystem::path>;

    /// What is selected, and the folder of the site, when a command is given.
    struct Selection
    {
        Paths items;
        std::filesystem::path site;
        std::vector<bool> areFolders; ///< of each item
        bool isOnServer = false;      ///< the files are not read then
    };

    /// `selection` is called on each command. `pane` owns the commands.
    ItemCommands(std::function<Selection()> selection, QWidget* pane);

    /// The programs for the first selected item; emptied and filled when it is about to show.
    void fillOpenWith(QMenu& menu);
    void openInBrowser();
    void showInFileManager();
    /// Puts the items themselves on the clipboard, for panes and file managers; in a text they become their paths.
    void copyFiles();
    /// The same; what pastes them moves them.
    void cutFiles();
    /// One path a line.
    void copyPath();
    /// How a page at the top of the site links to the items: relative addresses, one a line.
    void copyRelativeLink();
    void showProperties();

signals:
    void failed(const QString& reason);

private:
    std::function<Selection()> m_selection;
    QWidget* m_pane;

    void listPrograms(QMenu& menu);
    void putOnClipboard(const QByteArray& purpose);
};

/// Whether another program or a pane has cut the files on the clipboard rather than copied them.
bool areCut(const QMimeData& clipboard);

/// The address by which a page in `site` links to `item` below it; that of a folder ends with a slash.
std::string relativeLink(const std::filesystem::path& item, const std::filesystem::path& site, bool isFolder);

} // namespace luma
