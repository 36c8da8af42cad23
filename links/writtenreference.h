// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "links/pagereader.h"

#include <string>
#include <string_view>

namespace luma {

/// What stands in the source instead of `raw`, the bytes of `reference`, so that a browser takes `value` from it. Characters
/// at both ends that stay keep their spelling; the rest is escaped as the place needs it. Any thread.
std::string writtenReference(std::string_view raw, const LinkReference& reference, std::string_view value);

} // namespace luma
