// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagelinkcheck.h"

#include "base/ascii.h"
#include "html/codemarks.h"
#include "html/element.h"
#include "links/linkjudge.h"
#include "links/pagereader.h"
#include "links/percentencoding.h"

#include <algorithm>
#include <utility>

namespace luma {

namespace {

bool mayHoldLinks(const html::Element& element)
{
    if (element.is("base") || element.is("meta") || element.tagName() == "style")
        return true;
    const auto& attributes = element.attributes();
    return std::any_of(attributes.begin(), attributes.end(), [&](const html::Attribute& each) {
        return linkPlaceOf(element.tagName(), each.name.text()).has_value();
    });
}

} // namespace

PageLinkCheck::PageLinkCheck(const html::Document& page, SiteFolder place, WebRules rules)
    : m_place(std::move(place)), m_rules(std::move(rules))
{
    for (const html::Node* node = page.firstChild(); node;) {
        const html::Element* const element = node->asElement();
        const bool isTemplate = element && element->is("template");
        m_mayHaveOtherPlaces = m_mayHaveOtherPlaces || html::isServerCode(*node);
        if (element && !isTemplate) {
            m_places.emplace(element->attr("id"));
            if (element->is("a"))
                m_places.emplace(element->attr("name"));
            if (mayHoldLinks(*element))
                addLinksOf(*element);
        }
        node = isTemplate ? nodeBehind(*node) : node->following(page);
    }
}

// The reader of links/ gets the element alone, so that it reads each place of an address as reports do.
void PageLinkCheck::addLinksOf(const html::Element& element)
{
    const std::string markup =
        element.tagName() == "style" ? element.outerHtml() : element.shallowCopy()->outerHtml();
    PageReader reader;
    reader.read(markup, PageFormat::Html);
    if (m_base.empty())
        m_base = reader.base();
    for (const LinkReference& each : reader.references()) {
        if (each.place != LinkPlace::UseMap)
            m_links.push_back({&element, each.place, std::string(each.value)});
    }
}

// HTML standard, "find a potential indicated element".
bool PageLinkCheck::hasPlace(const std::string& fragment) const
{
    return m_mayHaveOtherPlaces || fragment.empty() || equalIgnoringAsciiCase(fragment, "top") ||
           m_places.contains(fragment) || m_places.contains(percentDecoded(fragment));
}

std::vector<PageFinding> PageLinkCheck::missing() const
{
    WebRules rules = m_rules;
    rules.fragmentsAreChecked = false;
    // Only what the links lead to is looked up on the disk.
    const SiteTree tree = SiteTree::unread(m_place.folder());
    BrowserSite site(tree, rules);
    LinkJudge judge(site, false);
    const std::string subpath = m_place.page().lexically_relative(m_place.folder()).native();
    const SiteAddresses::Page page = site.addresses().page(subpath, m_base);
    std::vector<PageFinding> found;
    for (const Link& link : m_links) {
        const LinkTarget target = site.addresses().resolve(link.value, page);
        const bool isHere =
            target.kind == LinkTarget::Kind::Inside && target.path == subpath && !target.isFolderForm;
        const bool isMissing =
            isHere ? m_rules.fragmentsAreChecked && !hasPlace(target.fragment)
                   : judge.judged(link.value, link.place, page, SiteTree::none).state == LinkState::Missing;
        if (isMissing)
            found.push_back({PageFault::MissingLink, link.element, link.value});
    }
    return found;
}

} // namespace luma
