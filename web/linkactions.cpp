// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/linkactions.h"

#include "base/fileuri.h"
#include "base/mainhop.h"
#include "base/pathtext.h"
#include "page/picturecopy.h"
#include "page/sitefolder.h"
#include "web/linksheet.h"
#include "web/mywebview.h"
#include "web/pagedocument.h"
#include "web/scriptcall.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

#include <memory>
#include <utility>

namespace luma {

LinkActions::LinkActions(PageDocument& document, MyWebView& view, QLabel* infoText, Perform perform,
                         QObject* parent)
    : QObject(parent),
      m_document(document),
      m_view(view),
      m_infoText(infoText),
      m_sheet(new LinkSheet(view.parentWidget())),
      m_perform(std::move(perform))
{
    connect(m_sheet, &LinkSheet::confirmed, this, &LinkActions::confirm);
    connect(&view, &MyWebView::filesDropped, this, &LinkActions::takeFiles);
}

LinkActions::~LinkActions()
{
    if (m_copies)
        m_copies->cancel();
}

void LinkActions::makeLink()
{
    m_sheet->begin(LinkSheet::Purpose::Link, QStringLiteral("http://"), m_document.siteFolder());
}

void LinkActions::editLink()
{
    ScriptCall::ask(&m_view.editorPage(), QStringLiteral("getLink()"), this, [this](const QVariant& address) {
        m_sheet->begin(LinkSheet::Purpose::EditLink, address.toString(), m_document.siteFolder());
    });
}

void LinkActions::insertImage()
{
    m_sheet->begin(LinkSheet::Purpose::Image, QString(), m_document.siteFolder());
}

void LinkActions::confirm(const QString& address)
{
    const QString doCommand = QStringLiteral("doCommand");
    switch (m_sheet->purpose()) {
    case LinkSheet::Purpose::Image: {
        const auto file = LinkSheet::imageFile(address);
        m_perform(tr("Insert Image"), scriptCall(doCommand, QStringLiteral("Insert Image"),
                                                 file ? m_document.linkTo(*file) : written(address)));
        break;
    }
    case LinkSheet::Purpose::Link:
        m_perform(tr("Make Link"), scriptCall(doCommand, QStringLiteral("Create Link"), written(address)));
        break;
    case LinkSheet::Purpose::EditLink:
        m_perform(tr("Edit Link"), scriptCall(doCommand, QStringLiteral("Edit Link"), written(address)));
        break;
    }
    m_view.setFocus();
}

QString LinkActions::written(QString address) const
{
    const auto file = LinkSheet::fileNamed(address, m_document.siteFolder());
    if (!file)
        return address.replace(u' ', QStringLiteral("%20"));
    return address.startsWith(u'/')
               ? QString::fromStdString(SiteFolder::addressPath(pathOf(address))).mid(2) // without "/:"
               : m_document.linkTo(*file);
}

bool LinkActions::isPictureOutside(const QUrl& file) const
{
    const auto path = LinkSheet::fileOf(file);
    return contentTypeOf(path).starts_with("image/") && !m_document.siteFolder().realPath(path);
}

void LinkActions::takeFiles(const QList<QUrl>& files, const QPointF& where)
{
    QStringList outside;
    for (const QUrl& file : files) {
        if (isPictureOutside(file))
            outside.append(file.fileName());
    }
    if (outside.isEmpty())
        insertFiles(files, where);
    else
        askAboutPictures(files, outside, where);
}

void LinkActions::askAboutPictures(const QList<QUrl>& files, const QStringList& outside, const QPointF& where)
{
    auto* const box = new QMessageBox(QMessageBox::Question, tr("Drop"),
                                      tr("Not in the site: %1").arg(outside.join(QLatin1String(", "))),
                                      QMessageBox::Cancel, m_view.window());
    box->setObjectName(QStringLiteral("pictureQuestion"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(tr("A copy in the site is published with the page."));
    const auto* const insert = box->addButton(tr("Insert Without Copy"), QMessageBox::ActionRole);
    auto* const copy = box->addButton(tr("Copy Into Site"), QMessageBox::AcceptRole);
    box->setDefaultButton(copy);
    connect(insert, &QPushButton::clicked, this, [this, files, where] { insertFiles(files, where); });
    connect(copy, &QPushButton::clicked, this, [this, files, where] { copyAndInsert(files, where); });
    box->open();
}

void LinkActions::copyAndInsert(const QList<QUrl>& files, const QPointF& where)
{
    m_copies = std::make_shared<WorkItem>();
    QList<bool> isCopied;
    for (const QUrl& file : files)
        isCopied.append(isPictureOutside(file));
    start(m_copies, [self = QPointer(this), files, isCopied, where,
                     site = m_document.siteFolder()](const WorkItem& item) {
        const auto stillWanted = [&item] { return !item.isCancelled(); };
        QList<QUrl> inserted = files;
        for (qsizetype i = 0; i < files.size(); ++i) {
            if (!isCopied.at(i))
                continue;
            const auto copy = copyPictureIntoSite(LinkSheet::fileOf(files.at(i)), site, stillWanted);
            if (!copy) {
                onMain(self, [&copy](LinkActions& actions) {
                    emit actions.failed(QString::fromStdString(copy.error().text));
                });
                return;
            }
            inserted[i] = QUrl::fromEncoded(fileUri(*copy));
        }
        onMain(self, [&inserted, &where](LinkActions& actions) { actions.insertFiles(inserted, where); });
    });
}

void LinkActions::insertFiles(const QList<QUrl>& files, const QPointF& where)
{
    const double zoom = m_view.zoomFactor();
    QString script = QStringLiteral("setCaretAt(%1, %2)").arg(where.x() / zoom).arg(where.y() / zoom);
    for (const QUrl& url : files)
        script += QStringLiteral("; ") + insertionOf(url);
    m_perform(tr("Drop"), script);
    m_view.setFocus();
}

QString LinkActions::insertionOf(const QUrl& url)
{
    const auto file = LinkSheet::fileOf(url);
    const QString link = m_document.linkTo(file);
    if (m_infoText && !m_document.siteFolder().realPath(file))
        m_infoText->setText(tr("%1 is outside the site").arg(url.fileName()));
    return contentTypeOf(file).starts_with("image/")
               ? scriptCall(QStringLiteral("doCommand"), QStringLiteral("Insert Image"), link)
               : scriptCall(QStringLiteral("insertLink"), link, url.fileName());
}

} // namespace luma
