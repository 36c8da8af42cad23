// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/documentcontroller.h"

#include "desktop/windowregistry.h"

#include <QWidget>

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

fs::path locationOf(const fs::path& path)
{
    std::error_code error;
    fs::path location = fs::weakly_canonical(path, error);
    return error ? path.lexically_normal() : location;
}

} // namespace

DocumentController::DocumentController(FileOpener openFile, PageOpener openPage, QObject* parent)
    : QObject(parent), m_openFile(std::move(openFile)), m_openPage(std::move(openPage))
{}

QWidget* DocumentController::windowOf(const fs::path& path) const
{
    const auto found = m_windows.find(locationOf(path));
    return found == m_windows.end() ? nullptr : found->second.data();
}

bool DocumentController::isPage(const fs::path& path)
{
    static constexpr std::array<std::string_view, 3> extensions = {".html", ".xhtml", ".xml"};
    const std::string extension = path.extension().string();
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

Result<void> DocumentController::open(const fs::path& path, const fs::path& siteFolder)
{
    std::error_code error;
    if (!fs::exists(path, error))
        return Error{path.string() + ": no such file"};
    if (isPage(path)) {
        QWidget* window = m_openPage(path, siteFolder, windowOf(path));
        std::erase_if(m_windows, [](const auto& entry) { return !entry.second; });
        if (window) {
            m_windows[locationOf(path)] = window;
            WindowRegistry::bringToFront(window);
        }
        return {};
    }
    if (!m_openFile(path))
        return Error{path.string() + ": no application can open it"};
    return {};
}

void DocumentController::relocate(QWidget* window, const fs::path& path)
{
    std::erase_if(m_windows, [window](const auto& entry) { return !entry.second || entry.second == window; });
    m_windows[locationOf(path)] = window;
}

} // namespace luma
