// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace luma::html {
struct Attribute;
}

namespace luma {

/// What the class and ID actions make of an element's attributes, as values: the caller exchanges them (and
/// can exchange them back). Names are UTF-8, without "." and "#".

std::vector<html::Attribute> withClass(std::vector<html::Attribute> attributes, std::string_view name);
/// Takes every occurrence of the name out of the value, inside other names too. What is left is trimmed; if
/// nothing is left the attribute goes.
std::vector<html::Attribute> withoutClass(std::vector<html::Attribute> attributes, std::string_view name);
std::vector<html::Attribute> withID(std::vector<html::Attribute> attributes, std::string_view name);
std::vector<html::Attribute> withoutID(std::vector<html::Attribute> attributes);

} // namespace luma
