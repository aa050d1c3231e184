// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "actionbutton.h"
#include "hint.h"
#include "usersim.h"

#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

using namespace VandrelControl;

class TestHint : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsInformationIcon();
    void textIsToolTip();
    void clickShowsBalloon();
    void actionButtonClicks();
};

void TestHint::showsInformationIcon()
{
    Hint hint;
    QVERIFY(!hint.pixmap().isNull());
    QCOMPARE(hint.pixmap().deviceIndependentSize().toSize(), QSize(16, 16));
}

void TestHint::textIsToolTip()
{
    Hint hint;
    hint.setHintText(QStringLiteral("Het pensioengevend salaris op jaarbasis."));
    QCOMPARE(hint.hintText(), QStringLiteral("Het pensioengevend salaris op jaarbasis."));
    QCOMPARE(hint.toolTip(), hint.hintText());
    // The property is what a form built in Designer sets.
    QVERIFY(hint.setProperty("hintText", QStringLiteral("Anders")));
    QCOMPARE(hint.toolTip(), QStringLiteral("Anders"));
}

void TestHint::clickShowsBalloon()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *hint = new Hint(&window);
    hint->setObjectName(QStringLiteral("hntSalaris"));
    hint->setHintText(QStringLiteral("Vul het salaris in."));
    layout->addWidget(hint);
    QVERIFY(TestSupport::showActive(&window));
    TestSupport::click(TestSupport::find<Hint>(&window, QStringLiteral("hntSalaris")));
    QTRY_VERIFY(QToolTip::isVisible());
    QCOMPARE(QToolTip::text(), QStringLiteral("Vul het salaris in."));
    QToolTip::hideText();
}

void TestHint::actionButtonClicks()
{
    QWidget window;
    auto *layout = new QVBoxLayout(&window);
    auto *button = new ActionButton(QStringLiteral("Toevoegen"), &window);
    layout->addWidget(button);
    QVERIFY(TestSupport::showActive(&window));
    QSignalSpy clicks(button, &QAbstractButton::clicked);
    TestSupport::click(button);
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(button->text(), QStringLiteral("Toevoegen"));
    QVERIFY(button->causesValidation());
    QVERIFY(button->hasFocus());
}

QTEST_MAIN(TestHint)
#include "tst_hint.moc"
