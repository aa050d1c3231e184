// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QWidget;

namespace VandrelPensioen {

// A caption as a screen reader should say it: without the mnemonic marks.
QString CaptionText(const QString &text);

// Names a field after the caption that stands before it on its row (a check box, option button
// or label that is not its buddy), with what the field holds of that caption when a row has more
// fields ("ingangsdatum", "% t.o.v. OP"). Fields with a buddy label need nothing.
void NameAfterCaption(QWidget *field, const QWidget *caption, const QString &part = QString());

} // namespace VandrelPensioen
