// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "platformroutines.h"
#include "platformroutines_p.h"

#include <QApplication>
#include <QComboBox>
#include <QAbstractItemView>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QLayout>
#include <QMetaProperty>
#include <QPalette>
#include <QScreen>
#include <QWidget>

#include <cmath>

namespace VandrelPensioen {

namespace {

constexpr double TwipsPerInch = 1440.0;
const QString BackColorName = QStringLiteral("BackColor");

QScreen *screenOf(const QWidget *widget)
{
    QScreen *screen = widget ? widget->screen() : nullptr;
    return screen ? screen : QGuiApplication::primaryScreen();
}

int scaled(int value, double factor)
{
    return int(std::lround(value * factor));
}

bool isControlName(const QString &name)
{
    return !name.isEmpty() && !name.startsWith(QLatin1String("qt_"));
}

void collectControls(const QWidget *parent, QList<QWidget *> &into)
{
    const auto children = parent->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (child->isWindow())
            continue;
        if (isControlName(child->objectName()))
            into.append(child);
        if (!Detail::hasBackColorProperty(child))
            collectControls(child, into);
    }
}

QColor colourOf(const QWidget *widget)
{
    return widget->palette().color(widget->backgroundRole());
}

void setColour(QWidget *widget, const QColor &colour)
{
    // A user control recolours its own children through its BackColor; anything else gets the
    // colour in its palette and paints it itself.
    if (Detail::hasBackColorProperty(widget)) {
        widget->setProperty("BackColor", colour);
        return;
    }
    QPalette palette = widget->palette();
    palette.setColor(widget->backgroundRole(), colour);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

} // namespace

namespace Detail {

double twipsPerPixelX(const QWidget *widget)
{
    const QScreen *screen = screenOf(widget);
    const double dpi = screen ? screen->logicalDotsPerInchX() : 96.0;
    return dpi > 0 ? TwipsPerInch / dpi : double(TwipsPerPixelAt96Dpi);
}

double twipsPerPixelY(const QWidget *widget)
{
    const QScreen *screen = screenOf(widget);
    const double dpi = screen ? screen->logicalDotsPerInchY() : 96.0;
    return dpi > 0 ? TwipsPerInch / dpi : double(TwipsPerPixelAt96Dpi);
}

bool hasBackColorProperty(const QWidget *widget)
{
    const QMetaObject *meta = widget->metaObject();
    const int index = meta->indexOfProperty("BackColor");
    return index >= 0 && meta->property(index).isWritable();
}

QList<QWidget *> containedControls(const QWidget *container)
{
    QList<QWidget *> controls;
    if (container)
        collectControls(container, controls);
    return controls;
}

void scaleToScreen(QWidget *container, const QStringList &keepSize, double tx, double ty)
{
    if (!container)
        return;
    if (std::abs(tx - TwipsPerPixelAt96Dpi) < 1e-9 && std::abs(ty - TwipsPerPixelAt96Dpi) < 1e-9)
        return;

    const double fx = tx / TwipsPerPixelAt96Dpi;
    const double fy = ty / TwipsPerPixelAt96Dpi;

    // A widget's size is its client area; the window manager keeps border and caption, so the
    // whole size scales here.
    container->resize(scaled(container->width(), fx), scaled(container->height(), fy));

    const QList<QWidget *> controls = containedControls(container);
    // Fonts are read before any is set: a parent's new font would otherwise reach a child that
    // inherits it and be scaled twice.
    QList<QFont> fonts;
    fonts.reserve(controls.size());
    for (const QWidget *control : controls)
        fonts.append(control->font());

    for (qsizetype i = 0; i < controls.size(); ++i) {
        QWidget *control = controls.at(i);
        const QRect geometry = control->geometry();
        const bool keep = IsNameInList(control->objectName(), keepSize);
        const int width = keep ? geometry.width() : scaled(geometry.width(), fx);
        const int height = keep ? geometry.height() : scaled(geometry.height(), fy);
        control->setGeometry(scaled(geometry.x(), fx), scaled(geometry.y(), fy), width, height);

        QFont font = fonts.at(i);
        if (font.pixelSize() > 0)
            font.setPixelSize(MaxOf(1, scaled(font.pixelSize(), fx)));
        else if (font.pointSizeF() > 0)
            font.setPointSizeF(font.pointSizeF() * fx);
        control->setFont(font);
    }
    // Lines have no end points of their own here: a line is a frame and moved with its geometry.
}

} // namespace Detail

int twips(int value)
{
    return int(std::lround(double(value) / TwipsPerPixelAt96Dpi));
}

void ScaleToScreen(QWidget *container, const QStringList &keepSize)
{
    Detail::scaleToScreen(container, keepSize, Detail::twipsPerPixelX(container),
                          Detail::twipsPerPixelY(container));
}

QColor ButtonFaceColor()
{
    return QApplication::palette().color(QPalette::Button);
}

void SetBackColorByColor(const QList<QWidget *> &controls, const QColor &newColor,
                         const QStringList &skip, const QColor &oldColor)
{
    for (QWidget *control : controls) {
        if (!control || IsNameInList(control->objectName(), skip))
            continue;
        if (colourOf(control) == oldColor)
            setColour(control, newColor);
    }
}

QColor BackColorOf(const QWidget *control)
{
    return control ? colourOf(control) : QColor();
}

void ApplyBackColor(QWidget *control, const QColor &colour)
{
    if (!control)
        return;
    const QColor buttonFace = ButtonFaceColor();
    // Chosen before the control's own palette changes: Qt passes that palette on to children
    // that never had their own, which would hide which of them still had the button face.
    QList<QWidget *> targets;
    const QList<QWidget *> controls = Detail::containedControls(control);
    for (QWidget *child : controls)
        if (colourOf(child) == buttonFace)
            targets.append(child);

    QPalette palette = control->palette();
    palette.setColor(control->backgroundRole(), colour);
    control->setPalette(palette);
    control->setAutoFillBackground(true);

    for (QWidget *child : std::as_const(targets))
        setColour(child, colour);
}

QString ShortenToWidth(QWidget *surface, const QString &text, int maxWidthTwips, bool bold)
{
    if (!surface)
        return text;
    // Measured with a copy of the surface's font made bold as asked, so the surface's own bold
    // setting is never touched and needs no restoring.
    QFont font = surface->font();
    font.setBold(bold);
    const QFontMetrics metrics(font);
    const int maxWidth = twips(maxWidthTwips);
    if (metrics.horizontalAdvance(text) <= maxWidth)
        return text;

    // One character off the end per step, and the "..." counts in the width: the shortened
    // caption must fit as shown. Trailing spaces go so that no gap stands before the dots.
    const QString dots = QStringLiteral("...");
    for (qsizetype length = text.size() - 1; length > 0; --length) {
        QString kept = text.left(length);
        while (!kept.isEmpty() && kept.back().isSpace())
            kept.chop(1);
        const QString candidate = kept + dots;
        if (metrics.horizontalAdvance(candidate) <= maxWidth)
            return candidate;
    }
    return dots;
}

void SetDropDownWidth(QComboBox *combo, int maxWidthPixels)
{
    if (!combo || combo->count() == 0)
        return;
    QAbstractItemView *view = combo->view();
    const QFontMetrics metrics(view->font());
    int widest = 0;
    for (int i = 0; i < combo->count(); ++i)
        widest = MaxOf(widest, metrics.horizontalAdvance(combo->itemText(i)));
    int wanted = widest + 20;
    if (maxWidthPixels > 0)
        wanted = MinOf(wanted, maxWidthPixels);
    if (const QScreen *screen = screenOf(combo))
        wanted = MinOf(wanted, screen->geometry().width());

    // The drop-down is never narrower than the combo box itself; its own minimum width is what
    // widens it beyond that.
    const int current = MaxOf(combo->width(), view->minimumWidth());
    if (wanted > current)
        view->setMinimumWidth(wanted);
}

LayoutPause::LayoutPause(std::initializer_list<QWidget *> containers)
{
    for (QWidget *container : containers) {
        QLayout *layout = container ? container->layout() : nullptr;
        if (layout && layout->isEnabled()) {
            layout->setEnabled(false);
            m_paused.append(layout);
        }
    }
}

LayoutPause::~LayoutPause()
{
    // Inner containers first, so that an outer layout measures their final sizes.
    for (auto it = m_paused.crbegin(); it != m_paused.crend(); ++it) {
        (*it)->setEnabled(true);
        (*it)->activate();
    }
}

} // namespace VandrelPensioen
