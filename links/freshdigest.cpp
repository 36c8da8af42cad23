// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/freshdigest.h"

#include "links/linesandcolumns.h"
#include "links/mentionednames.h"

namespace luma {

FreshDigest::FreshDigest(const SitePageReader& reader, std::string_view name)
{
    m_digest.base = reader.page().base();
    m_digest.places = PagePlaces::of(reader);
    m_digest.mentioned = mentionedNames(reader, name);
    LinesAndColumns lines(reader.text());
    m_links.reserve(reader.page().references().size());
    for (const LinkReference& reference : reader.page().references()) {
        lines.goTo(reference.begin);
        m_links.push_back({static_cast<AddressTexts::Number>(m_links.size()), reference.place, lines.line(),
                           lines.column()});
        m_texts += reference.value;
        m_begins.push_back(m_texts.size());
    }
}

PageDigest FreshDigest::packed(AddressTexts& texts) &&
{
    for (DigestLink& link : m_links)
        link.text = texts.add(text(link.text));
    m_digest.links = PackedLinks(m_links);
    return std::move(m_digest);
}

} // namespace luma
