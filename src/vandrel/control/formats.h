// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

/// \file formats.h
/// The one place where numbers and dates become text and back. Dutch conventions throughout:
/// "." groups thousands, "," separates decimals, dates are dd-MM-yyyy.

#include "vandrelcontrol_export.h"

#include <QDate>
#include <QString>

#include <optional>

namespace VandrelControl {

/// What a TextBox holds, which decides how its text is read and shown.
enum class FieldKind {
    Text,        ///< any text
    Amount,      ///< euros, "#,##0"
    Percentage,  ///< percent with decimals, "#,##0.000"
    Factor,      ///< a factor with decimals, "#,##0.000"
    Date,        ///< "dd-MM-yyyy"
    WholeNumber  ///< "#0"
};

/// Numbers and dates to text, the Dutch way.
namespace Format {

/// "#,##0": whole units with grouping, 12345 -> "12.345".
VANDRELCONTROL_EXPORT QString amount(double value);
/// "#,##0.000" (decimals 3) and friends: 2.5 -> "2,500".
VANDRELCONTROL_EXPORT QString decimal(double value, int decimals);
/// "#0": no grouping, no decimals.
VANDRELCONTROL_EXPORT QString whole(double value);
/// "dd-MM-yyyy"; a date that is not filled gives "".
VANDRELCONTROL_EXPORT QString date(const QDate &value);
/// A number as the host's default number format shows it in a sentence: no grouping, "," as the
/// decimal separator, no trailing zeros (12.5 -> "12,5", 100 -> "100").
VANDRELCONTROL_EXPORT QString general(double value);

/// Rounding rules: "rounded to whole units" is half to even, "cut off" is floor.
VANDRELCONTROL_EXPORT double roundHalfEven(double value);
VANDRELCONTROL_EXPORT double cutOff(double value);  ///< Cut off to whole units (floor).

} // namespace Format

/// Text to numbers and dates, the Dutch way.
namespace Parse {

/// Each returns std::nullopt for text that cannot be read. Empty text reads as 0 for numbers.
VANDRELCONTROL_EXPORT std::optional<double> amount(const QString &text);  ///< An amount such as "12.345" or "12345,50".
VANDRELCONTROL_EXPORT std::optional<double> percentage(const QString &text);  ///< A percentage or a factor, "1,875".
VANDRELCONTROL_EXPORT std::optional<qint64> wholeNumber(const QString &text);  ///< Digits only.
/// A null QDate for empty text (not filled); nullopt for text that is no date.
VANDRELCONTROL_EXPORT std::optional<QDate> date(const QString &text);

/// The message shown under the title "Ongeldige invoer" when text of this kind cannot be read.
VANDRELCONTROL_EXPORT QString expectation(FieldKind kind);
/// Whether a character may appear in a value of this kind at all (typing others is blocked).
VANDRELCONTROL_EXPORT bool allowedCharacter(FieldKind kind, QChar c);

} // namespace Parse

} // namespace VandrelControl
