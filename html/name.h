// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace luma::html {

/// The name of a tag or an attribute (UTF-8), no larger than a pointer: a page has many, and nearly all are the same few,
/// whose text is shared. Any thread.
class Name final
{
public:
    Name(std::string_view text = {});                               // NOLINT(google-explicit-constructor)
    Name(const std::string& text) : Name(std::string_view(text)) {} // NOLINT(google-explicit-constructor)
    Name(const char* text) : Name(std::string_view(text)) {}        // NOLINT(google-explicit-constructor)
    Name(const Name& other) : m_text(isShared(other.m_text) ? other.m_text : new std::string(*other.m_text))
    {}
    Name(Name&& other) noexcept;
    Name& operator=(const Name& other) { return *this = Name(other); }
    Name& operator=(Name&& other) noexcept;
    ~Name()
    {
        if (!isShared(m_text))
            delete m_text;
    }

    [[nodiscard]] const std::string& text() const { return *m_text; }
    operator const std::string&() const { return *m_text; } // NOLINT(google-explicit-constructor)
    operator std::string_view() const { return *m_text; }   // NOLINT(google-explicit-constructor)
    [[nodiscard]] std::size_t size() const { return m_text->size(); }

    friend bool operator==(const Name& a, const Name& b) { return *a.m_text == *b.m_text; }
    friend bool operator==(const Name& a, std::string_view b) { return *a.m_text == b; }

private:
    static bool isShared(const std::string* text);

    const std::string* m_text;
};

} // namespace luma::html
