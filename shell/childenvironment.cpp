// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/childenvironment.h"

#include <langinfo.h>
#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale() is POSIX, not C++
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace luma {

namespace {

// Asks the C library, because a variable may name a locale that is not installed.
bool localeIsUtf8()
{
    const locale_t locale = ::newlocale(LC_CTYPE_MASK, "", nullptr);
    if (!locale)
        return false;
    const bool isUtf8 = std::string_view(::nl_langinfo_l(CODESET, locale)) == "UTF-8";
    ::freelocale(locale);
    return isUtf8;
}

} // namespace

std::vector<std::string> childEnvironment()
{
    std::vector<std::string> environment;
    for (char** entry = environ; entry && *entry; ++entry)
        environment.emplace_back(*entry);
    if (localeIsUtf8())
        return environment;
    // LC_ALL outranks LC_CTYPE; where it is not set, the language of messages stays the user's.
    const char* all = std::getenv("LC_ALL");
    const std::string name = all && *all ? "LC_ALL=" : "LC_CTYPE=";
    std::erase_if(environment, [&](const std::string& entry) { return entry.starts_with(name); });
    environment.push_back(name + "C.UTF-8");
    return environment;
}

} // namespace luma
