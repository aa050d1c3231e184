// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "hint.h"

#include <QMouseEvent>
#include <QStyle>
#include <QToolTip>

namespace VandrelControl {

Hint::Hint(QWidget *parent)
    : QLabel(parent)
{
    const int side = 16;
    setPixmap(style()->standardIcon(QStyle::SP_MessageBoxInformation, nullptr, this).pixmap(side, side));
    setAlignment(Qt::AlignCenter);
    setMinimumSize(side, side);
    setCursor(Qt::WhatsThisCursor);
}

QString Hint::hintText() const
{
    return m_text;
}

void Hint::setHintText(const QString &text)
{
    m_text = text;
    setToolTip(text);
}

void Hint::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && !m_text.isEmpty()) {
        event->accept();
        return;
    }
    QLabel::mousePressEvent(event);
}

void Hint::mouseReleaseEvent(QMouseEvent *event)
{
    // Pointing shows the balloon as a tool tip; a click shows it at once. Shown on release: a tool
    // tip closes on any mouse button event, so one opened on press would vanish straight away.
    if (event->button() == Qt::LeftButton && !m_text.isEmpty() && rect().contains(event->position().toPoint())) {
        QToolTip::showText(mapToGlobal(rect().bottomLeft()), m_text, this);
        event->accept();
        return;
    }
    QLabel::mouseReleaseEvent(event);
}

} // namespace VandrelControl
