// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/previewsource.h"

#include <QDataStream>
#include <QIODevice>
#include <QList>

namespace luma {

namespace {

constexpr quint32 sourceForm = 0x4c505602; // changes with the members

QByteArray bytesOf(const std::string& text)
{
    return QByteArray::fromStdString(text);
}

} // namespace

QByteArray PreviewSource::toBytes() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    QList<QByteArray> names;
    for (const std::string& name : indexNames)
        names.append(bytesOf(name));
    stream << sourceForm << markup << bytesOf(files.page().native()) << bytesOf(files.folder().native())
           << drafts << names << pages;
    return bytes;
}

std::optional<PreviewSource> PreviewSource::fromBytes(const QByteArray& bytes)
{
    QDataStream stream(bytes);
    quint32 form = 0;
    stream >> form;
    if (form != sourceForm)
        return {};
    PreviewSource source;
    QByteArray page;
    QByteArray folder;
    QList<QByteArray> names;
    stream >> source.markup >> page >> folder >> source.drafts >> names >> source.pages;
    if (stream.status() != QDataStream::Ok || !stream.atEnd())
        return {};
    source.files = SiteFolder(page.toStdString(), folder.toStdString());
    for (const QByteArray& name : names)
        source.indexNames.push_back(name.toStdString());
    return source;
}

} // namespace luma
