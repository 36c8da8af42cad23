// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

class QMessageBox;
class QWidget;

namespace luma {

class PageStore;
class ViewController;

/// The questions around saving a page: under which name, over somebody else's version, before the window
/// closes. Each is a sheet of the window; what the rendering has is taken over before. Main thread.
class PageSaver final : public QObject
{
    Q_OBJECT

public:
    /// Writes the page to a location and answers whether it is there.
    using Writer = std::function<bool(const std::filesystem::path&)>;

    /// The window becomes the saver's parent. A page that has no file yet is offered to be saved in
    /// `siteFolder`, which is looked at then.
    PageSaver(QWidget* window, PageStore& store, ViewController& rendering,
              const std::filesystem::path& siteFolder, Writer write);

    using Then = std::function<void()>;
    /// Saves, asking where there is something to ask; `then` follows only when the page was written.
    void save(const Then& then);
    void saveAs(const Then& then);
    void openPanel();

    /// Asks what becomes of the edits. One of the two signals below follows, or none.
    void askToSave();

    /// The page's name for the reader.
    [[nodiscard]] QString name() const;

signals:
    /// The user wants all edits saved, or given up, and the window closed.
    void saveRequested();
    void discarded();
    void openRequested(const std::filesystem::path& page);

private:
    void askToOverwrite(const Then& then);
    void askToSaveAsHtml(const Then& then);
    void askToLeaveOut(const std::vector<std::string>& elements, const Then& then);
    /// Asks the window's user to agree with the button of that text; `then` follows only on that.
    void ask(const QString& name, const QString& text, const QString& consequence, const QString& button,
             const Then& then);
    /// Writes over the page's own file, when the user agrees to what becomes of it.
    void replace(const Then& then);
    void saveUnder(const std::filesystem::path& path, const Then& then);
    void write(const std::filesystem::path& path, const Then& then);
    /// `then` follows only if there is a page.
    void whenCaughtUp(const Then& then);
    void chooseName(const Then& then);

    QWidget* m_window;
    PageStore& m_store;
    ViewController& m_rendering;
    const std::filesystem::path& m_siteFolder;
    Writer m_write;
    QPointer<QMessageBox> m_question;
};

} // namespace luma
