// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The numbered checks of the scheme data panel, as a pure function of what the panel shows.

#include <QDate>
#include <QDateTime>
#include <QString>

#include <optional>

namespace VandrelPensioen {

// What the checks look at: the values shown in the fields (an empty field is 0) and which of the
// fields and frames currently take part.
struct SchemeFields
{
    bool regelingVisible = false;       // fraRegeling
    bool eindloonEnabled = false;       // txtEindloon
    bool middelloonEnabled = false;     // txtMiddelloon
    bool grondslagFrameVisible = false; // fraGrondslag
    bool grondslagVisible = false;      // TxtGrondslag (hidden for defined contribution)
    bool beschikbarePremie = false;     // optBeschikbarePremie is on

    double eindloon = 0;
    double middelloon = 0;
    double salaris = 0;
    double grondslag = 0;
    double aangroei = 0;
    double doelvermogen = 0;
    double pcOpbouw = 0;
    double pcUitkering = 0;
    QDate overzicht;                    // null when not filled
};

// The check numbers; 3 is not used.
namespace SchemeCheck {
inline constexpr qint16 Eindloon = 1;
inline constexpr qint16 Grondslag = 2;
inline constexpr qint16 Middelloon = 4;
inline constexpr qint16 Overzicht = 5;
inline constexpr qint16 Aangroei = 6;
inline constexpr qint16 Doelvermogen = 7;
inline constexpr qint16 PcOpbouw = 8;
inline constexpr qint16 PcUitkering = 9;
}

struct SchemeCheckFailure
{
    qint16 controleNr = 0;
    QString title;
    QString message;
};

// The first failing check among those asked for (0: all, in order), or nothing. now is the moment
// the statement date is compared with.
std::optional<SchemeCheckFailure> checkSchemeFields(const SchemeFields &fields, qint32 controleNr,
                                                    const QDateTime &now);

// Check 6: the accrual amount may not exceed the rounded limit, while the message names the
// cut-off amount.
double aangroeiLimiet(double percentage, double grondslag);
double aangroeiGetoondMaximum(double percentage, double grondslag);
QString aangroeiMelding(double percentage, double grondslag);

} // namespace VandrelPensioen
