// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace luma::test {

/// The tokens of a style sheet after CSS Syntax Level 3, section 4, each as its kind and its text, comments
/// included, white space left out.
std::vector<std::string> cssTokens(std::string_view css);

} // namespace luma::test
