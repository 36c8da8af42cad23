// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/labelcolor.h"

#include "base/ascii.h"

#include <array>
#include <utility>

namespace luma {

namespace {

constexpr std::array colorNames = {std::pair{std::string_view("Red"), LabelColor::Red},
                                   std::pair{std::string_view("Orange"), LabelColor::Orange},
                                   std::pair{std::string_view("Yellow"), LabelColor::Yellow},
                                   std::pair{std::string_view("Green"), LabelColor::Green},
                                   std::pair{std::string_view("Blue"), LabelColor::Blue},
                                   std::pair{std::string_view("Purple"), LabelColor::Purple},
                                   std::pair{std::string_view("Gray"), LabelColor::Gray}};

LabelColor colorNamed(std::string_view tag)
{
    for (const auto& [name, color] : colorNames) {
        if (name == tag)
            return color;
    }
    return LabelColor::None;
}

} // namespace

LabelColor labelColorFromTags(std::string_view tags)
{
    while (!tags.empty()) {
        const auto comma = tags.find(',');
        if (const LabelColor color = colorNamed(trimmed(tags.substr(0, comma))); color != LabelColor::None)
            return color;
        tags = comma == std::string_view::npos ? std::string_view() : tags.substr(comma + 1);
    }
    return LabelColor::None;
}

} // namespace luma
