// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "page/templatefiles.h"

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
class TemplateSheet;
class ViewController;

/// Saves a page and asks the questions that come with it: under which name, whether to replace another
/// program's version, whether to save before closing. Each is a sheet of the window. Main thread.
class PageSaver final : public QObject
{
    Q_OBJECT

public:
    using Then = std::function<void()>;
    /// Writes the page to a location and calls the function if that worked.
    using Writer = std::function<void(const std::filesystem::path&, const Then&)>;

    /// The window becomes the saver's parent. For a page without a file, the file dialog opens in
    /// `siteFolder`, as it is set at that time.
    PageSaver(QWidget* window, PageStore& store, ViewController& rendering,
              const std::filesystem::path& siteFolder, Writer write);

    /// Saves, asking the user first where needed; calls `then` only if the page was written.
    void save(const Then& then);
    void saveAs(const Then& then);
    void openPanel();
    /// Asks for the page that a new one is to be made from.
    void newFromPanel();

    /// Where the templates are: TemplateSheet::usualFolder() unless set.
    void setTemplateFolder(std::function<std::filesystem::path()> folder)
    {
        m_templateFolder = std::move(folder);
    }
    /// Asks for the template that a new page is to be made from.
    void newFromTemplate();
    /// Writes the page into the folder of templates, under a name that the user chooses.
    void saveAsTemplate();

    /// Asks whether to save the edits; emits saveRequested() or discarded(), or nothing if cancelled.
    void askToSave();

    /// The page's file name, to show.
    [[nodiscard]] QString name() const;

signals:
    /// The user wants the edits saved, or discarded, and the window closed.
    void saveRequested();
    void discarded();
    void openRequested(const std::filesystem::path& page);
    void newFromRequested(const PageTemplate& from);
    /// Whether the page's file is being waited for, which makes the save late.
    void waiting(bool isWaiting);
    /// The template was not written, for this reason.
    void templateFailed(const QString& reason);

private:
    using Chosen = std::function<void(const std::filesystem::path& page)>;
    void choosePage(const QString& title, const QString& name, const Chosen& chosen);
    /// Replaces the page's own file, but asks first if another program has changed it.
    void replaceUnlessChanged(const Then& then);
    void askToOverwrite(const Then& then);
    void askToSaveAsHtml(const Then& then);
    void askToLeaveOut(const std::vector<std::string>& elements, const Then& then);
    /// Replaces the page's own file, after the user has confirmed what would be lost.
    void replace(const Then& then);
    void saveUnder(const std::filesystem::path& path, const Then& then);
    /// Calls `then` once the document has every change made in the rendering, if there is a page.
    void whenCaughtUp(const Then& then);
    void chooseName(const Then& then);

    QWidget* m_window;
    PageStore& m_store;
    ViewController& m_rendering;
    const std::filesystem::path& m_siteFolder;
    Writer m_write;
    QPointer<QMessageBox> m_question;
    std::function<std::filesystem::path()> m_templateFolder;
    TemplateSheet* m_templates = nullptr; // made when it is first needed
};

} // namespace luma
