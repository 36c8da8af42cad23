// SPDX-License-Identifier: GPL-3.0-or-later
#include "web/pagescheme.h"

namespace {

// As main() does in the process of a preview.
const struct ClosedNetwork
{
    ClosedNetwork() { luma::PageScheme::registerScheme(luma::PageScheme::Network::Closed); }
} closedNetwork;

} // namespace
