// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/htmldocument.h"
#include "page/tidyshell.h"
#include "web/viewcontroller.h"

#include <QAction>
#include <QPointer>
#include <QTemporaryDir>

#include <filesystem>
#include <string>
#include <string_view>

namespace luma::test {

/// The window of one page of a site in a temporary folder, with the real rendering, driven by object names.
class PageWindow final
{
public:
    PageWindow() = default;
    PageWindow(const PageWindow&) = delete;
    PageWindow& operator=(const PageWindow&) = delete;
    ~PageWindow();

    [[nodiscard]] std::filesystem::path at(const char* name) const;
    /// Writes a file of the site, making its folders.
    void put(const char* name, std::string_view bytes) const;
    [[nodiscard]] std::string file(const char* name) const;

    /// Shows the page with this markup, or the one at `page` of the site `site`, and gives it the focus.
    /// False when it does not come.
    [[nodiscard]] bool open(std::string_view markup);
    [[nodiscard]] bool open(const std::filesystem::path& page, const std::filesystem::path& site);
    void close();

    /// Waits until the page stands there, all that follows from it included.
    [[nodiscard]] bool waitUntilShown() const;

    template <class T>
    T* the(const char* name) const
    {
        return window->findChild<T*>(QString::fromLatin1(name));
    }
    void trigger(const char* action) const;
    [[nodiscard]] ViewController& rendering() const { return window->viewController(); }
    [[nodiscard]] EditorPage& page() const { return rendering().webView()->editorPage(); }
    [[nodiscard]] QString answer(const QString& script) const;
    [[nodiscard]] QString answer(const char* script) const { return answer(QString::fromUtf8(script)); }

    /// Types into the page, wherever its caret is.
    void type(const QString& text) const;

    /// Sets the selection by text: the first occurrence of `text` in the body, or the caret behind it.
    void select(const char* text) const;
    void setCaretBehind(const char* text) const;

    /// The tree as markup: the whole page, and what is in the body.
    [[nodiscard]] QByteArray tree() const;
    [[nodiscard]] QByteArray body() const;

    QPointer<HTMLDocument> window;

private:
    [[nodiscard]] bool waitForFocus() const;

    QTemporaryDir m_folder;
};

} // namespace luma::test
