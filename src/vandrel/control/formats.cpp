#include "formats.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace VandrelControl {

namespace {

// Splits a value into the decimal digits a user would write for it (the shortest text that reads
// back as the same double), so 624.99375 rounds as the decimal 624.99375 and 2.675 as 2.675,
// not as the nearest binary fraction below it.
struct Digits
{
    bool negative = false;
    QString whole;    // at least "0"
    QString fraction; // may be empty
};

Digits digitsOf(double value)
{
    Digits d;
    if (!std::isfinite(value)) {
        d.whole = QStringLiteral("0");
        return d;
    }
    d.negative = std::signbit(value);
    const QString text = QString::number(std::fabs(value), 'f', QLocale::FloatingPointShortest);
    const qsizetype dot = text.indexOf(QLatin1Char('.'));
    d.whole = dot < 0 ? text : text.left(dot);
    d.fraction = dot < 0 ? QString() : text.mid(dot + 1);
    if (d.whole.isEmpty())
        d.whole = QStringLiteral("0");
    return d;
}

// Rounds the digits to `decimals` places, halves away from zero: that is how the suite's display
// formats have always shown numbers ("#,##0" shows 2,5 as 3), while calculations that round use
// roundHalfEven explicitly. Display and arithmetic are kept apart on purpose.
void roundDigits(Digits &d, int decimals)
{
    if (d.fraction.size() <= decimals) {
        d.fraction = d.fraction.leftJustified(decimals, QLatin1Char('0'));
        return;
    }
    const bool up = d.fraction.at(decimals) >= QLatin1Char('5');
    QString all = d.whole + d.fraction.left(decimals);
    if (up) {
        qsizetype i = all.size() - 1;
        for (; i >= 0; --i) {
            if (all.at(i) == QLatin1Char('9')) {
                all[i] = QLatin1Char('0');
            } else {
                all[i] = QChar(all.at(i).unicode() + 1);
                break;
            }
        }
        if (i < 0)
            all.prepend(QLatin1Char('1'));
    }
    d.whole = all.left(all.size() - decimals);
    d.fraction = all.right(decimals);
    if (d.whole.isEmpty())
        d.whole = QStringLiteral("0");
}

QString groupThousands(const QString &whole)
{
    QString out;
    out.reserve(whole.size() + whole.size() / 3);
    const qsizetype n = whole.size();
    for (qsizetype i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0)
            out.append(QLatin1Char('.'));
        out.append(whole.at(i));
    }
    return out;
}

QString compose(double value, int decimals, bool grouped)
{
    Digits d = digitsOf(value);
    roundDigits(d, std::max(0, decimals));
    QString text = grouped ? groupThousands(d.whole) : d.whole;
    if (decimals > 0)
        text += QLatin1Char(',') + d.fraction;
    // -0,4 shows as "0", not "-0": a sign on a zero only confuses the reader.
    const bool allZero = std::all_of(text.cbegin(), text.cend(), [](QChar c) {
        return !c.isDigit() || c == QLatin1Char('0');
    });
    if (d.negative && !allZero)
        text.prepend(QLatin1Char('-'));
    return text;
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
