// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/cssmenu.h"

#include "html/document.h"
#include "html/element.h"

namespace luma {

QStringList cssMenuTitles(const html::Document& document)
{
    QStringList titles;
    for (const html::Element* link : document.select("head link[rel=stylesheet]"))
        titles.append(QString::fromStdString(std::string(link->attr("href"))));
    const std::size_t count = document.select("head style").size();
    for (std::size_t i = 0; i < count; ++i)
        titles.append(u"<style> [%1]"_qs.arg(i));
    return titles;
}

bool isStyleBlock(const QString& title)
{
    return title.contains(u"<style>");
}

html::Element* styleBlock(const html::Document& document, const QString& title)
{
    const qsizetype open = title.indexOf(u'[');
    const qsizetype close = title.indexOf(u']', open + 1);
    if (!isStyleBlock(title) || open < 0 || close < 0)
        return nullptr;
    bool isNumber = false;
    const uint number = title.mid(open + 1, close - open - 1).toUInt(&isNumber);
    const auto blocks = document.select("head style");
    return isNumber && number < blocks.size() ? blocks[number] : nullptr;
}

} // namespace luma
