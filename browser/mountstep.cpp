// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/mountstep.h"

#include "base/console.h"
#include "base/filecalls.h"
#include "browser/endpoint.h"
#include "mounts/volumemounter.h"

#include <QCoreApplication>

namespace luma {

namespace {

QString encoded(const QString& text)
{
    if (!text.isValidUtf16())
        return {};
    // Letters, digits and "-._~" are never encoded; these are the others that a path may hold.
    static const QByteArray allowed = "!$&'()*+,;=:@/";
    return QString::fromLatin1(text.toUtf8().toPercentEncoding(allowed));
}

// Where an address has no port: the usual one.
QString portOf(const ConnectionRequest& request)
{
    constexpr int usual = 22;
    bool isNumber = false;
    const ushort port = request.sshPort.toUShort(&isNumber);
    const bool counts = request.protocol == endpoint::sftpProtocol && isNumber && port != 0 &&
                        port != usual && !request.server.section(u']', -1).contains(u':');
    return counts ? QLatin1Char(':') + QString::number(port) : QString();
}

MountResult localFolder(const QString& path)
{
    MountResult result;
    result.mountPath = path.toStdString();
    std::error_code error;
    if (std::filesystem::exists(result.mountPath, error))
        result.folder = result.mountPath;
    else
        result.reason = QCoreApplication::translate("luma::MountStep", "%1: no such folder").arg(path);
    return result;
}

MountResult folderOf(const ConnectionRequest& request, VolumeMounter& mounter,
                     const std::function<bool()>& isWanted)
{
    if (request.isLocal())
        return localFolder(request.path);
    const QString shareURL = mountURL(request);
    const auto mounted = mounter.mount(shareURL, request.user, request.password, isWanted);
    if (mounted)
        return {*mounted, *mounted, {}};
    auto folder = isWanted() ? mounter.existingMount(shareURL) : std::nullopt;
    if (!folder && isWanted())
        printLine("Error: sharePath: " + shareURL.toStdString() + ") Not Valid");
    return {folder, folder.value_or(std::filesystem::path()), QString::fromStdString(mounted.error().text)};
}

} // namespace

bool ConnectionRequest::isLocal() const
{
    return protocol == endpoint::fileProtocol;
}

QString mountURL(const ConnectionRequest& request)
{
    QString url = request.protocol + encoded(request.server) + portOf(request) + QLatin1Char('/');
    if (request.protocol != QLatin1String("FTP"))
        url += encoded(request.volume);
    if (request.protocol != QLatin1String("SMB"))
        url += encoded(request.path);
    return url;
}

MountResult mountStep(const ConnectionRequest& request, VolumeMounter& mounter,
                      const std::function<bool()>& isWanted)
{
    MountResult result = folderOf(request, mounter, isWanted);
    if (result.folder) {
        result.root = std::make_shared<FileSystemNode>(*result.folder);
        result.isOnServer = isOnServer(*result.folder);
    }
    return result;
}

QString connectionProblem(const ConnectionRequest& request, VolumeMounter& mounter,
                          const std::function<bool()>& isWanted)
{
    const MountResult result = mountStep(request, mounter, isWanted);
    if (!result.folder)
        return result.reason;
    if (!request.isLocal())
        mounter.unmount(*result.folder);
    return {};
}

} // namespace luma
