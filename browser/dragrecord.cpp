// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/dragrecord.h"

#include "base/fileuri.h"
#include "base/propertylist.h"

#include <QList>
#include <QStringDecoder>
#include <QSysInfo>

#include <algorithm>

namespace luma {

namespace {

// As a string if possible: a name may not be valid text, or contain characters that XML forbids.
QVariant entryFor(const std::filesystem::path& path)
{
    const QByteArray bytes = QByteArray::fromStdString(path.native());
    if (std::any_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }))
        return bytes;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() || !text.isValidUtf16() ? QVariant(bytes) : QVariant(text);
}

std::string bytesOf(const QVariant& entry)
{
    return entry.typeId() == QMetaType::QString ? entry.toString().toStdString()
                                                : entry.toByteArray().toStdString();
}

// The bytes of the path; empty if it is not a file on this host.
QByteArray localPathOf(QByteArray uri)
{
    if (uri.left(5).toLower() != "file:")
        return {};
    uri.remove(0, 5);
    // RFC 8089: "file:/path" is valid too, and the host may be given.
    if (uri.startsWith("//")) {
        const qsizetype path = uri.indexOf('/', 2);
        const QByteArray host = path < 0 ? uri.mid(2) : uri.mid(2, path - 2);
        const bool isHere =
            host.isEmpty() || host.toLower() == "localhost" || host == QSysInfo::machineHostName().toUtf8();
        if (path < 0 || !isHere)
            return {};
        uri.remove(0, path);
    }
    QByteArray path = QByteArray::fromPercentEncoding(uri);
    while (path.size() > 1 && path.endsWith('/'))
        path.chop(1);
    return path.startsWith('/') && !path.contains('\0') ? path : QByteArray();
}

} // namespace

QByteArray dragRecord(const std::vector<std::filesystem::path>& paths)
{
    QVariantList entries;
    for (const std::filesystem::path& path : paths)
        entries.append(entryFor(path));
    const auto record = writePropertyList(entries, PropertyListFormat::Xml);
    return record ? *record : QByteArray();
}

std::vector<std::filesystem::path> pathsOfDragRecord(const QByteArray& record)
{
    const auto list = readPropertyList(record);
    std::vector<std::filesystem::path> paths;
    if (!list)
        return paths;
    for (const QVariant& entry : list->toList()) {
        if (std::string bytes = bytesOf(entry); bytes.starts_with('/'))
            paths.emplace_back(std::move(bytes));
    }
    return paths;
}

QByteArray uriList(const std::vector<std::filesystem::path>& paths)
{
    QByteArray list;
    for (const std::filesystem::path& path : paths)
        list += fileUri(path) + "\r\n";
    return list;
}

std::vector<std::filesystem::path> pathsOfUriList(const QByteArray& list)
{
    std::vector<std::filesystem::path> paths;
    for (const QByteArray& line : list.split('\n')) {
        if (const QByteArray path = localPathOf(line.trimmed()); !path.isEmpty())
            paths.emplace_back(path.toStdString());
    }
    return paths;
}

} // namespace luma
