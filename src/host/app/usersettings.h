// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// The program's per-user settings (window geometry, recent cases). They name the adviser's case
// files, so the file is private to the user (0600, its folder 0700) and written whole through a
// temporary file, never half.

#include <QString>
#include <QStringList>
#include <QVariant>

namespace Zarnoveld::UserSettings {

QVariant value(const QString &key, const QVariant &defaultValue = QVariant());
// Stores the value at once; false when the settings file could not be written.
bool setValue(const QString &key, const QVariant &value);
QString fileName();

// Most recent first, at most MaxRecent, only files that still exist.
inline constexpr int MaxRecent = 8;
QStringList recentCases();
bool addRecentCase(const QString &path);

} // namespace Zarnoveld::UserSettings
