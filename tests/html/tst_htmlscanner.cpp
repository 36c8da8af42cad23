// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/characterreferences.h"
#include "html/htmlscanner.h"
#include "links/parsedpage.h"
#include "tests/html/html5lib.h"
#include "tests/support/registry.h"
#include "tests/support/rows.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace luma;

namespace {

std::string replacedNul(std::string text)
{
    for (std::size_t i = text.find('\0'); i != std::string::npos; i = text.find('\0'))
        text.replace(i, 1, "\xEF\xBF\xBD");
    return text;
}

std::string withLineFeeds(std::string_view raw)
{
    std::string text;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '\r')
            text += raw[i];
        else if (i + 1 == raw.size() || raw[i + 1] != '\n')
            text += '\n';
    }
    return text;
}

std::string lowered(std::string_view name)
{
    return replacedNul(asciiLower(name));
}

std::string decodedText(std::string_view raw, TextKind kind)
{
    if (kind == TextKind::Data)
        return decodeCharacters(raw, ReferenceContext::Text);
    if (kind == TextKind::Rcdata)
        return replacedNul(decodeCharacters(raw, ReferenceContext::Text));
    return replacedNul(withLineFeeds(raw));
}

QString text(std::string_view bytes)
{
    // The blank keeps a byte-order mark from being dropped.
    return QString::fromStdString(std::string(1, ' ').append(bytes)).mid(1);
}

// The scanner's tokens as the test files write them: ["StartTag", name, {attributes}, true]. The scanner does
// not report the parts of a doctype, so only its kind is compared.
class TokenList final
{
public:
    TokenList(const std::string& source, TextKind kind, const std::string& element, bool inCdata)
        : m_source(inCdata ? "<![CDATA[" + source : source)
    {
        HtmlScanner scanner(m_source);
        if (inCdata)
            scanner.startInForeignContent();
        if (kind != TextKind::Data)
            scanner.startInText(kind, element);
        HtmlToken token;
        while (scanner.next(token))
            add(token);
        addText(token);
    }

    [[nodiscard]] const QJsonArray& tokens() const { return m_tokens; }

    static void addCharacters(QJsonArray& tokens, const QString& characters)
    {
        if (characters.isEmpty())
            return;
        if (!tokens.isEmpty() && tokens.last().toArray().first() == QLatin1String("Character")) {
            const QString before = tokens.last().toArray().at(1).toString();
            tokens.removeLast();
            tokens.append(QJsonArray{QLatin1String("Character"), before + characters});
        } else {
            tokens.append(QJsonArray{QLatin1String("Character"), characters});
        }
    }

private:
    void addText(const HtmlToken& token)
    {
        const std::string_view raw = std::string_view(m_source).substr(m_end, token.begin - m_end);
        addCharacters(m_tokens, text(decodedText(raw, token.textBefore)));
        m_end = token.end;
    }

    void add(const HtmlToken& token)
    {
        addText(token);
        switch (token.kind) {
        case HtmlTokenKind::StartTag:
            addStartTag(token);
            break;
        case HtmlTokenKind::EndTag:
            m_tokens.append(QJsonArray{QLatin1String("EndTag"), text(lowered(token.name))});
            break;
        case HtmlTokenKind::Comment:
            m_tokens.append(
                QJsonArray{QLatin1String("Comment"), text(replacedNul(withLineFeeds(token.content)))});
            break;
        case HtmlTokenKind::Doctype:
            m_tokens.append(QJsonArray{QLatin1String("DOCTYPE")});
            break;
        case HtmlTokenKind::Cdata:
            addCharacters(m_tokens, text(withLineFeeds(token.content)));
            break;
        case HtmlTokenKind::EmptyEndTag:
        case HtmlTokenKind::End:
            break;
        }
    }

    void addStartTag(const HtmlToken& token)
    {
        QJsonObject attributes;
        for (const HtmlAttribute& attribute : token.attributes) {
            const QString name = text(lowered(attribute.name));
            if (!attributes.contains(name))
                attributes[name] = text(decodeCharacters(attribute.value, ReferenceContext::AttributeValue));
        }
        QJsonArray tag{QLatin1String("StartTag"), text(lowered(token.name)), attributes};
        if (token.selfClosing)
            tag.append(true);
        m_tokens.append(tag);
    }

    std::string m_source;
    std::size_t m_end = 0;
    QJsonArray m_tokens;
};

QString unescaped(QString text)
{
    for (qsizetype i = text.indexOf(QLatin1String("\\u")); i >= 0;
         i = text.indexOf(QLatin1String("\\u"), i + 1))
        text.replace(i, 6, QChar(text.mid(i + 2, 4).toUShort(nullptr, 16)));
    return text;
}

QJsonArray expectedTokens(const QJsonArray& output, bool escaped)
{
    QJsonArray tokens;
    for (const QJsonValue& value : output) {
        const QJsonArray token = value.toArray();
        const QString kind = token.first().toString();
        if (kind == QLatin1String("DOCTYPE"))
            tokens.append(QJsonArray{kind});
        else if (kind == QLatin1String("Character"))
            TokenList::addCharacters(tokens,
                                     escaped ? unescaped(token.at(1).toString()) : token.at(1).toString());
        else if (kind == QLatin1String("Comment"))
            tokens.append(
                QJsonArray{kind, escaped ? unescaped(token.at(1).toString()) : token.at(1).toString()});
        else
            tokens.append(token);
    }
    return tokens;
}

TextKind kindOfState(const QString& state)
{
    if (state == QLatin1String("RCDATA state"))
        return TextKind::Rcdata;
    if (state == QLatin1String("RAWTEXT state"))
        return TextKind::Rawtext;
    if (state == QLatin1String("Script data state"))
        return TextKind::ScriptData;
    return state == QLatin1String("PLAINTEXT state") ? TextKind::Plaintext : TextKind::Data;
}

struct Tally
{
    int passed = 0;
    int notUnicode = 0;
    QStringList failed;
};

void runCase(const QJsonObject& testCase, const QString& file, Tally& tally)
{
    const bool escaped = testCase[QLatin1String("doubleEscaped")].toBool();
    const QString given = testCase[QLatin1String("input")].toString();
    const QString input = escaped ? unescaped(given) : given;
    const QJsonArray expected = expectedTokens(testCase[QLatin1String("output")].toArray(), escaped);
    QJsonArray states = testCase[QLatin1String("initialStates")].toArray();
    if (states.isEmpty())
        states.append(QLatin1String("Data state"));
    for (const QJsonValue& state : states) {
        if (!input.isValidUtf16()) {
            ++tally.notUnicode;
            continue;
        }
        const bool inCdata = state == QLatin1String("CDATA section state");
        const TokenList list(input.toStdString(), kindOfState(state.toString()),
                             testCase[QLatin1String("lastStartTag")].toString().toStdString(), inCdata);
        if (list.tokens() == expected)
            ++tally.passed;
        else
            tally.failed << file + QLatin1String(": ") + testCase[QLatin1String("description")].toString() +
                                QLatin1String(" [") + state.toString() + QLatin1String("] gives ") +
                                QString::fromUtf8(
                                    QJsonDocument(list.tokens()).toJson(QJsonDocument::Compact));
    }
}

std::string linksIn(const std::string& source)
{
    std::string links;
    const auto page = parsePage(source);
    for (const PageLink& link : page->links)
        links += link.value + " ";
    return links;
}

} // namespace

class tst_htmlscanner final : public QObject
{
    Q_OBJECT

private slots:
    void conformance()
    {
        const QDir folder(test::html5libFolder() / "tokenizer");
        if (!folder.exists())
            QSKIP("html5lib's cases were not found (HTML5LIB_TESTS)");
        Tally tally;
        for (const QString& name : folder.entryList({QStringLiteral("*.test")})) {
            QFile file(folder.filePath(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            // The cases for converting to XML have another key and do not run.
            const QJsonObject cases = QJsonDocument::fromJson(file.readAll()).object();
            for (const QJsonValue& testCase : cases[QLatin1String("tests")].toArray())
                runCase(testCase.toObject(), name, tally);
        }
        qInfo("%d passed, %d left out (no Unicode text), %d failed", tally.passed, tally.notUnicode,
              static_cast<int>(tally.failed.size()));
        QVERIFY2(tally.failed.isEmpty(), qPrintable(tally.failed.mid(0, 20).join(QLatin1Char('\n'))));
        QVERIFY(tally.passed > 6000);
    }

    void links_data()
    {
        const luma::test::Rows<std::string, std::string> row("source", "links");
        row("order of the table", "<a src=1 href=2><body background=3><a HREF='4'>", "2 4 1 3 ");
        row("first of a name", "<a href=1 HREF=2>", "1 ");
        row("not in end tags", "</a href=1><a href=2>", "2 ");
        row("comment", "<!-- <a href=1> --><!--><a href=2>--><a href=3>", "2 3 ");
        row("declaration", "<!x '<a href=1>'><a href=2><?php echo '<a href=3>' ?>", "2 ");
        row("raw text",
            "<style><a href=1></style><title><a href=2></title><script><a href=3></script><a href=4>", "4 ");
        row("script escapes", "<script><!--<script></script><a href=1>--></script><a href=2>", "2 ");
        row("unended title", "<title>a<a href=1>", "");
        row("svg title", "<svg><title><a href=1></a></title><style><a href=2></style></svg>", "1 2 ");
        row("cdata in svg", "<svg><![CDATA[<a href=1>]]></svg><![CDATA[<a href=2>]]>", "");
        row("cdata after foreignObject", "<svg><foreignObject><![CDATA[<a href=1>]]></foreignObject></svg>",
            "");
        row("html in foreignObject",
            "<svg><foreignObject><p><title><a href=1></title></p></foreignObject><title><a "
            "href=2></title></svg>",
            "2 ");
        row("breakout", "<svg><p><title><a href=1></title>", "");
        row("math text", "<math><mi><title><a href=1></title></mi><title><a href=2></title></math>", "2 ");
        row("references", "<a href='a&amp;b&notit;&not=&#x41;&#128;&#0;&'>",
            "a&b&notit;&not=A\u20AC\uFFFD& ");
        row("cut off", "<a href=1><a href='2", "1 ");
        row("noscript", "<noscript><img src=1></noscript>", "1 ");
        row("template", "<template><img src=1></template>", "1 ");
        row("plaintext", "<a href=1><plaintext><a href=2></plaintext><a href=3>", "1 ");
        row("no value", "<a href><a href=><a href=\"\">", "   ");
    }
    void links()
    {
        QFETCH(std::string, source);
        QTEST(linksIn(source), "links");
    }
};

LUMA_TEST(tst_htmlscanner)
#include "tst_htmlscanner.moc"
