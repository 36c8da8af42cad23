// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/result.h"
#include "html/document.h"
#include "html/pagecodec.h"
#include "page/pagefile.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace luma {

/// A page on its way to its file: a copy of all that writing it needs, so that the tree can be edited meanwhile. Made and
/// destroyed on the main thread, as the nodes of the copy are counted with those of the tree; write() on any thread.
class PageWriting final
{
public:
    PageWriting(const html::Document& page, html::PageCodec codec, MarkupLanguage language, PageFile file);

    /// Writes the page and checks what it wrote. On an error the file has not changed.
    void write();

    // What came out, behind write().
    [[nodiscard]] const Result<void>& result() const { return m_result; }
    /// The page as it was written and read again; null where no markup gives it.
    [[nodiscard]] html::Document* parsed() const { return m_parsed.get(); }
    [[nodiscard]] html::PageCodec& codec() { return m_codec; }
    [[nodiscard]] const PageFile& file() const { return m_file; }
    [[nodiscard]] std::size_t size() const { return m_size; }
    [[nodiscard]] bool isWellFormed() const { return m_isWellFormed; }
    [[nodiscard]] const std::vector<std::string>& lostElements() const { return m_lostElements; }

private:
    html::NodePtr m_page;
    html::PageCodec m_codec;
    MarkupLanguage m_language;
    PageFile m_file;
    Result<void> m_result;
    std::unique_ptr<html::Document> m_parsed;
    std::size_t m_size = 0;
    bool m_isWellFormed = false;
    std::vector<std::string> m_lostElements;
};

} // namespace luma
