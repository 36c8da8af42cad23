// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace luma {

/// The elements of a page that its tree does not hold: what newer pages have within a `select` besides its
/// options, such as `hr` and `button`, and the page's parser leaves out. Gives their names in lower case,
/// each once, in the order of the page.
std::vector<std::string> lostElements(std::string_view page);

} // namespace luma
