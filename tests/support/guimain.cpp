// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/registry.h"

#include <QApplication>

int main(int argc, char** argv)
{
    luma::test::useOwnHome();
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    return luma::test::run(argc, argv);
}
