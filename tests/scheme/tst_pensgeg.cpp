// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The scheme data panel driven as a user does, against the reference host held in memory.

#include "hostapplication.h"
#include "pensgeg.h"
#include "pensuitv.h"
#include "textbox.h"
#include "usersim.h"

#include <QApplication>
#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>

using namespace VandrelApplication;
using namespace TestSupport;
using VandrelControl::TextBox;
using VandrelPensioen::PensGeg;

namespace {

struct Case
{
    std::shared_ptr<Zarnoveld::HostApplication> app;
    DossierPtr dossier;
    AanvragerPtr anv;
    PensioenPtr pen;
    qint16 penId = 0;

    void refresh()
    {
        dossier = app->Get_Dossier();
        anv = dossier->Get_Aanvrager(1);
        pen = anv->Get_Pensioen(penId);
    }
};

Case makeCase(qint16 soort = SoortRegeling::Eindloon)
{
    Case c;
    c.app = Zarnoveld::HostApplication::createInMemory();
    c.dossier = c.app->Get_Dossier();
    c.anv = c.dossier->Get_Aanvrager(1);
    c.anv->setNaam(QStringLiteral("Jan Jansen"));
    c.anv->setCategorie(1);
    c.penId = c.anv->AddPension();
    c.pen = c.anv->Get_Pensioen(c.penId);
    c.pen->setHuidigeWerkgever(false);
    c.pen->setRegelingBekend(true);
    c.pen->setSoortRegeling(soort);
    c.pen->setOpbouwPercentage(1.75f);
    c.pen->setSalaris(40000);
    c.pen->setFranchise(10000);
    c.pen->setGrondslag(30001);
    c.pen->setAangroei(500);
    c.pen->setDoelvermogen(100000);
    c.pen->setRekenrenteOpbouw(4);
    c.pen->setRekenrenteUitkering(3);
    c.dossier->setSyncVlaggen(0);
    return c;
}

QWidget *focused()
{
    return QApplication::focusWidget();
}

// Employment 3 answers with a given key; everything else is the real host's.
class SharedKeyDienstverband : public Dienstverband
{
public:
    SharedKeyDienstverband(DienstverbandPtr inner, QString key) : m(std::move(inner)), k(std::move(key)) {}
    QString Key() const override { return k; }
    QString Werkgever() const override { return m->Werkgever(); }
    void setWerkgever(const QString &v) override { m->setWerkgever(v); }
    QDate Dt_Begin() const override { return m->Dt_Begin(); }
    void setDt_Begin(const QDate &v) override { m->setDt_Begin(v); }
    QDate Dt_Einde() const override { return m->Dt_Einde(); }
    void setDt_Einde(const QDate &v) override { m->setDt_Einde(v); }
    double Salaris() const override { return m->Salaris(); }
    void setSalaris(double v) override { m->setSalaris(v); }
    QDate Dt_InkomenMeetellenTot() const override { return m->Dt_InkomenMeetellenTot(); }
    void setDt_InkomenMeetellenTot(const QDate &v) override { m->setDt_InkomenMeetellenTot(v); }

private:
    DienstverbandPtr m;
    QString k;
};

class SharedKeyAanvrager : public Aanvrager
{
public:
    SharedKeyAanvrager(AanvragerPtr inner, QString key) : m(std::move(inner)), k(std::move(key)) {}
    qint16 Anv_Id() const override { return m->Anv_Id(); }
    QString Naam() const override { return m->Naam(); }
    void setNaam(const QString &v) override { m->setNaam(v); }
    QDate GeboorteDatum() const override { return m->GeboorteDatum(); }
    void setGeboorteDatum(const QDate &v) override { m->setGeboorteDatum(v); }
    quint8 Categorie() const override { return m->Categorie(); }
    void setCategorie(quint8 v) override { m->setCategorie(v); }
    qint16 AowLeeftijd() const override { return m->AowLeeftijd(); }
    QDate Dt_EindeInkomen() const override { return m->Dt_EindeInkomen(); }
    qint32 AgeOnDate(const QDate &d) const override { return m->AgeOnDate(d); }
    DienstverbandPtr Get_Dienstverband(qint16 i) override
    {
        DienstverbandPtr dv = m->Get_Dienstverband(i);
        return dv && i == 3 ? std::make_shared<SharedKeyDienstverband>(dv, k) : dv;
    }
    qint16 AddDienstverband() override { return m->AddDienstverband(); }
    void RemoveDienstverband(qint16 i) override { m->RemoveDienstverband(i); }
    PensioenPtr Get_Pensioen(qint16 i) override { return m->Get_Pensioen(i); }
    qint16 AddPension() override { return m->AddPension(); }
    void RemovePension(qint16 i) override { m->RemovePension(i); }

private:
    AanvragerPtr m;
    QString k;
};

class SharedKeyDossier : public Dossier
{
public:
    SharedKeyDossier(DossierPtr inner, QString key) : m(std::move(inner)), k(std::move(key)) {}
    AanvragerPtr Get_Aanvrager(qint16 i) override
    {
        AanvragerPtr a = m->Get_Aanvrager(i);
        return a ? std::make_shared<SharedKeyAanvrager>(a, k) : a;
    }
    qint16 AddAanvrager() override { return m->AddAanvrager(); }
    void RemoveAanvrager(qint16 i) override { m->RemoveAanvrager(i); }
    qint32 SyncVlaggen() const override { return m->SyncVlaggen(); }
    void setSyncVlaggen(qint32 v) override { m->setSyncVlaggen(v); }

private:
    DossierPtr m;
    QString k;
};

class SharedKeyApplication : public Application
{
public:
    SharedKeyApplication(ApplicationPtr inner, QString key) : m(std::move(inner)), k(std::move(key)) {}
    DossierPtr Get_Dossier() override { return std::make_shared<SharedKeyDossier>(m->Get_Dossier(), k); }
    ParametersPtr Get_Parameters() override { return m->Get_Parameters(); }
    void ReportError(ErrorRecord &r) override { m->ReportError(r); }
    QString Title() const override { return m->Title(); }
    QIcon Icon() const override { return m->Icon(); }

private:
    ApplicationPtr m;
    QString k;
};

} // namespace

class TestPensGeg : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<PensGeg> form;

    PensGeg *open(Case &c)
    {
        form = std::make_unique<PensGeg>();
        form->resize(465, 640);
        if (!showActive(form.get()))
            qWarning("window did not become active");
        form->SetApplication(c.app, 1, c.penId);
        return form.get();
    }
    TextBox *box(const char *name) { return find<TextBox>(form.get(), QString::fromLatin1(name)); }
    QRadioButton *opt(const char *name) { return find<QRadioButton>(form.get(), QString::fromLatin1(name)); }
    QCheckBox *chk(int i) { return find<QCheckBox>(form.get(), QStringLiteral("chkSynced_%1").arg(i)); }

private Q_SLOTS:
    void cleanup() { form.reset(); }

    void fillsFieldsFromTheScheme()
    {
        Case c = makeCase();
        c.pen->setOpgebouwd(1234.5);
        c.pen->setDt_Overzicht(QDate(2023, 2, 1));
        c.pen->setBijdrageOP(11);
        c.pen->setBijdragePreP(22);
        c.pen->setBijdrageVrijwillig(33);
        open(c);
        QVERIFY(opt("optEindloon")->isChecked());
        QVERIFY(!opt("optMiddelloon")->isChecked());
        QCOMPARE(box("txtEindloon")->text(), QStringLiteral("1,750"));
        QVERIFY(box("txtEindloon")->isEnabled());
        QCOMPARE(box("txtMiddelloon")->text(), QStringLiteral("0,000"));
        QVERIFY(!box("txtMiddelloon")->isEnabled());
        QCOMPARE(box("txtSalaris")->text(), QStringLiteral("40.000"));
        QCOMPARE(box("TxtGrondslag")->text(), QStringLiteral("30.001"));
        QCOMPARE(box("txtOpgebouwd")->text(), QStringLiteral("1.235"));
        QCOMPARE(box("TxtOverzicht")->text(), QStringLiteral("01-02-2023"));
        QCOMPARE(box("TxtBijdrageOP")->value(), 11.0);
        QCOMPARE(box("TxtBijdragePreP")->value(), 22.0);
        QCOMPARE(box("TxtBijdrageVrijwillig")->value(), 33.0);
        QCOMPARE(find<QGroupBox>(form.get(), QStringLiteral("fraRegeling"))->title(),
                 QStringLiteral("Soort pensioenregeling"));
        QCOMPARE(find<QGroupBox>(form.get(), QStringLiteral("fraBijdrage"))->title(),
                 QStringLiteral("Werknemersbijdrage(n)"));
        QCOMPARE(find<QLabel>(form.get(), QStringLiteral("LblAangroei"))->text(),
                 QStringLiteral("Pensioenaangroei (factor A)"));
        QVERIFY(!box("txtDefault")->isHidden());
        QCOMPARE(box("txtDefault")->text(), QStringLiteral("<Default t.b.v. TabIndex>"));
    }

    void noSchemeLeavesThePanelInert()
    {
        Case c = makeCase();
        c.dossier->setSyncVlaggen(SyncVlag::Franchise);
        form = std::make_unique<PensGeg>();
        QVERIFY(showActive(form.get()));
        QSignalSpy info(form.get(), &PensGeg::InfoChanged);
        form->SetApplication(c.app, 0, 0);
        QVERIFY(box("txtSalaris")->text().isEmpty());
        QVERIFY(box("TxtGrondslag")->text().isEmpty());
        click(opt("optMiddelloon"));
        click(chk(2));
        click(chk(0));
        QCOMPARE(info.count(), 0);
        QCOMPARE(c.dossier->SyncVlaggen(), SyncVlag::Franchise);
        QCOMPARE(c.pen->SoortRegeling(), SoortRegeling::Eindloon);
        QCOMPARE(c.pen->OpbouwPercentage(), 1.75f);
        MessageRecorder messages;
        bool cancel = false;
        form->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(messages.count(), 0);
    }

    void loadingRaisesNothingAndKeepsTheWord()
    {
        Case c = makeCase();
        const qint32 word = SyncVlag::Salaris | SyncVlag::Franchise | SyncVlag::Grondslag
                          | SyncVlag::Aangroei | 1 | 4;
        c.dossier->setSyncVlaggen(word);
        form = std::make_unique<PensGeg>();
        QSignalSpy info(form.get(), &PensGeg::InfoChanged);
        QVERIFY(showActive(form.get()));
        form->SetApplication(c.app, 1, c.penId);
        form->SetApplication(c.app, 1, c.penId);
        QCOMPARE(info.count(), 0);
        QCOMPARE(c.dossier->SyncVlaggen(), word);
        for (int i = 0; i < 4; ++i)
            QVERIFY(chk(i)->isChecked());
        QVERIFY(!box("txtSalaris")->isEnabled());
        QVERIFY(!box("txtFranchise")->isEnabled());
    }

    void deferredWritingIsSwitchedOff()
    {
        Case c = makeCase();
        c.pen->setUitgesteldSchrijven(true);
        open(c);
        QVERIFY(!c.pen->UitgesteldSchrijven());
    }

    void checkBoxAddsAndRemovesItsBitOnce()
    {
        Case c = makeCase();
        open(c);
        QVERIFY(!chk(1)->isChecked());
        // Another screen set the bit meanwhile: checking must not add it a second time.
        c.dossier->setSyncVlaggen(SyncVlag::Franchise | 1);
        click(chk(1));
        QVERIFY(chk(1)->isChecked());
        QCOMPARE(c.dossier->SyncVlaggen(), SyncVlag::Franchise | 1);
        // And cleared meanwhile: unchecking must not subtract it.
        c.dossier->setSyncVlaggen(1);
        click(chk(1));
        QVERIFY(!chk(1)->isChecked());
        QCOMPARE(c.dossier->SyncVlaggen(), 1);
        click(chk(2));
        QCOMPARE(c.dossier->SyncVlaggen(), 1 | SyncVlag::Grondslag);
        click(chk(2));
        QCOMPARE(c.dossier->SyncVlaggen(), 1);
    }

    void franchiseByCategoryAndType_data()
    {
        QTest::addColumn<int>("categorie");
        QTest::addColumn<int>("soort");
        QTest::addColumn<QString>("parameter");
        QTest::newRow("cat 1 eindloon") << 1 << 1 << "FranchiseEindloonA";
        QTest::newRow("cat 3 eindloon") << 3 << 1 << "FranchiseEindloonB";
        QTest::newRow("cat 5 eindloon") << 5 << 1 << "FranchiseEindloonB";
        QTest::newRow("cat 7 eindloon") << 7 << 1 << "FranchiseEindloonA";
        QTest::newRow("cat 2 middelloon") << 2 << 2 << "FranchiseA";
        QTest::newRow("cat 3 middelloon") << 3 << 2 << "FranchiseB";
        QTest::newRow("cat 6 premie") << 6 << 3 << "FranchiseA";
        QTest::newRow("cat 5 premie") << 5 << 3 << "FranchiseB";
        QTest::newRow("cat 0 middelloon") << 0 << 2 << "FranchiseB";
    }
    void franchiseByCategoryAndType()
    {
        QFETCH(int, categorie);
        QFETCH(int, soort);
        QFETCH(QString, parameter);
        Case c = makeCase(qint16(soort));
        c.anv->setCategorie(quint8(categorie));
        const ParametersPtr p = c.app->Get_Parameters();
        const double expected = parameter == QLatin1String("FranchiseEindloonA") ? p->FranchiseEindloonA()
                              : parameter == QLatin1String("FranchiseEindloonB") ? p->FranchiseEindloonB()
                              : parameter == QLatin1String("FranchiseA")         ? p->FranchiseA()
                                                                                 : p->FranchiseB();
        if (soort == 3) {
            // The box is hidden for defined contribution; a bit set elsewhere still counts.
            c.dossier->setSyncVlaggen(SyncVlag::Franchise);
            open(c);
        } else {
            open(c);
            click(chk(1));
            QVERIFY(!box("txtFranchise")->isEnabled());
            QCOMPARE(box("txtFranchise")->value(), expected);
        }
        QCOMPARE(c.pen->Franchise(), expected);
    }

    void computedBasisNeverNegative()
    {
        Case c = makeCase();
        c.pen->setFranchise(35000);
        c.dossier->setSyncVlaggen(SyncVlag::Grondslag);
        open(c);
        QVERIFY(!box("TxtGrondslag")->isEnabled());
        QCOMPARE(c.pen->Grondslag(), 5000.0);
        enter(box("txtSalaris"), QStringLiteral("30000"));
        QCOMPARE(c.pen->Salaris(), 30000.0);
        QCOMPARE(c.pen->Grondslag(), 0.0);
        QCOMPARE(box("TxtGrondslag")->text(), QStringLiteral("0"));
    }

    void synchronisedAccrualKeepsCents()
    {
        Case c = makeCase();
        c.pen->setOpbouwPercentage(2.25f);
        c.dossier->setSyncVlaggen(SyncVlag::Aangroei);
        open(c);
        QVERIFY(!box("txtAangroei")->isEnabled());
        enter(box("TxtGrondslag"), QStringLiteral("40000"));
        QCOMPARE(c.pen->Aangroei(), 900.0);

        c.pen->setOpbouwPercentage(1.875f);
        form->SetApplication(c.app, 1, c.penId);
        enter(box("TxtGrondslag"), QStringLiteral("33333"));
        QCOMPARE(c.pen->Grondslag(), 33333.0);
        QCOMPARE(c.pen->Aangroei(), 624.99375);
    }

    void typedPercentageCutsAccrualOff_data()
    {
        QTest::addColumn<int>("vlaggen");
        QTest::newRow("bit 64 clear") << 0;
        QTest::newRow("bit 64 set") << int(SyncVlag::Aangroei);
    }
    void typedPercentageCutsAccrualOff()
    {
        QFETCH(int, vlaggen);
        Case c = makeCase();
        c.pen->setGrondslag(33333);
        c.dossier->setSyncVlaggen(vlaggen);
        open(c);
        enter(box("txtEindloon"), QStringLiteral("1,875"));
        QCOMPARE(c.pen->OpbouwPercentage(), 1.875f);
        QCOMPARE(c.pen->Aangroei(), 624.0);
        QCOMPARE(box("txtAangroei")->text(), QStringLiteral("624"));
    }

    void salaryOfTheLastMatchingEmployment()
    {
        Case c = makeCase();
        for (double salaris : {41000.0, 999.0, 52000.0})
            c.anv->Get_Dienstverband(c.anv->AddDienstverband())->setSalaris(salaris);
        const QString key = c.anv->Get_Dienstverband(1)->Key();
        c.pen->setDienstverbandKey(key);
        // The reference host refuses a second employment with a key it already has; a host that
        // does not (or an old case) is stood in for by giving employment 3 the key of 1.
        auto app = std::make_shared<SharedKeyApplication>(c.app, key);

        form = std::make_unique<PensGeg>();
        QVERIFY(showActive(form.get()));
        form->SetApplication(app, 1, c.penId);
        click(chk(0));
        QCOMPARE(c.dossier->SyncVlaggen(), SyncVlag::Salaris);
        QCOMPARE(c.pen->Salaris(), 52000.0);
        QCOMPARE(box("txtSalaris")->text(), QStringLiteral("52.000"));
        QVERIFY(!box("txtSalaris")->isEnabled());

        // Only the first employment has the key in the real host: its salary is taken.
        form->SetApplication(c.app, 1, c.penId);
        QCOMPARE(c.pen->Salaris(), 41000.0);

        // No employment with the key: the salary stays.
        c.pen->setDienstverbandKey(QString());
        c.pen->setSalaris(12345);
        form->SetApplication(c.app, 1, c.penId);
        QCOMPARE(c.pen->Salaris(), 12345.0);
    }

    void definedContributionLayout()
    {
        Case c = makeCase(SoortRegeling::BeschikbarePremie);
        c.dossier->setSyncVlaggen(SyncVlag::Aangroei);
        open(c);
        for (const char *hidden : {"txtFranchise", "TxtGrondslag"})
            QVERIFY2(box(hidden)->isHidden(), hidden);
        QVERIFY(find<QLabel>(form.get(), QStringLiteral("LblFranchise"))->isHidden());
        QVERIFY(find<QLabel>(form.get(), QStringLiteral("LblGrondslag"))->isHidden());
        for (const char *shown : {"TxtPcOpbouw", "TxtPcUitkering", "TxtDoelvermogen"})
            QVERIFY2(box(shown)->isVisible(), shown);
        QVERIFY(chk(0)->isVisible());
        for (int i = 1; i < 4; ++i)
            QVERIFY(chk(i)->isHidden());
        QCOMPARE(box("TxtPcOpbouw")->text(), QStringLiteral("4,000"));
        QCOMPARE(c.pen->Aangroei(), 500.0);
        QVERIFY(box("txtAangroei")->isEnabled());
        QVERIFY(box("TxtBeschikbarePremie")->isEnabled());
    }

    void optionResetsToTheNewTypesDefaults()
    {
        Case c = makeCase();
        open(c);
        QSignalSpy info(form.get(), &PensGeg::InfoChanged);
        click(opt("optMiddelloon"));
        QCOMPARE(info.count(), 1);
        QCOMPARE(c.pen->SoortRegeling(), SoortRegeling::Middelloon);
        QCOMPARE(c.pen->OpbouwPercentage(), c.app->Get_Parameters()->DefaultOpbouwMiddelloon());
        QCOMPARE(c.pen->Aangroei(), 0.0);
        QVERIFY(!box("txtEindloon")->isEnabled());
        QCOMPARE(box("txtEindloon")->value(), 0.0);
        QVERIFY(box("txtMiddelloon")->isEnabled());

        click(opt("optBeschikbarePremie"));
        QCOMPARE(info.count(), 2);
        QCOMPARE(c.pen->SoortRegeling(), SoortRegeling::BeschikbarePremie);
        QCOMPARE(c.pen->OpbouwPercentage(), 0.0f);
        QVERIFY(box("TxtGrondslag")->isHidden());
        QVERIFY(box("TxtDoelvermogen")->isVisible());
    }

    void defaultFieldPassesTheFocus()
    {
        Case c = makeCase(SoortRegeling::Middelloon);
        open(c);
        box("txtDefault")->setFocus(Qt::TabFocusReason);
        QCOMPARE(focused(), opt("optMiddelloon"));
    }

    void controleNrThreeChecksNothing()
    {
        Case c = makeCase();
        c.pen->setGrondslag(90000);
        open(c);
        MessageRecorder messages;
        bool cancel = false;
        form->Validation(cancel, 3);
        QVERIFY(!cancel);
        QCOMPARE(messages.count(), 0);
        form->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(messages.count(), 1);
    }

    void cancelSetByTheCallerStays()
    {
        Case c = makeCase();
        c.pen->setGrondslag(90000);
        open(c);
        MessageRecorder messages;
        bool cancel = true;
        form->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(messages.count(), 0);
    }

    void zeroAccrualFailsOnlyWhenDetailsKnown()
    {
        Case c = makeCase();
        open(c);
        MessageRecorder messages;
        enter(box("txtEindloon"), QStringLiteral("0"));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(), QStringLiteral("Vul een positief percentage in."));
        QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
        QCOMPARE(messages.last().icon, MessageBox::Icon::Exclamation);
        QCOMPARE(c.pen->OpbouwPercentage(), 1.75f);

        c.pen->setRegelingBekend(false);
        form->SetApplication(c.app, 1, c.penId);
        messages.clear();
        QVERIFY(!box("txtEindloon")->isEnabled());
        QVERIFY(find<QGroupBox>(form.get(), QStringLiteral("fraGrondslag"))->isHidden());
        bool cancel = false;
        form->Validation(cancel, 0);
        QVERIFY(!cancel);
        QCOMPARE(messages.count(), 0);
    }

    void basisUpToTheSalary()
    {
        Case c = makeCase();
        c.pen->setAangroei(0);
        open(c);
        MessageRecorder messages;
        enter(box("TxtGrondslag"), QStringLiteral("40001"));
        QCOMPARE(messages.lastText(),
                 QStringLiteral("Pensioengrondslag kan niet groter dan pensioengevend salaris zijn."));
        QCOMPARE(c.pen->Grondslag(), 30001.0);
        QCOMPARE(focused(), box("TxtGrondslag"));
        messages.clear();
        enter(box("TxtGrondslag"), QStringLiteral("40000"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.pen->Grondslag(), 40000.0);
    }

    void statementDateTodayOrEarlier()
    {
        Case c = makeCase();
        open(c);
        MessageRecorder messages;
        const QDate today = QDate::currentDate();
        enter(box("TxtOverzicht"), today.addDays(1).toString(QStringLiteral("dd-MM-yyyy")));
        QCOMPARE(messages.lastText(), QStringLiteral("Datum pensioenoverzicht moet in het verleden liggen."));
        QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
        QVERIFY(!isFilled(c.pen->Dt_Overzicht()));
        messages.clear();
        enter(box("TxtOverzicht"), today.toString(QStringLiteral("dd-MM-yyyy")));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.pen->Dt_Overzicht(), today);
    }

    void accrualLimit_data()
    {
        QTest::addColumn<QString>("percentage");
        QTest::addColumn<double>("grondslag");
        QTest::addColumn<int>("toegestaan");
        QTest::addColumn<QString>("melding");
        QTest::newRow("525,0175") << "1,750" << 30001.0 << 525
            << "Pensioenaangroei (factor A) mag maximaal het opbouwpercentage (1,750%) vermenigvuldigd met de Pensioengrondslag (€ 30.001) zijn (€ 525).";
        QTest::newRow("612,5") << "1,750" << 35000.0 << 612
            << "Pensioenaangroei (factor A) mag maximaal het opbouwpercentage (1,750%) vermenigvuldigd met de Pensioengrondslag (€ 35.000) zijn (€ 612).";
        QTest::newRow("613,5") << "1,500" << 40900.0 << 614
            << "Pensioenaangroei (factor A) mag maximaal het opbouwpercentage (1,500%) vermenigvuldigd met de Pensioengrondslag (€ 40.900) zijn (€ 613).";
    }
    void accrualLimit()
    {
        QFETCH(QString, percentage);
        QFETCH(double, grondslag);
        QFETCH(int, toegestaan);
        QFETCH(QString, melding);
        Case c = makeCase();
        c.pen->setSalaris(50000);
        c.pen->setGrondslag(grondslag);
        open(c);
        enter(box("txtEindloon"), percentage);
        MessageRecorder messages;
        enter(box("txtAangroei"), QString::number(toegestaan + 1));
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(), melding);
        QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
        QCOMPARE(focused(), box("txtAangroei"));
        QVERIFY(c.pen->Aangroei() != toegestaan + 1);
        messages.clear();
        enter(box("txtAangroei"), QString::number(toegestaan));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.pen->Aangroei(), double(toegestaan));
    }

    void targetCapitalAndRates()
    {
        Case c = makeCase(SoortRegeling::BeschikbarePremie);
        open(c);
        MessageRecorder messages;
        enter(box("TxtDoelvermogen"), QStringLiteral("0"));
        QCOMPARE(messages.lastText(), QStringLiteral("Doelvermogen niet ingevuld."));
        QCOMPARE(messages.lastTitle(), QStringLiteral("Invoer verplicht"));
        QCOMPARE(c.pen->Doelvermogen(), 100000.0);
        QCOMPARE(focused(), box("TxtDoelvermogen"));
        messages.clear();
        enter(box("TxtDoelvermogen"), QStringLiteral("250000"));
        QCOMPARE(messages.count(), 0);
        QCOMPARE(c.pen->Doelvermogen(), 250000.0);

        const struct { const char *field; QString message; } rates[] = {
            {"TxtPcOpbouw", QStringLiteral("Rekenrente opbouwfase doelvermogen vanaf 0 t/m 20% invullen.")},
            {"TxtPcUitkering", QStringLiteral("Rekenrente uitkeringsfase doelvermogen vanaf 0 t/m 20% invullen.")},
        };
        for (const auto &rate : rates) {
            for (const QString &wrong : {QStringLiteral("0"), QStringLiteral("20,001")}) {
                messages.clear();
                enter(box(rate.field), wrong);
                QCOMPARE(messages.count(), 1);
                QCOMPARE(messages.lastText(), rate.message);
                QCOMPARE(messages.lastTitle(), QStringLiteral("Ongeldige invoer"));
                QCOMPARE(focused(), box(rate.field));
            }
            messages.clear();
            enter(box(rate.field), QStringLiteral("20"));
            QCOMPARE(messages.count(), 0);
        }
        QCOMPARE(c.pen->RekenrenteOpbouw(), 20.0f);
        QCOMPARE(c.pen->RekenrenteUitkering(), 20.0f);
    }

    void onlyTheFirstMessageIsShown()
    {
        Case c = makeCase();
        c.pen->setGrondslag(90000);      // check 2 fails
        open(c);
        MessageRecorder messages;
        typeInto(box("txtEindloon"), QStringLiteral("0"));   // check 1 fails too
        bool cancel = false;
        form->Validation(cancel, 0);
        QVERIFY(cancel);
        QCOMPARE(messages.count(), 1);
        QCOMPARE(messages.lastText(), QStringLiteral("Vul een positief percentage in."));
    }

    void refusedFieldsLeaveTheHostAlone()
    {
        struct Row { qint16 soort; const char *field; QString text; std::function<double(const Case &)> value; };
        const QList<Row> rows{
            {1, "txtEindloon", QStringLiteral("0"), [](const Case &c) { return double(c.pen->OpbouwPercentage()); }},
            {2, "txtMiddelloon", QStringLiteral("0"), [](const Case &c) { return double(c.pen->OpbouwPercentage()); }},
            {1, "TxtGrondslag", QStringLiteral("40001"), [](const Case &c) { return c.pen->Grondslag(); }},
            {1, "txtAangroei", QStringLiteral("9999"), [](const Case &c) { return c.pen->Aangroei(); }},
            {1, "TxtOverzicht", QDate::currentDate().addDays(2).toString(QStringLiteral("dd-MM-yyyy")),
             [](const Case &c) { return double(c.pen->Dt_Overzicht().toJulianDay()); }},
            {3, "TxtDoelvermogen", QStringLiteral("0"), [](const Case &c) { return c.pen->Doelvermogen(); }},
            {3, "TxtPcOpbouw", QStringLiteral("20,5"), [](const Case &c) { return double(c.pen->RekenrenteOpbouw()); }},
            {3, "TxtPcUitkering", QStringLiteral("0"), [](const Case &c) { return double(c.pen->RekenrenteUitkering()); }},
        };
        for (const Row &row : rows) {
            Case c = makeCase(row.soort);
            c.pen->setOpbouwPercentage(1.75f);
            open(c);
            const double before = row.value(c);
            MessageRecorder messages;
            enter(box(row.field), row.text);
            QVERIFY2(messages.count() == 1, row.field);
            QVERIFY2(row.value(c) == before, row.field);
            QVERIFY2(focused() == box(row.field), row.field);
        }
    }

    void errorInAFieldIsReportedWithoutCancel()
    {
        Case c = makeCase();
        open(c);
        c.anv->RemovePension(c.penId);   // the panel still holds the record that is gone
        MessageRecorder messages;
        enter(box("txtSalaris"), QStringLiteral("50000"));
        const auto errors = c.app->reportedErrors();
        QCOMPARE(errors.size(), 1);
        QCOMPARE(errors.first().Procedure, QStringLiteral("txtSalaris_Validate"));
        QCOMPARE(errors.first().Component, QStringLiteral("PensGeg"));
        QCOMPARE(errors.first().Subject, QStringLiteral("Pensioen"));
        QCOMPARE(errors.first().Message, QStringLiteral("Er is een fout opgetreden."));
        QVERIFY(focused() != box("txtSalaris"));
        QCOMPARE(messages.count(), 0);
    }

    void backColorKeepsExplicitColours()
    {
        Case c = makeCase();
        open(c);
        auto *bijdrage = find<QGroupBox>(form.get(), QStringLiteral("fraBijdrage"));
        QPalette palette = bijdrage->palette();
        palette.setColor(bijdrage->backgroundRole(), QColor(Qt::yellow));
        bijdrage->setPalette(palette);
        form->setBackColor(QColor(Qt::cyan));
        QCOMPARE(form->BackColor(), QColor(Qt::cyan));
        auto *regeling = find<QGroupBox>(form.get(), QStringLiteral("fraRegeling"));
        QCOMPARE(regeling->palette().color(regeling->backgroundRole()), QColor(Qt::cyan));
        QCOMPARE(bijdrage->palette().color(bijdrage->backgroundRole()), QColor(Qt::yellow));
    }

    void providerEventsArePassedOn()
    {
        Case c = makeCase();
        c.dossier->AddAanvrager();
        c.dossier->Get_Aanvrager(2)->setNaam(QStringLiteral("Els"));
        open(c);
        bool seen = false;
        connect(form.get(), &PensGeg::ChangeAanvrager, form.get(), [&](bool &Cancel) {
            seen = true;
            Cancel = true;   // refused by the container
        }, Qt::DirectConnection);
        auto *partner = find<QRadioButton>(form.get(), QStringLiteral("optAanvrager_2"));
        // On the round button itself: an option's empty space beside its caption is no target.
        QTest::mouseClick(partner, Qt::LeftButton, Qt::NoModifier, QPoint(6, partner->height() / 2));
        QVERIFY(seen);
        // The refusal reached the provider control, which put the applicant back.
        QVERIFY(!partner->isChecked());
        QVERIFY(find<QRadioButton>(form.get(), QStringLiteral("optAanvrager_1"))->isChecked());

        QSignalSpy info(form.get(), &PensGeg::InfoChanged);
        enter(find<TextBox>(form.get(), QStringLiteral("txtUitvoerder")), QStringLiteral("ABP"));
        QCOMPARE(info.count(), 1);
        QCOMPARE(c.pen->Uitvoerder(), QStringLiteral("ABP"));
    }

    void framesStackAtAnyWidth()
    {
        Case c = makeCase();
        open(c);
        for (int width : {300, 465, 900}) {
            form->resize(width, 640);
            QApplication::processEvents();
            auto *uitv = find<VandrelPensioen::PensUitv>(form.get(), QStringLiteral("Uitvoerder"));
            auto *regeling = find<QGroupBox>(form.get(), QStringLiteral("fraRegeling"));
            auto *grondslag = find<QGroupBox>(form.get(), QStringLiteral("fraGrondslag"));
            auto *bijdrage = find<QGroupBox>(form.get(), QStringLiteral("fraBijdrage"));
            QCOMPARE(uitv->width(), width);
            QCOMPARE(regeling->width(), width);
            QCOMPARE(regeling->y(), uitv->geometry().bottom() + 1);
            QCOMPARE(grondslag->y(), regeling->geometry().bottom() + 1 + 4);
            QCOMPARE(bijdrage->y(), grondslag->geometry().bottom() + 1 + 4);
            QVERIFY(grondslag->height() >= grondslag->minimumSizeHint().height());
        }
    }
};

QTEST_MAIN(TestPensGeg)
#include "tst_pensgeg.moc"
