// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"

#include <QIcon>
#include <QList>
#include <QString>

#include <filesystem>
#include <vector>

/// Hands files to the desktop's other programs. Main thread only; returns before they have started.
namespace luma::otherprograms {

/// An installed program that opens files, known by the name of its desktop entry.
struct Application
{
    QString id;
    QString name;
    QIcon icon;
};

/// The programs for files of this type, for example "text/html": the default one first, then as the desktop
/// recommends them. Without LUMA itself.
QList<Application> applicationsFor(const QString& mimeType);

/// Opens the files with the program that applicationsFor() has given for `mimeType`.
Result<void> openWith(const QString& id, const QString& mimeType,
                      const std::vector<std::filesystem::path>& files);

/// Opens a file with the program for web addresses.
Result<void> openInBrowser(const std::filesystem::path& file);

/// Shows the items selected in the desktop's file manager, or, if none offers that (freedesktop.org, File Manager
/// D-Bus Interface), opens the folder of the first one.
void showInFileManager(const std::vector<std::filesystem::path>& items);

} // namespace luma::otherprograms
