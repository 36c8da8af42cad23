// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/htmldocument.h"

#include <QMessageBox>
#include <QPointer>
#include <QTemporaryDir>
#include <QTreeView>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace luma::test {

/// A site in a temporary folder and the window of one page of it, driven as a user drives it. A test class
/// takes it as a base, and calls begin and end around each case.
class DocumentFixture
{
public:
    void begin() { folder = std::make_unique<QTemporaryDir>(); }
    void end();

    [[nodiscard]] std::filesystem::path at(const std::string& name) const;
    /// Writes a file of the site, making its folders.
    void put(const std::string& name, std::string_view bytes) const;
    /// What a file of the site holds; nothing when it can't be read.
    [[nodiscard]] std::string file(const std::string& name) const;

    /// Opens "page.html" of the site, holding `page`, and waits until its rendering stands there.
    void open(std::string_view page);
    /// Opens a window on that file, or on the template, and waits for nothing.
    void openWindow(const char* name);
    void openUntitled();

    template <class T>
    [[nodiscard]] T* the(const char* name) const
    {
        return window->findChild<T*>(QString::fromLatin1(name));
    }
    void trigger(const char* action) const;
    [[nodiscard]] QTreeView* outline() const { return the<QTreeView>("myOutlineView"); }
    [[nodiscard]] bool isShown() const;

    /// The first row of the outline that begins with the text.
    [[nodiscard]] QModelIndex row(const char* text) const;
    void click(const char* text) const;

    /// A script's answer, as text.
    [[nodiscard]] QString answer(const char* script) const;
    /// Types behind the text of the first element that the selector finds.
    void type(const char* selector, const char* text) const;
    [[nodiscard]] std::string body() const;

    /// Waits for a question and clicks one of its buttons.
    void answerQuestion(const char* name, QMessageBox::StandardButton button) const;
    void answerQuestion(const char* name, const char* button) const;

    std::unique_ptr<QTemporaryDir> folder;
    QPointer<HTMLDocument> window;
};

} // namespace luma::test
