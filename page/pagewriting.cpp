// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagewriting.h"

#include "html/pagelanguage.h"
#include "html/pagesource.h"
#include "page/lostelements.h"

#include <utility>

namespace luma {

namespace {

// Sources are unpacked by whoever asks them first, which must not be two threads at once.
void unpackSources(const html::Node& page)
{
    const html::PageSource* last = nullptr;
    for (const html::Node* node = &page; node; node = node->following(page)) {
        const html::PageSource* const source = node->origin().source;
        if (source && source != std::exchange(last, source))
            (void)source->text();
    }
}

} // namespace

PageWriting::PageWriting(const html::Document& page, html::PageCodec codec, MarkupLanguage language,
                         PageFile file)
    : m_page(page.copy()), m_codec(std::move(codec)), m_language(language), m_file(std::move(file))
{
    unpackSources(*m_page);
}

void PageWriting::write()
{
    auto written = m_codec.write(static_cast<const html::Document&>(*m_page), m_language);
    if (!written) {
        m_result = Error{m_file.path().string() + ": " + written.error().text};
        return;
    }
    m_result = m_file.write(written->bytes);
    if (!m_result)
        return;
    m_size = written->bytes.size();
    m_isWellFormed = html::isWellFormedXml(written->bytes);
    m_lostElements = luma::lostElements(written->bytes);
    m_parsed = std::move(written->parsed);
    if (m_parsed && m_parsed->origin().source)
        m_parsed->origin().source->pack();
}

} // namespace luma
