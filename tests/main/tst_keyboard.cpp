// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The pension screen and its dialogs for someone who works without a mouse or with a screen
// reader: every input says what it is, Tab walks the form in reading order, every button has a
// mnemonic, and a whole scheme can be entered with the keyboard alone.

#include "frmaouitkering.h"
#include "frmpensioenspec.h"
#include "frmspecificatiescenario.h"
#include "hostapplication.h"
#include "pensmain.h"
#include "textbox.h"
#include "usersim.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QKeySequence>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTreeWidget>

using namespace VandrelApplication;
using namespace VandrelPensioen;
using namespace TestSupport;

namespace {

std::shared_ptr<Zarnoveld::HostApplication> sampleCase()
{
    return Zarnoveld::HostApplication::importJson(exampleCase("sample-couple.json"));
}

QString describe(const QWidget *w)
{
    return QStringLiteral("%1 (%2)").arg(w->objectName(), QString::fromLatin1(w->metaObject()->className()));
}

bool isShown(const QWidget *w, const QWidget *form)
{
    return w->isVisibleTo(form) && w->width() > 0 && w->height() > 0;
}

bool isInput(const QWidget *w)
{
    return qobject_cast<const QLineEdit *>(w) || qobject_cast<const QComboBox *>(w)
        || qobject_cast<const QAbstractButton *>(w) || qobject_cast<const QAbstractSpinBox *>(w)
        || qobject_cast<const QAbstractItemView *>(w);
}

// What a user can Tab to: shown, enabled and taking focus from the keyboard.
bool takesTab(const QWidget *w, const QWidget *form)
{
    return isShown(w, form) && w->isEnabledTo(form) && (w->focusPolicy() & Qt::TabFocus)
        && !w->focusProxy();
}

// The accessibility tree below the interface, without descending into item views (their rows and
// header cells are data, not inputs).
void collect(QAccessibleInterface *iface, QList<QAccessibleInterface *> &into, int depth = 0)
{
    if (!iface || depth > 40)
        return;
    into << iface;
    if (qobject_cast<QAbstractItemView *>(iface->object()))
        return;
    for (int i = 0; i < iface->childCount(); ++i)
        collect(iface->child(i), into, depth + 1);
}

// Inputs reached through the form's accessibility tree without a name of their own: none at all,
// or only the title of the frame they sit in (Qt's fallback, which says nothing about the field).
QStringList namingFaults(QWidget *form)
{
    QStringList faults;
    QList<QAccessibleInterface *> tree;
    collect(QAccessible::queryAccessibleInterface(form), tree);
    QSet<QWidget *> seen;
    for (QAccessibleInterface *iface : std::as_const(tree)) {
        auto *w = qobject_cast<QWidget *>(iface->object());
        if (!w || !isInput(w) || !takesTab(w, form) || iface->state().invisible)
            continue;
        seen.insert(w);
        const QString name = iface->text(QAccessible::Name).trimmed();
        if (name.isEmpty()) {
            faults << QStringLiteral("%1 has no accessible name").arg(describe(w));
            continue;
        }
        for (QWidget *p = w->parentWidget(); p && p != form->parentWidget(); p = p->parentWidget())
            if (auto *box = qobject_cast<QGroupBox *>(p); box && box != w
                && name == box->title().remove(QLatin1Char('&')).trimmed())
                faults << QStringLiteral("%1 is only named after its frame \"%2\"").arg(describe(w), name);
    }
    // Every input a user can reach must be in the tree, or a screen reader never hears of it.
    for (QWidget *w : form->findChildren<QWidget *>())
        if (isInput(w) && takesTab(w, form) && !seen.contains(w))
            faults << QStringLiteral("%1 is missing from the accessibility tree").arg(describe(w));
    return faults;
}

// The fields Tab visits from the first one, once round, in the order it visits them.
QList<QWidget *> tabChain(QWidget *form)
{
    QList<QWidget *> chain;
    QWidget *w = form;
    for (int guard = 0; guard < 2000; ++guard) {
        w = w->nextInFocusChain();
        if (!w || w == form)
            break;
        if (form->isAncestorOf(w) && takesTab(w, form) && !chain.contains(w))
            chain << w;
    }
    return chain;
}

// The child of ancestor that holds w (w itself when it is a direct child).
QWidget *blockOf(QWidget *w, QWidget *ancestor)
{
    while (w && w->parentWidget() != ancestor)
        w = w->parentWidget();
    return w;
}

QWidget *commonAncestor(QWidget *a, QWidget *b)
{
    for (QWidget *p = a->parentWidget(); p; p = p->parentWidget())
        if (p->isAncestorOf(b))
            return p;
    return nullptr;
}

// Reading order of two blocks of one container: rows from top to bottom, left to right within a
// row; two blocks share a row when their heights overlap.
bool readsBefore(const QRect &first, const QRect &second)
{
    const bool sameRow = first.top() < second.bottom() && second.top() < first.bottom();
    if (sameRow)
        return first.left() < second.left();
    return first.top() < second.top();
}

// Each step of the Tab order that goes back against the reading order: row-major within a frame,
// frames in their own reading order.
QStringList tabOrderFaults(QWidget *form)
{
    QStringList faults;
    const QList<QWidget *> chain = tabChain(form);
    if (chain.size() < 2)
        faults << QStringLiteral("Tab reaches %1 fields").arg(chain.size());
    for (int i = 1; i < chain.size(); ++i) {
        QWidget *from = chain.at(i - 1);
        QWidget *to = chain.at(i);
        QWidget *container = commonAncestor(from, to);
        if (!container)
            continue;
        const QRect a = blockOf(from, container)->geometry();
        const QRect b = blockOf(to, container)->geometry();
        if (a != b && readsBefore(b, a))
            faults << QStringLiteral("Tab goes back from %1 to %2").arg(describe(from), describe(to));
    }
    return faults;
}

// Push buttons without a mnemonic, and mnemonics used twice among the buttons shown together.
QStringList mnemonicFaults(QWidget *form)
{
    QStringList faults;
    QHash<int, QString> used;
    for (QPushButton *button : form->findChildren<QPushButton *>()) {
        if (!isShown(button, form))
            continue;
        const QKeySequence key = QKeySequence::mnemonic(button->text());
        if (key.isEmpty()) {
            faults << QStringLiteral("%1 \"%2\" has no mnemonic").arg(describe(button), button->text());
            continue;
        }
        const int code = key[0].toCombined();
        if (used.contains(code))
            faults << QStringLiteral("%1 shares its mnemonic with %2").arg(describe(button), used.value(code));
        used.insert(code, describe(button));
    }
    return faults;
}

QStringList keyboardFaults(QWidget *form)
{
    return namingFaults(form) + tabOrderFaults(form) + mnemonicFaults(form);
}

} // namespace

namespace {

// Presses Tab (or Shift+Tab) on whatever has the focus until the target has it; fails after
// more presses than the form has fields.
bool tabTo(QWidget *target, bool backwards = false)
{
    for (int presses = 0; presses < 80; ++presses) {
        QWidget *focus = QApplication::focusWidget();
        if (focus == target)
            return true;
        if (!focus)
            return false;
        QTest::keyClick(focus, Qt::Key_Tab, backwards ? Qt::ShiftModifier : Qt::NoModifier);
        QCoreApplication::processEvents();
    }
    return QApplication::focusWidget() == target;
}

void typeHere(const QString &text)
{
    QWidget *focus = QApplication::focusWidget();
    QVERIFY(focus);
    QTest::keyClick(focus, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(focus, text);
}

} // namespace

class TestKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_messages = std::make_unique<MessageRecorder>(); }
    void cleanup() { m_messages.reset(); }

    // Every scheme of the sample in turn: each kind shows its own fields.
    void pensionScreenReadsAndTabsInOrder()
    {
        auto app = sampleCase();
        QVERIFY(app);
        PensMain main;
        main.SetApplication(app);
        main.resize(1140, 640);
        QVERIFY(showActive(&main));
        auto *view = find<QTreeWidget>(&main, QStringLiteral("LstPensioenen"));
        QVERIFY(view->topLevelItemCount() >= 2);
        for (int row = 0; row < view->topLevelItemCount(); ++row) {
            view->setCurrentItem(view->topLevelItem(row));
            QCoreApplication::processEvents();
            QVERIFY(main.shownPensioen() >= 1);
            const QStringList faults = keyboardFaults(&main);
            QVERIFY2(faults.isEmpty(), qPrintable(QStringLiteral("row %1:\n").arg(row + 1) + faults.join('\n')));
        }
    }

    void specificatieDialogReadsAndTabsInOrder()
    {
        auto app = sampleCase();
        QVERIFY(app);
        frmPensioenSpec dialog;
        dialog.SetApplication(app, 1, 1);
        QVERIFY(showActive(&dialog));
        const QStringList faults = keyboardFaults(&dialog);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    void scenarioDialogReadsAndTabsInOrder()
    {
        auto app = sampleCase();
        QVERIFY(app);
        auto regel = app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Get_OuderdomRegel(1);
        QVERIFY(regel);
        frmSpecificatieScenario dialog;
        dialog.Set_Application(app, regel->ScenarioOP(), regel->Dt_IngangOP(), QDate(2070, 1, 1));
        QVERIFY(showActive(&dialog));
        const QStringList faults = keyboardFaults(&dialog);
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    void disabilityDialogReadsAndTabsInOrder()
    {
        auto app = sampleCase();
        QVERIFY(app);
        frmAoUitkering dialog;
        dialog.setApplication(app);
        dialog.setPensioen(app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1));
        dialog.Fill_Form();
        QVERIFY(showActive(&dialog));
        QStringList faults = keyboardFaults(&dialog);
        // The scale rows only show for a scale; its fields must read and tab as well.
        auto *obv = find<QComboBox>(&dialog, QStringLiteral("cboUitkeringObv"));
        if (obv->currentIndex() != 1) {
            QVERIFY(tabTo(obv));
            QTest::keyClick(obv, Qt::Key_Down);
            QCoreApplication::processEvents();
            faults += keyboardFaults(&dialog);
        }
        QVERIFY2(faults.isEmpty(), qPrintable(faults.join('\n')));
    }

    // The checks above must see a fault when there is one: a field without a caption, a field
    // tabbed to out of order, a button without a mnemonic.
    void theChecksSeeFaults()
    {
        QWidget form;
        auto *box = new QGroupBox(QStringLiteral("Gegevens"), &form);
        box->setGeometry(0, 0, 300, 200);
        auto *first = new QLineEdit(box);
        first->setGeometry(10, 20, 100, 20);
        auto *second = new QLineEdit(box);
        second->setGeometry(10, 60, 100, 20);
        auto *button = new QPushButton(QStringLiteral("Opslaan"), box);
        button->setGeometry(10, 100, 100, 24);
        QWidget::setTabOrder(second, first);
        QWidget::setTabOrder(first, button);
        QVERIFY(showActive(&form));
        const QString faults = keyboardFaults(&form).join('\n');
        QVERIFY2(faults.contains(QStringLiteral("is only named after its frame")), qPrintable(faults));
        QVERIFY2(faults.contains(QStringLiteral("Tab goes back")), qPrintable(faults));
        QVERIFY2(faults.contains(QStringLiteral("has no mnemonic")), qPrintable(faults));
        first->setAccessibleName(QStringLiteral("Eerste"));
        second->setAccessibleName(QStringLiteral("Tweede"));
        QWidget::setTabOrder(first, second);
        QWidget::setTabOrder(second, button);
        button->setText(QStringLiteral("&Opslaan"));
        QVERIFY2(keyboardFaults(&form).isEmpty(), qPrintable(keyboardFaults(&form).join('\n')));
    }

    // An adviser adds a previous employer's scheme and fills it in without touching the mouse:
    // Alt+N and the menu, Tab between fields, Space for the boxes, arrows for the options.
    void wholeSchemeByKeyboardOnly();

private:
    std::unique_ptr<MessageRecorder> m_messages;
};

void TestKeyboard::wholeSchemeByKeyboardOnly()
{
    auto app = Zarnoveld::HostApplication::importJson(exampleCase("single.json"));
    QVERIFY(app);
    auto applicant = app->Get_Dossier()->Get_Aanvrager(1);
    int before = 0;
    while (applicant->Get_Pensioen(qint16(before + 1)))
        ++before;
    QVERIFY(before >= 1);

    PensMain main;
    main.SetApplication(app);
    main.resize(1140, 640);
    QVERIFY(showActive(&main));
    auto *list = find<QTreeWidget>(&main, QStringLiteral("LstPensioenen"));
    QVERIFY2(tabTo(list), qPrintable(describe(QApplication::focusWidget())));

    // Alt+N is "Nieuw"; the menu asks which employer, Down Down Enter picks the previous one.
    QTest::keyClick(list, Qt::Key_N, Qt::AltModifier);
    auto *menu = find<QMenu>(&main, QStringLiteral("Popup_Oud_Huidig"));
    QTRY_VERIFY(menu->isVisible());
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Down);
    QTest::keyClick(menu, Qt::Key_Return);
    QTRY_VERIFY(!menu->isVisible());
    // The offscreen platform does not hand activation back from a closed menu as a window
    // system does.
    QVERIFY(showActive(&main));
    QTRY_VERIFY(applicant->Get_Pensioen(qint16(before + 1)));
    const qint16 penId = qint16(before + 1);
    QCOMPARE(main.shownPensioen(), penId);
    QVERIFY(main.isAncestorOf(QApplication::focusWidget()));

    auto field = [&](const char *name) { return find<QWidget>(&main, QString::fromLatin1(name)); };

    QVERIFY2(tabTo(field("txtUitvoerder")), qPrintable(describe(QApplication::focusWidget())));
    typeHere(QStringLiteral("Zwitserleven"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QCOMPARE(QApplication::focusWidget(), field("txtBranche"));
    typeHere(QStringLiteral("Verzekeraar"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);

    // The type of scheme: Tab reaches the checked option, the arrows choose career average.
    auto *middelloon = find<QRadioButton>(&main, QStringLiteral("optMiddelloon"));
    for (int i = 0; i < 4 && !middelloon->isChecked(); ++i) {
        QWidget *focus = QApplication::focusWidget();
        QVERIFY(focus);
        if (qobject_cast<QRadioButton *>(focus) && focus->parentWidget() == middelloon->parentWidget())
            QTest::keyClick(focus, Qt::Key_Down);
        else
            QTest::keyClick(focus, Qt::Key_Tab);
        QCoreApplication::processEvents();
    }
    QVERIFY(middelloon->isChecked());
    QVERIFY2(tabTo(field("txtMiddelloon")), qPrintable(describe(QApplication::focusWidget())));
    typeHere(QStringLiteral("1,75"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);

    QVERIFY2(tabTo(field("txtSalaris")), qPrintable(describe(QApplication::focusWidget())));
    typeHere(QStringLiteral("48000"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);

    QVERIFY2(tabTo(field("TxtBijdrageOP")), qPrintable(describe(QApplication::focusWidget())));
    typeHere(QStringLiteral("1200"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);

    // The commitments: Space ticks old-age pension, then its amount.
    QVERIFY2(tabTo(field("chkOP")), qPrintable(describe(QApplication::focusWidget())));
    auto *chkOP = find<QCheckBox>(&main, QStringLiteral("chkOP"));
    if (!chkOP->isChecked())
        QTest::keyClick(chkOP, Qt::Key_Space);
    QVERIFY(chkOP->isChecked());
    QVERIFY2(tabTo(field("txtOP")), qPrintable(describe(QApplication::focusWidget())));
    typeHere(QStringLiteral("9000"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    // Its starting date is asked for; the age follows from it.
    QVERIFY2(tabTo(field("txtIngangOP")), qPrintable(describe(QApplication::focusWidget())));
    typeHere(QStringLiteral("01-07-2052"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);

    auto *chkPP = find<QCheckBox>(&main, QStringLiteral("chkPP"));
    QVERIFY2(tabTo(chkPP), qPrintable(describe(QApplication::focusWidget()) + m_messages->lastText()));
    if (!chkPP->isChecked())
        QTest::keyClick(chkPP, Qt::Key_Space);
    QVERIFY2(tabTo(field("txtPcPp")), qPrintable(describe(QApplication::focusWidget())));
    typeHere(QStringLiteral("70"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);

    // Leaving the screen checks the scheme as a host does before it switches screens.
    bool cancel = false;
    main.Validation(cancel, 0);
    const QString asked = m_messages->count() ? m_messages->lastText() : QString();
    QVERIFY2(!cancel, qPrintable(asked));

    const PensioenPtr scheme = applicant->Get_Pensioen(penId);
    QVERIFY(scheme);
    QCOMPARE(scheme->HuidigeWerkgever(), false);
    QCOMPARE(scheme->Uitvoerder(), QStringLiteral("Zwitserleven"));
    QCOMPARE(scheme->Branche(), QStringLiteral("Verzekeraar"));
    QCOMPARE(scheme->SoortRegeling(), qint16(SoortRegeling::Middelloon));
    QCOMPARE(qRound(scheme->OpbouwPercentage() * 1000), 1750);
    QCOMPARE(qRound(scheme->Salaris()), 48000);
    QCOMPARE(qRound(scheme->BijdrageOP()), 1200);
    QVERIFY(scheme->OuderdomRegelCount() >= 1);
    QCOMPARE(qRound(scheme->Get_OuderdomRegel(1)->BedragOP()), 9000);
    QCOMPARE(scheme->Get_OuderdomRegel(1)->Dt_IngangOP(), QDate(2052, 7, 1));
    QVERIFY(scheme->PP());
    QCOMPARE(qRound(scheme->Pc_PP()), 70);
    QCOMPARE(qRound(scheme->BedragPP()), 6300);
}

QTEST_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
