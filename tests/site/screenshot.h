// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QApplication>
#include <QDir>
#include <QPalette>
#include <QWidget>

namespace luma::test {

/// Saves a picture of `widget` for a reader, in light and dark, into the folder that LUMA_SCREENSHOTS names;
/// without it nothing happens.
inline void saveScreenshots(QWidget& widget, const QString& name)
{
    const QString folder = qEnvironmentVariable("LUMA_SCREENSHOTS");
    if (folder.isEmpty())
        return;
    QDir().mkpath(folder);
    widget.grab().save(folder + QLatin1Char('/') + name + QLatin1String("-light.png"));
    const QPalette light = QApplication::palette();
    QPalette dark(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
    dark.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
    dark.setColor(QPalette::AlternateBase, QColor(0x23, 0x26, 0x29));
    dark.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
    QApplication::setPalette(dark);
    QApplication::processEvents();
    widget.grab().save(folder + QLatin1Char('/') + name + QLatin1String("-dark.png"));
    QApplication::setPalette(light);
    QApplication::processEvents();
}

} // namespace luma::test
