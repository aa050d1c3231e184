// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "hostmodel.h"

#include <QColor>
#include <QWidget>

namespace VandrelPensioen {

// What each panel inside the pension screen offers its container: the scheme to show, the check
// before the user may leave it, and the background colour of the controls' common protocol.
class SchemePanel : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)

public:
    using QWidget::QWidget;

    virtual void SetApplication(const VandrelApplication::ApplicationPtr &Application, qint16 Anv_Id,
                                qint16 Pen_Id) = 0;
    virtual void Validation(bool &Cancel, qint32 ControleNr) = 0;
    QColor BackColor() const;
    void setBackColor(const QColor &colour);
};

} // namespace VandrelPensioen
