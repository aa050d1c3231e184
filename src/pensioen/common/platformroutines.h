// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

#include <initializer_list>

class QComboBox;
class QLayout;
class QWidget;

namespace VandrelPensioen {

// Geometry in the forms is given in twips; 15 twips make one pixel at 96 dpi.
inline constexpr int TwipsPerPixelAt96Dpi = 15;
int twips(int value);                      // twips -> pixels at 96 dpi (rounded to nearest)

// Rescales a container and its children when the screen is not at 96 dpi. Controls named in
// keepSize keep their width and height but still move and scale their font.
void ScaleToScreen(QWidget *container, const QStringList &keepSize = {});

// The colour of button faces in the style in use: what "still has the default colour" means.
QColor ButtonFaceColor();
// For every control not named in skip whose background colour equals oldColor: give it newColor.
void SetBackColorByColor(const QList<QWidget *> &controls, const QColor &newColor,
                         const QStringList &skip, const QColor &oldColor);
// The BackColor contract of every control: get returns the control's own background colour; set
// changes it and recolours exactly the contained controls that still have the button-face colour.
QColor BackColorOf(const QWidget *control);
void ApplyBackColor(QWidget *control, const QColor &colour);

// The text shortened with "..." until it fits maxWidthTwips in the surface's font (bold as asked).
// Without a surface the text comes back unchanged.
QString ShortenToWidth(QWidget *surface, const QString &text, int maxWidthTwips, bool bold);

// Widens the combo box's drop-down list to its widest item (+20 px), never narrower than it is,
// never wider than maxWidthPixels (when > 0) nor the screen.
void SetDropDownWidth(QComboBox *combo, int maxWidthPixels = 0);

// Holds the layouts of the given containers (outer ones first) while a load shows and hides their
// rows, and lays them out once when it ends: Qt otherwise lays a container out again for every
// widget it shows.
class LayoutPause
{
public:
    explicit LayoutPause(std::initializer_list<QWidget *> containers);
    ~LayoutPause();
    LayoutPause(const LayoutPause &) = delete;
    LayoutPause &operator=(const LayoutPause &) = delete;

private:
    QList<QLayout *> m_paused;
};

template <typename T, typename List>
bool IsNameInList(const T &value, const List &list)
{
    for (const auto &element : list)
        if (element == value)
            return true;
    return false;
}

template <typename T>
T MaxOf(T a, T b)
{
    return a > b ? a : b;
}

template <typename T>
T MinOf(T a, T b)
{
    return a < b ? a : b;
}

} // namespace VandrelPensioen
