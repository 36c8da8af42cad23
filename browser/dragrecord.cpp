#include "browser/dragrecord.h"

#include "platform/fileuri.h"
#include "platform/propertylist.h"

#include <QStringDecoder>

#include <algorithm>

namespace luma {

namespace {

// As a string where one can hold it: a name's bytes may be no text, or characters that XML refuses.
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

} // namespace luma
