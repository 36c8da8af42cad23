// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/htmldocument.h"
#include "tests/support/site.h"
#include "web/viewcontroller.h"

#include <QAction>
#include <QMessageBox>
#include <QPointer>
#include <QTreeView>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace luma::test {

/// A site in a temporary folder and the window of one of its pages, with the real rendering, driven by object
/// names. A test class derives from it or holds it, and calls close() after each case.
class PageWindow
{
public:
    PageWindow() = default;
    PageWindow(const PageWindow&) = delete;
    PageWindow& operator=(const PageWindow&) = delete;
    ~PageWindow() { close(); }

    [[nodiscard]] std::filesystem::path at(std::string_view name) const { return m_site->at(name); }
    /// Writes a file of the site, making its folders.
    void put(std::string_view name, std::string_view bytes) const { m_site->put(name, bytes); }
    [[nodiscard]] std::string file(std::string_view name) const { return m_site->bytesOf(name); }

    /// Opens "page.html" of the site, holding `markup`, or the page `file` of the site `site`, and waits until
    /// it is shown.
    void open(std::string_view markup);
    void open(const std::filesystem::path& file, const std::filesystem::path& site);
    /// Opens the page, or a new one when the path is empty, and waits for nothing.
    void openWindow(const std::filesystem::path& file, const std::filesystem::path& site);
    /// Deletes the window and empties the site.
    void close();

    /// Whether the page is shown, all that follows from it included.
    [[nodiscard]] bool isShown() const
    {
        return page().isComplete() && !rendering().webView()->heldInput().isHolding();
    }
    void waitUntilShown() const;

    template <class T>
    [[nodiscard]] T* the(const char* name) const
    {
        return window->findChild<T*>(QString::fromLatin1(name));
    }
    /// Triggers the action and waits until its edit is made.
    void trigger(const char* action) const;
    /// Chooses the first entry of the insert menu.
    void insertFirstTag() const;
    /// Waits for a question and clicks the button with that text.
    void answerQuestion(const char* name, const char* button) const;

    [[nodiscard]] QTreeView* outline() const { return the<QTreeView>("myOutlineView"); }
    /// The first row of the outline that begins with the text.
    [[nodiscard]] QModelIndex row(const char* text) const;
    void click(const char* text) const;

    [[nodiscard]] ViewController& rendering() const { return window->viewController(); }
    [[nodiscard]] EditorPage& page() const { return rendering().webView()->editorPage(); }
    /// A script's answer, as text.
    [[nodiscard]] QString answer(const QString& script) const;
    [[nodiscard]] QString answer(const char* script) const { return answer(QString::fromUtf8(script)); }
    /// Gives the page the focus; so do the functions that select in it.
    void focusPage() const;
    /// Selects the first occurrence of `text` in the body, or puts the caret behind it.
    void select(const char* text) const;
    void setCaretBehind(const char* text) const;
    /// Types at the caret, or behind the contents of the first element that the selector finds.
    void type(const char* text) const;
    void typeInto(const char* selector, const char* text) const;
    /// Kills the page's process; replaceRenderer waits until another one shows the page.
    void killRenderer() const;
    void replaceRenderer() const;

    /// The tree as markup: the whole page, or what is in its body.
    [[nodiscard]] QByteArray tree() const;
    [[nodiscard]] QByteArray body() const;
    /// Changes the title in the tree, as the title sheet does.
    void setTitle(const char* title) const;

    QPointer<HTMLDocument> window;

private:
    std::unique_ptr<Site> m_site = std::make_unique<Site>();
};

} // namespace luma::test
