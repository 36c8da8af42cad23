// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QtEndian>

/// What goes through the pipes between LUMA and the process of a preview. LUMA sends messages: eight bytes with the length, the
/// highest first, and as many bytes of contents. The process answers with single bytes and nothing else, whatever a page has
/// made of it.
namespace luma::previewpipe {

/// What the process says.
enum class Word : char {
    PageWanted = 'p', ///< the page as it is now
    Shown = 's',      ///< the window is in front
    Quit = 'q',       ///< LUMA is to quit
};

constexpr qsizetype lengthSize = 8; // bytes
constexpr quint64 longestContents = quint64(1) << 30;

/// A message with a page (PreviewSource::toBytes). Without contents it brings the window to the front.
inline QByteArray message(const QByteArray& contents)
{
    QByteArray bytes(lengthSize, '\0');
    qToBigEndian(static_cast<quint64>(contents.size()), bytes.data());
    return bytes + contents;
}

} // namespace luma::previewpipe
