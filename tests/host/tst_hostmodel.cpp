// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The in-memory case: collections, handles, defaults and the host's own rules.

#include "hostapplication.h"
#include "fiscalfigures.h"
#include "rules.h"

#include <QRegularExpression>

#include <QTest>

using namespace VandrelApplication;
using Zarnoveld::HostApplication;

class TstHostModel : public QObject
{
    Q_OBJECT

private:
    static std::shared_ptr<HostApplication> app() { return HostApplication::createInMemory(); }

    // Expects body to throw HostError with that number.
    template <typename Body>
    static qint32 errorOf(Body &&body)
    {
        try {
            body();
        } catch (const HostError &e) {
            return e.number();
        }
        return 0;
    }

private slots:
    void newCaseHasOnlyTheApplicant()
    {
        auto a = app();
        auto dossier = a->Get_Dossier();
        QVERIFY(dossier);
        auto applicant = dossier->Get_Aanvrager(1);
        QVERIFY(applicant);
        QCOMPARE(applicant->Anv_Id(), qint16(1));
        QVERIFY(!dossier->Get_Aanvrager(2));
        QVERIFY(!dossier->Get_Aanvrager(0));
        QVERIFY(!applicant->Get_Pensioen(1));
        QVERIFY(!applicant->Get_Dienstverband(1));
        QVERIFY(a->filePath().isEmpty());
    }

    void partnerAddAndRemove()
    {
        auto a = app();
        auto dossier = a->Get_Dossier();
        QCOMPARE(dossier->AddAanvrager(), qint16(2));
        auto partner = dossier->Get_Aanvrager(2);
        QVERIFY(partner);
        QCOMPARE(partner->Anv_Id(), qint16(2));
        QCOMPARE(errorOf([&] { dossier->AddAanvrager(); }), HostErrorCode::InvalidState);
        QCOMPARE(errorOf([&] { dossier->RemoveAanvrager(1); }), HostErrorCode::InvalidState);
        dossier->RemoveAanvrager(2);
        QVERIFY(!dossier->Get_Aanvrager(2));
        QCOMPARE(errorOf([&] { partner->setNaam(QStringLiteral("x")); }), HostErrorCode::NotFound);
    }

    void newSchemeDefaults()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        QCOMPARE(anv->AddPension(), qint16(1));
        auto pen = anv->Get_Pensioen(1);
        QVERIFY(pen);
        QCOMPARE(pen->SoortRegeling(), SoortRegeling::Eindloon);
        QVERIFY(pen->RegelingBekend());
        QCOMPARE(pen->EindLeeftijdWzP(), qint16(21));
        QCOMPARE(pen->Salaris(), 0.0);
        QVERIFY(pen->Uitvoerder().isEmpty());
        QVERIFY(!pen->UitgesteldSchrijven());
        QCOMPARE(pen->OuderdomRegelCount(), qint16(1));
        auto row = pen->Get_OuderdomRegel(1);
        QVERIFY(row);
        QCOMPARE(row->Key().size(), 38);
        QVERIFY(!pen->Get_OuderdomRegel(2));
        QVERIFY(row->ScenarioOP());
        QCOMPARE(row->ScenarioOP()->RegelCount(), qint16(0));
    }

    void collectionsAreOneBasedAndEndWithNull()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        QCOMPARE(anv->AddDienstverband(), qint16(1));
        QCOMPARE(anv->AddDienstverband(), qint16(2));
        QVERIFY(anv->Get_Dienstverband(2));
        QVERIFY(!anv->Get_Dienstverband(3));
        QVERIFY(!anv->Get_Dienstverband(0));
        QVERIFY(!anv->Get_Dienstverband(-1));
        QVERIFY(anv->Get_Dienstverband(1)->Key() != anv->Get_Dienstverband(2)->Key());
        QVERIFY(QRegularExpression(QStringLiteral("^\\{[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\\}$"))
                    .match(anv->Get_Dienstverband(1)->Key()).hasMatch());
        anv->RemoveDienstverband(1);
        QVERIFY(anv->Get_Dienstverband(1));
        QVERIFY(!anv->Get_Dienstverband(2));
        QCOMPARE(errorOf([&] { anv->RemoveDienstverband(5); }), HostErrorCode::OutOfRange);
    }

    void removePensionRenumbersAndStaleHandlesThrow()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        for (int i = 1; i <= 3; ++i) {
            QCOMPARE(anv->AddPension(), qint16(i));
            anv->Get_Pensioen(qint16(i))->setUitvoerder(QStringLiteral("Fonds %1").arg(i));
        }
        auto second = anv->Get_Pensioen(2);
        auto third = anv->Get_Pensioen(3);
        auto rowOfSecond = second->Get_OuderdomRegel(1);
        anv->RemovePension(2);
        QCOMPARE(anv->Get_Pensioen(1)->Uitvoerder(), QStringLiteral("Fonds 1"));
        QCOMPARE(anv->Get_Pensioen(2)->Uitvoerder(), QStringLiteral("Fonds 3"));
        QVERIFY(!anv->Get_Pensioen(3));
        // A handle follows its record, not its number.
        QCOMPARE(third->Uitvoerder(), QStringLiteral("Fonds 3"));
        try {
            second->Uitvoerder();
            QFAIL("a removed scheme must throw");
        } catch (const HostError &e) {
            QCOMPARE(e.number(), HostErrorCode::NotFound);
            QCOMPARE(e.description(), QStringLiteral("Deze pensioenregeling bestaat niet meer."));
        }
        QCOMPARE(errorOf([&] { second->setSalaris(1); }), HostErrorCode::NotFound);
        QCOMPARE(errorOf([&] { rowOfSecond->setBedragOP(1); }), HostErrorCode::NotFound);
        QCOMPARE(errorOf([&] { anv->RemovePension(3); }), HostErrorCode::OutOfRange);
    }

    void ninetyNineSchemesAtMost()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        for (int i = 0; i < 99; ++i)
            anv->AddPension();
        QCOMPARE(errorOf([&] { anv->AddPension(); }), HostErrorCode::OutOfRange);
        QVERIFY(anv->Get_Pensioen(99));
        QVERIFY(!anv->Get_Pensioen(100));
    }

    void ageOnDateCountsCompletedMonths()
    {
        using Zarnoveld::Rules::ageOnDate;
        const QDate birth(1960, 3, 15);
        QCOMPARE(ageOnDate(birth, QDate(2027, 3, 15)), 804);
        QCOMPARE(ageOnDate(birth, QDate(2027, 3, 14)), 803);
        QCOMPARE(ageOnDate(birth, QDate(2027, 4, 1)), 804);
        QCOMPARE(ageOnDate(birth, birth), 0);
        // Born on the 31st: the last day of a shorter month completes that month.
        QCOMPARE(ageOnDate(QDate(1970, 1, 31), QDate(1970, 2, 28)), 1);
        QCOMPARE(ageOnDate(QDate(1970, 1, 31), QDate(1970, 2, 27)), 0);
        QCOMPARE(ageOnDate(QDate(1970, 1, 31), QDate(1970, 4, 30)), 3);
        QCOMPARE(ageOnDate(QDate(1972, 2, 29), QDate(1973, 2, 28)), 12);
        // Not filled on either side gives 0.
        QCOMPARE(ageOnDate(QDate(), QDate(2020, 1, 1)), 0);
        QCOMPARE(ageOnDate(birth, QDate(1900, 1, 1)), 0);
        QVERIFY(ageOnDate(birth, QDate(1959, 1, 1)) < 0);
    }

    void startDateForAgeRoundTrips()
    {
        using namespace Zarnoveld::Rules;
        QCOMPARE(startDateForAge(QDate(1960, 3, 15), 804), QDate(2027, 4, 1));
        QCOMPARE(startDateForAge(QDate(1960, 3, 1), 804), QDate(2027, 3, 1));
        QCOMPARE(startDateForAge(QDate(1960, 1, 31), 1), QDate(1960, 3, 1));
        QVERIFY(!startDateForAge(QDate(), 804).isValid());
        QVERIFY(!startDateForAge(QDate(1960, 3, 15), 0).isValid());
        for (const QDate birth : {QDate(1960, 1, 31), QDate(1964, 2, 29), QDate(1975, 12, 1), QDate(1981, 8, 30)})
            for (int months = 1; months <= 900; months += 7)
                QCOMPARE(ageOnDate(birth, startDateForAge(birth, months)), months);
    }

    void aowAgeAndEndOfIncome()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->setGeboorteDatum(QDate(1956, 6, 10));
        QCOMPARE(anv->AowLeeftijd(), qint16(66));
        anv->setGeboorteDatum(QDate(1947, 6, 10));
        QCOMPARE(anv->AowLeeftijd(), qint16(65));
        anv->setGeboorteDatum(QDate(1965, 6, 10));
        QCOMPARE(anv->AowLeeftijd(), qint16(67));
        QCOMPARE(anv->Dt_EindeInkomen(), QDate(2032, 6, 10));
        QCOMPARE(anv->AgeOnDate(QDate(2032, 6, 10)), 67 * 12);
        anv->setGeboorteDatum(QDate());
        QVERIFY(!anv->Dt_EindeInkomen().isValid());
        QCOMPARE(anv->AowLeeftijd(), qint16(67));
    }

    void ageAndDateOfARowStayInStep()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->setGeboorteDatum(QDate(1970, 5, 20));
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        auto row = pen->Get_OuderdomRegel(1);
        row->setLeeftijdOP(67 * 12);
        QCOMPARE(row->Dt_IngangOP(), QDate(2037, 6, 1));
        QCOMPARE(row->LeeftijdOP(), 67 * 12);
        QCOMPARE(pen->Dt_PensioenIngang(), QDate(2037, 6, 1));
        row->setDt_IngangOP(QDate(2035, 1, 1));
        QCOMPARE(row->LeeftijdOP(), 64 * 12 + 7);
        QCOMPARE(pen->Dt_PensioenIngang(), QDate(2035, 1, 1));
        row->setLeeftijdPreP(62 * 12 + 3);
        QCOMPARE(row->Dt_IngangPreP(), QDate(2032, 9, 1));
        QCOMPARE(anv->AgeOnDate(row->Dt_IngangPreP()), row->LeeftijdPreP());
        // Clearing either side clears both.
        row->setLeeftijdOP(0);
        QVERIFY(!row->Dt_IngangOP().isValid());
        QCOMPARE(row->LeeftijdOP(), 0);
        QVERIFY(!pen->Dt_PensioenIngang().isValid());
        row->setDt_IngangPreP(QDate());
        QCOMPARE(row->LeeftijdPreP(), 0);
        row->setDt_IngangPreP(QDate(1900, 1, 1));
        QCOMPARE(row->LeeftijdPreP(), 0);
        QVERIFY(!row->Dt_IngangPreP().isValid());
        // Rows after the first do not move the scheme's own start date.
        pen->AddOuderdomRegel();
        pen->Get_OuderdomRegel(1)->setDt_IngangOP(QDate(2036, 1, 1));
        pen->Get_OuderdomRegel(2)->setDt_IngangOP(QDate(2030, 1, 1));
        QCOMPARE(pen->Dt_PensioenIngang(), QDate(2036, 1, 1));
    }

    void ageWithoutBirthDateKeepsTheMonths()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        auto row = anv->Get_Pensioen(1)->Get_OuderdomRegel(1);
        row->setLeeftijdOP(800);
        QCOMPARE(row->LeeftijdOP(), 800);
        QVERIFY(!row->Dt_IngangOP().isValid());
    }

    void rule85AndPensionableIncome()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->AddDienstverband();
        anv->AddDienstverband();
        auto dv1 = anv->Get_Dienstverband(1);
        auto dv2 = anv->Get_Dienstverband(2);
        dv1->setSalaris(40000);
        dv2->setSalaris(52000);
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        QVERIFY(!pen->Regel85Procent());
        pen->setHuidigeWerkgever(true);
        QVERIFY(pen->Regel85Procent());
        QCOMPARE(pen->PensioengevendInkomen(), 0.0);
        pen->setDienstverbandKey(dv2->Key());
        QCOMPARE(pen->PensioengevendInkomen(), 52000.0);
        pen->setSalaris(45000);
        QCOMPARE(pen->PensioengevendInkomen(), 45000.0);
    }

    void parametersCarryCurrentFigures()
    {
        auto p = app()->Get_Parameters();
        QVERIFY(p);
        QCOMPARE(p->DefaultOpbouwEindloon(), 1.657f);
        QCOMPARE(p->DefaultOpbouwMiddelloon(), 1.875f);
        // This year's figures (tst_fiscalfigures checks each year against its published figures).
        const auto &year = Zarnoveld::FiscalFigures::find(Zarnoveld::FiscalFigures::yearFor(QDate::currentDate()))->values;
        QCOMPARE(app()->figureYear(), Zarnoveld::FiscalFigures::yearFor(QDate::currentDate()));
        QCOMPARE(p->FranchiseEindloonA(), year.franchiseEindloonA);
        QCOMPARE(p->FranchiseA(), year.franchiseA);
        QVERIFY(p->FranchiseEindloonB() > 0 && p->FranchiseEindloonB() != p->FranchiseEindloonA());
        QVERIFY(p->FranchiseB() > 0 && p->FranchiseB() != p->FranchiseA());
        QCOMPARE(p->MaxAnwCompensation(), year.maxAnwCompensation);
    }

    void scenarioRules()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        auto sc = anv->Get_Pensioen(1)->Get_OuderdomRegel(1)->ScenarioOP();
        sc->setBedrag(1200);
        auto r1 = sc->Add_Regel();
        QCOMPARE(r1->Maand(), qint16(0));
        QCOMPARE(r1->Bedrag(), 0.0);
        r1->setMaand(1);
        r1->setBedrag(1000);
        sc->Add_Regel()->setMaand(13);
        QCOMPARE(sc->RegelCount(), qint16(2));
        QCOMPARE(sc->Regel(2)->Maand(), qint16(13));
        QVERIFY(!sc->Regel(3));
        sc->RemoveRegel(1);
        QCOMPARE(sc->Regel(1)->Maand(), qint16(13));
        QCOMPARE(errorOf([&] { r1->Bedrag(); }), HostErrorCode::NotFound);
        sc->Clear_Regels();
        QCOMPARE(sc->RegelCount(), qint16(0));
        QCOMPARE(sc->Bedrag(), 1200.0);
    }

    void oldAgeRows()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        QCOMPARE(pen->AddOuderdomRegel(), qint16(2));
        auto row2 = pen->Get_OuderdomRegel(2);
        QCOMPARE(pen->Get_OuderdomRegelByKey(row2->Key())->Key(), row2->Key());
        QVERIFY(!pen->Get_OuderdomRegelByKey(QStringLiteral("{nope}")));
        pen->RemoveOuderdomRegel(1);
        QCOMPARE(pen->Get_OuderdomRegel(1)->Key(), row2->Key());
        QCOMPARE(errorOf([&] { pen->RemoveOuderdomRegel(1); }), HostErrorCode::InvalidState);
        QCOMPARE(pen->OuderdomRegelCount(), qint16(1));
    }

    void scheduleAndRvcProperties()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        QCOMPARE(pen->AoUitkeringAdd(), qint16(1));
        QCOMPARE(pen->AoUitkeringAdd(), qint16(2));
        pen->AoUitkeringItem(1)->setPc_AoTot(35);
        pen->AoUitkeringItem(2)->setPc_AoVanaf(35);
        pen->AoUitkeringItem(2)->setPc_Uitkering(-1);
        QVERIFY(!pen->AoUitkeringItem(3));
        pen->AoUitkeringDelete(1);
        QCOMPARE(pen->AoUitkeringItem(1)->Pc_Uitkering(), -1.0f);
        pen->SetProperty(QStringLiteral("Cd_RvcAfwijking"), 2);
        pen->SetProperty(QStringLiteral("Pc_RvcAfwijking"), 12.5f);
        pen->SetProperty(QStringLiteral("Pc_RvcUitkering"), 70.0f);
        QCOMPARE(pen->Property(QStringLiteral("Cd_RvcAfwijking")).toInt(), 2);
        QCOMPARE(pen->Property(QStringLiteral("Cd_RvcAfwijking")).metaType().id(), QMetaType::Int);
        QCOMPARE(pen->Property(QStringLiteral("Pc_RvcAfwijking")).metaType().id(), QMetaType::Float);
        QCOMPARE(pen->Property(QStringLiteral("Pc_RvcUitkering")).toFloat(), 70.0f);
        QCOMPARE(errorOf([&] { pen->Property(QStringLiteral("Onbekend")); }), HostErrorCode::OutOfRange);
    }

    void capitalAndInsuredOwners()
    {
        auto k = HostApplication::createKapitaal();
        QCOMPARE(k->AoUitkeringAdd(), qint16(1));
        k->AoUitkeringItem(1)->setPc_Uitkering(80);
        QCOMPARE(k->AoUitkeringItem(1)->Pc_Uitkering(), 80.0f);
        k->setCd_UitkeringObv(2);
        k->setCd_AoDekking(3);
        QCOMPARE(k->Cd_UitkeringObv(), 2);
        QCOMPARE(k->Cd_AoDekking(), 3);
        k->SetProperty(QStringLiteral("Pc_RvcUitkering"), 60.0f);
        QCOMPARE(k->Property(QStringLiteral("Pc_RvcUitkering")).toFloat(), 60.0f);
        k->AoUitkeringDelete(1);
        QVERIFY(!k->AoUitkeringItem(1));

        auto v = HostApplication::createVerzekerde();
        QCOMPARE(v->AoUitkeringAdd(), qint16(1));
        QVERIFY(v->AoUitkeringItem(1));
        QCOMPARE(errorOf([&] { v->Property(QStringLiteral("Cd_RvcAfwijking")); }), HostErrorCode::OutOfRange);
        QCOMPARE(errorOf([&] { v->SetProperty(QStringLiteral("Pc_RvcAfwijking"), 1); }), HostErrorCode::OutOfRange);
    }

    void snapshotAndCopyFromTakeOverEverything()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->setGeboorteDatum(QDate(1968, 2, 14));
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        pen->setUitvoerder(QStringLiteral("PFZW"));
        pen->setPc_PP(70);
        pen->setIP(true);
        pen->setRemoveOnClose(true);
        pen->SetProperty(QStringLiteral("Pc_RvcAfwijking"), 5.5f);
        pen->Get_OuderdomRegel(1)->setLeeftijdOP(67 * 12);
        pen->Get_OuderdomRegel(1)->ScenarioOP()->Add_Regel()->setBedrag(900);
        pen->AddOuderdomRegel();
        pen->Get_OuderdomRegel(2)->setBedragOP(321);
        pen->AoUitkeringAdd();
        pen->AoUitkeringItem(1)->setPc_AoVanaf(80);
        const QString key1 = pen->Get_OuderdomRegel(1)->Key();

        auto snap = pen->Snapshot();
        auto keptRow = pen->Get_OuderdomRegel(1);
        // Change everything after the snapshot ...
        pen->setUitvoerder(QStringLiteral("ABP"));
        pen->setPc_PP(50);
        pen->setIP(false);
        pen->SetProperty(QStringLiteral("Pc_RvcAfwijking"), 0.0f);
        pen->Get_OuderdomRegel(1)->setLeeftijdOP(65 * 12);
        pen->Get_OuderdomRegel(1)->ScenarioOP()->Clear_Regels();
        pen->RemoveOuderdomRegel(2);
        pen->AddOuderdomRegel();
        pen->AddOuderdomRegel();
        pen->AoUitkeringDelete(1);
        QCOMPARE(snap->Uitvoerder(), QStringLiteral("PFZW"));
        // ... and put it back.
        pen->CopyFrom(*snap);
        QCOMPARE(pen->Uitvoerder(), QStringLiteral("PFZW"));
        QCOMPARE(pen->Pc_PP(), 70.0f);
        QVERIFY(pen->IP());
        QVERIFY(pen->RemoveOnClose());
        QCOMPARE(pen->Property(QStringLiteral("Pc_RvcAfwijking")).toFloat(), 5.5f);
        QCOMPARE(pen->OuderdomRegelCount(), qint16(2));
        QCOMPARE(pen->Get_OuderdomRegel(1)->Key(), key1);
        QCOMPARE(keptRow->LeeftijdOP(), 67 * 12);
        QCOMPARE(pen->Get_OuderdomRegel(1)->ScenarioOP()->RegelCount(), qint16(1));
        QCOMPARE(pen->Get_OuderdomRegel(1)->ScenarioOP()->Regel(1)->Bedrag(), 900.0);
        QCOMPARE(pen->Get_OuderdomRegel(2)->BedragOP(), 321.0);
        QCOMPARE(pen->AoUitkeringItem(1)->Pc_AoVanaf(), 80.0f);
        QVERIFY(!pen->AoUitkeringItem(2));

        // Moving to the partner: copy into a new scheme there.
        a->Get_Dossier()->AddAanvrager();
        auto partner = a->Get_Dossier()->Get_Aanvrager(2);
        const qint16 id = partner->AddPension();
        partner->Get_Pensioen(id)->CopyFrom(*pen);
        QCOMPARE(partner->Get_Pensioen(id)->Get_OuderdomRegel(2)->BedragOP(), 321.0);
        QCOMPARE(partner->Get_Pensioen(id)->AoUitkeringItem(1)->Pc_AoVanaf(), 80.0f);
    }

    void deferredWritesStillShowInMemory()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        pen->setUitgesteldSchrijven(true);
        QVERIFY(pen->UitgesteldSchrijven());
        pen->setSalaris(1234);
        QCOMPARE(pen->Salaris(), 1234.0);
        pen->setUitgesteldSchrijven(false);
        QVERIFY(!pen->UitgesteldSchrijven());
        QCOMPARE(pen->Salaris(), 1234.0);
    }

    void reportErrorKeepsRecordsAndCallsHandler()
    {
        auto a = app();
        QCOMPARE(a->Title(), QStringLiteral("Zarnoveld"));
        a->setTitle(QStringLiteral("Zarnoveld test"));
        QCOMPARE(a->Title(), QStringLiteral("Zarnoveld test"));
        int calls = 0;
        a->setErrorHandler([&calls](const ErrorRecord &r) {
            ++calls;
            if (r.Number == QLatin1String("7"))
                throw std::runtime_error("handler failed");
        });
        ErrorRecord r;
        r.Procedure = QStringLiteral("Fill_Controls");
        r.Number = QStringLiteral("7");
        a->ReportError(r);
        r.Number = QStringLiteral("8");
        a->ReportError(r);
        QCOMPARE(calls, 2);
        QCOMPARE(a->reportedErrors().size(), 2);
        QCOMPARE(a->reportedErrors().first().Procedure, QStringLiteral("Fill_Controls"));
        a->clearReportedErrors();
        QVERIFY(a->reportedErrors().isEmpty());
    }

    void handlesOutliveTheApplicationReadOnly()
    {
        auto a = app();
        auto anv = a->Get_Dossier()->Get_Aanvrager(1);
        anv->setNaam(QStringLiteral("Jansen"));
        a.reset();
        QCOMPARE(anv->Naam(), QStringLiteral("Jansen"));
        QCOMPARE(errorOf([&] { anv->setNaam(QStringLiteral("x")); }), HostErrorCode::InvalidState);
    }
};

QTEST_GUILESS_MAIN(TstHostModel)
#include "tst_hostmodel.moc"
