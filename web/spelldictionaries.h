// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <vector>

namespace luma {

/// The dictionaries that the desktop's programs share (hunspell's .aff and .dic files), and their copies in the web engine's
/// own format, in a folder of ours. Any thread; conversion takes seconds and blocks.
class SpellDictionaries final
{
public:
    /// The folders with the desktop's dictionaries, and the one for the copies.
    SpellDictionaries(std::vector<std::filesystem::path> sources, std::filesystem::path copies);
    /// Those of the desktop (XDG base directories) and of the user's cache.
    static SpellDictionaries ofTheDesktop();

    /// The dictionary for a language tag (BCP 47: "de", "de-AT"): that one, else one of the same language, the desktop's
    /// own country first. Its name, "de_AT", or nothing.
    [[nodiscard]] QString nameFor(const QString& language) const;

    /// Makes the copy of a dictionary unless it is there and newer; the engine's name for it ("de-AT"), empty if that failed.
    [[nodiscard]] QString provide(const QString& name) const;

    /// The engine's converter, which Debian has in qt6-webengine-dev-tools; nothing if it is not installed.
    static std::optional<QString> converter();

    [[nodiscard]] const std::filesystem::path& copies() const { return m_copies; }

private:
    [[nodiscard]] std::optional<std::filesystem::path> fileOf(const QString& name) const;

    std::vector<std::filesystem::path> m_sources;
    std::filesystem::path m_copies;
};

} // namespace luma
