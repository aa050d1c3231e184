// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

// Internals of the platform routines that tests reach directly: the screen's twips per pixel is
// an input here, so a test can rescale as a 120 dpi screen would without such a screen.

#include <QList>
#include <QStringList>

class QWidget;

namespace VandrelPensioen::Detail {

// Twips per pixel of the screen the widget is on (1440 / logical dpi); 15 at 96 dpi.
double twipsPerPixelX(const QWidget *widget);
double twipsPerPixelY(const QWidget *widget);

void scaleToScreen(QWidget *container, const QStringList &keepSize, double tx, double ty);

// The controls a container owns for the shared routines: named descendants that are not Qt's
// own internals, not separate windows, and not inside a contained user control (one with its own
// BackColor), which looks after its own children.
QList<QWidget *> containedControls(const QWidget *container);

// Whether the widget is one of the library's user controls (it publishes a BackColor property).
bool hasBackColorProperty(const QWidget *widget);

} // namespace VandrelPensioen::Detail
