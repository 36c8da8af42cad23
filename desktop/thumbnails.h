// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

#include <filesystem>

namespace luma {

/// A picture of a file's content, at most `size`. Images are decoded (scaled while decoding); for other files
/// the desktop's thumbnail cache is read (freedesktop.org, Thumbnail Managing Standard). A null image when
/// there is neither, or when the image is too large to decode. Any thread; reads the file.
QImage thumbnail(const std::filesystem::path& path, const QSize& size);

} // namespace luma
