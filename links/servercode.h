// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// `source` with its server code (<?php ... ?>, <% ... %>) replaced by bytes 0x1A, so that what is left is read
/// as a page. Line ends stay, and with them every place in the page. Nothing when there is no server code.
/// What an XML declaration or another instruction of XML says is no server code. Any thread.
std::optional<std::string> withMaskedServerCode(std::string_view source);

} // namespace luma
