// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "platformroutines.h"
#include "platformroutines_p.h"

#include "usersim.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QTest>

using namespace VandrelPensioen;

namespace {

// Stands in for one of the library's user controls: it publishes BackColor and looks after its
// own children.
class UserControl : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QColor BackColor READ BackColor WRITE setBackColor)

public:
    using QWidget::QWidget;
    QColor BackColor() const { return BackColorOf(this); }
    void setBackColor(const QColor &colour)
    {
        ++setCount;
        ApplyBackColor(this, colour);
    }
    int setCount = 0;
};

QFont pointFont(qreal points)
{
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    return font;
}

} // namespace

class TestPlatformRoutines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twipsConvertAtFifteenPerPixel();
    void offscreenScreenIsNinetySixDpi();
    void nothingRescaledAtNinetySixDpi();
    void scalesContainerAndControlsOnAnotherDpi();
    void keepSizeControlMovesAndScalesFontOnly();
    void inheritedFontScaledOnce();
    void userControlInsidesLeftToItself();
    void shortenTextThatFitsHasNoDots();
    void shortenLongTextFitsWithDots();
    void shortenMeasuresBoldWithoutTouchingSurface();
    void shortenWithoutSurfaceReturnsText();
    void dropDownWidenedToWidestItem();
    void dropDownAlreadyWiderKeepsWidth();
    void dropDownRespectsMaximumAndScreen();
    void dropDownOfEmptyComboUntouched();
    void setBackColorByColorSkipsNamesAndOtherColours();
    void smallComparisons();
};

void TestPlatformRoutines::twipsConvertAtFifteenPerPixel()
{
    QCOMPARE(twips(15), 1);
    QCOMPARE(twips(1440), 96);
    QCOMPARE(twips(22), 1);
    QCOMPARE(twips(23), 2);
    QCOMPARE(twips(0), 0);
}

void TestPlatformRoutines::offscreenScreenIsNinetySixDpi()
{
    QWidget widget;
    QCOMPARE(Detail::twipsPerPixelX(&widget), 15.0);
    QCOMPARE(Detail::twipsPerPixelY(&widget), 15.0);
}

void TestPlatformRoutines::nothingRescaledAtNinetySixDpi()
{
    QWidget form;
    form.resize(400, 300);
    auto *label = new QLabel(QStringLiteral("Naam"), &form);
    label->setObjectName(QStringLiteral("lblNaam"));
    label->setGeometry(100, 50, 200, 30);
    label->setFont(pointFont(10));
    auto *inheriting = new QLabel(QStringLiteral("Datum"), &form);
    inheriting->setObjectName(QStringLiteral("lblDatum"));

    ScaleToScreen(&form);
    QCOMPARE(form.size(), QSize(400, 300));
    QCOMPARE(label->geometry(), QRect(100, 50, 200, 30));
    QCOMPARE(label->font().pointSizeF(), 10.0);
    // Untouched means untouched: a control that took its font from the form still does.
    QVERIFY(!inheriting->testAttribute(Qt::WA_SetFont));
    form.setFont(pointFont(14));
    QCOMPARE(inheriting->font().pointSizeF(), 14.0);

    Detail::scaleToScreen(&form, {}, 15, 15);
    QCOMPARE(form.size(), QSize(400, 300));
    QCOMPARE(label->geometry(), QRect(100, 50, 200, 30));
    QCOMPARE(label->font().pointSizeF(), 10.0);
}

void TestPlatformRoutines::scalesContainerAndControlsOnAnotherDpi()
{
    QWidget form;
    form.resize(400, 300);
    auto *frame = new QGroupBox(&form);
    frame->setObjectName(QStringLiteral("fraGegevens"));
    frame->setGeometry(0, 0, 300, 150);
    frame->setFont(pointFont(10));
    auto *edit = new QLineEdit(frame);
    edit->setObjectName(QStringLiteral("txtNaam"));
    edit->setGeometry(30, 60, 150, 45);
    edit->setFont(pointFont(12));

    // 120 dpi: 12 twips per pixel, factor 12 / 15 on both axes.
    Detail::scaleToScreen(&form, {}, 12, 12);
    QCOMPARE(form.size(), QSize(320, 240));
    QCOMPARE(frame->geometry(), QRect(0, 0, 240, 120));
    QCOMPARE(edit->geometry(), QRect(24, 48, 120, 36));
    QCOMPARE(frame->font().pointSizeF(), 8.0);
    QCOMPARE(edit->font().pointSizeF(), 9.6);
}

void TestPlatformRoutines::keepSizeControlMovesAndScalesFontOnly()
{
    QWidget form;
    form.resize(300, 300);
    auto *kept = new QLabel(&form);
    kept->setObjectName(QStringLiteral("lblVast"));
    kept->setGeometry(100, 50, 200, 30);
    kept->setFont(pointFont(10));
    auto *other = new QLabel(&form);
    other->setObjectName(QStringLiteral("lblAnder"));
    other->setGeometry(100, 50, 200, 30);

    Detail::scaleToScreen(&form, {QStringLiteral("lblVast")}, 18, 12);
    QCOMPARE(kept->pos(), QPoint(120, 40));
    QCOMPARE(kept->size(), QSize(200, 30));
    QCOMPARE(kept->font().pointSizeF(), 12.0);   // the font follows the horizontal factor
    QCOMPARE(other->geometry(), QRect(120, 40, 240, 24));
}

void TestPlatformRoutines::inheritedFontScaledOnce()
{
    QWidget form;
    auto *frame = new QGroupBox(&form);
    frame->setObjectName(QStringLiteral("fraA"));
    frame->setFont(pointFont(10));
    auto *label = new QLabel(frame);
    label->setObjectName(QStringLiteral("lblA"));   // inherits the frame's font

    Detail::scaleToScreen(&form, {}, 12, 12);
    QCOMPARE(frame->font().pointSizeF(), 8.0);
    QCOMPARE(label->font().pointSizeF(), 8.0);
}

void TestPlatformRoutines::userControlInsidesLeftToItself()
{
    QWidget form;
    form.resize(300, 300);
    auto *control = new UserControl(&form);
    control->setObjectName(QStringLiteral("ctlPensGeg"));
    control->setGeometry(30, 30, 150, 150);
    auto *inner = new QLabel(control);
    inner->setObjectName(QStringLiteral("lblBinnen"));
    inner->setGeometry(15, 15, 60, 30);
    auto *combo = new QComboBox(&form);
    combo->setObjectName(QStringLiteral("cboSoort"));
    combo->setEditable(true);
    combo->setGeometry(0, 200, 150, 30);
    const QRect innerEdit = combo->lineEdit()->geometry();

    const QList<QWidget *> contained = Detail::containedControls(&form);
    QVERIFY(contained.contains(control));
    QVERIFY(contained.contains(combo));
    QVERIFY(!contained.contains(inner));
    QVERIFY(!contained.contains(combo->lineEdit()));

    Detail::scaleToScreen(&form, {}, 12, 12);
    QCOMPARE(control->geometry(), QRect(24, 24, 120, 120));
    QCOMPARE(inner->geometry(), QRect(15, 15, 60, 30));
    QCOMPARE(combo->geometry(), QRect(0, 160, 120, 24));
    Q_UNUSED(innerEdit);
}

void TestPlatformRoutines::shortenTextThatFitsHasNoDots()
{
    QWidget surface;
    const QString name = QStringLiteral("Jansen");
    const int width = QFontMetrics(surface.font()).horizontalAdvance(name);
    QCOMPARE(ShortenToWidth(&surface, name, width * 15, false), name);
    QCOMPARE(ShortenToWidth(&surface, name, (width + 40) * 15, false), name);
}

void TestPlatformRoutines::shortenLongTextFitsWithDots()
{
    QWidget surface;
    const QFontMetrics metrics(surface.font());
    // The width of "ABCDE..." exactly: one character per step and the dots counted give this.
    const int maxTwips = metrics.horizontalAdvance(QStringLiteral("ABCDE...")) * 15;
    QCOMPARE(ShortenToWidth(&surface, QStringLiteral("ABCDEFGHIJ"), maxTwips, false),
             QStringLiteral("ABCDE..."));

    // No gap before the dots when the cut falls after a space.
    const int spaceTwips = metrics.horizontalAdvance(QStringLiteral("Jan ...")) * 15;
    QCOMPARE(ShortenToWidth(&surface, QStringLiteral("Jan Jansen"), spaceTwips, false),
             QStringLiteral("Jan..."));

    // Nothing fits: only the dots are left.
    QCOMPARE(ShortenToWidth(&surface, QStringLiteral("ABCDEFGHIJ"), 15, false),
             QStringLiteral("..."));
}

void TestPlatformRoutines::shortenMeasuresBoldWithoutTouchingSurface()
{
    QWidget surface;
    QFont normal = surface.font();
    normal.setBold(false);
    surface.setFont(normal);
    QFont boldFont = normal;
    boldFont.setBold(true);
    const QString name = QStringLiteral("WWWWWWWWWWWWWWWWWWWW");
    const int normalWidth = QFontMetrics(normal).horizontalAdvance(name);
    const int boldWidth = QFontMetrics(boldFont).horizontalAdvance(name);
    if (boldWidth <= normalWidth)
        QSKIP("the test font has no wider bold face");

    const int maxTwips = normalWidth * 15;
    QCOMPARE(ShortenToWidth(&surface, name, maxTwips, false), name);
    QVERIFY(ShortenToWidth(&surface, name, maxTwips, true).endsWith(QLatin1String("...")));
    QVERIFY(!surface.font().bold());

    boldFont.setBold(true);
    surface.setFont(boldFont);
    QCOMPARE(ShortenToWidth(&surface, name, maxTwips, false), name);
    QVERIFY(surface.font().bold());
}

void TestPlatformRoutines::shortenWithoutSurfaceReturnsText()
{
    QCOMPARE(ShortenToWidth(nullptr, QStringLiteral("Heel lange naam die nergens past"), 15, true),
             QStringLiteral("Heel lange naam die nergens past"));
}

void TestPlatformRoutines::dropDownWidenedToWidestItem()
{
    QComboBox combo;
    combo.resize(60, 25);
    combo.addItems({QStringLiteral("ABP"), QStringLiteral("Stichting Pensioenfonds Zorg en Welzijn"),
                    QStringLiteral("PGGM")});
    const int widest = QFontMetrics(combo.view()->font())
                           .horizontalAdvance(QStringLiteral("Stichting Pensioenfonds Zorg en Welzijn"));
    SetDropDownWidth(&combo);
    QCOMPARE(combo.view()->minimumWidth(), widest + 20);
}

void TestPlatformRoutines::dropDownAlreadyWiderKeepsWidth()
{
    QComboBox combo;
    combo.resize(60, 25);
    combo.addItems({QStringLiteral("ABP"), QStringLiteral("PGGM")});
    combo.view()->setMinimumWidth(500);
    SetDropDownWidth(&combo);
    QCOMPARE(combo.view()->minimumWidth(), 500);

    // A combo box itself wider than its items: the drop-down needs no width of its own.
    QComboBox wide;
    wide.resize(400, 25);
    wide.addItems({QStringLiteral("ABP")});
    SetDropDownWidth(&wide);
    QCOMPARE(wide.view()->minimumWidth(), 0);
}

void TestPlatformRoutines::dropDownRespectsMaximumAndScreen()
{
    QComboBox combo;
    combo.resize(60, 25);
    combo.addItems({QStringLiteral("Stichting Pensioenfonds Zorg en Welzijn")});
    SetDropDownWidth(&combo, 120);
    QCOMPARE(combo.view()->minimumWidth(), 120);

    QComboBox huge;
    huge.resize(60, 25);
    huge.addItem(QString(2000, QLatin1Char('W')));
    SetDropDownWidth(&huge);
    const int screenWidth = huge.screen()->geometry().width();
    QCOMPARE(huge.view()->minimumWidth(), screenWidth);
}

void TestPlatformRoutines::dropDownOfEmptyComboUntouched()
{
    QComboBox combo;
    combo.resize(60, 25);
    SetDropDownWidth(&combo);
    QCOMPARE(combo.view()->minimumWidth(), 0);
    SetDropDownWidth(nullptr);
}

void TestPlatformRoutines::setBackColorByColorSkipsNamesAndOtherColours()
{
    QWidget form;
    auto *plain = new QLabel(&form);
    plain->setObjectName(QStringLiteral("lblA"));
    auto *skipped = new QLabel(&form);
    skipped->setObjectName(QStringLiteral("lvwStaffel"));
    auto *edit = new QLineEdit(&form);
    edit->setObjectName(QStringLiteral("txtA"));
    auto *control = new UserControl(&form);
    control->setObjectName(QStringLiteral("ctlA"));
    const QColor face = ButtonFaceColor();
    QCOMPARE(face, QApplication::palette().color(QPalette::Button));
    const QColor edgeBase = BackColorOf(edit);
    const QColor blue(200, 220, 255);

    SetBackColorByColor(Detail::containedControls(&form), blue, {QStringLiteral("lvwStaffel")}, face);
    QCOMPARE(BackColorOf(plain), blue);
    QVERIFY(plain->autoFillBackground());
    QCOMPARE(BackColorOf(skipped), face);
    QCOMPARE(BackColorOf(edit), edgeBase);
    QCOMPARE(control->setCount, 1);
    QCOMPARE(BackColorOf(control), blue);
}

void TestPlatformRoutines::smallComparisons()
{
    QVERIFY(IsNameInList(4, QList<int>{1, 2, 4, 6, 7}));
    QVERIFY(!IsNameInList(3, QList<int>{1, 2, 4, 6, 7}));
    QVERIFY(!IsNameInList(QStringLiteral("a"), QStringList{}));
    QCOMPARE(MaxOf(3.5, -2.0), 3.5);
    QCOMPARE(MaxOf(-2, 3), 3);
    QCOMPARE(MaxOf(2, 2), 2);
    QCOMPARE(MinOf(3.5, -2.0), -2.0);
    QCOMPARE(MinOf(7, 9), 7);
}

QTEST_MAIN(TestPlatformRoutines)
#include "tst_platformroutines.moc"
