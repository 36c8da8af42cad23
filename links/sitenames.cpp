// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitenames.h"

#include "base/ascii.h"
#include "base/filecalls.h"
#include "base/orderedwork.h"
#include "base/usertext.h"
#include "base/utf8.h"
#include "html/cssreferences.h"
#include "links/linesandcolumns.h"
#include "links/namereader.h"
#include "links/percentencoding.h"
#include "links/sitetree.h"
#include "links/textplan.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

namespace luma {

namespace fs = std::filesystem;

namespace {

using Kind = NameUse::Kind;

/// What a file says.
struct FileNames
{
    std::string path;
    std::vector<NameUse> uses;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> places; // lines and columns of the uses
    std::set<std::string, std::less<>> words;
};

/// All files of a site, and which pages have which ids.
class ReadNames final
{
public:
    static Result<ReadNames> of(const fs::path& site, const WebRules& rules, const StillWanted& stillWanted)
    {
        const auto tree = SiteTree::read(site, stillWanted);
        if (!tree)
            return tree.error();
        std::vector<std::string> paths;
        for (const SiteTree::Id id : tree->files()) {
            const bool isNamed =
                webFileKind(tree->name(id)) != WebFileKind::Other || isScript(tree->name(id));
            if (isNamed && !tree->isLinkIntoSite(id, tree->path(id)))
                paths.push_back(tree->subpath(id));
        }
        ReadNames names(rules);
        using Work = OrderedWork<FileNames>;
        std::vector<NameReader> readers;
        for (std::size_t worker = 0; worker < Work::workerCount(); ++worker)
            readers.emplace_back(names.m_addresses);
        const bool isComplete =
            Work(paths.size(), stillWanted)
                .run([&](std::size_t i, std::size_t worker) { return read(site, paths[i], readers[worker]); },
                     [&names](std::size_t, FileNames&& file) { names.add(std::move(file)); });
        return isComplete ? Result<ReadNames>(std::move(names)) : stoppedError(site);
    }

    [[nodiscard]] const std::vector<FileNames>& files() const { return m_files; }
    [[nodiscard]] const SiteAddresses& addresses() const { return m_addresses; }
    [[nodiscard]] bool hasId(const std::string& file, const std::string& name) const
    {
        const auto ids = m_ids.find(file);
        return ids != m_ids.end() && ids->second.contains(name);
    }

    /// Whether the use, in `file`, is one of the id or class that it names.
    [[nodiscard]] bool isMeant(const NameUse& use, const std::string& file) const
    {
        if (use.kind == Kind::Reference)
            return hasId(file, use.name);
        if (use.kind != Kind::Fragment || hasId(use.target, use.name))
            return true;
        return std::any_of(m_rules.indexNames.begin(), m_rules.indexNames.end(),
                           [&](const std::string& index) {
                               return hasId(use.target.empty() ? index : use.target + '/' + index, use.name);
                           });
    }

private:
    explicit ReadNames(const WebRules& rules) : m_rules(rules), m_addresses(rules.webAddresses) {}

    static FileNames read(const fs::path& site, const std::string& path, NameReader& reader)
    {
        FileNames file{path, {}, {}, {}};
        const auto bytes = reader.readBytes((site / path).native());
        if (!bytes)
            return file;
        reader.parse(*bytes, path);
        file.uses = reader.uses();
        file.words = reader.words();
        LinesAndColumns place(reader.file().text());
        for (const NameUse& use : file.uses) {
            place.goTo(use.begin);
            file.places.emplace_back(place.line(), place.column());
        }
        return file;
    }

    void add(FileNames&& file)
    {
        for (const NameUse& use : file.uses) {
            if (use.isId && use.kind == Kind::Element)
                m_ids[file.path].insert(use.name);
        }
        m_files.push_back(std::move(file));
    }

    WebRules m_rules;
    SiteAddresses m_addresses;
    std::vector<FileNames> m_files;
    std::map<std::string, std::set<std::string>> m_ids; // by page
};

std::vector<SiteName::Place>& placesOf(SiteName& name, Kind kind)
{
    return kind == Kind::Rule ? name.rules : kind == Kind::Element ? name.elements : name.references;
}

/// Renames a class or id in the text of one file after another.
class NameChange final
{
public:
    NameChange(std::shared_ptr<const ReadNames> names, bool isId, std::string name, std::string newName)
        : m_names(std::move(names)), m_isId(isId), m_name(std::move(name)), m_newName(std::move(newName))
    {}

    [[nodiscard]] bool isIn(const NameUse& use, const std::string& file) const
    {
        return use.isId == m_isId && use.name == m_name && m_names->isMeant(use, file);
    }
    [[nodiscard]] NameReader reader() const { return NameReader(m_names->addresses()); }

    /// Error: the file can't be changed.
    [[nodiscard]] Result<std::vector<LinkEdit>> edits(std::string_view bytes, const std::string& path,
                                                      NameReader& reader) const
    {
        reader.parse(bytes, path);
        const SitePageReader& file = reader.file();
        const Encoding& encoding = file.encoding().encoding;
        const std::string sign = m_isId ? "#" : ".";
        std::vector<const NameUse*> uses;
        for (const NameUse& use : reader.uses()) {
            if (isIn(use, path))
                uses.push_back(&use);
        }
        std::sort(uses.begin(), uses.end(),
                  [](const NameUse* a, const NameUse* b) { return a->begin < b->begin; });
        LinesAndColumns place(file.text());
        std::vector<LinkEdit> edits;
        for (const NameUse* const use : uses) {
            const auto written = encoding.encoded(spelled(*use));
            if (!written)
                return Error{userText(
                    QT_TRANSLATE_NOOP("luma::Engines",
                                      "it would hold a character that %1 lacks, so it stays as it is"),
                    {encoding.name()})};
            const std::size_t begin = file.placeInFile(use->begin);
            const std::size_t end = file.placeInFile(use->end);
            place.goTo(use->begin);
            edits.push_back({begin, std::string(bytes.substr(begin, end - begin)), *written, place.line(),
                             sign + m_name, sign + m_newName});
        }
        const std::vector<NameUse> before = reader.uses();
        const std::string edited = withEdits(bytes, edits);
        reader.parse(edited, path);
        if (!areRenamed(before, reader.uses(), path))
            return Error{userText(QT_TRANSLATE_NOOP(
                "luma::Engines", "its text can't be replaced without changing more, so it stays as it is"))};
        return edits;
    }

private:
    [[nodiscard]] std::string spelled(const NameUse& use) const
    {
        if (use.kind == Kind::Fragment)
            return percentEncoded(m_newName, AddressPart::Fragment);
        if (!use.isCss)
            return m_newName;
        return cssIdentifier(m_newName);
    }

    [[nodiscard]] bool areRenamed(const std::vector<NameUse>& before, const std::vector<NameUse>& after,
                                  const std::string& path) const
    {
        return std::equal(before.begin(), before.end(), after.begin(), after.end(),
                          [&](const NameUse& old, const NameUse& now) {
                              return now.kind == old.kind && now.isId == old.isId &&
                                     now.name == (isIn(old, path) ? m_newName : old.name);
                          });
    }

    std::shared_ptr<const ReadNames> m_names;
    bool m_isId;
    std::string m_name;
    std::string m_newName;
};

Result<PageRewrite> renamedPage(const fs::path& file, const std::string& path, const NameChange& change,
                                NameReader& reader)
{
    const auto read = reader.readBytes(file.native());
    if (!read)
        return read.error();
    const std::string bytes(*read);
    auto edits = change.edits(bytes, path, reader);
    if (!edits)
        return Error{file.native() + ": " + edits.error().text};
    return TextPlan::rewriteOf(file, bytes, *std::move(edits));
}

// For a file that is open with unsaved edits.
LinksUpdate::Updated renamedIn(const fs::path& site, const std::shared_ptr<const NameChange>& change)
{
    return [site, change](std::string_view source, const fs::path& /*oldFile*/,
                          const fs::path& file) -> Result<std::string> {
        const auto path = placeInRoot(file, site);
        if (!path)
            return std::string(source);
        NameReader reader = change->reader();
        return editedSource(source,
                            [&](std::string_view bytes) { return change->edits(bytes, *path, reader); });
    };
}

void addNotes(TextPlan& plan, const fs::path& site, const ReadNames& names, bool isId,
              const std::string& name, const std::string& newName)
{
    const auto hasNewName = [&](const FileNames& file) {
        return std::any_of(file.uses.begin(), file.uses.end(), [&](const NameUse& use) {
            return use.isId == isId && use.name == newName && use.kind != Kind::Fragment;
        });
    };
    const auto first = std::find_if(names.files().begin(), names.files().end(), hasNewName);
    if (!isId && first != names.files().end())
        plan.addNote(
            {site / first->path,
             userText(QT_TRANSLATE_NOOP("luma::Engines", "The class \"%1\" exists already; both will be one"),
                      {newName})});
    for (const FileNames& file : names.files()) {
        const fs::path path = site / file.path;
        if (file.words.contains(name))
            plan.addNote(
                {path, userText(QT_TRANSLATE_NOOP("luma::Engines",
                                                  "A script here mentions \"%1\"; scripts are not changed"),
                                {name})});
        if (isId && names.hasId(file.path, name) && names.hasId(file.path, newName))
            plan.addNote({path, userText(QT_TRANSLATE_NOOP("luma::Engines",
                                                           "Another element has the id \"%1\" already"),
                                         {newName})});
    }
}

} // namespace

std::size_t SiteName::countOf(const std::vector<Place>& places)
{
    return std::accumulate(places.begin(), places.end(), std::size_t(0),
                           [](std::size_t sum, const Place& place) { return sum + place.count; });
}

Result<std::vector<SiteName>> findSiteNames(const fs::path& site, const WebRules& rules,
                                            const StillWanted& stillWanted)
{
    const auto names = ReadNames::of(site, rules, stillWanted);
    if (!names)
        return names.error();
    std::map<std::pair<bool, std::string>, SiteName> found;
    for (const FileNames& file : names->files()) {
        for (std::size_t i = 0; i < file.uses.size(); ++i) {
            const NameUse& use = file.uses[i];
            if (!names->isMeant(use, file.path))
                continue;
            SiteName& name = found[{use.isId, use.name}];
            name.isId = use.isId;
            name.name = use.name;
            std::vector<SiteName::Place>& places = placesOf(name, use.kind);
            if (places.empty() || places.back().file != file.path)
                places.push_back({file.path, file.places[i].first, file.places[i].second, 0});
            ++places.back().count;
        }
    }
    std::vector<SiteName> all;
    for (auto& [key, name] : found) {
        for (const FileNames& file : names->files()) {
            if (!file.words.empty() && file.words.contains(name.name))
                name.scripts.push_back(file.path);
        }
        all.push_back(std::move(name));
    }
    return all;
}

std::string problemOfName(std::string_view name)
{
    const bool isPlain = std::none_of(name.begin(), name.end(), [](char c) {
        return isWhiteSpace(c) || static_cast<unsigned char>(c) < 0x20 || c == 0x7F ||
               std::string_view("\"'<>=&`\\").find(c) != std::string_view::npos;
    });
    if (name.empty() || !isPlain || !isValidUtf8(name))
        return userText(QT_TRANSLATE_NOOP(
            "luma::Engines", "A name has at least one character, no blanks and none of \" ' < > = & ` \\"));
    return {};
}

Result<LinkPlan> planNameChange(const fs::path& site, bool isId, const std::string& name,
                                const std::string& newName, const WebRules& rules,
                                const StillWanted& stillWanted)
{
    if (const std::string problem = problemOfName(newName); !problem.empty())
        return Error{problem};
    auto read = ReadNames::of(site, rules, stillWanted);
    if (!read)
        return read.error();
    const auto names = std::make_shared<const ReadNames>(*std::move(read));
    const auto change = std::make_shared<const NameChange>(names, isId, name, newName);
    TextPlan plan(site);
    NameReader reader = change->reader();
    for (const FileNames& file : names->files()) {
        const auto count = std::count_if(file.uses.begin(), file.uses.end(),
                                         [&](const NameUse& use) { return change->isIn(use, file.path); });
        if (count == 0)
            continue;
        if (!isWanted(stillWanted))
            return stoppedError(site);
        plan.add(site / file.path, renamedPage(site / file.path, file.path, *change, reader),
                 static_cast<std::size_t>(count));
    }
    addNotes(plan, withoutEndSlashes(site), *names, isId, name, newName);
    TextChange text;
    text.title = userText(isId ? QT_TRANSLATE_NOOP("luma::Engines", "Rename the id %1 to %2")
                               : QT_TRANSLATE_NOOP("luma::Engines", "Rename the class %1 to %2"),
                          {name, newName});
    text.action = userText(QT_TRANSLATE_NOOP("luma::Engines", "Rename"));
    text.anyway = userText(QT_TRANSLATE_NOOP("luma::Engines", "Rename Anyway"));
    text.updated = renamedIn(site, change);
    return std::move(plan).finished(std::move(text));
}

} // namespace luma
