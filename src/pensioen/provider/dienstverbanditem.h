// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// How an employment becomes an item of the employment combo box, and how its identifier is read
// back. The item keeps the suite's padded text (description, 255 spaces, the 38-character key) so
// that "the rightmost 38 characters" stays the way to read the key; the combo shows only the
// description.

#include <QDate>
#include <QString>

#include <Qt>

namespace VandrelPensioen::DienstverbandItem {

inline constexpr int KeyLength = 38;
inline constexpr int Padding = 255;

// Item data roles of cboDienstverband: the display role is the visible description (what the box
// and its list show and what the drop-down is measured on), TextRole the full padded text,
// PositionRole the employment's number with the participant (the suite's item data). The
// explaining item has neither of the two.
inline constexpr int TextRole = Qt::UserRole;
inline constexpr int PositionRole = Qt::UserRole + 1;

// "Werkgever, dd-MM-yyyy - dd-MM-yyyy, € 45.000, meetellen tot dd-MM-yyyy" followed by two spaces.
// Parts that are not filled are left out.
QString description(const QString &werkgever, const QDate &begin, const QDate &einde,
                    double salaris, const QDate &meetellenTot);

// Description, 255 spaces, then the key.
QString paddedText(const QString &description, const QString &key);
// The rightmost 38 characters.
QString keyOf(const QString &paddedText);
// Everything before the padding, without trailing spaces.
QString visiblePart(const QString &paddedText);

} // namespace VandrelPensioen::DienstverbandItem
