// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace luma {

/// A character encoding of the web (Encoding standard). A plain value; any thread.
class Encoding final
{
public:
    Encoding() = default; // UTF-8

    /// The encoding that a label such as "latin1" or " UTF-8 " means; nothing for an unknown one.
    static std::optional<Encoding> fromLabel(std::string_view label);
    static Encoding windows1252() { return Encoding("windows-1252"); }

    /// The standard's name: "UTF-8", "windows-1252".
    [[nodiscard]] std::string_view name() const { return m_name; }
    /// The name for QStringDecoder and QStringEncoder.
    [[nodiscard]] const char* codecName() const;
    [[nodiscard]] bool isUtf8() const { return m_name == "UTF-8"; }
    /// Whether ASCII characters are single bytes with their own values; true for all but UTF-16.
    [[nodiscard]] bool holdsAscii() const { return !m_name.starts_with("UTF-16"); }
    /// Whether escape sequences switch between character sets.
    [[nodiscard]] bool canSwitch() const { return m_name == "ISO-2022-JP"; }

    /// `bytes` as UTF-8; what is no character becomes U+FFFD. A byte-order mark is kept as U+FEFF.
    [[nodiscard]] std::string decoded(std::string_view bytes) const;

    /// `text`, which is UTF-8, in this encoding; nothing when a character has no bytes in it.
    [[nodiscard]] std::optional<std::string> encoded(std::string_view text) const;

    /// The same with a decimal character reference ("&#8364;") for each character that has no bytes in it.
    [[nodiscard]] std::string encodedWithReferences(std::string_view text) const;

    bool operator==(const Encoding&) const = default;

private:
    explicit Encoding(std::string_view name) : m_name(name) {}

    std::string_view m_name = "UTF-8"; // of the table, which lives as long as the program
};

} // namespace luma
