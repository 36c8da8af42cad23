// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/gpointer.h"

#include <gio/gio.h>
// GLib's headers come first, because they use Qt's word `signals` for a member.
#include "base/fileuri.h"
#include "desktop/otherprograms.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QUrl>

#include <algorithm>

namespace luma::otherprograms {

namespace {

const QString ownEntries = QStringLiteral("org.luma.");

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(luma::OtherPrograms)
};

std::vector<GPointer<GAppInfo>> entriesFor(const QString& mimeType)
{
    const QByteArray type = mimeType.toUtf8();
    std::vector<GPointer<GAppInfo>> entries;
    if (GAppInfo* const usual = g_app_info_get_default_for_type(type.constData(), FALSE))
        entries.emplace_back(usual);
    GList* const all = g_app_info_get_all_for_type(type.constData());
    for (const GList* each = all; each; each = each->next)
        entries.emplace_back(static_cast<GAppInfo*>(each->data));
    g_list_free(all);
    return entries;
}

QString idOf(GAppInfo* entry)
{
    return QString::fromUtf8(g_app_info_get_id(entry));
}

QIcon iconOf(GAppInfo* entry)
{
    GIcon* const icon = g_app_info_get_icon(entry); // not ours
    if (!icon)
        return {};
    const GPointer<char> name(g_icon_to_string(icon));
    return QIcon::fromTheme(QString::fromUtf8(name.get()));
}

Result<void> start(GAppInfo* entry, const std::vector<std::filesystem::path>& files)
{
    std::vector<QByteArray> addresses;
    for (const std::filesystem::path& file : files)
        addresses.push_back(fileUri(file));
    GList* list = nullptr;
    for (QByteArray& address : addresses)
        list = g_list_append(list, address.data());
    GError* raw = nullptr;
    g_app_info_launch_uris(entry, list, nullptr, &raw);
    g_list_free(list);
    const GPointer<GError> error(raw);
    return error ? Result<void>(Error{error->message}) : Result<void>();
}

} // namespace

QList<Application> applicationsFor(const QString& mimeType)
{
    QList<Application> applications;
    for (const GPointer<GAppInfo>& entry : entriesFor(mimeType)) {
        const QString id = idOf(entry.get());
        const bool isListed = std::any_of(applications.begin(), applications.end(),
                                          [&id](const Application& other) { return other.id == id; });
        if (!id.isEmpty() && !isListed && !id.startsWith(ownEntries))
            applications.append(
                {id, QString::fromUtf8(g_app_info_get_display_name(entry.get())), iconOf(entry.get())});
    }
    return applications;
}

Result<void> openWith(const QString& id, const QString& mimeType,
                      const std::vector<std::filesystem::path>& files)
{
    for (const GPointer<GAppInfo>& entry : entriesFor(mimeType)) {
        if (idOf(entry.get()) == id)
            return start(entry.get(), files);
    }
    return Error{Texts::tr("The program is no longer installed").toStdString()};
}

Result<void> openInBrowser(const std::filesystem::path& file)
{
    const GPointer<GAppInfo> browser(g_app_info_get_default_for_uri_scheme("http"));
    if (!browser)
        return Error{Texts::tr("No web browser is installed").toStdString()};
    return start(browser.get(), {file});
}

void showInFileManager(const std::vector<std::filesystem::path>& items)
{
    if (items.empty())
        return;
    const QString manager = QStringLiteral("org.freedesktop.FileManager1");
    QDBusMessage call = QDBusMessage::createMethodCall(
        manager, QStringLiteral("/org/freedesktop/FileManager1"), manager, QStringLiteral("ShowItems"));
    QStringList addresses;
    for (const std::filesystem::path& item : items)
        addresses.append(QString::fromLatin1(fileUri(item)));
    call << addresses << QString();
    auto* const answer = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call),
                                                     QCoreApplication::instance());
    const QUrl folder = QUrl::fromEncoded(fileUri(items.front().parent_path()));
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, folder] {
        if (answer->isError())
            QDesktopServices::openUrl(folder);
        answer->deleteLater();
    });
}

} // namespace luma::otherprograms
