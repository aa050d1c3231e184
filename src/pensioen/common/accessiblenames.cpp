// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "accessiblenames.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QWidget>

namespace VandrelPensioen {

QString CaptionText(const QString &text)
{
    QString shown;
    shown.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&')) {
            // "&&" is a literal ampersand; a single one marks the mnemonic.
            if (i + 1 < text.size() && text.at(i + 1) == QLatin1Char('&'))
                shown += text.at(++i);
            continue;
        }
        shown += text.at(i);
    }
    return shown.simplified();
}

void NameAfterCaption(QWidget *field, const QWidget *caption, const QString &part)
{
    if (!field || !caption)
        return;
    QString text;
    if (const auto *button = qobject_cast<const QAbstractButton *>(caption))
        text = button->text();
    else if (const auto *label = qobject_cast<const QLabel *>(caption))
        text = label->text();
    else if (const auto *box = qobject_cast<const QGroupBox *>(caption))
        text = box->title();
    text = CaptionText(text);
    if (!part.isEmpty())
        text += QStringLiteral(", ") + part;
    field->setAccessibleName(text);
}

} // namespace VandrelPensioen
