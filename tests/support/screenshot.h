// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/controlnames.h"

#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QWidget>

#include <cstdio>

namespace luma::test {

/// Saves what the widget shows as NAME.png in the folder named by LUMA_SCREENSHOTS, which is created if
/// missing, and prints the file's path. Does nothing while the variable is unset. False if saving failed.
/// Main thread.
inline bool screenshot(QWidget& widget, QAnyStringView name)
{
    const QString folder = qEnvironmentVariable("LUMA_SCREENSHOTS");
    if (folder.isEmpty())
        return true;
    const QString file = QDir(folder).filePath(name.toString() + QStringLiteral(".png"));
    if (!QDir().mkpath(folder) || !widget.grab().save(file)) {
        (void)std::fprintf(stderr, "screenshot not saved: %s\n", qPrintable(file));
        return false;
    }
    (void)std::printf("%s\n", qPrintable(file));
    return true;
}

/// Two screenshots, NAME-light.png and NAME-dark.png. Also checks the names of the controls in the picture.
inline void saveScreenshots(QWidget& widget, const QString& name)
{
    checkControlNames(widget);
    if (!qEnvironmentVariableIsSet("LUMA_SCREENSHOTS"))
        return;
    screenshot(widget, name + QLatin1String("-light"));
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
    dark.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
    dark.setColor(QPalette::AlternateBase, QColor(0x23, 0x26, 0x29));
    dark.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    dark.setColor(QPalette::Link, QColor(0x3d, 0xae, 0xe9));
    QApplication::setPalette(dark);
    QApplication::processEvents();
    screenshot(widget, name + QLatin1String("-dark"));
    QApplication::setPalette(light);
    QApplication::processEvents();
}

} // namespace luma::test
