// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/keytag.h"

#include <QByteArray>

#include <optional>

namespace luma {

namespace {

constexpr std::string_view fixedTag = "luma@desktop";
constexpr std::size_t longestTag = 100;
constexpr std::string_view safeCharacters = "abcdefghijklmnopqrstuvwxyz"
                                            "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                            "0123456789@._-";

std::string_view commentOf(std::string_view publicKey)
{
    publicKey = publicKey.substr(0, publicKey.find_first_of("\r\n"));
    for (int field = 0; field < 2; ++field) {
        const std::size_t blank = publicKey.find(' ');
        if (blank == std::string_view::npos)
            return {};
        publicKey.remove_prefix(blank + 1);
    }
    return publicKey;
}

constexpr std::string_view keyType = "ssh-rsa";
constexpr int fieldsOfRsaKey = 3; // the type, the exponent, the modulus

// Takes one field with its length, four bytes with the highest first, off the blob; nothing if it is cut off.
std::optional<std::string_view> takeField(std::string_view& blob)
{
    if (blob.size() < 4)
        return {};
    std::size_t length = 0;
    for (const char byte : blob.substr(0, 4))
        length = length << 8U | static_cast<unsigned char>(byte);
    blob.remove_prefix(4);
    if (length == 0 || length > blob.size())
        return {};
    const std::string_view field = blob.substr(0, length);
    blob.remove_prefix(length);
    return field;
}

bool isRsaBlob(std::string_view blob)
{
    if (takeField(blob) != keyType)
        return false;
    for (int field = 1; field < fieldsOfRsaKey; ++field) {
        if (!takeField(blob))
            return false;
    }
    return blob.empty();
}

} // namespace

bool isWholePublicKey(std::string_view file)
{
    if (!file.empty() && file.back() == '\n')
        file.remove_suffix(1);
    if (file.find_first_of(std::string_view("\r\n\0", 3)) != std::string_view::npos ||
        !file.starts_with(keyType))
        return false;
    file.remove_prefix(keyType.size());
    if (!file.starts_with(' '))
        return false;
    file.remove_prefix(1);
    const std::string_view key = file.substr(0, file.find(' '));
    const auto decoded = QByteArray::fromBase64Encoding(
        QByteArray(key.data(), static_cast<qsizetype>(key.size())), QByteArray::AbortOnBase64DecodingErrors);
    return decoded && isRsaBlob((*decoded).toStdString());
}

std::string keyTag(std::string_view publicKey)
{
    std::string tag(commentOf(publicKey));
    if (tag.empty() || tag.size() > longestTag)
        return std::string(fixedTag);
    for (char& character : tag) {
        if (safeCharacters.find(character) == std::string_view::npos)
            character = '_';
    }
    return tag;
}

} // namespace luma
