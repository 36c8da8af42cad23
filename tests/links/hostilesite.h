// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/site.h"

#include <QRandomGenerator>

#include <initializer_list>
#include <string>

namespace luma::test {

/// Makes pages and sheets whose links are spelled in every way, to names that need it.
class HostileSite final
{
public:
    explicit HostileSite(quint32 seed) : m_random(seed) {}

    void fill(const Site& site)
    {
        for (int i = 0; i < 40; ++i)
            site.put(one({"", "a/", "a/b/", "c d/"}) + "page" + std::to_string(i) +
                         one({".html", ".HTM", ".shtml"}),
                     page());
        for (int i = 0; i < 4; ++i)
            site.put(one({"", "a/"}) + "s" + std::to_string(i) + ".css", sheet(10));
        for (const char* const name :
             {"x.png", "a/X.png", "a/b/100%.png", "c d/#1.png", "c d/\xC3\xBC \xE2\x82\xAC.html",
              "a/index.html", "a/b/index.htm", "e/none.txt"})
            site.put(name, "<p id=there><a name='two words'>");
    }

    std::string page()
    {
        std::string html = "<!doctype html>\n<html><head><meta charset=utf-8><title><a href=gone></title>";
        if (m_random.bounded(6) == 0)
            html += one(
                {"<base href=/a/>", "<base href=../>", "<base href='http://other.org/'>", "<base target=x>"});
        html += "<style>" + sheet(2) + "</style></head><body id=\"there\"><!-- <a href=gone> -->\n";
        for (int i = 0; i < 25; ++i) {
            const std::string opening =
                one({"a href", "img src", "img alt='a > b' src", "A HREF ", "form action", "video poster",
                     "iframe src", "object data", "td background", "q cite", "p href", "svg><use xlink:href",
                     "script src", "link rel=stylesheet href", "a href=x.png href"});
            const std::string name = opening.substr(0, opening.find_first_of(" >"));
            html += (name == "td" ? "<table><tr>" : "") + ("<" + opening) + "=" + quoted() + ">";
            html += name == "script" ? "'<a href=gone>'" : "";
            html +=
                (name == "svg" ? "</use>" : "") + ("</" + name) + ">" + (name == "td" ? "</table>\n" : "\n");
        }
        html += "<img srcset=\"a/x.png 1x, /gone.png 2x,../x.png, /a/X.png 3x\">";
        html +=
            "<map name=there></map><img usemap='#there'><img usemap=#gone><p style='b: url(\"/none.png\")'>";
        return html + "<textarea><a href=gone></textarea>";
    }

private:
    std::string one(std::initializer_list<const char*> choices)
    {
        return choices.begin()[m_random.bounded(quint32(choices.size()))];
    }

    std::string address()
    {
        if (m_random.bounded(8) == 0)
            return one({"", "#", "#there", "#nowhere", "?q", "//other.org/", "http://other.org/x",
                        "mailto:x@y", "data:image/png;base64,AAAA", "javascript:void(0)", "tel:1",
                        "{{ url }}", "/", "."});
        std::string path =
            one({"", "./", "../", "../../", "/", "a/", "/a/./b/", "a//b/../", "/c%20d/", "/c d/", "\\a\\"});
        path += one({"x.png",
                     "X.png",
                     "x%2epng",
                     "100%.png",
                     "100%25.png",
                     "#1.png",
                     "%231.png",
                     "\xC3\xBC \xE2\x82\xAC.html",
                     "%C3%BC%20%E2%82%AC.html",
                     "index.html",
                     "",
                     "b",
                     "b/",
                     "e",
                     "none.txt",
                     "page1.html",
                     "%2E%2E/x.png",
                     "x.png/",
                     "&#x78;.png",
                     "x.p\nng",
                     "x%00.png",
                     "a%2Fx.png"});
        return path + one({"", "", "", "?v=1", "#there", "#two%20words", "#two words", "?a#nowhere", "#TOP"});
    }

    // In double quotes, so that it may hold blanks.
    std::string quoted() { return "\"" + address() + "\""; }

    std::string sheet(int rules)
    {
        std::string css = "/* url(gone.png) */ @import " + quoted() + ";\n";
        for (int i = 0; i < rules; ++i)
            css += "a::before { content: \"url(x)\"; b: url(" + quoted() + ") }\n";
        return css;
    }

    QRandomGenerator m_random;
};

} // namespace luma::test
