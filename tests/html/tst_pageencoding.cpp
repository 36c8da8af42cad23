// SPDX-License-Identifier: GPL-3.0-or-later
#include "html/pageencoding.h"
#include "tests/support/registry.h"

#include <QTest>

using namespace luma;

class tst_pageencoding final : public QObject
{
    Q_OBJECT

private slots:
    void bytes_areReadInTheirEncoding_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("language");
        const auto row = [](const QByteArray& bytes, const char* name,
                            MarkupLanguage language = MarkupLanguage::Html) {
            QTest::addRow("%s %d", bytes.left(60).toPercentEncoding(" <>=/'\"").constData(), int(language))
                << bytes << QByteArray(name) << int(language);
        };
        row("", "UTF-8");
        row("caf\xC3\xA9", "UTF-8");
        row("caf\xE9", "windows-1252");
        row("\xEF\xBB\xBF<meta charset=latin1>\xE9", "UTF-8");
        row("\xFF\xFE<\0", "UTF-16LE");
        row("\xFE\xFF", "UTF-16BE");
        row("<meta charset=' ISO-8859-2 '>\xE9", "ISO-8859-2");
        row("<META HTTP-EQUIV=Content-Type CONTENT='text/html; CharSet = koi8-r'>", "KOI8-R");
        row("<meta http-equiv=content-type content='text/html; charset=\"shift_jis\"'>", "Shift_JIS");
        row("<meta name=x content='charset=koi8-r'>", "UTF-8");
        row("<meta charset=nonsense><meta charset=gbk>", "GBK");
        row("<meta charset=utf-16>", "UTF-8");
        row("<!-- <meta charset=gbk> --><script>'<meta charset=gbk>'</script>", "UTF-8");
        row(QByteArray(1100, ' ') + "<meta charset=gbk>", "UTF-8");
        row("<?xml version='1.0' encoding='ISO-8859-15'?>", "ISO-8859-15");
        row("<?xml version='1.0' encoding='ISO-8859-15'?>", "ISO-8859-15", MarkupLanguage::Xml);
        row("<x>\xE9</x>", "UTF-8", MarkupLanguage::Xml);
        row("@charset \"windows-1251\";", "windows-1251", MarkupLanguage::Css);
        row("@charset 'windows-1251';", "UTF-8", MarkupLanguage::Css);
    }
    void bytes_areReadInTheirEncoding()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, language);
        const PageEncoding found = encodingOf(bytes.toStdString(), static_cast<MarkupLanguage>(language));
        QTEST(QByteArray::fromStdString(std::string(found.encoding.name())), "name");
    }

    // Every encoding of the table can be read and written on this system.
    void encodings_writeWhatTheyRead()
    {
        for (const char* const label :
             {"utf-8",         "latin1",       "iso-8859-2",   "iso-8859-3",   "iso-8859-4",
              "iso-8859-5",    "iso-8859-6",   "iso-8859-7",   "iso-8859-8",   "iso-8859-10",
              "iso-8859-13",   "iso-8859-14",  "iso-8859-15",  "koi8-r",       "koi8-u",
              "macintosh",     "windows-874",  "windows-1250", "windows-1251", "windows-1253",
              "latin5",        "windows-1255", "windows-1256", "windows-1257", "windows-1258",
              "gbk",           "gb18030",      "big5",         "euc-jp",       "iso-2022-jp",
              "sjis",          "euc-kr",       "utf-16be",     "utf-16",       "ibm866",
              "x-mac-cyrillic"}) {
            const std::optional<Encoding> encoding = Encoding::fromLabel(label);
            QVERIFY2(encoding, label);
            const std::optional<std::string> bytes = encoding->encoded("<a>");
            QVERIFY2(bytes, label);
            QCOMPARE(encoding->decoded(*bytes), std::string("<a>"));
        }
        const Encoding western = Encoding::windows1252();
        QCOMPARE(western.decoded("\x80\xE9"), std::string("\xE2\x82\xAC\xC3\xA9"));
        QCOMPARE(western.encodedWithReferences("\xC3\xA9\xD0\xB6!"), std::string("\xE9&#1078;!"));
        QVERIFY(!western.encoded("\xD0\xB6"));
        QCOMPARE(Encoding::fromLabel("euc-kr")->decoded("\x8C\x63"), std::string("\xEB\x98\xA0"));
        QCOMPARE(Encoding::fromLabel("big5")->decoded("\xFA\x40"), std::string("\xF0\xA0\x95\x87"));
        QCOMPARE(Encoding::fromLabel("iso-2022-jp")->encodedWithReferences("\xE6\x97\xA5\xC3\xA9."),
                 std::string("\x1B$BF|\x1B(B&#233;."));
    }
};

LUMA_TEST(tst_pageencoding)

#include "tst_pageencoding.moc"
