// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/usertext.h"

#include <QCoreApplication>

namespace luma {

std::string userText(const char* source, std::initializer_list<std::string_view> values)
{
    if (*source == '\0')
        return {};
    const std::string text = QCoreApplication::translate("luma::Engines", source).toStdString();
    std::string filled;
    std::size_t from = 0;
    for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at + 1)) {
        const auto number =
            at + 1 < text.size() ? static_cast<std::size_t>(text[at + 1] - '1') : values.size();
        if (number >= values.size())
            continue;
        filled.append(text, from, at - from).append(values.begin()[number]);
        from = at + 2;
    }
    return filled.append(text, from);
}

} // namespace luma
