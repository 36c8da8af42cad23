// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/linkactions.h"

#include "page/sitefolder.h"
#include "web/linksheet.h"
#include "web/mywebview.h"
#include "web/pagedocument.h"
#include "web/scriptcall.h"

#include <QLabel>
#include <QUrl>

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
    connect(&view, &MyWebView::filesDropped, this, &LinkActions::insertFiles);
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
        const QUrl url = LinkSheet::imageUrl(address);
        if (url.isValid())
            m_perform(tr("Insert Image"),
                      scriptCall(doCommand, QStringLiteral("Insert Image"),
                                 url.isLocalFile() ? m_document.linkTo(LinkSheet::fileOf(url)) : address));
        break;
    }
    case LinkSheet::Purpose::Link:
        m_perform(tr("Link"), scriptCall(doCommand, QStringLiteral("Create Link"), address));
        break;
    case LinkSheet::Purpose::EditLink:
        m_perform(tr("Edit Link"), scriptCall(doCommand, QStringLiteral("Edit Link"), address));
        break;
    }
    m_view.setFocus();
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
