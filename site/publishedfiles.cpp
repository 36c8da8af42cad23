// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/publishedfiles.h"

#include "base/filecalls.h"
#include "base/files.h"
#include "base/statefolder.h"
#include "base/usertext.h"
#include "browser/endpoint.h"

#include <QCryptographicHash>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <unordered_set>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view format = "LUMA published files 1\n";

// The folder of `file`, for the user alone.
void makeFolderOf(const fs::path& file)
{
    std::error_code error;
    if (fs::create_directories(file.parent_path(), error))
        fs::permissions(file.parent_path(), fs::perms::owner_all, error);
}

bool takeNumber(std::string_view& bytes, std::int64_t& number)
{
    const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), number);
    const auto length = static_cast<std::size_t>(end - bytes.data());
    if (error != std::errc() || length == bytes.size() || bytes[length] != ' ')
        return false;
    bytes.remove_prefix(length + 1);
    return true;
}

bool takeText(std::string_view& bytes, std::string_view& text)
{
    const std::size_t end = bytes.find('\0');
    if (end == std::string_view::npos)
        return false;
    text = bytes.substr(0, end);
    bytes.remove_prefix(end + 1);
    return true;
}

std::string identityOf(const ObservedDictionary& endpoint)
{
    std::string path = endpoint.string(endpoint::path).toStdString();
    const QString protocol = endpoint.string(endpoint::protocol, endpoint::fileProtocol);
    if (protocol == endpoint::fileProtocol && endpoint.string(endpoint::user).isEmpty())
        return path;
    const QString place = endpoint.string(endpoint::user) + u'@' + endpoint.string(endpoint::server) + u'/' +
                          endpoint.string(endpoint::volume);
    return protocol.toStdString() + place.toStdString() + '/' + path;
}

FileFacts fileOf(std::int64_t size, std::int64_t time)
{
    return {.type = FileFacts::Type::File, .size = size, .time = time};
}

} // namespace

PublishedFiles PublishedFiles::load(const std::string& site)
{
    PublishedFiles files;
    if (const auto bytes = readFile(publishingFile(site, ".files")); bytes && !files.parse(*bytes))
        files.m_entries.clear();
    files.m_site = site;
    return files;
}

bool PublishedFiles::parse(std::string_view bytes)
{
    if (!bytes.starts_with(format))
        return false;
    bytes.remove_prefix(format.size());
    std::string_view site;
    if (!takeText(bytes, site))
        return false;
    while (!bytes.empty()) {
        Entry entry;
        std::string_view path;
        if (!takeNumber(bytes, entry.source.size) || !takeNumber(bytes, entry.source.time) ||
            !takeNumber(bytes, entry.destination.size) || !takeNumber(bytes, entry.destination.time) ||
            !takeText(bytes, path))
            return false;
        m_entries.emplace(path, entry);
    }
    return true;
}

Result<void> PublishedFiles::save() const
{
    if (m_site.empty())
        return {};
    std::string bytes(format);
    bytes.append(m_site).push_back('\0');
    const auto add = [&bytes](std::string_view path, const Facts& source, const Facts& destination) {
        for (const std::int64_t number : {source.size, source.time, destination.size, destination.time})
            bytes.append(std::to_string(number)).push_back(' ');
        bytes.append(path).push_back('\0');
    };
    std::unordered_set<std::string_view> same;
    m_same.forEach([&](std::string_view path, std::int64_t size, std::int64_t time) {
        add(path, {size, time}, {size, time});
        same.insert(path);
    });
    for (const auto& [path, entry] : m_entries) {
        if (!same.contains(path))
            add(path, entry.source, entry.destination);
    }
    const fs::path file = publishingFile(m_site, ".files");
    makeFolderOf(file);
    return writeFile(file, bytes, 0600);
}

std::optional<PublishedFiles::Pair> PublishedFiles::find(const std::string& path, Direction direction) const
{
    const auto found = m_entries.find(path);
    if (found == m_entries.end())
        return std::nullopt;
    const auto& [source, destination] = found->second;
    Pair pair = {fileOf(source.size, source.time), fileOf(destination.size, destination.time)};
    if (direction == Direction::Download)
        std::swap(pair.sent, pair.received);
    return pair;
}

void PublishedFiles::set(const std::string& path, const Pair& pair, Direction direction)
{
    if (pair.sent.type != FileFacts::Type::File || pair.received.type != FileFacts::Type::File) {
        forget(path);
        return;
    }
    Entry entry = {{pair.sent.size, pair.sent.time}, {pair.received.size, pair.received.time}};
    if (direction == Direction::Download)
        std::swap(entry.source, entry.destination);
    m_entries.insert_or_assign(path, entry);
}

void PublishedFiles::keep(const std::string& path, PublishedFiles& other)
{
    m_entries.insert(other.m_entries.extract(path));
}

PublishedFiles PublishedFiles::emptied() const
{
    PublishedFiles files;
    files.m_site = m_site;
    return files;
}

std::string siteIdentity(const SiteRecord& record)
{
    return identityOf(*record.sourceDict()) + '\n' + identityOf(*record.destinationDict());
}

std::string siteIdentity(const fs::path& source, const std::string& login, const std::string& destination)
{
    return source.native() + "\nsftp://" + login + "//" + destination;
}

std::string siteIdentity(const fs::path& source, const fs::path& destination)
{
    return source.native() + '\n' + destination.native();
}

fs::path publishingFile(const std::string& site, const char* extension)
{
    const QByteArray name =
        QCryptographicHash::hash(QByteArray::fromStdString(site), QCryptographicHash::Sha256)
            .toHex()
            .left(32);
    return stateFolder() / "published" / (name.toStdString() + extension);
}

Result<FileDescriptor> lockForPublishing(const std::string& site)
{
    const fs::path file = publishingFile(site, ".lock");
    makeFolderOf(file);
    FileDescriptor lock(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (!lock)
        return systemError(file, errno);
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0)
        return Error{userText(
            QT_TRANSLATE_NOOP("luma::Engines", "This site is being published by another window or program"))};
    return lock;
}

} // namespace luma
