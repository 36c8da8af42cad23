// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/namedfiles.h"

#include "base/filereader.h"
#include "base/orderedwork.h"
#include "links/namesearch.h"

#include <map>

namespace luma {

bool findNamedFiles(const SiteTree& tree, const std::vector<SiteTree::Id>& wanted,
                    const std::vector<SiteTree::Id>& texts, bool (*isText)(std::string_view bytes),
                    const std::function<void(SiteTree::Id file, SiteTree::Id text)>& found,
                    const UnlinkedItemsCallbacks& callbacks)
{
    if (wanted.empty())
        return isWanted(callbacks.stillWanted);
    std::map<std::string, std::vector<SiteTree::Id>> filesByName;
    for (const SiteTree::Id file : wanted)
        filesByName[std::string(tree.name(file))].push_back(file);
    std::vector<std::string> names;
    std::vector<const std::vector<SiteTree::Id>*> files;
    for (const auto& [name, ofThisName] : filesByName) {
        names.push_back(name);
        files.push_back(&ofThisName);
    }
    const NameSearch search(std::move(names));
    const auto searchText = [&](SiteTree::Id text) {
        FileReader reader;
        const auto bytes = reader.read(tree.path(text));
        if (!bytes || !isText(*bytes))
            return false;
        search.search(*bytes, [&](std::size_t name) {
            for (const SiteTree::Id file : *files[name])
                found(file, text);
            return true;
        });
        return true;
    };
    return OrderedWork<bool>(texts.size(), callbacks.stillWanted)
        .run([&](std::size_t i, std::size_t) { return searchText(texts[i]); },
             [&](std::size_t i, bool) {
                 if (callbacks.examining)
                     callbacks.examining(tree.subpath(texts[i]));
             });
}

} // namespace luma
