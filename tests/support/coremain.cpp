// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/registry.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    luma::test::useOwnHome();
    const QCoreApplication application(argc, argv);
    return luma::test::run(argc, argv);
}
