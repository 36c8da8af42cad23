// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/workitem.h"

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

/// Inserts links, images and dropped files at the caret; asks for addresses in a sheet of the view's window. A dropped
/// picture from outside the site may be copied into it. Main thread; document and view outlive it.
class LinkActions final : public QObject
{
    Q_OBJECT

public:
    /// Evaluates a script that edits the page; its edit has this name in the undo history.
    using Perform = std::function<void(const QString& name, const QString& script)>;

    /// `infoText` reports dropped files outside the site.
    LinkActions(PageDocument& document, MyWebView& view, QLabel* infoText, Perform perform, QObject* parent);

    ~LinkActions() override;

    [[nodiscard]] LinkSheet* sheet() const { return m_sheet; }

    void makeLink();
    void editLink();
    void insertImage();

signals:
    /// A picture could not be copied into the site, for this reason.
    void failed(const QString& reason);

private:
    void confirm(const QString& address);
    void takeFiles(const QList<QUrl>& files, const QPointF& where);
    void askAboutPictures(const QList<QUrl>& files, const QStringList& outside, const QPointF& where);
    void copyAndInsert(const QList<QUrl>& files, const QPointF& where);
    void insertFiles(const QList<QUrl>& files, const QPointF& where);
    [[nodiscard]] QString written(QString address) const;
    [[nodiscard]] bool isPictureOutside(const QUrl& file) const;
    [[nodiscard]] QString insertionOf(const QUrl& file);

    PageDocument& m_document;
    MyWebView& m_view;
    QPointer<QLabel> m_infoText;
    LinkSheet* m_sheet;
    Perform m_perform;
    WorkItemPointer m_copies;
};

} // namespace luma
