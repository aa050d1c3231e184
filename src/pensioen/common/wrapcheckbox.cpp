// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "wrapcheckbox.h"

#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace VandrelPensioen {

namespace {
// Room around the caption for the focus frame, as the style keeps it around a one-line caption.
constexpr int kFocusMargin = 2;
}

void WrapCheckBox::setWrapWidth(int pixels)
{
    if (m_wrapWidth == pixels)
        return;
    m_wrapWidth = qMax(0, pixels);
    updateGeometry();
    update();
}

int WrapCheckBox::captionFlags() const
{
    return int(Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap | Qt::TextShowMnemonic);
}

QRect WrapCheckBox::captionRect(int width) const
{
    QStyleOptionButton opt;
    initStyleOption(&opt);
    const int left = style()->pixelMetric(QStyle::PM_IndicatorWidth, &opt, this)
        + style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing, &opt, this) + kFocusMargin;
    const int room = qMax(1, width - left - kFocusMargin);
    const QRect text = fontMetrics().boundingRect(QRect(0, 0, room, 100000), captionFlags(), this->text());
    return {left, kFocusMargin, room, text.height()};
}

bool WrapCheckBox::wraps() const
{
    return m_wrapWidth > 0 && QCheckBox::sizeHint().width() > m_wrapWidth;
}

QSize WrapCheckBox::sizeHint() const
{
    if (!wraps())
        return QCheckBox::sizeHint();
    const int indicator = style()->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, this);
    const QRect caption = captionRect(m_wrapWidth);
    return {m_wrapWidth, qMax(indicator, caption.height()) + 2 * kFocusMargin};
}

QSize WrapCheckBox::minimumSizeHint() const
{
    return wraps() ? sizeHint() : QCheckBox::minimumSizeHint();
}

void WrapCheckBox::paintEvent(QPaintEvent *event)
{
    if (!wraps()) {
        QCheckBox::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionButton opt;
    initStyleOption(&opt);
    const QRect caption = captionRect(width());
    // The box centred on the first line of the caption.
    const int line = fontMetrics().height();
    QStyleOptionButton box = opt;
    box.text.clear();
    box.rect = QRect(0, caption.top() + (line - style()->pixelMetric(QStyle::PM_IndicatorHeight, &opt, this)) / 2,
                     style()->pixelMetric(QStyle::PM_IndicatorWidth, &opt, this),
                     style()->pixelMetric(QStyle::PM_IndicatorHeight, &opt, this));
    painter.drawPrimitive(QStyle::PE_IndicatorCheckBox, box);
    painter.drawItemText(caption, captionFlags(), opt.palette, isEnabled(), text(), QPalette::WindowText);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = caption.adjusted(-kFocusMargin, -kFocusMargin, kFocusMargin, kFocusMargin)
                         .intersected(rect());
        focus.backgroundColor = opt.palette.color(QPalette::Window);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

bool WrapCheckBox::hitButton(const QPoint &pos) const
{
    return wraps() ? rect().contains(pos) : QCheckBox::hitButton(pos);
}

} // namespace VandrelPensioen
