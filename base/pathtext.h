// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFile>
#include <QString>

#include <filesystem>

namespace luma {

/// A path as the screen shows it.
inline QString textOf(const std::filesystem::path& path)
{
    return QFile::decodeName(path.c_str());
}

/// The path that the screen's text names.
inline std::filesystem::path pathOf(const QString& text)
{
    return QFile::encodeName(text).toStdString();
}

} // namespace luma
