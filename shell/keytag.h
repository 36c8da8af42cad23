// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// The name under which a public key is installed on a server: its comment, with every byte except letters,
/// digits and "@._-" replaced by "_" so that neither a shell nor sed finds special characters. A key whose
/// comment is missing or longer than 100 bytes gets a fixed tag. `publicKey` is the line of a .pub file:
/// type, key, comment.
std::string keyTag(std::string_view publicKey);

/// Whether the text of a .pub file is one whole RSA key: a single line whose key is base64 of the three fields
/// of RFC 4253, section 6.6, each with its length, and nothing else.
bool isWholePublicKey(std::string_view file);

} // namespace luma
