#include "browser/dragrecord.h"

#include "platform/fileuri.h"

#include <QList>
#include <QStringDecoder>
#include <QSysInfo>

#include <plist/plist.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace luma {

namespace {

struct PropertyListCloser
{
    void operator()(void* list) const { plist_free(list); }
};
using PropertyList = std::unique_ptr<void, PropertyListCloser>;

bool fitsString(const std::string& path)
{
    if (std::any_of(path.begin(), path.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }))
        return false;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder(QByteArrayView(path.data(), static_cast<qsizetype>(path.size())));
    return !decoder.hasError() && decoded.isValidUtf16();
}

std::string bytesOf(plist_t node)
{
    char* bytes = nullptr;
    std::uint64_t length = 0;
    if (plist_get_node_type(node) == PLIST_STRING) {
        plist_get_string_val(node, &bytes);
        length = bytes ? std::char_traits<char>::length(bytes) : 0;
    } else if (plist_get_node_type(node) == PLIST_DATA) {
        plist_get_data_val(node, &bytes, &length);
    }
    std::string copy = bytes ? std::string(bytes, length) : std::string();
    std::free(bytes);
    return copy;
}

// The bytes of the path; empty for what is no file of this machine.
QByteArray localPathOf(QByteArray uri)
{
    if (uri.left(5).toLower() != "file:")
        return {};
    uri.remove(0, 5);
    // RFC 8089: "file:/path" is right too, and the host may be named.
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
    const PropertyList list(plist_new_array());
    for (const std::filesystem::path& path : paths) {
        const std::string& bytes = path.native();
        plist_array_append_item(list.get(), fitsString(bytes) ? plist_new_string(bytes.c_str())
                                                              : plist_new_data(bytes.data(), bytes.size()));
    }
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(list.get(), &xml, &length);
    QByteArray record(xml, static_cast<qsizetype>(length));
    std::free(xml);
    return record;
}

std::vector<std::filesystem::path> pathsOfDragRecord(const QByteArray& record)
{
    plist_t parsed = nullptr;
    plist_from_memory(record.constData(), static_cast<std::uint32_t>(record.size()), &parsed);
    const PropertyList list(parsed);
    std::vector<std::filesystem::path> paths;
    if (!list || plist_get_node_type(list.get()) != PLIST_ARRAY)
        return paths;
    for (std::uint32_t i = 0; i < plist_array_get_size(list.get()); ++i) {
        if (std::string bytes = bytesOf(plist_array_get_item(list.get(), i)); bytes.starts_with('/'))
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
