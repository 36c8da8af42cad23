// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMainWindow>

class QLabel;
class QLineEdit;
class QTextBrowser;

namespace luma {

/// The manual: one Markdown file a chapter, from the folder `manual` of the resources, with a search through all of them.
/// One window for the application; it deletes itself when closed. Main thread only.
class ManualWindow final : public QMainWindow
{
    Q_OBJECT

public:
    /// Shows a chapter, such as "keys", in the open window or a new one.
    static void showChapter(const QString& chapter);

    explicit ManualWindow(QWidget* parent = nullptr);

    void open(const QString& chapter);

protected:
    /// Links have the palette's colour from when the chapter was read.
    void changeEvent(QEvent* event) override;

private:
    void createToolBar();
    /// Finds the next place of the searched text, in this chapter or a later one, round to the beginning.
    void findNext();

    QTextBrowser* m_text;
    QLineEdit* m_searchField;
    QLabel* m_notFound;
};

} // namespace luma
