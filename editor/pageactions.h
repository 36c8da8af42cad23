// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/panekeys.h"

#include <QObject>

#include <filesystem>
#include <functional>
#include <vector>

class QAction;

namespace Ui {
class HTMLDocument;
}

namespace luma {

class HTMLDocument;
class OutlineModel;
class OutlineSelection;
class PageEdits;
class PageSaver;
class PageStore;
class PageTools;
class TagRules;
class ViewController;

/// The commands of a page's window in one table: what each does and when it is available. The layout file
/// defines where a command appears, its title and its shortcut. Also fills the menus with changing entries,
/// "Open Recent" and "Insert", when they open. Main thread.
class PageActions final : public QObject
{
    Q_OBJECT

public:
    /// The recently opened pages, the latest first.
    using RecentPages = std::function<std::vector<std::filesystem::path>()>;

    /// What the commands work on; must outlive them.
    struct Parts
    {
        Ui::HTMLDocument& ui;
        HTMLDocument& document;
        const PageStore& store;
        const TagRules& rules;
        const OutlineSelection& selection;
        OutlineModel& outline;
        PageEdits& edits;
        PageSaver& saver;
        PageTools& tools;
        ViewController& rendering;
    };

    /// The document becomes the parent.
    PageActions(const Parts& parts, RecentPages recentPages);

    /// Enables the commands that the page, the selected element and the undo history allow.
    void update();

private:
    enum class When {
        Always,
        HasPage,
        HasFile,
        CanUndo,
        CanRedo,
        HasElement,
        CanInsert,
        InTable,
        CanDelete,
        CanMove
    };

    struct Command
    {
        QAction* action;
        When when;
        std::function<void()> run;
        const char* icon = nullptr;
    };

    [[nodiscard]] std::vector<Command> table();
    [[nodiscard]] bool isAvailable(When when) const;
    void connectControls() const;
    void fillRecentMenu();
    void fillInsertMenu();
    /// Calls the slot of the focused field, or else the page's own command.
    void sendToFocus(const char* slot, int webAction) const;
    void connectLooks();
    void showMedia();
    void fillBrowserMenu();

    Parts m_parts;
    RecentPages m_recentPages;
    PaneKeys m_panes;
    std::vector<Command> m_commands = table();
};

} // namespace luma
