// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/pagelanguage.h"

#include "base/pathtext.h"
#include "base/utf8.h"

#include <QMimeDatabase>
#include <QXmlStreamReader>

namespace luma::html {

namespace {

/// The text from its first character on that is no byte-order mark and no white space.
std::string_view trimmedStart(std::string_view text)
{
    if (text.starts_with(utf8ByteOrderMark))
        text.remove_prefix(utf8ByteOrderMark.size());
    const std::size_t start = text.find_first_not_of(" \t\r\n");
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

bool isNamedAsXml(const std::filesystem::path& file)
{
    const QMimeDatabase types;
    return types.mimeTypeForFile(luma::textOf(file.filename()), QMimeDatabase::MatchExtension)
        .inherits(QStringLiteral("application/xml"));
}

QByteArray viewed(std::string_view bytes)
{
    return QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

} // namespace

PageLanguage pageLanguage(const std::filesystem::path& file, std::string_view bytes)
{
    bytes = trimmedStart(bytes);
    if (!bytes.starts_with("<?xml") && !isNamedAsXml(file))
        return {};
    QXmlStreamReader xml(viewed(bytes));
    xml.setNamespaceProcessing(false);
    if (!xml.readNextStartElement() || xml.qualifiedName() == QLatin1String("html"))
        return {PageLanguage::Kind::Xhtml, {}};
    return {PageLanguage::Kind::OtherXml, xml.qualifiedName().toString().toStdString()};
}

bool isWellFormedXml(std::string_view bytes)
{
    QXmlStreamReader xml(viewed(bytes));
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

} // namespace luma::html
