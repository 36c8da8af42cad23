// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// Whether a host belongs to one of the schemes that the URL standard calls special (http, https, file, ...),
/// whose hosts are domains and addresses, or to another, whose hosts are any text.
enum class HostKind { Special, Opaque };

/// The host that `text` means, as an address writes it: a domain in lower case and ASCII, an IPv4 address with
/// its four numbers, an IPv6 address in brackets, an opaque host percent-encoded (URL standard, "Host parsing").
/// Nothing for what is no host. `text` is UTF-8. Any thread.
std::optional<std::string> parseHost(std::string_view text, HostKind kind);

} // namespace luma
