// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/mountstep.h"

#include "base/console.h"
#include "browser/connectionrequest.h"
#include "browser/endpoint.h"
#include "browser/mounturl.h"
#include "mounts/volumemounter.h"

namespace luma {

namespace {

MountResult localFolder(const QString& path)
{
    MountResult result;
    result.mountPath = path.toStdString();
    std::error_code error;
    if (std::filesystem::exists(result.mountPath, error))
        result.folder = result.mountPath;
    return result;
}

} // namespace

MountResult mountStep(const QVariantMap& request, VolumeMounter& mounter,
                      const std::function<bool()>& isWanted)
{
    const auto text = [&request](QLatin1StringView key) { return request.value(key).toString(); };
    const QString protocol = text(connectionrequest::protocolString);
    if (protocol == endpoint::fileProtocol)
        return localFolder(text(connectionrequest::pathValue));
    const QString shareURL =
        mountURL(protocol, text(connectionrequest::serverString), text(connectionrequest::volumeString),
                 text(connectionrequest::pathValue));
    auto folder =
        mounter.mount(shareURL, text(connectionrequest::user), text(connectionrequest::password), isWanted);
    if (!folder && isWanted())
        folder = mounter.existingMount(shareURL);
    if (!folder && isWanted()) {
        printLine("Error: sharePath: " + shareURL.toStdString() + ") Not Valid");
    }
    return {folder, folder.value_or(std::filesystem::path())};
}

} // namespace luma
