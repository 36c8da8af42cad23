#include "browser/displaytext.h"

#include <algorithm>

namespace luma {

namespace {

constexpr char16_t picturesOfControls = 0x2400;
constexpr char16_t pictureOfDelete = 0x2421;
constexpr char16_t pictureOfNewline = 0x2424;

char16_t visible(char16_t unit)
{
    if (unit < 0x20)
        return static_cast<char16_t>(picturesOfControls + unit);
    if (unit == 0x7f)
        return pictureOfDelete;
    if (unit == 0x85 || unit == 0x2028 || unit == 0x2029)
        return pictureOfNewline;
    return unit;
}

bool isAscii(std::string_view name)
{
    return std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

QString decoded(std::string_view name)
{
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

} // namespace

QString displayText(std::string_view name)
{
    QString text = decoded(name);
    for (QChar& unit : text)
        unit = QChar(visible(unit.unicode()));
    return text;
}

std::string collationKey(std::string_view name)
{
    if (!isAscii(name))
        return decoded(name).toCaseFolded().toStdString();
    std::string key(name);
    for (char& c : key) {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + ('a' - 'A'));
    }
    return key;
}

} // namespace luma
