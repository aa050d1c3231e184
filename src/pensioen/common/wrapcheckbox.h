// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCheckBox>

namespace VandrelPensioen {

// A check box whose caption breaks over more lines when it is wider than wrapWidth (pixels, box
// and caption together), so a long caption no longer sets the width of a whole form column. The
// box stands beside the first line; a click anywhere on the caption toggles it, as on any check
// box. With wrapWidth 0 it is an ordinary check box.
class WrapCheckBox : public QCheckBox
{
    Q_OBJECT
    Q_PROPERTY(int wrapWidth READ wrapWidth WRITE setWrapWidth)

public:
    using QCheckBox::QCheckBox;

    int wrapWidth() const { return m_wrapWidth; }
    void setWrapWidth(int pixels);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    bool hitButton(const QPoint &pos) const override;

private:
    bool wraps() const;
    // Where the caption goes within the given width: left of it the box and its spacing.
    QRect captionRect(int width) const;
    int captionFlags() const;

    int m_wrapWidth = 0;
};

} // namespace VandrelPensioen
