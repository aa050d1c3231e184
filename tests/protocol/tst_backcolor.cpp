// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "platformroutines.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace VandrelPensioen;

namespace {

// A contained user control: it takes a colour through its own BackColor.
class Panel : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)

public:
    explicit Panel(QWidget *parent = nullptr)
        : QWidget(parent)
    {
        inner = new QLabel(this);
        inner->setObjectName(QStringLiteral("lblBinnen"));
        own = new QLabel(this);
        own->setObjectName(QStringLiteral("lblEigen"));
        QPalette palette = own->palette();
        palette.setColor(own->backgroundRole(), Qt::yellow);
        own->setPalette(palette);
    }
    QColor BackColor() const { return BackColorOf(this); }
    void setBackColor(const QColor &colour)
    {
        received.append(colour);
        ApplyBackColor(this, colour);
    }

    QLabel *inner = nullptr;
    QLabel *own = nullptr;
    QList<QColor> received;
};

template <typename T>
T *add(QWidget *parent, const char *name)
{
    auto *widget = new T(parent);
    widget->setObjectName(QLatin1String(name));
    return widget;
}

} // namespace

class TestBackColor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recolorsExactlyTheButtonFaceChildren();
    void getReturnsTheControlsOwnColour();
    void secondColourReplacesTheFirst();
};

void TestBackColor::recolorsExactlyTheButtonFaceChildren()
{
    const QColor face = ButtonFaceColor();
    const QColor blue(210, 225, 245);

    QWidget panel;
    auto *label = add<QLabel>(&panel, "lblNaam");
    auto *check = add<QCheckBox>(&panel, "chkSynced_0");
    auto *button = add<QPushButton>(&panel, "cmdToevoegen");
    auto *red = add<QLabel>(&panel, "lblRood");
    QPalette redPalette = red->palette();
    redPalette.setColor(red->backgroundRole(), Qt::red);
    red->setPalette(redPalette);
    auto *edit = add<QLineEdit>(&panel, "txtNaam");
    const QColor editColour = BackColorOf(edit);
    auto *frame = add<QGroupBox>(&panel, "fraGegevens");
    auto *inFrame = add<QLabel>(frame, "lblInFrame");
    auto *greenInFrame = add<QCheckBox>(frame, "chkGroen");
    QPalette greenPalette = greenInFrame->palette();
    greenPalette.setColor(greenInFrame->backgroundRole(), Qt::green);
    greenInFrame->setPalette(greenPalette);
    auto *child = new Panel(&panel);
    child->setObjectName(QStringLiteral("ctlPensUitv"));

    QCOMPARE(BackColorOf(label), face);
    QCOMPARE(BackColorOf(check), face);

    ApplyBackColor(&panel, blue);

    QCOMPARE(BackColorOf(&panel), blue);
    QCOMPARE(BackColorOf(label), blue);
    QCOMPARE(BackColorOf(check), blue);
    QCOMPARE(BackColorOf(button), blue);
    QCOMPARE(BackColorOf(frame), blue);
    QCOMPARE(BackColorOf(inFrame), blue);
    QVERIFY(label->autoFillBackground());
    // Explicitly coloured children and those that never had the button face keep theirs.
    QCOMPARE(BackColorOf(red), QColor(Qt::red));
    QCOMPARE(BackColorOf(greenInFrame), QColor(Qt::green));
    QCOMPARE(BackColorOf(edit), editColour);
    // The user control got the colour through its BackColor and applied its own contract.
    QCOMPARE(child->received, QList<QColor>{blue});
    QCOMPARE(BackColorOf(child), blue);
    QCOMPARE(BackColorOf(child->inner), blue);
    QCOMPARE(BackColorOf(child->own), QColor(Qt::yellow));
}

void TestBackColor::getReturnsTheControlsOwnColour()
{
    QWidget panel;
    QCOMPARE(BackColorOf(&panel), ButtonFaceColor());
    ApplyBackColor(&panel, QColor(1, 2, 3));
    QCOMPARE(BackColorOf(&panel), QColor(1, 2, 3));
    QCOMPARE(BackColorOf(nullptr), QColor());
}

void TestBackColor::secondColourReplacesTheFirst()
{
    // Once recoloured, a child no longer has the button face: a later colour changes the panel
    // itself and leaves the child as it is.
    QWidget panel;
    auto *label = add<QLabel>(&panel, "lblNaam");
    auto *red = add<QLabel>(&panel, "lblRood");
    QPalette redPalette = red->palette();
    redPalette.setColor(red->backgroundRole(), Qt::red);
    red->setPalette(redPalette);
    ApplyBackColor(&panel, QColor(200, 200, 255));
    ApplyBackColor(&panel, QColor(255, 230, 200));
    QCOMPARE(BackColorOf(&panel), QColor(255, 230, 200));
    QCOMPARE(BackColorOf(red), QColor(Qt::red));
    QCOMPARE(BackColorOf(label), QColor(200, 200, 255));
}

QTEST_MAIN(TestBackColor)
#include "tst_backcolor.moc"
