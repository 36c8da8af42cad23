// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/preferences.h"

#include "base/filedescriptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>

namespace luma {

namespace {

// QSettings writes a temporary file and renames it. If the target exists, the temporary file has mode 0600
// from the start and then gets the target's mode; if not, others can read it until it is complete.
const QString& guarded(const QString& file)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(file).path());
    if (!QDir(QFile::decodeName(folder)).exists()) {
        QDir().mkpath(QFileInfo(QFile::decodeName(folder)).path());
        (void)::mkdir(folder.constData(), 0700);
    }
    const FileDescriptor descriptor(
        ::open(QFile::encodeName(file).constData(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK, 0600));
    if (descriptor)
        (void)::fchmod(descriptor.get(), 0600);
    return file;
}

} // namespace

Preferences::Preferences(const QString& file, QVariantMap initialValues)
    : m_settings(guarded(file), QSettings::IniFormat), m_initialValues(std::move(initialValues))
{}

QVariant Preferences::value(const QString& key) const
{
    return m_settings.contains(key) ? m_settings.value(key) : m_initialValues.value(key);
}

QString Preferences::namesAt(QLatin1StringView key) const
{
    // The file's format turns unquoted names with commas between them into a list.
    const QVariant names = value(key);
    return names.typeId() == QMetaType::QStringList ? names.toStringList().join(QStringLiteral(", "))
                                                    : names.toString();
}

ReportChoices Preferences::reportChoices() const
{
    ReportChoices choices;
    choices.excludedFolders = excludedFolderNames();
    choices.linkRules = value(linksByLetter).toBool() ? LinkRules::Letter : LinkRules::Browser;
    if (value(asksBeforeManyPages).toBool())
        choices.askAbove = std::max(value(mostPagesUnasked).toInt(), 1);
    choices.webRules.extensionsMayBeLeftOut = value(extensionsMayBeLeftOut).toBool();
    choices.webRules.fragmentsAreChecked = value(fragmentsAreChecked).toBool();
    std::vector<std::string> names;
    for (const QString& name : indexPageNames().split(QLatin1Char(','))) {
        if (!name.trimmed().isEmpty())
            names.push_back(name.trimmed().toStdString());
    }
    if (!names.empty())
        choices.webRules.indexNames = std::move(names);
    return choices;
}

Result<void> Preferences::save()
{
    // A QSettings never forgets an error, so another one, which shares the values, writes them.
    QSettings writer(m_settings.fileName(), QSettings::IniFormat);
    writer.sync();
    if (writer.status() == QSettings::AccessError)
        return Error{QFile::encodeName(m_settings.fileName()).toStdString() + ": can't be written"};
    return {};
}

} // namespace luma
