// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/packages.h"

#include "browser/displaytext.h"

#include <algorithm>
#include <array>

namespace luma {

namespace {

// Folders that programs treat as one document or one program. Sorted.
constexpr std::array<std::string_view, 20> bundleExtensions = {
    "app",      "bundle",      "component", "download", "framework",     "kext",     "key",
    "lproj",    "mdimporter",  "numbers",   "pages",    "photoslibrary", "pkg",      "plugin",
    "prefpane", "qlgenerator", "rtfd",      "saver",    "scptd",         "xcodeproj"};

} // namespace

bool isPackageName(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    return std::binary_search(bundleExtensions.begin(), bundleExtensions.end(),
                              collationKey(name.substr(dot + 1)));
}

} // namespace luma
