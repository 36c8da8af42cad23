// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

#include <functional>

class QLabel;
class QPointF;
class QUrl;

namespace luma {

class LinkSheet;
class MyWebView;
class PageDocument;

/// Inserts links, images and dropped files at the caret; asks for addresses in a sheet of the view's window.
/// Main thread; document and view outlive it.
class LinkActions final : public QObject
{
    Q_OBJECT

public:
    /// Evaluates a script that edits the page; its edit has this name in the undo history.
    using Perform = std::function<void(const QString& name, const QString& script)>;

    /// `infoText` reports dropped files outside the site.
    LinkActions(PageDocument& document, MyWebView& view, QLabel* infoText, Perform perform, QObject* parent);

    [[nodiscard]] LinkSheet* sheet() const { return m_sheet; }

    void makeLink();
    void editLink();
    void insertImage();

private:
    void confirm(const QString& address);
    void insertFiles(const QList<QUrl>& files, const QPointF& where);
    [[nodiscard]] QString insertionOf(const QUrl& file);

    PageDocument& m_document;
    MyWebView& m_view;
    QPointer<QLabel> m_infoText;
    LinkSheet* m_sheet;
    Perform m_perform;
};

} // namespace luma
