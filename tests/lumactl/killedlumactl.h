// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/site.h"

#include <QByteArray>
#include <QStringList>

namespace luma::test {

/// How a run of lumactl ended.
struct LumactlEnd
{
    bool isKilled = false;
    int code = -1;
    QByteArray errors;
};

/// Whether lumactl can be killed at a call: it must be built, and without a sanitizer, whose library must be loaded first.
bool canKillLumactl();

/// Runs lumactl in the site's folder. With `killAt` it is killed at its file-changing call of that number, from 1.
LumactlEnd runLumactl(const Site& site, const QStringList& arguments, int killAt = 0);

} // namespace luma::test
