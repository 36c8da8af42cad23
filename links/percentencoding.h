// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

/// Percent-encoding of addresses (URL standard, "Percent-encoded bytes"). Text is UTF-8 or any bytes; any thread.
namespace luma {

/// The parts of an address, by what must be encoded in each (the standard's percent-encode sets).
enum class AddressPart : unsigned char {
    C0Control,
    Fragment,
    Query,
    SpecialQuery,
    Path,
    UserInfo,
    Component
};

/// Appends `byte` to `text`, encoded as "%XX" where `part` needs it. A "%" stays as it is but in a Component.
void appendEncoded(std::string& text, char byte, AddressPart part);

[[nodiscard]] std::string percentEncoded(std::string_view text, AddressPart part);

/// Each "%" with two hexadecimal digits replaced by its byte, once; any other "%" stays.
[[nodiscard]] std::string percentDecoded(std::string_view text);

} // namespace luma
