// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/linkstore.h"

#include "base/files.h"
#include "base/statefolder.h"
#include "links/bytehash.h"
#include "links/fieldreader.h"
#include "links/linkplan.h"

#include <chrono>
#include <cstring>
#include <limits>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view magic = "LUMA links 1\n";
constexpr auto longestUnused = std::chrono::hours(24 * 90);

void appendText(std::string& bytes, std::string_view text)
{
    appendVarint(bytes, text.size());
    bytes += text;
}

void appendWord(std::string& bytes, std::uint64_t word)
{
    bytes.append(reinterpret_cast<const char*>(&word), sizeof(word));
}

// The program's file: another version may read pages in another way.
std::string programMark()
{
    const FileStamp program = FileStamp::of("/proc/self/exe", 0);
    std::string mark;
    appendWord(mark, program.size);
    appendWord(mark, static_cast<std::uint64_t>(program.modified));
    return mark;
}

std::string realPath(const fs::path& site)
{
    std::error_code error;
    const fs::path real = fs::canonical(site, error);
    return (error ? site : real).native();
}

std::string headOf(const fs::path& site)
{
    std::string head(magic);
    appendText(head, programMark());
    appendText(head, realPath(site));
    return head;
}

void appendStamp(std::string& bytes, const FileStamp& stamp)
{
    appendVarint(bytes, stamp.inode);
    appendVarint(bytes, stamp.size);
    appendVarint(bytes, static_cast<std::uint64_t>(stamp.modified));
    appendVarint(bytes, static_cast<std::uint64_t>(stamp.changed));
    appendVarint(bytes, stamp.isShared ? 1 : 0);
}

FileStamp readStamp(FieldReader& reader)
{
    FileStamp stamp;
    stamp.inode = reader.number();
    stamp.size = reader.number();
    stamp.modified = static_cast<std::int64_t>(reader.number());
    stamp.changed = static_cast<std::int64_t>(reader.number());
    stamp.isShared = reader.number() != 0;
    return stamp;
}

void appendHashes(std::string& bytes, const std::vector<std::uint64_t>& hashes)
{
    appendVarint(bytes, hashes.size() * sizeof(std::uint64_t));
    for (const std::uint64_t hash : hashes)
        appendWord(bytes, hash);
}

std::vector<std::uint64_t> readHashes(FieldReader& reader)
{
    const std::string_view words = reader.text();
    std::vector<std::uint64_t> hashes(words.size() / sizeof(std::uint64_t));
    if (!hashes.empty())
        std::memcpy(hashes.data(), words.data(), hashes.size() * sizeof(std::uint64_t));
    return hashes;
}

void appendPlaces(std::string& bytes, const PagePlaces& places)
{
    appendVarint(bytes, places.anyMayBeThere ? 1 : 0);
    appendHashes(bytes, places.hashes);
}

PagePlaces readPlaces(FieldReader& reader)
{
    PagePlaces places;
    places.anyMayBeThere = reader.number() != 0;
    places.hashes = readHashes(reader);
    return places;
}

/// Gives the texts that stored pages use new numbers, without gaps.
class UsedTexts final
{
public:
    explicit UsedTexts(const AddressTexts& texts) : m_texts(texts), m_newNumbers(texts.size(), unused) {}

    PackedLinks renumbered(const PackedLinks& packed)
    {
        std::vector<DigestLink> links = packed.links();
        for (DigestLink& link : links) {
            AddressTexts::Number& number = m_newNumbers[link.text];
            if (number == unused) {
                number = m_count++;
                appendText(m_bytes, m_texts.text(link.text));
            }
            link.text = number;
        }
        return PackedLinks(links);
    }

    [[nodiscard]] AddressTexts::Number count() const { return m_count; }
    [[nodiscard]] const std::string& bytes() const { return m_bytes; }

private:
    static constexpr AddressTexts::Number unused = std::numeric_limits<AddressTexts::Number>::max();

    const AddressTexts& m_texts;
    std::vector<AddressTexts::Number> m_newNumbers;
    AddressTexts::Number m_count = 0;
    std::string m_bytes;
};

bool readPage(FieldReader& reader, StoredPage& page, std::size_t textCount)
{
    page.subpath = reader.text();
    page.stamp = readStamp(reader);
    page.digest.base = reader.text();
    page.digest.places = readPlaces(reader);
    page.digest.mentioned = readHashes(reader);
    bool isWhole = false;
    page.digest.links = PackedLinks::fromBytes(std::string(reader.text()), textCount, isWhole);
    return reader.isGood() && isWhole;
}

void removeOldFiles(const fs::path& folder)
{
    std::error_code error;
    const auto now = fs::file_time_type::clock::now();
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code unknown;
        const auto written = entry->last_write_time(unknown);
        if (!unknown && now - written > longestUnused)
            fs::remove(entry->path(), unknown);
    }
}

} // namespace

LinkStore::LinkStore(const fs::path& site)
    : m_site(site), m_file(cacheFolder() / "links" / hashOfFile(realPath(site)).substr(0, 32))
{}

std::optional<LinkStore::Content> LinkStore::load() const
{
    const auto bytes = readFile(m_file);
    const std::string head = headOf(m_site);
    constexpr std::size_t sumSize = sizeof(std::uint64_t);
    if (!bytes || !bytes->starts_with(head) || bytes->size() < head.size() + sumSize)
        return std::nullopt;
    const std::string_view body = std::string_view(*bytes).substr(head.size() + sumSize);
    std::uint64_t sum = 0;
    std::memcpy(&sum, bytes->data() + head.size(), sumSize);
    if (sum != hashBytes(body))
        return std::nullopt;
    FieldReader reader(body);
    Content content;
    for (std::uint64_t left = reader.number(); left > 0 && reader.isGood(); --left) {
        const std::size_t expected = content.texts.size();
        if (content.texts.add(reader.text()) != expected)
            return std::nullopt;
    }
    for (std::uint64_t left = reader.number(); left > 0 && reader.isGood(); --left) {
        if (!readPage(reader, content.pages.emplace_back(), content.texts.size()))
            return std::nullopt;
    }
    return reader.isGood() && reader.isAtEnd() ? std::optional(std::move(content)) : std::nullopt;
}

Result<void> LinkStore::save(const AddressTexts& texts, const Pages& pages) const
{
    UsedTexts used(texts);
    std::string pageBytes;
    std::uint64_t count = 0;
    pages([&](const std::string& subpath, const FileStamp& stamp, const PageDigest& digest) {
        ++count;
        appendText(pageBytes, subpath);
        appendStamp(pageBytes, stamp);
        appendText(pageBytes, digest.base);
        appendPlaces(pageBytes, digest.places);
        appendHashes(pageBytes, digest.mentioned);
        appendText(pageBytes, used.renumbered(digest.links).bytes());
    });
    std::string body;
    appendVarint(body, used.count());
    body += used.bytes();
    appendVarint(body, count);
    body += pageBytes;
    std::string bytes = headOf(m_site);
    appendWord(bytes, hashBytes(body));
    bytes += body;
    if (auto made = makePrivateFolder(m_file.parent_path()); !made)
        return made;
    removeOldFiles(m_file.parent_path());
    constexpr unsigned forTheUserAlone = 0600;
    return writeFile(m_file, bytes, forTheUserAlone);
}

} // namespace luma
