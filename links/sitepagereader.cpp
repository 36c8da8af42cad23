// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/sitepagereader.h"

#include "base/pathbelow.h"
#include "html/servercode.h"
#include "links/webrules.h"

namespace luma {

Result<void> SitePageReader::read(const std::string& path)
{
    const auto bytes = readBytes(path);
    if (!bytes)
        return bytes.error();
    parse(*bytes, namePart(path));
    return {};
}

void SitePageReader::parse(std::string_view bytes, std::string_view name, FilePlaces places)
{
    const WebFileKind kind = webFileKind(name);
    m_file.read(bytes, markupLanguage(name), places);
    m_text = m_file.text();
    m_unmasked = m_text;
    m_holdsServerCode = false;
    if (kind != WebFileKind::StyleSheet) {
        if (auto masked = withMaskedServerCode(m_text)) {
            m_masked = *std::move(masked);
            m_text = m_masked;
            m_holdsServerCode = true;
        }
    }
    m_page.read(m_text, kind == WebFileKind::XmlPage      ? PageFormat::Xml
                        : kind == WebFileKind::StyleSheet ? PageFormat::StyleSheet
                                                          : PageFormat::Html);
}

} // namespace luma
