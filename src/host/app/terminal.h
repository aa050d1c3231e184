// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

namespace Zarnoveld::Terminal {

// Text from a case (names, providers, file names) made safe to print: control characters (C0, DEL,
// C1) and the characters that reorder text (bidirectional embeddings, overrides and isolates,
// direction marks) are shown as \u{XXXX}, a backslash as \\, so a name can neither move the
// cursor, recolour the terminal nor turn the rest of a report around. Line breaks given by the
// program itself are not passed through here.
QString escaped(const QString &text);

} // namespace Zarnoveld::Terminal
