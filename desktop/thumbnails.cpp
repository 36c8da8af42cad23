// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/thumbnails.h"

#include "base/filecalls.h"
#include "base/fileuri.h"

#include <QCryptographicHash>
#include <QFile>
#include <QImageReader>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/stat.h>

namespace luma {

namespace {

constexpr qint64 maximumPixels = 200'000'000;
constexpr off_t maximumBytes = 100'000'000;

QImage decoded(const std::filesystem::path& path, const QSize& size)
{
    // Not blocking, for a FIFO never ends; not by a QString, which can't hold every name.
    auto opened = openFile(path.native(), O_RDONLY | O_NONBLOCK);
    struct stat status = {};
    if (!opened || ::fstat(opened->get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > maximumBytes)
        return {};
    QFile file;
    if (!file.open(opened->release(), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        return {};
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize full = reader.size();
    if (full.isValid() && qint64{full.width()} * full.height() > maximumPixels)
        return {};
    if (full.width() > size.width() || full.height() > size.height())
        reader.setScaledSize(full.scaled(size, Qt::KeepAspectRatio).expandedTo({1, 1}));
    QImage image = reader.read();
    if (image.width() > size.width() || image.height() > size.height())
        image = image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return image;
}

QImage cached(const std::filesystem::path& path, const QSize& size)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    const QString name =
        QString::fromLatin1(QCryptographicHash::hash(fileUri(path), QCryptographicHash::Md5).toHex());
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    for (const char* shelf : {"large", "normal", "x-large"}) {
        const QImage image(QStringLiteral("%1/thumbnails/%2/%3.png").arg(cache, QLatin1String(shelf), name));
        // Use it only if it was made from this version of the file.
        if (!image.isNull() && image.text(QStringLiteral("Thumb::MTime")).toLongLong() == status.st_mtime)
            return image.width() > size.width() || image.height() > size.height()
                       ? image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                       : image;
    }
    return {};
}

} // namespace

QImage thumbnail(const std::filesystem::path& path, const QSize& size)
{
    QImage image = decoded(path, size);
    return image.isNull() ? cached(path, size) : image;
}

} // namespace luma
