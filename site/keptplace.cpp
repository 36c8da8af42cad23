// SPDX-License-Identifier: GPL-3.0-or-later
#include "site/keptplace.h"

#include "base/usertext.h"

#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>

namespace luma {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view keptExtension = ".luma-kept";
// strptime(3) and strftime(3), in UTC; milliseconds follow.
constexpr auto nameFormat = "luma-%Y%m%dT%H%M%S";
constexpr std::size_t nameLength = 20;

std::string withoutSlashes(std::string path)
{
    while (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

bool isInside(const fs::path& path, const fs::path& folder)
{
    const fs::path relative = path.lexically_relative(folder);
    return !relative.empty() && *relative.begin() != "..";
}

} // namespace

Result<KeptPlace> KeptPlace::of(const std::string& receiving, const KeepChoice& choice)
{
    const std::string folder = withoutSlashes(receiving);
    KeptPlace place;
    if (choice.folder.empty()) {
        const std::string name = fs::path(folder).filename();
        if (name.empty() || name == "." || name == ".." || name == "~" || name == "/")
            return Error{userText(
                QT_TRANSLATE_NOOP("luma::Engines",
                                  "Nothing can be kept beside \"%1\"; choose a folder for what is replaced"),
                {folder})};
        place.m_name = '.' + name + std::string(keptExtension);
        // From the folder itself, so that a link to it makes no difference.
        place.m_parent = folder + "/..";
        place.m_fromReceiving = "../" + place.m_name;
        return place;
    }
    const fs::path chosen = fs::path(withoutSlashes(choice.folder)).lexically_normal();
    if (!chosen.is_absolute() || !chosen.has_filename())
        return Error{userText(QT_TRANSLATE_NOOP(
            "luma::Engines", "The folder for what is replaced must be given as an absolute path"))};
    if (isInside(chosen, fs::path(folder).lexically_normal()))
        return Error{userText(QT_TRANSLATE_NOOP(
            "luma::Engines", "What is replaced must not be kept inside the site's own folder"))};
    place.m_name = chosen.filename();
    place.m_parent = chosen.parent_path();
    place.m_fromReceiving = chosen;
    return place;
}

std::string KeptPlace::publishNow()
{
    using namespace std::chrono;
    const auto now = duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
    const std::time_t seconds = now / 1000;
    std::tm time = {};
    ::gmtime_r(&seconds, &time);
    std::array<char, nameLength + 1> name = {};
    std::array<char, 8> milliseconds = {};
    (void)std::strftime(name.data(), name.size(), nameFormat, &time);
    (void)std::snprintf(milliseconds.data(), milliseconds.size(), ".%03dZ", static_cast<int>(now % 1000));
    return std::string(name.data()) + milliseconds.data();
}

std::optional<std::int64_t> KeptPlace::timeOf(std::string_view publish)
{
    std::tm time = {};
    const std::string name(publish);
    const char* const end = ::strptime(name.c_str(), nameFormat, &time);
    if (!end || end != name.c_str() + nameLength || name.size() != nameLength + 5)
        return std::nullopt;
    const std::string_view rest = publish.substr(nameLength);
    if (rest.front() != '.' || rest.back() != 'Z' ||
        rest.substr(1, 3).find_first_not_of("0123456789") != std::string_view::npos)
        return std::nullopt;
    return ::timegm(&time);
}

} // namespace luma
