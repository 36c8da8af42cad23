// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/sitefolder.h"

#include "base/filecalls.h"
#include "base/pathbelow.h"

#include <QMimeDatabase>
#include <QUrl>

#include <fcntl.h>
#include <sys/stat.h>

#include <system_error>

namespace fs = std::filesystem;

namespace luma {

namespace {

constexpr std::string_view onDisk = "/:";

fs::path absoluteFolder(const fs::path& path)
{
    const fs::path normal = fs::absolute(path).lexically_normal();
    return normal.has_filename() ? normal : normal.parent_path();
}

Error refusal(const fs::path& file, const std::string& reason)
{
    return {file.string() + ": " + reason};
}

std::optional<std::string> decodedName(std::string_view encoded)
{
    const QByteArray name = QByteArray::fromPercentEncoding(
        QByteArray::fromRawData(encoded.data(), static_cast<qsizetype>(encoded.size())));
    if (name.isEmpty() || name == "." || name == ".." || name.contains('/') || name.contains('\0'))
        return {};
    return name.toStdString();
}

} // namespace

SiteFolder::SiteFolder(const fs::path& page, const fs::path& site)
    : m_page(fs::absolute(page).lexically_normal()), m_folder(m_page.parent_path())
{
    if (site.empty())
        return;
    std::error_code ignored;
    const fs::path folder = absoluteFolder(site);
    if (isAtOrBelow(m_page.native(), folder.native()) ||
        isAtOrBelow(fs::weakly_canonical(m_page, ignored).native(),
                    fs::weakly_canonical(folder, ignored).native()))
        m_folder = folder;
}

std::string SiteFolder::addressPath(const fs::path& file)
{
    const std::string& bytes = file.native();
    const QByteArray encoded =
        QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())).toPercentEncoding("/");
    return std::string(onDisk) + encoded.toStdString();
}

std::optional<fs::path> SiteFolder::fileAt(std::string_view addressPath) const
{
    fs::path file = m_folder;
    if (addressPath.starts_with(std::string(onDisk) + '/')) {
        addressPath.remove_prefix(onDisk.size());
        file = "/";
    }
    while (!addressPath.empty() && addressPath != "/") {
        addressPath.remove_prefix(1);
        const std::string_view name = addressPath.substr(0, addressPath.find('/'));
        const auto decoded = decodedName(name);
        if (!decoded)
            return {};
        file /= *decoded;
        addressPath.remove_prefix(name.size());
    }
    return file;
}

std::optional<fs::path> SiteFolder::fileOfLink(std::string_view link) const
{
    const QUrl address(QString::fromUtf8(link.data(), static_cast<qsizetype>(link.size())).trimmed());
    if (!address.isValid() || !address.scheme().isEmpty() || !address.authority().isEmpty() ||
        address.path().isEmpty())
        return {};
    const QUrl page = QUrl::fromEncoded("page://here" + QByteArray::fromStdString(addressPath(m_page)));
    return fileAt(page.resolved(address).path(QUrl::FullyEncoded).toStdString());
}

std::optional<fs::path> SiteFolder::realPath(const fs::path& file) const
{
    std::error_code error;
    const fs::path folder = fs::canonical(m_folder, error);
    if (error)
        return {};
    fs::path real = fs::canonical(file, error);
    if (error || !isAtOrBelow(real.native(), folder.native()))
        return {};
    return real;
}

Result<FileDescriptor> SiteFolder::open(const fs::path& file) const
{
    const auto real = realPath(file);
    if (!real)
        return refusal(file, "no such file in the site");
    // Not blocking, as a FIFO would block for ever.
    auto opened = openFile(real->native(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW);
    if (!opened)
        return opened.error();
    struct stat status = {};
    if (::fstat(opened->get(), &status) != 0 || !S_ISREG(status.st_mode))
        return refusal(file, "not a regular file");
    // What was opened is what was meant: a folder of the path may have become a link in between.
    std::error_code error;
    const fs::path inFact = fs::read_symlink("/proc/self/fd/" + std::to_string(opened->get()), error);
    if (error || inFact != *real)
        return refusal(file, "changed while it was opened");
    return opened;
}

std::string contentTypeOf(const fs::path& file)
{
    const QString name = QString::fromUtf8(file.filename().string());
    return QMimeDatabase().mimeTypeForFile(name, QMimeDatabase::MatchExtension).name().toStdString();
}

} // namespace luma
