// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace luma {

/// The name under which a public key is installed on a server: its comment, each byte but letters, digits and
/// "@._-" made "_", so that neither a shell nor sed sees anything in it but a name. A key with no comment, or
/// one too long for a file name, gets a fixed tag. `publicKey` is the line of a .pub file: type, key,
/// comment.
std::string keyTag(std::string_view publicKey);

} // namespace luma
