// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/pagefile.h"

#include "base/files.h"
#include "base/usertext.h"
#include "html/pageencoding.h"
#include "html/parse.h"
#include "links/linkplan.h"

#include <fstream>
#include <system_error>

namespace luma {

namespace fs = std::filesystem;

namespace {

// Twice what a page may have: the parser says the exact limit.
const std::uintmax_t largestFile = 2 * std::uintmax_t{html::ParseLimits().bytes};

} // namespace

PageFile::Stamp PageFile::stamp() const
{
    std::error_code error;
    Stamp found;
    found.time = fs::last_write_time(m_path, error);
    found.size = fs::file_size(m_path, error);
    return found;
}

void PageFile::remember(std::string_view bytes, const Stamp& stamp)
{
    m_contents = hashOfFile(bytes);
    m_stamp = stamp;
}

Result<std::string> PageFile::read()
{
    std::error_code error;
    // Taken before the bytes, so that a change in between is noticed.
    const Stamp before = stamp();
    if (fs::is_regular_file(m_path, error) && before.size > largestFile)
        return Error{
            userText(QT_TRANSLATE_NOOP("luma::Engines", "%1 is too large for a page"), {m_path.native()})};
    auto bytes = readFile(m_path);
    if (!bytes)
        return bytes.error();
    // In UTF-16 every second byte of English text is 0.
    const bool mayHoldZeros = !encodingOf(*bytes, MarkupLanguage::Html).encoding.holdsAscii();
    if (!mayHoldZeros && bytes->find('\0') != std::string::npos)
        return Error{userText(QT_TRANSLATE_NOOP("luma::Engines", "%1 is no page: it holds binary data"),
                              {m_path.native()})};
    remember(*bytes, before);
    return bytes;
}

void PageFile::reach() const
{
    std::error_code error;
    // Reading asks the server where what the kernel keeps of a folder does not.
    if (fs::is_regular_file(m_path, error))
        std::ifstream(m_path).get();
}

Result<void> PageFile::write(std::string_view bytes)
{
    if (auto written = writeFile(m_path, bytes); !written)
        return written;
    remember(bytes, stamp());
    return {};
}

bool PageFile::adopt(const std::string& hash)
{
    const Stamp before = stamp();
    const auto bytes = readFile(m_path);
    if (!bytes || hashOfFile(*bytes) != hash)
        return false;
    remember(*bytes, before);
    return true;
}

bool PageFile::changedOnDisk() const
{
    std::error_code error;
    if (!fs::exists(m_path, error) || stamp() == m_stamp)
        return false;
    const auto bytes = readFile(m_path);
    return !bytes || hashOfFile(*bytes) != m_contents;
}

} // namespace luma
