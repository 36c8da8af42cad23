// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>

#include <filesystem>

namespace luma {

/// A picture of a file's content no larger than `size`: images are decoded (scaled while decoding), of other
/// files the desktop's thumbnail cache is asked (freedesktop.org, Thumbnail Managing Standard). A null image
/// when there is neither, or when the image is too large to be worth it. Any thread; reads the file.
QImage thumbnail(const std::filesystem::path& path, const QSize& size);

} // namespace luma
