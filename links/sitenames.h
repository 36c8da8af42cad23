// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "base/stillwanted.h"
#include "links/linkplan.h"
#include "links/webrules.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// A class or an id of a site, and where it is.
struct SiteName
{
    struct Place
    {
        std::string file;       // subpath
        std::uint32_t line = 1; // of the first time in the file, and its column in characters, from 1
        std::uint32_t column = 1;
        std::size_t count = 0;
    };

    bool isId = false;
    std::string name;                 // without "." or "#"
    std::vector<Place> rules;         // sheets and style elements, in the byte order of the subpaths
    std::vector<Place> elements;      // pages
    std::vector<Place> references;    // of an id: links to it, labels and their like
    std::vector<std::string> scripts; // files whose scripts hold the word

    static std::size_t countOf(const std::vector<Place>& places);
    /// It has rules but no element; it has elements but no rule.
    [[nodiscard]] bool isUnused() const { return elements.empty(); }
    [[nodiscard]] bool isUndefined() const { return rules.empty(); }
};

/// The classes and ids of a site, by name, classes first. Uses all cores. Files that can't be read count as empty. Error: the
/// site can't be read, or the job was stopped (isStopped()).
Result<std::vector<SiteName>> findSiteNames(const std::filesystem::path& site, const WebRules& rules,
                                            const StillWanted& stillWanted = {});

/// Why this can't be the name of a class or id; empty if it can.
std::string problemOfName(std::string_view name);

/// Plans to rename a class or id in all pages and style sheets: elements, selectors, and for ids the attributes and links that
/// name them. Scripts are not changed; notes name those that hold the word. Error: as findSiteNames(), or the name can't be.
Result<LinkPlan> planNameChange(const std::filesystem::path& site, bool isId, const std::string& name,
                                const std::string& newName, const WebRules& rules,
                                const StillWanted& stillWanted = {});

} // namespace luma
