// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
#include "actionbutton.h"
#include "messagebox.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QDialog>
#include <QLocale>
#include <QMessageBox>
#include <QSignalSpy>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <memory>

using namespace VandrelControl;
using namespace TestSupport;

// A window with two fields, a button and a button that does not check: the smallest form.
class Form : public QWidget
{
public:
    Form()
    {
        setObjectName(QStringLiteral("frmTest"));
        auto *layout = new QVBoxLayout(this);
        txtA = new TextBox(this);
        txtA->setObjectName(QStringLiteral("txtA"));
        txtB = new TextBox(this);
        txtB->setObjectName(QStringLiteral("txtB"));
        cmdOK = new ActionButton(QStringLiteral("OK"), this);
        cmdOK->setObjectName(QStringLiteral("cmdOK"));
        cmdAnnuleren = new ActionButton(QStringLiteral("Annuleren"), this);
        cmdAnnuleren->setObjectName(QStringLiteral("cmdAnnuleren"));
        cmdAnnuleren->setCausesValidation(false);
        layout->addWidget(txtA);
        layout->addWidget(txtB);
        layout->addWidget(cmdOK);
        layout->addWidget(cmdAnnuleren);
        resize(300, 200);
    }
    TextBox *txtA;
    TextBox *txtB;
    ActionButton *cmdOK;
    ActionButton *cmdAnnuleren;
};

// Counts Validate per field and cancels while told to; records the value the handler saw.
struct Checker
{
    explicit Checker(TextBox *box)
    {
        connection = QObject::connect(box, &TextBox::Validate, box, [this, box](bool &cancel) {
            ++calls;
            seenValue = box->value();
            seenDate = box->date();
            seenEmpty = box->isEmpty();
            if (onValidate)
                onValidate();
            if (cancelNext)
                cancel = true;
        });
    }
    ~Checker() { QObject::disconnect(connection); }
    Checker(const Checker &) = delete;
    Checker &operator=(const Checker &) = delete;

    QMetaObject::Connection connection;
    int calls = 0;
    bool cancelNext = false;
    double seenValue = -1;
    QDate seenDate;
    bool seenEmpty = false;
    std::function<void()> onValidate;
};

class TestTextBox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tabWithCancelKeepsFocus();
    void tabPassedMovesFocus();
    void shiftTabLeavesBackwards_data();
    void shiftTabLeavesBackwards();
    void mouseClickOnOtherField_data();
    void mouseClickOnOtherField();
    void enterValidatesAndStays_data();
    void enterValidatesAndStays();
    void validatesWithoutEdit();
    void messageBoxFromHandlerDoesNotValidateAgain();
    void realMessageBoxFromHandlerDoesNotValidateAgain();
    void unreadableTextShowsMessage_data();
    void unreadableTextShowsMessage();
    void unreadableTextOnEnterAndClick();
    void codeNeverEmitsValidate();
    void exactValueUntilEdited();
    void typedTextIsShownFormatted();
    void blockedCharacters_data();
    void blockedCharacters();
    void clearedNumberCommitsZero();
    void clearedDateCommitsNotFilled();
    void keypadDecimalTypesDutchSeparator_data();
    void keypadDecimalTypesDutchSeparator();
    void keypadDeleteWithoutTextStillDeletes();
    void commaAcceptedAndReadRegardlessOfLocale_data();
    void commaAcceptedAndReadRegardlessOfLocale();
    void buttonClickRefusedWhenFieldKeepsFocus();
    void buttonWithoutValidationSkipsCheck();
    void causesValidationOffChecksNothing();
    void otherWindowTakingFocusDoesNotValidate();
    void handlerPuttingFocusElsewhereIsRespected();
    void kindAndDecimalsReformatCodeValue();
    void closingDialogDoesNotValidate();
    void handlerMovingFocusOnEnterDoesNotValidateAgain();
    void dateFieldWidensForALargerFont();

private:
    std::unique_ptr<Form> form;
};

void TestTextBox::init()
{
    QLocale::setDefault(QLocale::c());
    form = std::make_unique<Form>();
    QVERIFY(showActive(form.get()));
}

void TestTextBox::cleanup()
{
    form.reset();
    QLocale::setDefault(QLocale::c());
}

void TestTextBox::tabWithCancelKeepsFocus()
{
    MessageRecorder recorder;
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    a.cancelNext = true;
    enter(form->txtA, QStringLiteral("5000"));
    QCOMPARE(a.calls, 1);
    QCOMPARE(a.seenValue, 5000.0);
    QCOMPARE(QApplication::focusWidget(), form->txtA);
    QVERIFY(form->txtA->hasFocus());
    QCOMPARE(form->txtA->selectedText(), QStringLiteral("5000"));
    QCOMPARE(recorder.count(), 0);

    // The user corrects the value; the next Tab passes and moves on.
    a.cancelNext = false;
    enter(form->txtA, QStringLiteral("4000"));
    QCOMPARE(a.calls, 2);
    QCOMPARE(QApplication::focusWidget(), form->txtB);
    QCOMPARE(form->txtA->value(), 4000.0);
}

void TestTextBox::tabPassedMovesFocus()
{
    form->txtA->setKind(FieldKind::Percentage);
    Checker a(form->txtA);
    Checker b(form->txtB);
    enter(form->txtA, QStringLiteral("2,5"));
    QCOMPARE(a.calls, 1);
    QCOMPARE(b.calls, 0);
    QCOMPARE(QApplication::focusWidget(), form->txtB);
    QCOMPARE(form->txtA->value(), 2.5);
}

void TestTextBox::shiftTabLeavesBackwards_data()
{
    QTest::addColumn<bool>("cancel");
    QTest::newRow("passed") << false;
    QTest::newRow("cancelled") << true;
}

void TestTextBox::shiftTabLeavesBackwards()
{
    QFETCH(bool, cancel);
    Checker a(form->txtA);
    Checker b(form->txtB);
    b.cancelNext = cancel;
    typeInto(form->txtB, QStringLiteral("tekst"));
    const int aBefore = a.calls; // clicking into txtB left txtA, which checked it
    pressShiftTab(form->txtB);
    QCOMPARE(b.calls, 1);
    QCOMPARE(a.calls, aBefore);
    QCOMPARE(QApplication::focusWidget(), cancel ? form->txtB : form->txtA);
}

void TestTextBox::mouseClickOnOtherField_data()
{
    QTest::addColumn<bool>("cancel");
    QTest::newRow("passed") << false;
    QTest::newRow("cancelled") << true;
}

void TestTextBox::mouseClickOnOtherField()
{
    QFETCH(bool, cancel);
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    Checker b(form->txtB);
    a.cancelNext = cancel;
    typeInto(form->txtA, QStringLiteral("12"));
    click(form->txtB);
    QCOMPARE(a.calls, 1);
    QCOMPARE(b.calls, 0);
    QCOMPARE(QApplication::focusWidget(), cancel ? form->txtA : form->txtB);
    // The field the user was heading for never really had the focus: leaving it again later
    // must not check it.
    if (cancel) {
        a.cancelNext = false;
        pressTab(form->txtA);
        QCOMPARE(b.calls, 0);
        QCOMPARE(QApplication::focusWidget(), form->txtB);
    }
}

void TestTextBox::enterValidatesAndStays_data()
{
    QTest::addColumn<bool>("cancel");
    QTest::newRow("passed") << false;
    QTest::newRow("cancelled") << true;
}

void TestTextBox::enterValidatesAndStays()
{
    QFETCH(bool, cancel);
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    a.cancelNext = cancel;
    QSignalSpy returns(form->txtA, &QLineEdit::returnPressed);
    typeInto(form->txtA, QStringLiteral("7"));
    pressEnter(form->txtA);
    QCOMPARE(a.calls, 1);
    QCOMPARE(a.seenValue, 7.0);
    QCOMPARE(QApplication::focusWidget(), form->txtA);
    // Only a passed check lets Enter through to the line edit (and a dialog's default button).
    QCOMPARE(returns.count(), cancel ? 0 : 1);
    if (cancel)
        QCOMPARE(form->txtA->selectedText(), QStringLiteral("7"));
}

void TestTextBox::validatesWithoutEdit()
{
    Checker a(form->txtA);
    form->txtA->setFocus(Qt::MouseFocusReason);
    pressTab(form->txtA);
    QCOMPARE(a.calls, 1);
    QCOMPARE(QApplication::focusWidget(), form->txtB);
}

void TestTextBox::messageBoxFromHandlerDoesNotValidateAgain()
{
    MessageRecorder recorder;
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    a.cancelNext = true;
    a.onValidate = [&] {
        MessageBox::ok(form->txtA, QStringLiteral("Het bedrag is te hoog."), QStringLiteral("Ongeldige invoer"));
    };
    enter(form->txtA, QStringLiteral("999999"));
    QCOMPARE(a.calls, 1);
    QCOMPARE(recorder.count(), 1);
    QCOMPARE(recorder.lastText(), QStringLiteral("Het bedrag is te hoog."));
    QCOMPARE(QApplication::focusWidget(), form->txtA);
}

void TestTextBox::realMessageBoxFromHandlerDoesNotValidateAgain()
{
    // A real modal box takes the focus from the field while the handler runs; that must not
    // count as leaving the field.
    QVERIFY(!MessageBox::hasResponder());
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    Checker b(form->txtB);
    a.cancelNext = true;
    int boxes = 0;
    QTimer closer;
    closer.setInterval(10);
    connect(&closer, &QTimer::timeout, this, [&] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            ++boxes;
            box->buttons().constFirst()->click();
        }
    });
    closer.start();
    a.onValidate = [&] {
        MessageBox::ok(form->txtA, QStringLiteral("Het bedrag is te hoog."), QStringLiteral("Ongeldige invoer"));
    };
    enter(form->txtA, QStringLiteral("999999"));
    QCOMPARE(boxes, 1);
    QCOMPARE(a.calls, 1);
    QTRY_VERIFY(form->isActiveWindow());
    QCOMPARE(a.calls, 1);
    QCOMPARE(b.calls, 0);
    QCOMPARE(QApplication::focusWidget(), form->txtA);

    // Same for Enter.
    typeInto(form->txtA, QStringLiteral("888888"));
    pressEnter(form->txtA);
    QCOMPARE(boxes, 2);
    QTRY_VERIFY(form->isActiveWindow());
    QCOMPARE(a.calls, 2);
    QCOMPARE(QApplication::focusWidget(), form->txtA);
    closer.stop();
}

void TestTextBox::unreadableTextShowsMessage_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("message");
    QTest::newRow("amount 12.34") << int(FieldKind::Amount) << "12.34" << "Voer een geldig bedrag in.";
    QTest::newRow("amount minus only") << int(FieldKind::Amount) << "-" << "Voer een geldig bedrag in.";
    QTest::newRow("percentage") << int(FieldKind::Percentage) << "1.87,5" << "Voer een geldig percentage in.";
    QTest::newRow("factor") << int(FieldKind::Factor) << "1,2,3" << "Voer een geldige factor in.";
    QTest::newRow("date 31-02-2024") << int(FieldKind::Date) << "31-02-2024"
                                     << "Voer een geldige datum in (dd-mm-jjjj).";
    QTest::newRow("date short year") << int(FieldKind::Date) << "1-1-24" << "Voer een geldige datum in (dd-mm-jjjj).";
    QTest::newRow("whole number") << int(FieldKind::WholeNumber) << "1.00" << "Voer een geldig geheel getal in.";
}

void TestTextBox::unreadableTextShowsMessage()
{
    QFETCH(int, kind);
    QFETCH(QString, typed);
    QFETCH(QString, message);
    MessageRecorder recorder;
    form->txtA->setKind(FieldKind(kind));
    Checker a(form->txtA);
    enter(form->txtA, typed);
    QCOMPARE(recorder.count(), 1);
    QCOMPARE(recorder.lastTitle(), QStringLiteral("Ongeldige invoer"));
    QCOMPARE(recorder.lastText(), message);
    QCOMPARE(recorder.last().icon, MessageBox::Icon::Exclamation);
    QCOMPARE(recorder.last().buttons, MessageBox::Buttons::Ok);
    QCOMPARE(a.calls, 0);
    QCOMPARE(QApplication::focusWidget(), form->txtA);
    QCOMPARE(form->txtA->text(), typed);
    QVERIFY(!form->txtA->isReadable());
}

void TestTextBox::unreadableTextOnEnterAndClick()
{
    MessageRecorder recorder;
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    typeInto(form->txtA, QStringLiteral("12.34"));
    pressEnter(form->txtA);
    QCOMPARE(recorder.count(), 1);
    QCOMPARE(a.calls, 0);
    click(form->txtB);
    QCOMPARE(recorder.count(), 2);
    QCOMPARE(recorder.lastText(), QStringLiteral("Voer een geldig bedrag in."));
    QCOMPARE(a.calls, 0);
    QCOMPARE(QApplication::focusWidget(), form->txtA);
}

void TestTextBox::codeNeverEmitsValidate()
{
    form->txtA->setKind(FieldKind::Amount);
    form->txtB->setKind(FieldKind::Date);
    Checker a(form->txtA);
    Checker b(form->txtB);
    form->txtA->setFocus(Qt::MouseFocusReason);
    form->txtA->setValue(12345);
    QCOMPARE(form->txtA->text(), QStringLiteral("12.345"));
    form->txtA->setText(QStringLiteral("77"));
    form->txtB->setDate(QDate(2024, 2, 9));
    QCOMPARE(form->txtB->text(), QStringLiteral("09-02-2024"));
    form->txtB->setText(QString());
    QCOMPARE(a.calls, 0);
    QCOMPARE(b.calls, 0);
    QCOMPARE(form->txtA->value(), 77.0);
}

void TestTextBox::exactValueUntilEdited()
{
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    form->txtA->setValue(624.99375);
    QCOMPARE(form->txtA->text(), QStringLiteral("625"));
    // Tabbing through does not round what code put there.
    form->txtA->setFocus(Qt::MouseFocusReason);
    pressTab(form->txtA);
    QCOMPARE(a.calls, 1);
    QCOMPARE(a.seenValue, 624.99375);
    QCOMPARE(form->txtA->value(), 624.99375);
    // Typing the same text is the user's own value.
    enter(form->txtA, QStringLiteral("625"));
    QCOMPARE(a.seenValue, 625.0);
    QCOMPARE(form->txtA->value(), 625.0);
}

void TestTextBox::typedTextIsShownFormatted()
{
    form->txtA->setKind(FieldKind::Amount);
    form->txtB->setKind(FieldKind::Date);
    Checker a(form->txtA);
    enter(form->txtA, QStringLiteral("12345,6"));
    QCOMPARE(form->txtA->text(), QStringLiteral("12.346"));
    QCOMPARE(form->txtA->value(), 12345.6);
    enter(form->txtB, QStringLiteral("1-2-2024"));
    QCOMPARE(form->txtB->text(), QStringLiteral("01-02-2024"));
    QCOMPARE(form->txtB->date(), QDate(2024, 2, 1));
    // A handler that sets the value itself keeps its exact value, even when it shows the same.
    a.onValidate = [&] { form->txtA->setValue(624.99375); };
    enter(form->txtA, QStringLiteral("625"));
    QCOMPARE(form->txtA->text(), QStringLiteral("625"));
    QCOMPARE(form->txtA->value(), 624.99375);
    a.onValidate = nullptr;
    // A cancelled check leaves the text as typed.
    a.cancelNext = true;
    enter(form->txtA, QStringLiteral("99999"));
    QCOMPARE(form->txtA->text(), QStringLiteral("99999"));
}

void TestTextBox::blockedCharacters_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("amount") << int(FieldKind::Amount) << "1a2 b.3%4,5e" << "12.34,5";
    QTest::newRow("percentage") << int(FieldKind::Percentage) << "2,5%" << "2,5";
    QTest::newRow("whole number") << int(FieldKind::WholeNumber) << "6,7x" << "67";
    QTest::newRow("date") << int(FieldKind::Date) << "01/02.2024" << "01022024";
    QTest::newRow("text") << int(FieldKind::Text) << "Abc 1,5%" << "Abc 1,5%";
}

void TestTextBox::blockedCharacters()
{
    QFETCH(int, kind);
    QFETCH(QString, typed);
    QFETCH(QString, shown);
    form->txtA->setKind(FieldKind(kind));
    typeInto(form->txtA, typed);
    QCOMPARE(form->txtA->text(), shown);
}

void TestTextBox::clearedNumberCommitsZero()
{
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    form->txtA->setValue(500);
    enter(form->txtA, QString());
    QCOMPARE(a.calls, 1);
    QCOMPARE(a.seenValue, 0.0);
    QVERIFY(a.seenEmpty);
    QCOMPARE(form->txtA->value(), 0.0);
    QCOMPARE(QApplication::focusWidget(), form->txtB);

    // Backspacing the text away and clicking elsewhere commits the same way.
    form->txtA->setValue(500);
    form->txtA->setFocus(Qt::MouseFocusReason);
    form->txtA->end(false);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(form->txtA, Qt::Key_Backspace);
    click(form->txtB);
    QCOMPARE(a.calls, 2);
    QCOMPARE(a.seenValue, 0.0);
    QCOMPARE(form->txtA->value(), 0.0);
}

void TestTextBox::clearedDateCommitsNotFilled()
{
    form->txtA->setKind(FieldKind::Date);
    Checker a(form->txtA);
    form->txtA->setDate(QDate(2030, 1, 1));
    enter(form->txtA, QString());
    QCOMPARE(a.calls, 1);
    QVERIFY(a.seenDate.isNull());
    QVERIFY(form->txtA->date().isNull());
}

void TestTextBox::keypadDecimalTypesDutchSeparator_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("keyText");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<double>("value");
    QTest::newRow("amount period") << int(FieldKind::Amount) << int(Qt::Key_Period) << "." << "12,5" << 12.5;
    QTest::newRow("amount comma") << int(FieldKind::Amount) << int(Qt::Key_Comma) << "," << "12,5" << 12.5;
    QTest::newRow("percentage delete key") << int(FieldKind::Percentage) << int(Qt::Key_Delete) << "."
                                           << "12,5" << 12.5;
    QTest::newRow("factor") << int(FieldKind::Factor) << int(Qt::Key_Period) << "." << "12,5" << 12.5;
    QTest::newRow("whole number") << int(FieldKind::WholeNumber) << int(Qt::Key_Period) << "." << "125" << 125.0;
}

void TestTextBox::keypadDecimalTypesDutchSeparator()
{
    QFETCH(int, kind);
    QFETCH(int, key);
    QFETCH(QString, keyText);
    QFETCH(QString, shown);
    QFETCH(double, value);
    form->txtA->setKind(FieldKind(kind));
    typeInto(form->txtA, QStringLiteral("12"));
    QTest::sendKeyEvent(QTest::Click, form->txtA, Qt::Key(key), keyText, Qt::KeypadModifier);
    QTest::keyClick(form->txtA, Qt::Key_5);
    QCOMPARE(form->txtA->text(), shown);
    QCOMPARE(form->txtA->value(), value);

    // In a date the keypad separator is the date separator.
    form->txtB->setKind(FieldKind::Date);
    typeInto(form->txtB, QStringLiteral("1"));
    QTest::sendKeyEvent(QTest::Click, form->txtB, Qt::Key_Period, QStringLiteral("."), Qt::KeypadModifier);
    QTest::keyClicks(form->txtB, QStringLiteral("2"));
    QTest::sendKeyEvent(QTest::Click, form->txtB, Qt::Key_Period, QStringLiteral("."), Qt::KeypadModifier);
    QTest::keyClicks(form->txtB, QStringLiteral("2024"));
    QCOMPARE(form->txtB->text(), QStringLiteral("1-2-2024"));
    QCOMPARE(form->txtB->date(), QDate(2024, 2, 1));
}

void TestTextBox::keypadDeleteWithoutTextStillDeletes()
{
    form->txtA->setKind(FieldKind::Amount);
    typeInto(form->txtA, QStringLiteral("123"));
    form->txtA->home(false);
    QTest::sendKeyEvent(QTest::Click, form->txtA, Qt::Key_Delete, QString(), Qt::KeypadModifier);
    QCOMPARE(form->txtA->text(), QStringLiteral("23"));
}

void TestTextBox::commaAcceptedAndReadRegardlessOfLocale_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("value");
    for (const char *loc : {"C", "nl_NL", "en_US", "de_DE"}) {
        const QString l = QString::fromLatin1(loc);
        QTest::addRow("%s percentage comma", loc) << l << int(FieldKind::Percentage) << "1,5" << 1.5;
        QTest::addRow("%s percentage dot", loc) << l << int(FieldKind::Percentage) << "1.875" << 1.875;
        QTest::addRow("%s factor", loc) << l << int(FieldKind::Factor) << "0,975" << 0.975;
        QTest::addRow("%s amount", loc) << l << int(FieldKind::Amount) << "1.234,56" << 1234.56;
    }
}

void TestTextBox::commaAcceptedAndReadRegardlessOfLocale()
{
    QFETCH(QString, locale);
    QFETCH(int, kind);
    QFETCH(QString, typed);
    QFETCH(double, value);
    QLocale::setDefault(QLocale(locale));
    form->txtA->setLocale(QLocale(locale));
    MessageRecorder recorder;
    form->txtA->setKind(FieldKind(kind));
    Checker a(form->txtA);
    enter(form->txtA, typed);
    QCOMPARE(recorder.count(), 0);
    QCOMPARE(a.calls, 1);
    QCOMPARE(a.seenValue, value);
    QCOMPARE(form->txtA->value(), value);
}

void TestTextBox::buttonClickRefusedWhenFieldKeepsFocus()
{
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    QSignalSpy clicks(form->cmdOK, &QAbstractButton::clicked);
    a.cancelNext = true;
    typeInto(form->txtA, QStringLiteral("5"));
    click(form->cmdOK);
    QCOMPARE(a.calls, 1);
    QCOMPARE(clicks.count(), 0);
    QCOMPARE(QApplication::focusWidget(), form->txtA);
    // A later click, with the field now passing, acts.
    a.cancelNext = false;
    click(form->cmdOK);
    QCOMPARE(a.calls, 2);
    QCOMPARE(clicks.count(), 1);
    QCOMPARE(QApplication::focusWidget(), form->cmdOK);
    click(form->cmdOK);
    QCOMPARE(clicks.count(), 2);
}

void TestTextBox::buttonWithoutValidationSkipsCheck()
{
    MessageRecorder recorder;
    form->txtA->setKind(FieldKind::Amount);
    Checker a(form->txtA);
    a.cancelNext = true;
    QSignalSpy clicks(form->cmdAnnuleren, &QAbstractButton::clicked);
    typeInto(form->txtA, QStringLiteral("12.34"));
    click(form->cmdAnnuleren);
    QCOMPARE(a.calls, 0);
    QCOMPARE(recorder.count(), 0);
    QCOMPARE(clicks.count(), 1);
}

void TestTextBox::causesValidationOffChecksNothing()
{
    MessageRecorder recorder;
    form->txtA->setKind(FieldKind::Amount);
    form->txtA->setCausesValidation(false);
    Checker a(form->txtA);
    enter(form->txtA, QStringLiteral("12.34"));
    QCOMPARE(a.calls, 0);
    QCOMPARE(recorder.count(), 0);
    QCOMPARE(QApplication::focusWidget(), form->txtB);
    typeInto(form->txtA, QStringLiteral("5"));
    pressEnter(form->txtA);
    QCOMPARE(a.calls, 0);
}

void TestTextBox::otherWindowTakingFocusDoesNotValidate()
{
    Checker a(form->txtA);
    typeInto(form->txtA, QStringLiteral("iets"));
    QWidget other;
    auto *elsewhere = new QLineEdit(&other);
    QVERIFY(showActive(&other));
    QCOMPARE(QApplication::focusWidget(), elsewhere);
    QCOMPARE(a.calls, 0);
    QVERIFY(showActive(form.get()));
    QCOMPARE(a.calls, 0);
    QCOMPARE(QApplication::focusWidget(), form->txtA);
    pressTab(form->txtA);
    QCOMPARE(a.calls, 1);
}

void TestTextBox::handlerPuttingFocusElsewhereIsRespected()
{
    Checker a(form->txtA);
    a.cancelNext = true;
    a.onValidate = [&] { form->cmdOK->setFocus(Qt::OtherFocusReason); };
    typeInto(form->txtA, QStringLiteral("x"));
    pressTab(form->txtA);
    QCOMPARE(a.calls, 1);
    QCOMPARE(QApplication::focusWidget(), form->cmdOK);
}

void TestTextBox::kindAndDecimalsReformatCodeValue()
{
    form->txtA->setKind(FieldKind::Factor);
    QCOMPARE(form->txtA->decimals(), 3);
    form->txtA->setValue(2.5);
    QCOMPARE(form->txtA->text(), QStringLiteral("2,500"));
    form->txtA->setDecimals(2);
    QCOMPARE(form->txtA->text(), QStringLiteral("2,50"));
    form->txtA->setKind(FieldKind::WholeNumber);
    QCOMPARE(form->txtA->text(), QStringLiteral("3"));
    QCOMPARE(form->txtA->value(), 2.5);
    form->txtA->setKind(FieldKind::Amount);
    form->txtA->setValue(1234567.4);
    QCOMPARE(form->txtA->text(), QStringLiteral("1.234.567"));
    QVERIFY(form->txtA->isReadable());
}

void TestTextBox::closingDialogDoesNotValidate()
{
    MessageRecorder recorder;
    QDialog dialog;
    auto *layout = new QVBoxLayout(&dialog);
    auto *field = new TextBox(&dialog);
    field->setKind(FieldKind::Amount);
    layout->addWidget(field);
    layout->addWidget(new TextBox(&dialog));
    QVERIFY(showActive(&dialog));
    Checker c(field);
    typeInto(field, QStringLiteral("12.34"));
    QTest::keyClick(field, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QCOMPARE(c.calls, 0);
    QCOMPARE(recorder.count(), 0);

    // Code taking the focus away to nowhere is no leave either.
    QVERIFY(showActive(form.get()));
    Checker a(form->txtA);
    typeInto(form->txtA, QStringLiteral("1"));
    form->txtA->clearFocus();
    QCOMPARE(a.calls, 0);
}

void TestTextBox::handlerMovingFocusOnEnterDoesNotValidateAgain()
{
    // While its own check runs the field is still focused; a handler that moves the focus must
    // not start the same check a second time.
    Checker a(form->txtA);
    Checker b(form->txtB);
    a.onValidate = [&] { form->txtB->setFocus(Qt::OtherFocusReason); };
    typeInto(form->txtA, QStringLiteral("x"));
    pressEnter(form->txtA);
    QCOMPARE(a.calls, 1);
    QCOMPARE(b.calls, 0);
    QCOMPARE(QApplication::focusWidget(), form->txtB);
}

// A form gives its date fields a fixed width for the standard font; a user with a larger font
// must still see the whole date, while the standard font keeps the designed width.
void TestTextBox::dateFieldWidensForALargerFont()
{
    QWidget panel;
    auto *date = new TextBox(&panel);
    date->setKind(FieldKind::Date);
    date->setFixedWidth(80);
    date->setDate(QDate(2038, 4, 1));
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    const auto fits = [date] {
        QStyleOptionFrame option;
        option.initFrom(date);
        const QRect inner = date->style()->subElementRect(QStyle::SE_LineEditContents, &option, date);
        return date->fontMetrics().horizontalAdvance(date->text()) < inner.width();
    };
    QVERIFY(fits());
    QCOMPARE(date->width(), 80);

    QFont large = date->font();
    large.setPointSizeF(large.pointSizeF() * 2);
    date->setFont(large);
    QVERIFY2(fits(), qPrintable(QString::number(date->width())));
    QVERIFY(date->width() > 80);

    // An amount is not a date: its designed width is the form's business.
    auto *amount = new TextBox(&panel);
    amount->setKind(FieldKind::Amount);
    amount->setFixedWidth(30);
    amount->setFont(large);
    QCOMPARE(amount->width(), 30);
}

QTEST_MAIN(TestTextBox)
#include "tst_textbox.moc"
