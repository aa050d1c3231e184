// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "formats.h"

#include <QLocale>
#include <QTest>

#include <cmath>

using namespace VandrelControl;

class TestFormats : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void amountFormat_data();
    void amountFormat();
    void decimalFormat_data();
    void decimalFormat();
    void wholeFormat();
    void dateFormat();
    void generalFormat_data();
    void generalFormat();
    void roundHalfEven_data();
    void roundHalfEven();
    void cutOff();

    void parseAmount_data();
    void parseAmount();
    void parsePercentage_data();
    void parsePercentage();
    void parseWholeNumber_data();
    void parseWholeNumber();
    void parseDate_data();
    void parseDate();
    void parsingIgnoresDefaultLocale_data();
    void parsingIgnoresDefaultLocale();
    void expectations();
    void allowedCharacters();
    void formatThenParseRoundTrips();

    void cleanup() { QLocale::setDefault(QLocale::c()); }
};

void TestFormats::amountFormat_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("grouped") << 12345.0 << "12.345";
    QTest::newRow("millions") << 1234567.0 << "1.234.567";
    QTest::newRow("small") << 999.0 << "999";
    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative") << -1234.4 << "-1.234";
    QTest::newRow("negative half away") << -1234.5 << "-1.235";
    QTest::newRow("half away from zero") << 2.5 << "3";
    QTest::newRow("carry into new group") << 999.5 << "1.000";
    QTest::newRow("computed value") << 624.99375 << "625";
    QTest::newRow("no minus zero") << -0.4 << "0";
}

void TestFormats::amountFormat()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(Format::amount(value), text);
}

void TestFormats::decimalFormat_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");
    QTest::newRow("2,500") << 2.5 << 3 << "2,500";
    QTest::newRow("grouped") << 1234.56789 << 3 << "1.234,568";
    QTest::newRow("1,875") << 1.875 << 3 << "1,875";
    QTest::newRow("decimal half up") << 2.675 << 2 << "2,68";
    QTest::newRow("negative") << -0.125 << 2 << "-0,13";
    QTest::newRow("zero decimals") << 12345.6 << 0 << "12.346";
    QTest::newRow("tiny negative") << -0.0001 << 3 << "0,000";
}

void TestFormats::decimalFormat()
{
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(QString, text);
    QCOMPARE(Format::decimal(value, decimals), text);
}

void TestFormats::wholeFormat()
{
    QCOMPARE(Format::whole(12345), QStringLiteral("12345"));
    QCOMPARE(Format::whole(-1234.6), QStringLiteral("-1235"));
    QCOMPARE(Format::whole(0), QStringLiteral("0"));
    QCOMPARE(Format::whole(67.5), QStringLiteral("68"));
}

void TestFormats::dateFormat()
{
    QCOMPARE(Format::date(QDate(2024, 2, 9)), QStringLiteral("09-02-2024"));
    QCOMPARE(Format::date(QDate(1901, 1, 1)), QStringLiteral("01-01-1901"));
    QCOMPARE(Format::date(QDate(1900, 12, 31)), QString());
    QCOMPARE(Format::date(QDate(1899, 12, 30)), QString());
    QCOMPARE(Format::date(QDate()), QString());
}

void TestFormats::generalFormat_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("decimal") << 12.5 << "12,5";
    QTest::newRow("whole") << 100.0 << "100";
    QTest::newRow("no grouping") << 123456.25 << "123456,25";
    QTest::newRow("binary noise") << 0.1 + 0.2 << "0,3";
    QTest::newRow("negative") << -1.75 << "-1,75";
    QTest::newRow("zero") << -0.0 << "0";
}

void TestFormats::generalFormat()
{
    QFETCH(double, value);
    QFETCH(QString, text);
    QCOMPARE(Format::general(value), text);
}

void TestFormats::roundHalfEven_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("rounded");
    QTest::newRow("2.5") << 2.5 << 2.0;
    QTest::newRow("3.5") << 3.5 << 4.0;
    QTest::newRow("8641.5") << 8641.5 << 8642.0;
    QTest::newRow("612.5") << 612.5 << 612.0;
    QTest::newRow("below half") << 612.49 << 612.0;
    QTest::newRow("above half") << 612.51 << 613.0;
    QTest::newRow("-2.5") << -2.5 << -2.0;
    QTest::newRow("-3.5") << -3.5 << -4.0;
    QTest::newRow("whole") << 7.0 << 7.0;
}

void TestFormats::roundHalfEven()
{
    QFETCH(double, value);
    QFETCH(double, rounded);
    QCOMPARE(Format::roundHalfEven(value), rounded);
}

void TestFormats::cutOff()
{
    QCOMPARE(Format::cutOff(624.99375), 624.0);
    QCOMPARE(Format::cutOff(625.0), 625.0);
    QCOMPARE(Format::cutOff(0.999), 0.0);
    QCOMPARE(Format::cutOff(-0.5), -1.0);
}

void TestFormats::parseAmount_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("readable");
    QTest::addColumn<double>("value");
    QTest::newRow("grouped") << "12.345" << true << 12345.0;
    QTest::newRow("grouped decimals") << "1.234,56" << true << 1234.56;
    QTest::newRow("plain decimals") << "1234,5" << true << 1234.5;
    QTest::newRow("two groups") << "1.234.567" << true << 1234567.0;
    QTest::newRow("negative") << "-1.234" << true << -1234.0;
    QTest::newRow("empty is zero") << "" << true << 0.0;
    QTest::newRow("blank is zero") << "  " << true << 0.0;
    QTest::newRow("leading comma") << ",5" << true << 0.5;
    QTest::newRow("trailing comma") << "12," << true << 12.0;
    QTest::newRow("bad group 12.34") << "12.34" << false << 0.0;
    QTest::newRow("group too long") << "1.2345" << false << 0.0;
    QTest::newRow("leading group too long") << "1234.567" << false << 0.0;
    QTest::newRow("dot as decimal point") << "1234.5" << false << 0.0;
    QTest::newRow("two commas") << "1,2,3" << false << 0.0;
    QTest::newRow("dot after comma") << "1,234.5" << false << 0.0;
    QTest::newRow("minus only") << "-" << false << 0.0;
    QTest::newRow("minus inside") << "12-3" << false << 0.0;
    QTest::newRow("letters") << "12a" << false << 0.0;
    QTest::newRow("comma only") << "," << false << 0.0;
}

void TestFormats::parseAmount()
{
    QFETCH(QString, text);
    QFETCH(bool, readable);
    QFETCH(double, value);
    const auto parsed = Parse::amount(text);
    QCOMPARE(parsed.has_value(), readable);
    if (readable)
        QCOMPARE(*parsed, value);
}

void TestFormats::parsePercentage_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("readable");
    QTest::addColumn<double>("value");
    QTest::newRow("comma") << "1,875" << true << 1.875;
    QTest::newRow("single dot is decimal point") << "1.875" << true << 1.875;
    QTest::newRow("single dot 1.000") << "1.000" << true << 1.0;
    QTest::newRow("dot with comma groups") << "1.000,5" << true << 1000.5;
    QTest::newRow("whole") << "100" << true << 100.0;
    QTest::newRow("negative") << "-0,5" << true << -0.5;
    QTest::newRow("negative dot") << "-0.5" << true << -0.5;
    QTest::newRow("empty is zero") << "" << true << 0.0;
    QTest::newRow("two dots grouped") << "1.000.000" << true << 1000000.0;
    QTest::newRow("two dots not grouped") << "1.87.5" << false << 0.0;
    QTest::newRow("bad group with comma") << "1.87,5" << false << 0.0;
    QTest::newRow("letters") << "5%" << false << 0.0;
}

void TestFormats::parsePercentage()
{
    QFETCH(QString, text);
    QFETCH(bool, readable);
    QFETCH(double, value);
    const auto parsed = Parse::percentage(text);
    QCOMPARE(parsed.has_value(), readable);
    if (readable)
        QCOMPARE(*parsed, value);
}

void TestFormats::parseWholeNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("readable");
    QTest::addColumn<qint64>("value");
    QTest::newRow("digits") << "67" << true << qint64(67);
    QTest::newRow("grouped") << "1.000" << true << qint64(1000);
    QTest::newRow("negative") << "-12" << true << qint64(-12);
    QTest::newRow("empty is zero") << "" << true << qint64(0);
    QTest::newRow("decimal") << "12,5" << false << qint64(0);
    QTest::newRow("bad group") << "1.00" << false << qint64(0);
    QTest::newRow("overflow") << "99999999999999999999" << false << qint64(0);
}

void TestFormats::parseWholeNumber()
{
    QFETCH(QString, text);
    QFETCH(bool, readable);
    QFETCH(qint64, value);
    const auto parsed = Parse::wholeNumber(text);
    QCOMPARE(parsed.has_value(), readable);
    if (readable)
        QCOMPARE(*parsed, value);
}

void TestFormats::parseDate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("readable");
    QTest::addColumn<QDate>("value");
    QTest::newRow("dd-MM-yyyy") << "09-02-2024" << true << QDate(2024, 2, 9);
    QTest::newRow("d-M-yyyy") << "9-2-2024" << true << QDate(2024, 2, 9);
    QTest::newRow("ddMMyyyy") << "09022024" << true << QDate(2024, 2, 9);
    QTest::newRow("leap day") << "29-02-2024" << true << QDate(2024, 2, 29);
    QTest::newRow("empty is not filled") << "" << true << QDate();
    QTest::newRow("31-02-2024") << "31-02-2024" << false << QDate();
    QTest::newRow("no leap day") << "29-02-2023" << false << QDate();
    QTest::newRow("month 13") << "01-13-2024" << false << QDate();
    QTest::newRow("two digit year") << "01-01-24" << false << QDate();
    QTest::newRow("seven digits") << "1012024" << false << QDate();
    QTest::newRow("slashes") << "01/01/2024" << false << QDate();
    QTest::newRow("missing part") << "01-2024" << false << QDate();
}

void TestFormats::parseDate()
{
    QFETCH(QString, text);
    QFETCH(bool, readable);
    QFETCH(QDate, value);
    const auto parsed = Parse::date(text);
    QCOMPARE(parsed.has_value(), readable);
    if (readable)
        QCOMPARE(*parsed, value);
}

void TestFormats::parsingIgnoresDefaultLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("C") << "C";
    QTest::newRow("nl_NL") << "nl_NL";
    QTest::newRow("en_US") << "en_US";
}

void TestFormats::parsingIgnoresDefaultLocale()
{
    QFETCH(QString, locale);
    QLocale::setDefault(QLocale(locale));
    QCOMPARE(Parse::percentage(QStringLiteral("1.234")), std::optional<double>(1.234));
    QCOMPARE(Parse::percentage(QStringLiteral("1,5")), std::optional<double>(1.5));
    QCOMPARE(Parse::amount(QStringLiteral("1.234,56")), std::optional<double>(1234.56));
    QVERIFY(!Parse::amount(QStringLiteral("12.34")).has_value());
    QCOMPARE(Format::amount(12345), QStringLiteral("12.345"));
    QCOMPARE(Format::decimal(2.5, 3), QStringLiteral("2,500"));
    QCOMPARE(Format::date(QDate(2024, 2, 9)), QStringLiteral("09-02-2024"));
}

void TestFormats::expectations()
{
    QCOMPARE(Parse::expectation(FieldKind::Amount), QStringLiteral("Voer een geldig bedrag in."));
    QCOMPARE(Parse::expectation(FieldKind::Percentage), QStringLiteral("Voer een geldig percentage in."));
    QCOMPARE(Parse::expectation(FieldKind::Factor), QStringLiteral("Voer een geldige factor in."));
    QCOMPARE(Parse::expectation(FieldKind::Date), QStringLiteral("Voer een geldige datum in (dd-mm-jjjj)."));
    QCOMPARE(Parse::expectation(FieldKind::WholeNumber), QStringLiteral("Voer een geldig geheel getal in."));
}

void TestFormats::allowedCharacters()
{
    for (const QChar c : QStringLiteral("0123456789.,-"))
        QVERIFY2(Parse::allowedCharacter(FieldKind::Amount, c), qPrintable(QString(c)));
    for (const QChar c : QStringLiteral("a +eE%/ "))
        QVERIFY2(!Parse::allowedCharacter(FieldKind::Amount, c), qPrintable(QString(c)));
    QVERIFY(Parse::allowedCharacter(FieldKind::Percentage, u','));
    QVERIFY(Parse::allowedCharacter(FieldKind::Factor, u'.'));
    QVERIFY(!Parse::allowedCharacter(FieldKind::Percentage, u'%'));
    QVERIFY(!Parse::allowedCharacter(FieldKind::WholeNumber, u','));
    QVERIFY(Parse::allowedCharacter(FieldKind::WholeNumber, u'.'));
    QVERIFY(Parse::allowedCharacter(FieldKind::Date, u'-'));
    QVERIFY(!Parse::allowedCharacter(FieldKind::Date, u'/'));
    QVERIFY(!Parse::allowedCharacter(FieldKind::Date, u'.'));
    QVERIFY(Parse::allowedCharacter(FieldKind::Text, u'%'));
}

void TestFormats::formatThenParseRoundTrips()
{
    for (double v : {0.0, 1.0, 999.0, 12345.0, -98765.0, 1234567.0})
        QCOMPARE(Parse::amount(Format::amount(v)), std::optional<double>(v));
    for (double v : {0.0, 1.875, 2.5, 1234.567, -0.125})
        QCOMPARE(Parse::percentage(Format::decimal(v, 3)), std::optional<double>(v));
    const QDate d(1967, 11, 3);
    QCOMPARE(Parse::date(Format::date(d)), std::optional<QDate>(d));
}

QTEST_GUILESS_MAIN(TestFormats)
#include "tst_formats.moc"
