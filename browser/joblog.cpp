// SPDX-License-Identifier: GPL-3.0-or-later
#include "browser/joblog.h"

#include "browser/displaytext.h"

#include <algorithm>

namespace luma {

namespace {

bool isOneLine(std::string_view line)
{
    return std::none_of(line.begin(), line.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7f;
    });
}

} // namespace

void JobLog::addText(std::string_view text)
{
    bool isFull = false;
    {
        const std::scoped_lock lock(m_mutex);
        m_waiting += text;
        m_lines += static_cast<int>(std::count(text.begin(), text.end(), '\n'));
        isFull = m_waiting.size() > mostWaiting;
    }
    passOn(isFull);
}

void JobLog::addLine(std::string_view line, std::filesystem::path file)
{
    bool isFull = false;
    {
        const std::scoped_lock lock(m_mutex);
        if (!file.empty())
            m_files.emplace_back(m_lines, std::move(file));
        if (isOneLine(line))
            m_waiting += line;
        else
            m_waiting += displayText(line).toStdString();
        m_waiting += '\n';
        ++m_lines;
        isFull = m_waiting.size() > mostWaiting;
    }
    passOn(isFull);
}

void JobLog::passOn(bool isFull)
{
    if (!isFull)
        return;
    m_whenFull(*this);
    // Not taken: the window is gone.
    const std::scoped_lock lock(m_mutex);
    if (m_waiting.size() > mostWaiting)
        m_waiting.clear();
}

QString JobLog::take()
{
    std::string text;
    {
        const std::scoped_lock lock(m_mutex);
        text.swap(m_waiting);
    }
    return QString::fromStdString(text);
}

std::filesystem::path JobLog::fileOfLine(int number) const
{
    const std::scoped_lock lock(m_mutex);
    const auto after = std::upper_bound(m_files.begin(), m_files.end(), number,
                                        [](int line, const auto& file) { return line < file.first; });
    return number < 0 || number >= m_lines || after == m_files.begin() ? std::filesystem::path()
                                                                       : std::prev(after)->second;
}

} // namespace luma
