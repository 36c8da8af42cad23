// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/html/pages.h"

#include <QByteArray>
#include <QString>
#include <QStringEncoder>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace luma::test {

namespace {

std::vector<fs::path> pagesBelow(const fs::path& folder, std::size_t maximumSize)
{
    std::vector<fs::path> files;
    std::error_code error;
    const auto options = fs::directory_options::skip_permission_denied;
    for (const auto& entry : fs::recursive_directory_iterator(folder, options, error)) {
        if (entry.path().extension() == ".html" && entry.is_regular_file(error) &&
            entry.file_size(error) <= maximumSize)
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string bytesOf(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::stringstream bytes;
    bytes << stream.rdbuf();
    return bytes.str();
}

void replaceAll(std::string& text, std::string_view what, std::string_view by)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

fs::path sourceFolder()
{
    const char* source = std::getenv("LUMA_SOURCE_DIR");
    return source ? source : ".";
}

/// The page as its heading says: "name [crlf]".
Page writtenPage(const std::string& heading, std::string text)
{
    const auto is = [&heading](const char* word) { return heading.find(word) != std::string::npos; };
    if (is("[no line end]"))
        text.pop_back();
    replaceAll(text, "\n", is("[crlf]") ? "\r\n" : is("[cr]") ? "\r" : "\n");
    if (is("[latin1]"))
        text = QString::fromStdString(text).toLatin1().toStdString();
    if (is("[utf16]"))
        text =
            "\xFF\xFE" +
            QByteArray(QStringEncoder(QStringEncoder::Utf16LE)(QString::fromStdString(text))).toStdString();
    return {heading, is("[bom]") ? "\xEF\xBB\xBF" + text : text};
}

std::vector<Page> ownPages()
{
    return {
        {"empty", ""},
        {"article",
         "<!-- first -->\n<!DOCTYPE html PUBLIC \"-//W3C//DTD HTML 4.01//EN\" "
         "\"http://www.w3.org/TR/html4/strict.dtd\">\n<!-- second -->\n<html lang=de><head>\n<meta "
         "charset=utf-8>"
         "<title>Ein &amp; zwei</title>\n<style>p > a { color: red }</style></head>\n<body class='a b'>\n"
         "<h1>Title <small>small</small></h1><p>One <b>two</b><i>three</i> &lt;four&gt;\n  five</p><hr>"
         "<ul><li>a<li>b <ul><li>c</ul></ul>text<div><p>x</p>y</div>\n</body></html>\n<!-- last -->\n"},
        {"verbatim",
         "<!doctype html><body><div><pre>\n\n  a\n  <b>b</b>\n</pre><textarea>\n\n x </textarea> "
         "<p style='white-space: pre-wrap'>  a\n   b  </p></div><script>if (a < b && c > d) '<p>';</script>"
         "<noscript><p>no <i>script</i></p></noscript><xmp><b>raw</b></xmp>"},
        {"tables",
         "<!doctype html><table border><caption>c</caption><colgroup><col><col></colgroup><tr><td>1<td>2 "
         "<tr><th>3<td><table><tr><td>in</table></table>after<br>end<img src=a.png alt='\"x\"'>"},
        {"foreign",
         "<!doctype html><svg viewBox='0 0 1 1' xlink:href=#a><foreignObject><p>in</p></foreignObject>"
         "<linearGradient id=g /><title>t</title><![CDATA[a<b]]></svg><math><mi definitionurl=x>a</mi></math>"
         "<template><tr><td>cell</td></tr><p>p</p></template><o:p>odd</o:p><my-part a.b=1 @c=2>x</my-part>"},
        {"characters", "<!doctype html><p title='a&#13;b\xC2\x81\xEF\xBF\xBE'>a\xC2\x85"
                       "b \x01 c&nbsp;d\xC2\xA0"
                       "e &amp;lt; &#0; "
                       "\xF0\x9F\x98\x80 \xEF\xB7\x90 &#99999999999; &notit; &#x80;</p>"},
        {"inline",
         "<!doctype html><body>lead<!-- c --> <div>a<p>b</p> c<span> d</span><!-- e --><p>f</p> "
         "<b>g</b></div>\n\n"
         "<script>1</script><style>q</style> <a href=x>y</a><script>2</script>z <a><div>in</div></a>"},
        {"scripts",
         "<!doctype html><body><div style='display:inline-block'>\u0639\u0631\u0628</div>"
         "<div style='display:inline-block'>\u0646\u0635</div><p dir=rtl>\u05E2\u05D1<span>\u05E8\u05D9</span>"
         "\u05EA</p> <section style='display:inline'>\u4E2D<b>\u6587</b></section><div>\u5B57</div>"
         "<p>\u0E44\u0E17\u0E22<i>\u0E44\u0E17</i>\u0E22</p><ul><li style='display:inline'>a</li>"
         "<li style='display:inline'>b</li></ul>"},
        {"frames", "<!doctype html><html><head><title>f</title></head><frameset cols='1,2'> <frame src=a>\n"
                   "<frame src=b> <noframes><p>none</p></noframes></frameset></html>"},
    };
}

} // namespace

std::vector<Page> allPages(std::size_t count, std::size_t maximumSize)
{
    std::vector<Page> pages = ownPages();
    for (const fs::path& file : pagesBelow(sourceFolder() / "resources/sample-site", SIZE_MAX))
        pages.push_back({file.string(), bytesOf(file)});
    const std::vector<fs::path> files = pagesBelow("/usr/share/doc", maximumSize);
    const std::size_t wanted = std::min(count, files.size());
    for (std::size_t i = 0; i < wanted; ++i) {
        const fs::path& file = files[i * files.size() / wanted];
        pages.push_back({file.string(), bytesOf(file)});
    }
    return pages;
}

std::vector<Page> writtenPages()
{
    std::vector<Page> pages;
    std::istringstream lines(bytesOf(sourceFolder() / "tests/html/writtenpages.txt"));
    std::string heading;
    std::string text;
    const auto finish = [&] {
        if (!heading.empty())
            pages.push_back(writtenPage(heading, text));
        text.clear();
    };
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("=== ")) {
            finish();
            heading = line.substr(4);
        } else {
            text += line + '\n';
        }
    }
    finish();
    return pages;
}

} // namespace luma::test
