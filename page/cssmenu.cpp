// SPDX-License-Identifier: GPL-3.0-or-later
#include "page/cssmenu.h"

#include "html/document.h"
#include "html/element.h"

#include <string_view>
#include <vector>

namespace luma {

namespace {

std::vector<html::Element*> inHead(const html::Document& document, std::string_view selector)
{
    const html::Element* const head = document.head();
    return head ? head->select(selector) : std::vector<html::Element*>();
}

} // namespace

QStringList cssMenuTitles(const html::Document& document)
{
    QStringList titles;
    for (const html::Element* link : inHead(document, "link[rel=stylesheet]"))
        titles.append(QString::fromStdString(std::string(link->attr("href"))));
    const std::size_t count = inHead(document, "style").size();
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
    const auto blocks = inHead(document, "style");
    return isNumber && number < blocks.size() ? blocks[number] : nullptr;
}

} // namespace luma
