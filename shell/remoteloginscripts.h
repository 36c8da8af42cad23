// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

namespace luma::remotelogin {

/// The texts of the expect scripts in shell/remote-login. The comment at the top of each file says what
/// arguments it takes and what it answers.
extern const std::string_view checkConnection;
extern const std::string_view makeKey;
extern const std::string_view installKey;
extern const std::string_view checkSudoHere;
extern const std::string_view checkSudoThere;

} // namespace luma::remotelogin
