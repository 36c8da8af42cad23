// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// An address in its parts, each as an address writes it (percent-encoded where it must be). URL standard,
/// "URL representation".
struct WebAddress
{
    std::string scheme; // lower case, without the colon
    std::string username;
    std::string password;
    std::optional<std::string> host; // empty for file:///path
    std::optional<std::uint16_t> port;
    /// Set for addresses such as mailto: and data:, whose path is `opaque` and has no segments.
    bool hasOpaquePath = false;
    std::string opaque;
    std::vector<std::string> path; // the segments between slashes, without dot segments
    std::optional<std::string> query;
    std::optional<std::string> fragment;

    [[nodiscard]] std::string pathText() const;
    /// The whole address as text.
    [[nodiscard]] std::string text() const;
};

/// `input` without the control characters and blanks at both ends that reading an address drops.
std::string_view trimmedAddress(std::string_view input);

/// The address that `input` means on a page at `base`, as a browser reads it: blanks and line ends are stripped,
/// backslashes are slashes, dot segments are resolved (URL standard, "basic URL parser"). Nothing for what is
/// none, and for what needs a base where there is none. `input` is UTF-8. Any thread.
///
/// Domains in other scripts are made ASCII by Qt, which refuses a few that the standard takes, and the other way
/// round. Queries are encoded as UTF-8, whatever the page's encoding.
std::optional<WebAddress> parseAddress(std::string_view input, const WebAddress* base = nullptr);

} // namespace luma
