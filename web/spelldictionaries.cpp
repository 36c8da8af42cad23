// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/spelldictionaries.h"

#include "base/pathtext.h"
#include "base/statefolder.h"

#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <algorithm>
#include <system_error>
#include <utility>

namespace luma {

namespace fs = std::filesystem;

namespace {

QString languageOf(const QString& tag)
{
    return tag.section(u'_', 0, 0).toLower();
}

} // namespace

SpellDictionaries::SpellDictionaries(std::vector<fs::path> sources, fs::path copies)
    : m_sources(std::move(sources)), m_copies(std::move(copies))
{}

SpellDictionaries SpellDictionaries::ofTheDesktop()
{
    std::vector<fs::path> sources;
    const QStringList data = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (const QString& folder : data) {
        sources.push_back(pathOf(folder) / "hunspell");
        sources.push_back(pathOf(folder) / "myspell" / "dicts");
    }
    return {sources, cacheFolder() / "dictionaries"};
}

std::optional<QString> SpellDictionaries::converter()
{
    const QString name = QStringLiteral("qwebengine_convert_dict");
    const QString found =
        QStandardPaths::findExecutable(name, {QLibraryInfo::path(QLibraryInfo::LibraryExecutablesPath),
                                              QLibraryInfo::path(QLibraryInfo::BinariesPath)});
    return found.isEmpty() ? std::nullopt : std::optional(found);
}

std::optional<fs::path> SpellDictionaries::fileOf(const QString& name) const
{
    for (const fs::path& folder : m_sources) {
        const fs::path file = folder / (name.toStdString() + ".dic");
        std::error_code error;
        if (fs::is_regular_file(file, error) &&
            fs::is_regular_file(fs::path(file).replace_extension(".aff"), error))
            return file;
    }
    return {};
}

QString SpellDictionaries::nameFor(const QString& language) const
{
    // It comes from the page and becomes the name of a file.
    static const QRegularExpression tag(QStringLiteral("^[A-Za-z0-9]+([-_][A-Za-z0-9]+)*$"));
    if (!tag.match(language).hasMatch())
        return {};
    const QString wanted = QString(language).replace(u'-', u'_');
    const QString here = QLocale().name();
    const QString base = languageOf(wanted);
    for (const QString& name :
         {wanted, here, base, base + u'_' + base.toUpper(), base + QStringLiteral("_US")}) {
        if (languageOf(name) == base && fileOf(name))
            return name;
    }
    QStringList names;
    for (const fs::path& folder : m_sources)
        names += QDir(textOf(folder)).entryList({base + QStringLiteral("_*.dic")}, QDir::Files, QDir::Name);
    for (const QString& each : names) {
        if (fileOf(each.chopped(4)) && !each.startsWith(QStringLiteral("hyph_")))
            return each.chopped(4);
    }
    return {};
}

QString SpellDictionaries::provide(const QString& name) const
{
    const auto source = fileOf(name);
    if (!source)
        return {};
    const QString own = QString(name).replace(u'_', u'-');
    const QString copy = textOf(m_copies / (own.toStdString() + ".bdic"));
    if (QFileInfo(copy).lastModified() > QFileInfo(textOf(*source)).lastModified())
        return own;
    const auto program = converter();
    if (!program || !makePrivateFolder(m_copies))
        return {};
    // Beside it first, as another window may read the old one.
    const QString fresh = copy + QStringLiteral(".new");
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(*program, {textOf(*source), fresh});
    std::error_code error;
    if (process.waitForFinished(-1) && process.exitCode() == 0)
        fs::rename(pathOf(fresh), pathOf(copy), error);
    return !error && QFileInfo::exists(copy) ? own : QString();
}

} // namespace luma
