// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "formats.h"

#include <QLocale>

#include <algorithm>
#include <charconv>
#include <string>
#include <cmath>
#include <limits>

namespace VandrelControl {

namespace {

// A value is formatted from the decimal digits a user would write for it (the shortest text that
// reads back as the same double), so 624.99375 rounds as the decimal 624.99375 and 2.675 as
// 2.675, not as the nearest binary fraction below it. Display rounding is half away from zero;
// calculations that round use roundHalfEven explicitly. Display and arithmetic are kept apart on
// purpose. The work is done in plain character strings and turned into a QString once: every
// amount on the screen and in the scheme list passes through here.
QString compose(double value, int decimals, bool grouped)
{
    decimals = std::max(0, decimals);
    const bool negative = std::isfinite(value) && std::signbit(value);
    // The shortest digits that read back as the same double, written out without an exponent:
    // 1e300 is a one and three hundred zeros, not the binary value's exact digits.
    std::string whole = "0";
    std::string fraction;
    if (std::isfinite(value) && value != 0) {
        char buffer[64];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value), std::chars_format::scientific);
        const std::string_view text(buffer, size_t(result.ptr - buffer));
        const size_t e = text.find('e');
        std::string mantissa;
        for (const char c : text.substr(0, e))
            if (c != '.')
                mantissa.push_back(c);
        const int exponent = std::atoi(std::string(text.substr(e + 1)).c_str());
        const int point = exponent + 1;   // digits of the mantissa before the decimal point
        if (point <= 0) {
            fraction = std::string(size_t(-point), '0') + mantissa;
        } else if (size_t(point) >= mantissa.size()) {
            whole = mantissa + std::string(size_t(point) - mantissa.size(), '0');
        } else {
            whole = mantissa.substr(0, size_t(point));
            fraction = mantissa.substr(size_t(point));
        }
    }
    const qsizetype wholeLength = qsizetype(whole.size());
    const qsizetype fractionLength = qsizetype(fraction.size());

    // Whole digits and exactly `decimals` fraction digits, with room for a carry in front.
    std::string all;
    all.reserve(size_t(wholeLength + decimals + 1));
    all.append(whole);
    all.append(fraction, 0, size_t(std::min<qsizetype>(fractionLength, decimals)));
    if (fractionLength < decimals)
        all.append(size_t(decimals - fractionLength), '0');
    // Halves away from zero, as the suite's display formats always have ("#,##0" shows 2,5 as 3).
    if (fractionLength > decimals && fraction[decimals] >= '5') {
        qsizetype i = qsizetype(all.size()) - 1;
        for (; i >= 0 && all[size_t(i)] == '9'; --i)
            all[size_t(i)] = '0';
        if (i >= 0)
            ++all[size_t(i)];
        else
            all.insert(all.begin(), '1');
    }
    const qsizetype wholeDigits = qsizetype(all.size()) - decimals;   // at least the "0"

    std::string out;
    out.reserve(all.size() + size_t(wholeDigits / 3) + 2);
    // -0,4 shows as "0", not "-0": a sign on a zero only confuses the reader.
    if (negative && all.find_first_not_of('0') != std::string::npos)
        out.push_back('-');
    for (qsizetype i = 0; i < wholeDigits; ++i) {
        if (grouped && i > 0 && (wholeDigits - i) % 3 == 0)
            out.push_back('.');
        out.push_back(all[size_t(i)]);
    }
    if (decimals > 0) {
        out.push_back(',');
        out.append(all, size_t(wholeDigits), std::string::npos);
    }
    return QString::fromLatin1(out.data(), qsizetype(out.size()));
}

bool isDigits(QStringView s)
{
    return !s.isEmpty()
           && std::all_of(s.begin(), s.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}

// Whole part with optional "." thousands separators, only in proper groups of three
// ("1.234.567"); "12.34" is not a grouping and is refused.
std::optional<QString> readGroupedWhole(QStringView s)
{
    if (!s.contains(u'.'))
        return isDigits(s) ? std::optional<QString>(s.toString()) : std::nullopt;
    const auto parts = s.split(u'.');
    QString out;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        const QStringView part = parts.at(i);
        if (!isDigits(part))
            return std::nullopt;
        if (i == 0 ? part.size() > 3 : part.size() != 3)
            return std::nullopt;
        out += part;
    }
    return out;
}

struct Signed
{
    bool negative = false;
    QStringView body;
};

Signed splitSign(QStringView s)
{
    Signed r;
    r.body = s;
    if (s.startsWith(u'-')) {
        r.negative = true;
        r.body = s.mid(1);
    }
    return r;
}

// "whole[,fraction]" with Dutch separators; the whole part may be empty when a fraction follows
// (",5" is half). Conversion goes through a C-style text so no locale can change the result.
std::optional<double> readDutchNumber(QStringView text)
{
    const Signed sign = splitSign(text);
    QStringView body = sign.body;
    if (body.isEmpty())
        return std::nullopt;
    const qsizetype comma = body.indexOf(u',');
    QStringView wholePart = comma < 0 ? body : body.left(comma);
    QStringView fractionPart = comma < 0 ? QStringView() : body.mid(comma + 1);
    if (comma >= 0) {
        // "12," is accepted as 12: the user stopped typing after the separator.
        if (!fractionPart.isEmpty() && !isDigits(fractionPart))
            return std::nullopt;
        if (wholePart.isEmpty() && fractionPart.isEmpty())
            return std::nullopt;
    }
    QString whole = QStringLiteral("0");
    if (!wholePart.isEmpty()) {
        const auto w = readGroupedWhole(wholePart);
        if (!w)
            return std::nullopt;
        whole = *w;
    }
    QString c = whole;
    if (!fractionPart.isEmpty())
        c += QLatin1Char('.') + fractionPart.toString();
    bool ok = false;
    const double v = c.toDouble(&ok); // QString::toDouble is always the C locale
    if (!ok || !std::isfinite(v))
        return std::nullopt;
    return sign.negative ? -v : v;
}

} // namespace

namespace Format {

QString amount(double value)
{
    return compose(value, 0, true);
}

QString decimal(double value, int decimals)
{
    return compose(value, decimals, true);
}

QString whole(double value)
{
    return compose(value, 0, false);
}

QString date(const QDate &value)
{
    if (!value.isValid() || value.year() <= 1900)
        return QString();
    return value.toString(QStringLiteral("dd-MM-yyyy"));
}

QString general(double value)
{
    if (!std::isfinite(value))
        return QStringLiteral("0");
    // Fifteen significant digits, like the host's default number text: 0.1 + 0.2 shows as "0,3".
    const double rounded = QString::number(value, 'g', 15).toDouble();
    QString text = QString::number(rounded, 'f', QLocale::FloatingPointShortest);
    if (text == QLatin1String("-0"))
        text = QStringLiteral("0");
    text.replace(QLatin1Char('.'), QLatin1Char(','));
    return text;
}

double roundHalfEven(double value)
{
    if (!std::isfinite(value))
        return value;
    const double lower = std::floor(value);
    const double diff = value - lower;
    if (diff < 0.5)
        return lower;
    if (diff > 0.5)
        return lower + 1.0;
    return std::fmod(lower, 2.0) == 0.0 ? lower : lower + 1.0;
}

double cutOff(double value)
{
    return std::floor(value);
}

} // namespace Format

namespace Parse {

std::optional<double> amount(const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return 0.0;
    return readDutchNumber(t);
}

std::optional<double> percentage(const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return 0.0;
    // Without a comma a single "." is the decimal point: people type 1.875 meaning 1,875 %, and a
    // percentage of 1875 is never what they meant.
    if (!t.contains(QLatin1Char(',')) && t.count(QLatin1Char('.')) == 1) {
        QString dutch = t;
        dutch.replace(QLatin1Char('.'), QLatin1Char(','));
        return readDutchNumber(dutch);
    }
    return readDutchNumber(t);
}

std::optional<qint64> wholeNumber(const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return 0;
    // "1.000" is a thousand, like in an amount; a decimal part is never a whole number.
    const Signed sign = splitSign(t);
    const auto digits = readGroupedWhole(sign.body);
    if (!digits)
        return std::nullopt;
    bool ok = false;
    const qint64 v = digits->toLongLong(&ok);
    if (!ok)
        return std::nullopt;
    return sign.negative ? -v : v;
}

std::optional<QDate> date(const QString &text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return QDate();
    int day = 0, month = 0, year = 0;
    if (isDigits(t) && t.size() == 8) {
        day = t.left(2).toInt();
        month = t.mid(2, 2).toInt();
        year = t.mid(4).toInt();
    } else {
        const auto parts = QStringView(t).split(u'-');
        if (parts.size() != 3)
            return std::nullopt;
        if (!isDigits(parts[0]) || parts[0].size() > 2 || !isDigits(parts[1]) || parts[1].size() > 2
            || !isDigits(parts[2]) || parts[2].size() != 4)
            return std::nullopt;
        day = parts[0].toInt();
        month = parts[1].toInt();
        year = parts[2].toInt();
    }
    const QDate d(year, month, day);
    if (!d.isValid())
        return std::nullopt;
    return d;
}

QString expectation(FieldKind kind)
{
    switch (kind) {
    case FieldKind::Amount:
        return QStringLiteral("Voer een geldig bedrag in.");
    case FieldKind::Percentage:
        return QStringLiteral("Voer een geldig percentage in.");
    case FieldKind::Factor:
        return QStringLiteral("Voer een geldige factor in.");
    case FieldKind::Date:
        return QStringLiteral("Voer een geldige datum in (dd-mm-jjjj).");
    case FieldKind::WholeNumber:
        return QStringLiteral("Voer een geldig geheel getal in.");
    case FieldKind::Text:
        break;
    }
    return QStringLiteral("Voer een geldige waarde in.");
}

bool allowedCharacter(FieldKind kind, QChar c)
{
    const bool digit = c >= u'0' && c <= u'9';
    switch (kind) {
    case FieldKind::Text:
        return true;
    case FieldKind::Amount:
    case FieldKind::Percentage:
    case FieldKind::Factor:
        return digit || c == u'.' || c == u',' || c == u'-';
    case FieldKind::WholeNumber:
        return digit || c == u'.' || c == u'-';
    case FieldKind::Date:
        return digit || c == u'-';
    }
    return false;
}

} // namespace Parse

} // namespace VandrelControl
