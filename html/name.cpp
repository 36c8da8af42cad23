// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/name.h"

#include <algorithm>
#include <functional>
#include <sstream>
#include <utility>
#include <vector>

namespace luma::html {

namespace {

// Of the HTML standard's tables of elements and attributes those that pages use; any other name works as well.
constexpr const char* common =
    "a abbr accept action address align alt area aria-current aria-hidden aria-label article aside async audio "
    "autocomplete b bgcolor blockquote body border br button caption cellpadding cellspacing center charset checked cite "
    "class code col colgroup color cols colspan content crossorigin d data datetime dd defer details dfn dir disabled div "
    "dl dt em enctype fieldset figcaption figure fill font footer for form frameborder g h1 h2 h3 h4 h5 h6 head header "
    "height hidden hr href hreflang html http-equiv i id iframe img input ins itemprop itemscope itemtype kbd label lang "
    "legend li link loading main map maxlength media meta meter method name nav noscript object ol onclick optgroup option "
    "p param path picture placeholder pre property rel rev role rows rowspan rules s samp scope script section select "
    "selected size sizes small source span src srcset start strong style sub summary sup svg tabindex table target tbody "
    "td template text textarea tfoot th thead time title tr transform tt type u ul usemap valign value var version video "
    "viewBox width xlink:href xml:lang xmlns";

const std::vector<std::string>& sharedNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> list = {""};
        std::istringstream words(common);
        for (std::string word; words >> word;)
            list.push_back(word);
        std::sort(list.begin(), list.end());
        return list;
    }();
    return names;
}

} // namespace

Name::Name(std::string_view text)
{
    const auto& names = sharedNames();
    const auto found = std::lower_bound(names.begin(), names.end(), text);
    m_text = found != names.end() && *found == text ? &*found : new std::string(text);
}

Name::Name(Name&& other) noexcept : m_text(std::exchange(other.m_text, &sharedNames().front())) {}

Name& Name::operator=(Name&& other) noexcept
{
    std::swap(m_text, other.m_text);
    return *this;
}

bool Name::isShared(const std::string* text)
{
    const auto& names = sharedNames();
    return !std::less<>()(text, names.data()) && std::less<>()(text, names.data() + names.size());
}

} // namespace luma::html
