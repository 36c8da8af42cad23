// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/tour/tour.h"
#include "web/pagescheme.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    luma::PageScheme::registerScheme();
    QApplication application(argc, argv);
    QApplication::setApplicationDisplayName(QStringLiteral("LUMA"));
    if (argc != 4) {
        (void)std::fputs("usage: luma_tour SOURCE DESTINATION SCREENSHOT-FOLDER\n", stderr);
        return 2;
    }
    qputenv("LUMA_SCREENSHOTS", argv[3]);
    return luma::Tour(argv[1], argv[2]).run();
}
