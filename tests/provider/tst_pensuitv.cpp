// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The provider and employment control driven as a user does, against the reference host.

#include "dienstverbanditem.h"
#include "hostapplication.h"
#include "pensuitv.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

using namespace VandrelApplication;
using namespace TestSupport;
using VandrelControl::TextBox;
using VandrelPensioen::PensUitv;
namespace Item = VandrelPensioen::DienstverbandItem;

namespace {

struct Case
{
    std::shared_ptr<Zarnoveld::HostApplication> app;
    DossierPtr dossier;
    AanvragerPtr anv;
    PensioenPtr pen;
    qint16 penId = 0;
};

Case makeCase(bool huidig = true)
{
    Case c;
    c.app = Zarnoveld::HostApplication::createInMemory();
    c.dossier = c.app->Get_Dossier();
    c.anv = c.dossier->Get_Aanvrager(1);
    c.anv->setNaam(QStringLiteral("Jan Jansen"));
    c.penId = c.anv->AddPension();
    c.pen = c.anv->Get_Pensioen(c.penId);
    c.pen->setHuidigeWerkgever(huidig);
    c.pen->setUitvoerder(QStringLiteral("PFZW"));
    c.pen->setBranche(QStringLiteral("Zorg"));
    return c;
}

DienstverbandPtr addDienstverband(Case &c, const QString &werkgever, double salaris)
{
    const DienstverbandPtr dv = c.anv->Get_Dienstverband(c.anv->AddDienstverband());
    dv->setWerkgever(werkgever);
    dv->setSalaris(salaris);
    dv->setDt_Begin(QDate(2015, 3, 1));
    dv->setDt_InkomenMeetellenTot(QDate(2040, 6, 30));
    return dv;
}

} // namespace

class TestPensUitv : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PensUitv> form;

    PensUitv *open(Case &c, qint16 anv = 1, qint16 pen = -1)
    {
        form = std::make_unique<PensUitv>();
        form->resize(465, 200);
        if (!showActive(form.get()))
            qWarning("window did not become active");
        form->SetApplication(c.app, anv, pen < 0 ? c.penId : pen);
        return form.get();
    }
    template <typename T>
    T *w(const char *name) { return find<T>(form.get(), QString::fromLatin1(name)); }

private Q_SLOTS:
    void cleanup() { form.reset(); }

    void withoutPartnerOneWideOption()
    {
        Case c = makeCase();
        open(c);
        QVERIFY(w<QRadioButton>("optAanvrager_2")->isHidden());
        QCOMPARE(w<QRadioButton>("optAanvrager_1")->width(), 5715 / 15);
        QCOMPARE(w<QRadioButton>("optAanvrager_1")->text(), QStringLiteral("Jan Jansen"));
        QVERIFY(w<QRadioButton>("optAanvrager_1")->isChecked());

        c.dossier->AddAanvrager();
        c.dossier->Get_Aanvrager(2)->setNaam(QStringLiteral("Els"));
        form->SetApplication(c.app, 1, c.penId);
        QVERIFY(!w<QRadioButton>("optAanvrager_2")->isHidden());
        QCOMPARE(w<QRadioButton>("optAanvrager_1")->width(), 2670 / 15);
        QCOMPARE(w<QRadioButton>("optAanvrager_2")->text(), QStringLiteral("Els"));
    }

    void longNamesAreShortened()
    {
        Case c = makeCase();
        c.dossier->AddAanvrager();
        const QString lang(QStringLiteral("Maximiliaan Bartholomeus van Oldenbarnevelt-Schimmelpenninck"));
        c.dossier->Get_Aanvrager(2)->setNaam(lang);
        open(c);
        const QString caption = w<QRadioButton>("optAanvrager_2")->text();
        QVERIFY(caption.endsWith(QStringLiteral("...")));
        QVERIFY(caption.size() < lang.size());
    }

    void nothingSelected()
    {
        Case c = makeCase();
        open(c, 0, 0);
        QVERIFY(w<TextBox>("txtUitvoerder")->text().isEmpty());
        QVERIFY(w<TextBox>("txtBranche")->text().isEmpty());
        QVERIFY(!w<TextBox>("txtUitvoerder")->isEnabled());
        QVERIFY(!w<TextBox>("txtBranche")->isEnabled());
        QVERIFY(!w<QRadioButton>("optAanvrager_1")->isEnabled());
        QVERIFY(!w<QRadioButton>("optAanvrager_2")->isEnabled());
        QVERIFY(!w<QRadioButton>("optAanvrager_1")->isChecked());
    }

    void previousEmployerHasNoEmploymentFrame()
    {
        Case c = makeCase(false);
        addDienstverband(c, QStringLiteral("Bakkerij Vos"), 30000);
        open(c);
        QVERIFY(w<QFrame>("fraDienstverband")->isHidden());
        QCOMPARE(w<QGroupBox>("fraDeelnemer")->title(), QStringLiteral("Deelnemer"));
        QCOMPARE(w<QGroupBox>("fraDeelnemer")->height(), 720 / 15);
        QCOMPARE(w<QGroupBox>("fraDeelnemer")->y(), w<QGroupBox>("fraUitvoerder")->height() + 4);
        QCOMPARE(form->height(), w<QGroupBox>("fraDeelnemer")->geometry().bottom() + 1 + 4);

        c.pen->setHuidigeWerkgever(true);
        form->SetApplication(c.app, 1, c.penId);
        QVERIFY(!w<QFrame>("fraDienstverband")->isHidden());
        QCOMPARE(w<QGroupBox>("fraDeelnemer")->title(), QStringLiteral("Deelnemer / Dienstverband"));
        QCOMPARE(w<QGroupBox>("fraDeelnemer")->height(), 1140 / 15);
    }

    void explainingItems()
    {
        Case c = makeCase();
        open(c);
        auto *combo = w<QComboBox>("cboDienstverband");
        QCOMPARE(combo->count(), 1);
        QCOMPARE(combo->itemText(0),
                 QStringLiteral("Er is geen dienstverband ingevoerd voor de gekozen deelnemer"));

        const DienstverbandPtr a = addDienstverband(c, QStringLiteral("A"), 1);
        const DienstverbandPtr b = addDienstverband(c, QStringLiteral("B"), 2);
        const qint16 andere1 = c.anv->AddPension();
        const qint16 andere2 = c.anv->AddPension();
        c.anv->Get_Pensioen(andere1)->setDienstverbandKey(a->Key());
        c.anv->Get_Pensioen(andere2)->setDienstverbandKey(b->Key());
        c.pen->setDienstverbandKey(QString());
        QSignalSpy changed(form.get(), &PensUitv::DienstverbandChanged);
        form->SetApplication(c.app, 1, c.penId);
        QCOMPARE(combo->count(), 1);
        QCOMPARE(combo->itemText(0),
                 QStringLiteral("De dienstverbanden die voor deze deelnemer zijn ingevoerd, zijn al bij andere ingevoerde pensioenregelingen gekozen"));
        QCOMPARE(changed.count(), 0);
        QVERIFY(c.pen->DienstverbandKey().isEmpty());
    }

    void schemesEmploymentIsSelected()
    {
        Case c = makeCase();
        const DienstverbandPtr a = addDienstverband(c, QStringLiteral("Bakkerij Vos"), 30000);
        const DienstverbandPtr b = addDienstverband(c, QStringLiteral("Zorggroep Noord"), 45250);
        const DienstverbandPtr used = addDienstverband(c, QStringLiteral("Elders"), 1);
        c.anv->Get_Pensioen(c.anv->AddPension())->setDienstverbandKey(used->Key());
        c.pen->setDienstverbandKey(b->Key());

        form = std::make_unique<PensUitv>();
        QSignalSpy changed(form.get(), &PensUitv::DienstverbandChanged);
        QVERIFY(showActive(form.get()));
        form->SetApplication(c.app, 1, c.penId);
        auto *combo = w<QComboBox>("cboDienstverband");
        QCOMPARE(combo->count(), 2);   // the one used elsewhere is left out
        QCOMPARE(combo->currentIndex(), 1);
        const QString beschrijving =
            QStringLiteral("Zorggroep Noord, 01-03-2015, € 45.250, meetellen tot 30-06-2040  ");
        QCOMPARE(combo->currentText(), beschrijving);
        QCOMPARE(combo->itemData(1, Item::TextRole).toString(),
                 beschrijving + QString(255, QLatin1Char(' ')) + b->Key());
        QCOMPARE(combo->itemData(1, Item::PositionRole).toInt(), 2);
        QCOMPARE(combo->toolTip(), beschrijving.trimmed());
        QCOMPARE(changed.count(), 1);
        QCOMPARE(c.pen->DienstverbandKey(), b->Key());

        // A second load with the same arguments shows the same selection again.
        form->SetApplication(c.app, 1, c.penId);
        QCOMPARE(combo->currentIndex(), 1);

        // The user's choice afterwards is not stored by this control.
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Up);
        QCOMPARE(combo->currentIndex(), 0);
        QCOMPARE(c.pen->DienstverbandKey(), b->Key());
        Q_UNUSED(a);
    }

    void reloadFromTheEventDoesNotLoop()
    {
        Case c = makeCase();
        const DienstverbandPtr a = addDienstverband(c, QStringLiteral("A"), 1);
        c.pen->setDienstverbandKey(a->Key());
        form = std::make_unique<PensUitv>();
        int reloads = 0;
        // As the main panel does: reload on every change of employment.
        connect(form.get(), &PensUitv::DienstverbandChanged, form.get(), [&] {
            ++reloads;
            QVERIFY(reloads < 5);
            form->SetApplication(c.app, 1, c.penId);
        }, Qt::DirectConnection);
        form->SetApplication(c.app, 1, c.penId);
        QCOMPARE(reloads, 1);
    }

    void providerAndSectorAreStored()
    {
        Case c = makeCase();
        open(c);
        QCOMPARE(w<TextBox>("txtUitvoerder")->text(), QStringLiteral("PFZW"));
        QSignalSpy info(form.get(), &PensUitv::InfoChanged);
        enter(w<TextBox>("txtUitvoerder"), QStringLiteral("ABP"));
        QCOMPARE(c.pen->Uitvoerder(), QStringLiteral("ABP"));
        QCOMPARE(info.count(), 1);
        enter(w<TextBox>("txtBranche"), QStringLiteral("Overheid"));
        QCOMPARE(c.pen->Branche(), QStringLiteral("Overheid"));
        QCOMPARE(info.count(), 1);
    }

    void optionRaisesChangeAanvragerOnlyByTheUser()
    {
        Case c = makeCase();
        c.dossier->AddAanvrager();
        c.dossier->Get_Aanvrager(2)->setNaam(QStringLiteral("Els"));
        form = std::make_unique<PensUitv>();
        int change = 0;
        connect(form.get(), &PensUitv::ChangeAanvrager, form.get(), [&](bool &) { ++change; },
                Qt::DirectConnection);
        QVERIFY(showActive(form.get()));
        form->SetApplication(c.app, 1, c.penId);
        QCOMPARE(change, 0);
        auto *partner = w<QRadioButton>("optAanvrager_2");
        QTest::mouseClick(partner, Qt::LeftButton, Qt::NoModifier, QPoint(6, partner->height() / 2));
        QCOMPARE(change, 1);
        // Not refused: the option stays where the user put it until the container reloads.
        QVERIFY(partner->isChecked());
    }

    void validationNeverClearsCancel()
    {
        Case c = makeCase();
        open(c);
        bool cancel = true;
        form->Validation(cancel, 0);
        QVERIFY(cancel);
        cancel = false;
        form->Validation(cancel, 0);
        QVERIFY(!cancel);
    }

    void backColorKeepsExplicitColours()
    {
        Case c = makeCase();
        open(c);
        auto *deelnemer = w<QGroupBox>("fraDeelnemer");
        QPalette palette = deelnemer->palette();
        palette.setColor(deelnemer->backgroundRole(), QColor(Qt::yellow));
        deelnemer->setPalette(palette);
        form->setBackColor(QColor(Qt::cyan));
        QCOMPARE(form->BackColor(), QColor(Qt::cyan));
        auto *uitvoerder = w<QGroupBox>("fraUitvoerder");
        QCOMPARE(uitvoerder->palette().color(uitvoerder->backgroundRole()), QColor(Qt::cyan));
        QCOMPARE(deelnemer->palette().color(deelnemer->backgroundRole()), QColor(Qt::yellow));
    }

    void errorInAFieldCheckIsReported()
    {
        Case c = makeCase();
        open(c);
        c.anv->RemovePension(c.penId);
        enter(w<TextBox>("txtUitvoerder"), QStringLiteral("ABP"));
        const auto errors = c.app->reportedErrors();
        QCOMPARE(errors.size(), 1);
        QCOMPARE(errors.first().Procedure, QStringLiteral("TxtUitvoerder_Validation"));
        QCOMPARE(errors.first().Component, QStringLiteral("PensUitv"));
        QCOMPARE(errors.first().Subject, QStringLiteral("Pensioenuitvoerder"));
        QCOMPARE(errors.first().Product, QStringLiteral("Zarnoveld"));
        QVERIFY(QApplication::focusWidget() != w<TextBox>("txtUitvoerder"));
    }
};

QTEST_MAIN(TestPensUitv)
#include "tst_pensuitv.moc"
