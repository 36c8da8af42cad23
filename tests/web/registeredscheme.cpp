// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/pagescheme.h"

namespace {

// As main() does, before the application object is made.
const struct RegisteredScheme
{
    RegisteredScheme() { luma::PageScheme::registerScheme(); }
} registeredScheme;

} // namespace
