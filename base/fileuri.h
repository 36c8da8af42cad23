// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <filesystem>

namespace luma {

/// The file: URL of an absolute path (RFC 8089). Every byte not allowed in a URL's path is percent-encoded, so
/// names that are not valid UTF-8 survive.
QByteArray fileUri(const std::filesystem::path& path);

} // namespace luma
