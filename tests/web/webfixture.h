// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/site.h"
#include "web/mywebview.h"

#include <filesystem>
#include <string>

namespace luma::test {

/// A site in a temporary folder and a shown web view with one page of it.
class WebFixture final
{
public:
    WebFixture();

    /// Writes a file of the site, making its folders.
    void put(const std::string& name, const QByteArray& bytes) const
    {
        m_folder.put("site/" + name, bytes.toStdString());
    }
    [[nodiscard]] std::filesystem::path at(const std::string& name) const
    {
        return m_folder.at("site/" + name);
    }

    /// Shows `markup` as the page `name` of the site and waits until it stands there.
    bool show(const QByteArray& markup, const std::string& name = "page.html");
    /// The same for the body of a page.
    bool showBody(const QByteArray& body);

    /// The same for a body with the caret as "|" or the selection as "[" and "]".
    bool showMarked(const QByteArray& body);
    /// The script that makes such marks the selection.
    static const QString setMarks;

    /// The script's answer, as text.
    [[nodiscard]] QString answer(const QString& script);
    [[nodiscard]] QString answer(const char* script) { return answer(QString::fromUtf8(script)); }

    /// What the body holds now.
    [[nodiscard]] QString body();

    /// Selects by text: the first occurrence of `text` below the body; an empty text sets the caret into the
    /// first empty element. Caret::End puts the caret behind it.
    enum class Caret { Start, End, Whole };
    void select(const QString& text, Caret caret = Caret::Whole);

    /// Presses and releases keys, and waits until the page has taken them.
    void press(int key, Qt::KeyboardModifiers modifiers = {});
    void type(const QString& text);

    MyWebView view;

private:
    void countKeys();
    void waitForKeys(qsizetype count);

    Site m_folder;
};

} // namespace luma::test
