// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <filesystem>

namespace luma {

/// The file: URL of an absolute path, every byte that may not stand in a URL's path percent-encoded (RFC
/// 8089). A name of any bytes survives, valid UTF-8 or not.
QByteArray fileUri(const std::filesystem::path& path);

} // namespace luma
