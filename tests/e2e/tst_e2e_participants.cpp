// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The participants screen: names, birth dates, categories, employments and the partner are edited
// as a user does, and everything is found again after the case file is opened anew.

#include "commands.h"
#include "casebackend.h"
#include "e2esupport.h"
#include "mainwindow.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <functional>

using namespace E2e;
using namespace TestSupport;
using VandrelControl::TextBox;
using Zarnoveld::MainWindow;

namespace {

// The employment dialog is modal: it is filled in once it is up, from the event loop it runs.
void whenDialogOpens(std::function<void(QDialog *)> fill, bool *seen)
{
    QTimer::singleShot(0, [fill = std::move(fill), seen] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (!dialog || dialog->objectName() != QStringLiteral("dlgDienstverband")) {
            if (dialog)
                dialog->reject();
            return;
        }
        *seen = true;
        fill(dialog);
    });
}

// On the tick box itself: a click beside its caption in a stretched box does nothing.
void tick(QCheckBox *box)
{
    QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(box->height() / 2, box->height() / 2));
}

QPushButton *dialogButton(QDialog *dialog, QDialogButtonBox::StandardButton which)
{
    auto *box = dialog->findChild<QDialogButtonBox *>();
    return box ? box->button(which) : nullptr;
}

void chooseCategory(QComboBox *combo, int code)
{
    // Keyboard choice, as a user without a mouse makes it: every arrow press is an activation.
    combo->setFocus(Qt::TabFocusReason);
    const int target = combo->findData(code);
    while (combo->currentIndex() != target) {
        const int before = combo->currentIndex();
        QTest::keyClick(combo, combo->currentIndex() < target ? Qt::Key_Down : Qt::Key_Up);
        if (combo->currentIndex() == before)
            break;
    }
}

} // namespace

class TestE2eParticipants : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<Sandbox> m_sandbox;

private Q_SLOTS:
    void initTestCase()
    {
        m_sandbox = std::make_unique<Sandbox>();
        QVERIFY(m_sandbox->isValid());
    }

    // Every caption of the screen can be read in full, and the two forms stand level.
    void screenIsReadable()
    {
        {
            MainWindow window;
            QString error;
            QVERIFY2(window.openCase(example(QStringLiteral("sample-couple.json")), &error), qPrintable(error));
            window.resize(1280, 860);
            QVERIFY(showActive(&window));
            const QStringList clipped = clippedCaptions(&window);
            QVERIFY2(clipped.isEmpty(), qPrintable(clipped.join(QStringLiteral(", "))));
            for (const char *field : {"txtNaam_", "txtGeboortedatum_", "cboCategorie_", "lvwDienstverband_"}) {
                QWidget *applicant = find<QWidget>(&window, QLatin1String(field) + QLatin1Char('1'));
                QWidget *partner = find<QWidget>(&window, QLatin1String(field) + QLatin1Char('2'));
                QCOMPARE(applicant->mapTo(&window, QPoint()).y(), partner->mapTo(&window, QPoint()).y());
            }
            auto *lijst = find<QTreeWidget>(&window, QStringLiteral("lvwDienstverband_1"));
            QCOMPARE(lijst->topLevelItem(0)->textAlignment(3) & Qt::AlignRight, int(Qt::AlignRight));
            saveScreenshot(&window, QStringLiteral("participants.png"));
            QVERIFY(window.close());
        }
        // The next test imports the same example afresh; the case file is closed by now.
        TestSupport::removeCase(Zarnoveld::Commands::caseFor(example(QStringLiteral("sample-couple.json"))));
    }

    void editEverythingAndReopen()
    {
        MessageRecorder messages;
        const QString json = example(QStringLiteral("sample-couple.json"));
        {
            MainWindow window;
            QVERIFY(openShown(window, json));
            QCOMPARE(window.currentScreen(), MainWindow::Deelnemers);

            // Name, birth date and category of the applicant.
            enter(find<TextBox>(&window, QStringLiteral("txtNaam_1")), QStringLiteral("Jan van den Bergh"));
            enter(find<TextBox>(&window, QStringLiteral("txtGeboortedatum_1")), QStringLiteral("15-04-1971"));
            chooseCategory(find<QComboBox>(&window, QStringLiteral("cboCategorie_1")), 4);
            auto applicant = window.currentCase()->Get_Dossier()->Get_Aanvrager(1);
            QCOMPARE(applicant->Naam(), QStringLiteral("Jan van den Bergh"));
            QCOMPARE(applicant->GeboorteDatum(), QDate(1971, 4, 15));
            QCOMPARE(int(applicant->Categorie()), 4);
            QCOMPARE(messages.count(), 0);

            // A birth date in the future is refused and keeps the user in the field.
            auto *geboorte = find<TextBox>(&window, QStringLiteral("txtGeboortedatum_1"));
            enter(geboorte, QStringLiteral("01-01-2999"));
            QCOMPARE(messages.count(), 1);
            QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
            QCOMPARE(messages.lastText(), QStringLiteral("Vul een geboortedatum in het verleden in."));
            QCOMPARE(QApplication::focusWidget(), geboorte);
            QCOMPARE(applicant->GeboorteDatum(), QDate(1971, 4, 15));
            enter(geboorte, QStringLiteral("15-04-1971"));
            QCOMPARE(messages.count(), 1);

            // A new employment.
            auto *lijst = find<QTreeWidget>(&window, QStringLiteral("lvwDienstverband_1"));
            QCOMPARE(lijst->topLevelItemCount(), 2);
            bool seen = false;
            whenDialogOpens([](QDialog *dialog) {
                enter(find<TextBox>(dialog, QStringLiteral("txtWerkgever")), QStringLiteral("Saxion"));
                enter(find<TextBox>(dialog, QStringLiteral("txtBegin")), QStringLiteral("01-01-2025"));
                enter(find<TextBox>(dialog, QStringLiteral("txtSalaris")), QStringLiteral("12.500"));
                enter(find<TextBox>(dialog, QStringLiteral("txtMeetellenTot")), QStringLiteral("14-03-2038"));
                click(dialogButton(dialog, QDialogButtonBox::Ok));
            }, &seen);
            click(find<QPushButton>(&window, QStringLiteral("cmdDienstverbandToevoegen_1")));
            QVERIFY(seen);
            QCOMPARE(lijst->topLevelItemCount(), 3);
            QCOMPARE(lijst->topLevelItem(2)->text(0), QStringLiteral("Saxion"));
            QCOMPARE(lijst->topLevelItem(2)->text(3), QStringLiteral("12.500"));
            auto saxion = applicant->Get_Dienstverband(3);
            QCOMPARE(saxion->Salaris(), 12500.0);
            QCOMPARE(saxion->Dt_Begin(), QDate(2025, 1, 1));

            // Cancelling a new employment leaves nothing behind.
            seen = false;
            whenDialogOpens([](QDialog *dialog) {
                enter(find<TextBox>(dialog, QStringLiteral("txtWerkgever")), QStringLiteral("Vergissing"));
                click(dialogButton(dialog, QDialogButtonBox::Cancel));
            }, &seen);
            click(find<QPushButton>(&window, QStringLiteral("cmdDienstverbandToevoegen_1")));
            QVERIFY(seen);
            QCOMPARE(lijst->topLevelItemCount(), 3);
            QVERIFY(!applicant->Get_Dienstverband(4));

            // An end date before the start is refused in the dialog; fixed, it is saved.
            seen = false;
            whenDialogOpens([&messages](QDialog *dialog) {
                enter(find<TextBox>(dialog, QStringLiteral("txtEinde")), QStringLiteral("31-12-2024"));
                click(dialogButton(dialog, QDialogButtonBox::Ok));
                QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
                QCOMPARE(messages.lastText(), QStringLiteral("De einddatum moet na de begindatum liggen."));
                QVERIFY(dialog->isVisible());
                enter(find<TextBox>(dialog, QStringLiteral("txtEinde")), QStringLiteral("31-12-2026"));
                enter(find<TextBox>(dialog, QStringLiteral("txtSalaris")), QStringLiteral("13.000"));
                click(dialogButton(dialog, QDialogButtonBox::Ok));
            }, &seen);
            clickRow(lijst, lijst->topLevelItem(2));
            click(find<QPushButton>(&window, QStringLiteral("cmdDienstverbandWijzigen_1")));
            QVERIFY(seen);
            QCOMPARE(messages.count(), 2);
            QCOMPARE(saxion->Dt_Einde(), QDate(2026, 12, 31));
            QCOMPARE(saxion->Salaris(), 13000.0);

            // Offscreen, nobody gives the window the focus back after a dialog closes.
            QVERIFY(showActive(&window));

            // Removing the old Rabobank employment; a scheme still names it, so the question says so.
            clickRow(lijst, lijst->topLevelItem(1));
            messages.answerNext(MessageBox::Answer::Yes);
            click(find<QPushButton>(&window, QStringLiteral("cmdDienstverbandVerwijderen_1")));
            QCOMPARE(messages.count(), 3);
            QCOMPARE(messages.lastTitle(), QStringLiteral("Dienstverband verwijderen"));
            QCOMPARE(messages.lastText(),
                     QStringLiteral("Dit dienstverband is gekozen bij een pensioenregeling. Wilt u het toch verwijderen?"));
            QCOMPARE(lijst->topLevelItemCount(), 2);
            QCOMPARE(applicant->Get_Dienstverband(2)->Werkgever(), QStringLiteral("Saxion"));

            // The partner goes, with her schemes, after a question; No keeps her.
            auto *partner = find<QCheckBox>(&window, QStringLiteral("chkPartner"));
            messages.answerNext(MessageBox::Answer::No);
            tick(partner);
            QCOMPARE(messages.count(), 4);
            QCOMPARE(messages.lastTitle(), QStringLiteral("Partner verwijderen"));
            QCOMPARE(messages.lastText(), QStringLiteral("De partner heeft pensioenregelingen. Wilt u de partner met alle gegevens verwijderen?"));
            QVERIFY(partner->isChecked());
            QVERIFY(window.currentCase()->Get_Dossier()->Get_Aanvrager(2));
            messages.answerNext(MessageBox::Answer::Yes);
            tick(partner);
            QCOMPARE(messages.count(), 5);
            QVERIFY(!partner->isChecked());
            QVERIFY(!window.currentCase()->Get_Dossier()->Get_Aanvrager(2));
            QVERIFY(!find<TextBox>(&window, QStringLiteral("txtNaam_2"))->isEnabled());

            // A new partner.
            tick(partner);
            QCOMPARE(messages.count(), 5);
            QVERIFY(partner->isChecked());
            enter(find<TextBox>(&window, QStringLiteral("txtNaam_2")), QStringLiteral("Ria Smit"));
            enter(find<TextBox>(&window, QStringLiteral("txtGeboortedatum_2")), QStringLiteral("02-11-1973"));
            chooseCategory(find<QComboBox>(&window, QStringLiteral("cboCategorie_2")), 2);
            QCOMPARE(messages.count(), 5);
            QVERIFY(window.close());
        }

        auto app = Zarnoveld::HostApplication::openFile(Zarnoveld::Commands::caseFor(json));
        auto applicant = app->Get_Dossier()->Get_Aanvrager(1);
        QCOMPARE(applicant->Naam(), QStringLiteral("Jan van den Bergh"));
        QCOMPARE(applicant->GeboorteDatum(), QDate(1971, 4, 15));
        QCOMPARE(int(applicant->Categorie()), 4);
        QCOMPARE(applicant->Get_Dienstverband(1)->Werkgever(), QStringLiteral("Gemeente Deventer"));
        auto saxion = applicant->Get_Dienstverband(2);
        QCOMPARE(saxion->Werkgever(), QStringLiteral("Saxion"));
        QCOMPARE(saxion->Dt_Begin(), QDate(2025, 1, 1));
        QCOMPARE(saxion->Dt_Einde(), QDate(2026, 12, 31));
        QCOMPARE(saxion->Salaris(), 13000.0);
        QCOMPARE(saxion->Dt_InkomenMeetellenTot(), QDate(2038, 3, 14));
        QVERIFY(!applicant->Get_Dienstverband(3));
        auto partner = app->Get_Dossier()->Get_Aanvrager(2);
        QVERIFY(partner);
        QCOMPARE(partner->Naam(), QStringLiteral("Ria Smit"));
        QCOMPARE(partner->GeboorteDatum(), QDate(1973, 11, 2));
        QCOMPARE(int(partner->Categorie()), 2);
        QVERIFY(!partner->Get_Pensioen(1));
        QVERIFY(!partner->Get_Dienstverband(1));
        // The applicant's schemes were not touched by any of it.
        QCOMPARE(schemeCount(app, 1), 3);
    }
};

QTEST_MAIN(TestE2eParticipants)
#include "tst_e2e_participants.moc"
