// SPDX-License-Identifier: GPL-3.0-or-later
#include "desktop/icons.h"

#include "base/files.h"
#include "base/resources.h"
#include "desktop/symboliconengine.h"
#include "desktop/themeiconengine.h"

#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHash>
#include <QMimeDatabase>

namespace luma::icons {

namespace {

// Our icon for a content type for which the theme has none.
QString fallbackName(const QMimeType& type)
{
    static const std::pair<QLatin1StringView, QLatin1StringView> names[] = {
        {QLatin1StringView("text/html"), QLatin1StringView("page")},
        {QLatin1StringView("application/xhtml+xml"), QLatin1StringView("page")},
        {QLatin1StringView("text/css"), QLatin1StringView("style-sheet")},
        {QLatin1StringView("application/javascript"), QLatin1StringView("script")},
        {QLatin1StringView("text/javascript"), QLatin1StringView("script")},
        {QLatin1StringView("application/json"), QLatin1StringView("script")},
        {QLatin1StringView("application/x-php"), QLatin1StringView("script")},
        {QLatin1StringView("application/x-shellscript"), QLatin1StringView("script")},
        {QLatin1StringView("text/plain"), QLatin1StringView("text")},
    };
    if (type.name().startsWith(QLatin1String("image/")))
        return QStringLiteral("image");
    for (const auto& [typeName, icon] : names) {
        if (type.inherits(typeName))
            return icon;
    }
    return QStringLiteral("file");
}

QIcon ofType(const QMimeType& type)
{
    for (const QString& name : {type.iconName(), type.genericIconName()}) {
        if (QIcon::hasThemeIcon(name))
            return QIcon::fromTheme(name);
    }
    return symbol(fallbackName(type));
}

// The standard names of our symbols (freedesktop.org, Icon Naming Specification).
QString themeName(const QString& symbolName)
{
    static const QHash<QString, QString> names = {
        {QStringLiteral("folder"), QStringLiteral("folder")},
        {QStringLiteral("new-folder"), QStringLiteral("folder-new")},
        {QStringLiteral("reload"), QStringLiteral("view-refresh")},
        {QStringLiteral("add"), QStringLiteral("list-add")},
        {QStringLiteral("remove"), QStringLiteral("list-remove")},
        {QStringLiteral("settings"), QStringLiteral("configure")},
        {QStringLiteral("stop"), QStringLiteral("process-stop")},
        {QStringLiteral("delete"), QStringLiteral("edit-delete")},
        {QStringLiteral("duplicate"), QStringLiteral("edit-copy")},
        {QStringLiteral("rename"), QStringLiteral("edit-rename")},
        {QStringLiteral("cut"), QStringLiteral("edit-cut")},
        {QStringLiteral("paste"), QStringLiteral("edit-paste")},
        {QStringLiteral("properties"), QStringLiteral("document-properties")},
        {QStringLiteral("browser"), QStringLiteral("internet-web-browser")},
        {QStringLiteral("open"), QStringLiteral("document-open")},
        {QStringLiteral("show-password"), QStringLiteral("view-reveal")},
    };
    return names.value(symbolName);
}

// Null if the theme has none. For actions, a drawing in one ink comes first; the coloured one may be made for light desktops.
QIcon ofTheme(const QString& name)
{
    const QString inOneInk = name + QLatin1String("-symbolic");
    const bool isAction = name != QLatin1String("folder") && name != QLatin1String("internet-web-browser");
    for (const QString& each : {isAction ? inOneInk : name, name}) {
        if (!each.isEmpty() && QIcon::hasThemeIcon(each))
            return QIcon(new ThemeIconEngine(QIcon::fromTheme(each)));
    }
    return {};
}

// Never destroyed, because pixmaps must not be destroyed after the application object.
QHash<QString, QIcon>& byExtension()
{
    static auto* const icons = new QHash<QString, QIcon>;
    return *icons;
}

QHash<QString, QIcon>& bySymbol()
{
    static auto* const icons = new QHash<QString, QIcon>;
    return *icons;
}

// Some that show text have another drawing for windows that read from right to left.
QIcon bundled(const QString& name)
{
    const auto read = [&name](const char* suffix) {
        return readFile(resourceFolder() / "icons" / (name.toStdString() + suffix));
    };
    auto svg = QGuiApplication::isRightToLeft() ? read("-rtl.svg") : read(".svg");
    if (!svg)
        svg = read(".svg");
    return svg ? QIcon(new SymbolIconEngine(QByteArray::fromStdString(*svg))) : QIcon();
}

} // namespace

QIcon folder()
{
    return symbol(QStringLiteral("folder"));
}

QIcon application()
{
    return QIcon::fromTheme(QStringLiteral("org.luma.LUMA"),
                            QIcon(QFile::decodeName((resourceFolder() / "icons/luma.svg").c_str())));
}

QIcon forFileName(const QString& fileName)
{
    QHash<QString, QIcon>& cache = byExtension();
    const QString extension = QFileInfo(fileName).suffix().toLower();
    const auto found = cache.constFind(extension);
    if (found != cache.constEnd())
        return *found;
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(QLatin1String("name.") + extension, QMimeDatabase::MatchExtension);
    QIcon icon = ofType(type);
    cache.insert(extension, icon);
    return icon;
}

QIcon symbol(const QString& name)
{
    QHash<QString, QIcon>& cache = bySymbol();
    const auto found = cache.constFind(name);
    if (found != cache.constEnd())
        return *found;
    QIcon icon = ofTheme(themeName(name));
    if (icon.isNull())
        icon = bundled(name);
    cache.insert(name, icon);
    return icon;
}

} // namespace luma::icons
