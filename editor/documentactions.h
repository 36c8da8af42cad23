// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <filesystem>
#include <functional>
#include <vector>

namespace Ui {
class HTMLDocument;
}

namespace luma {

class HTMLDocument;
class PageEdits;
class PageSaver;
class PageStore;

/// The menu entries of a page's window that concern its document: its file, undo and redo, and which of all
/// entries can be chosen. Main thread.
class DocumentActions final : public QObject
{
    Q_OBJECT

public:
    /// Gives the pages opened before.
    using RecentPages = std::function<std::vector<std::filesystem::path>()>;

    /// The document becomes its parent.
    DocumentActions(Ui::HTMLDocument& ui, HTMLDocument& document, const PageStore& store,
                    RecentPages recentPages);

    void connectTo(PageSaver& saver, PageEdits& edits);

    /// Enables what the page and the history of its edits allow.
    void update();

private:
    void fillRecentMenu();

    Ui::HTMLDocument& m_ui;
    HTMLDocument& m_document;
    const PageStore& m_store;
    RecentPages m_recentPages;
};

} // namespace luma
