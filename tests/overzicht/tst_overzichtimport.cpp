// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The overview mapped onto a real case of the reference host: what each scheme becomes, what a
// second import does, and what is left of the case when something goes wrong halfway.

#include "hostapplication.h"
#include "importplan.h"
#include "registerlink.h"
#include "usersim.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>
#include <QTest>

using namespace VandrelApplication;
using namespace VandrelPensioen::Overzicht;
using Zarnoveld::HostApplication;

namespace {

const QDate kToday(2026, 11, 24);

QString example(const QString &name)
{
    return QStringLiteral(VANDREL_SOURCE_DIR "/examples/pensioenoverzicht/") + name;
}

QByteArray bytesOf(const QString &name)
{
    QFile f(example(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

Overview overviewOf(const QByteArray &data, const QString &name = QStringLiteral("overzicht.json"))
{
    ReadResult r = readOverview(data, name);
    if (!r.ok())
        qFatal("%s", qPrintable(r.error));
    return *r.overview;
}

Overview overviewFile(const QString &name)
{
    return overviewOf(bytesOf(name), name);
}

// Row keys are new identifiers every time a row is made; everything else must match exactly.
QJsonValue withoutRowKeys(const QJsonValue &v)
{
    if (v.isArray()) {
        QJsonArray a;
        for (const QJsonValue &e : v.toArray())
            a.append(withoutRowKeys(e));
        return a;
    }
    if (!v.isObject())
        return v;
    QJsonObject o = v.toObject();
    if (o.contains(QLatin1String("LeeftijdOP")))
        o.remove(QStringLiteral("Key"));
    for (auto it = o.begin(); it != o.end(); ++it)
        it.value() = withoutRowKeys(it.value());
    return o;
}

QByteArray exported(HostApplication &app)
{
    return QJsonDocument(withoutRowKeys(app.exportJson()).toObject()).toJson();
}

std::shared_ptr<HostApplication> couple()
{
    return HostApplication::importJson(TestSupport::exampleCase("sample-couple.json"));
}

int schemeCount(Application &app, qint16 anvId)
{
    auto anv = app.Get_Dossier()->Get_Aanvrager(anvId);
    int n = 0;
    while (anv->Get_Pensioen(qint16(n + 1)))
        ++n;
    return n;
}

PensioenPtr schemeById(HostApplication &app, qint16 anvId, const QString &id)
{
    auto anv = app.Get_Dossier()->Get_Aanvrager(anvId);
    for (qint16 i = 1; auto p = anv->Get_Pensioen(i); ++i)
        if (app.HerkenningsNummer(*p) == id)
            return p;
    return nullptr;
}

ImportPlan importInto(HostApplication &app, const Overview &o, qint16 anvId = 1)
{
    ImportPlan plan = planImport(o, app, anvId, kToday);
    applyPlan(plan, app);
    return plan;
}

// A host that offers only the described object model: no register identifiers, no transaction.
class PlainHost : public Application
{
public:
    explicit PlainHost(std::shared_ptr<HostApplication> inner) : m_inner(std::move(inner)) {}
    DossierPtr Get_Dossier() override { return m_inner->Get_Dossier(); }
    ParametersPtr Get_Parameters() override { return m_inner->Get_Parameters(); }
    void ReportError(ErrorRecord &record) override { m_inner->ReportError(record); }
    QString Title() const override { return m_inner->Title(); }
    QIcon Icon() const override { return m_inner->Icon(); }

private:
    std::shared_ptr<HostApplication> m_inner;
};

} // namespace

class TstOverzichtImport : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void jsonAndXmlGiveTheSameCase()
    {
        auto a = couple();
        auto b = couple();
        importInto(*a, overviewFile(QStringLiteral("overzicht-aanvrager.json")));
        importInto(*b, overviewFile(QStringLiteral("overzicht-aanvrager.xml")));
        QCOMPARE(schemeCount(*a, 1), schemeCount(*couple(), 1) + 3);
        QCOMPARE(exported(*b), exported(*a));
    }

    void applicantSchemesGetTheRegisterFigures()
    {
        auto app = couple();
        const int before = schemeCount(*app, 1);
        const ImportPlan plan = importInto(*app, overviewFile(QStringLiteral("overzicht-aanvrager.json")));
        QCOMPARE(plan.count(PlanStatus::New), 3);

        auto spm = schemeById(*app, 1, QStringLiteral("SPM-7781-02"));
        QVERIFY(spm);
        QCOMPARE(spm->Uitvoerder(), QStringLiteral("Stichting Pensioenfonds Meridiaan"));
        QCOMPARE(spm->Dt_Overzicht(), QDate(2026, 1, 1));
        auto row = spm->Get_OuderdomRegel(1);
        QVERIFY(row->OP());
        QCOMPARE(row->BedragOP(), 3100.0);            // the lifelong amount
        QCOMPARE(row->LeeftijdOP(), 65 * 12);         // paid from 65
        QVERIFY(spm->TOP());
        QCOMPARE(spm->BedragTOP(), 1100.0);           // 4200 until the state pension age
        QVERIFY(spm->PP() && spm->PPNaAow() && spm->PPna65() && spm->PpNa65TotAow());
        QCOMPARE(spm->BedragPP(), 2170.0);
        QCOMPARE(spm->Pc_PP(), 70.0f);                // 2170 of 3100
        QVERIFY(!spm->WzP());

        auto pvb = schemeById(*app, 1, QStringLiteral("PVB-40233918"));
        QVERIFY(pvb);
        QCOMPARE(pvb->Get_OuderdomRegel(1)->BedragOP(), 14400.0);
        QCOMPARE(pvb->Get_OuderdomRegel(1)->LeeftijdOP(), 68 * 12);
        QCOMPARE(pvb->Opgebouwd(), 9120.0);
        QVERIFY(!pvb->TOP());
        QCOMPARE(pvb->BedragPPna65(), 10080.0);
        QVERIFY(pvb->WzP());
        QCOMPARE(pvb->BedragWzP(), 2016.0);
        QCOMPARE(pvb->EindLeeftijdWzP(), qint16(21));
        QVERIFY(isFilled(pvb->Dt_PensioenIngang()));
        QCOMPARE(pvb->Dt_PensioenIngang(), pvb->Get_OuderdomRegel(1)->Dt_IngangOP());

        auto ppi = schemeById(*app, 1, QStringLiteral("PPI-0093311"));
        QVERIFY(ppi);
        QCOMPARE(ppi->Get_OuderdomRegel(1)->BedragOP(), 2650.0);
        QCOMPARE(ppi->Opgebouwd(), 820.0);
        QVERIFY(!ppi->PP());
        QCOMPARE(schemeCount(*app, 1), before + 3);
        // The new schemes come after the adviser's own, in the order of the overview.
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        QCOMPARE(anv->Get_Pensioen(qint16(before + 1))->Uitvoerder(), QStringLiteral("Stichting Pensioenfonds Meridiaan"));
    }

    void oneSchemeXmlGivesOneSchemeWithItsPartnerPension()
    {
        auto app = couple();
        const int before = schemeCount(*app, 2);
        const int applicant = schemeCount(*app, 1);
        const ImportPlan plan = importInto(*app, overviewFile(QStringLiteral("overzicht-partner-een-regeling.xml")), 2);
        QCOMPARE(plan.schemes.size(), 1);
        QCOMPARE(schemeCount(*app, 2), before + 1);
        QCOMPARE(schemeCount(*app, 1), applicant);
        auto p = schemeById(*app, 2, QStringLiteral("PZK-552019"));
        QVERIFY(p);
        QCOMPARE(p->Uitvoerder(), QStringLiteral("Pensioenfonds Zorgkring"));
        QCOMPARE(p->Get_OuderdomRegel(1)->BedragOP(), 9800.0);
        QVERIFY(p->PP());
        QCOMPARE(p->BedragPP(), 6860.0);
        QCOMPARE(p->BedragPPNaAow(), 6860.0);
        QCOMPARE(p->BedragPpNa65TotAow(), 6860.0);
        QCOMPARE(p->BedragPPna65(), 6860.0);
    }

    void incompleteOverviewWarnsNamingTheMissingProvider()
    {
        auto app = couple();
        const ImportPlan plan = planImport(overviewFile(QStringLiteral("overzicht-onvolledig.json")), *app, 1, kToday);
        QCOMPARE(plan.unreachableProviders, QStringList{QStringLiteral("Stichting Pensioenfonds Meridiaan")});
        const QString text = previewText(plan);
        QVERIFY2(text.contains(QStringLiteral("LET OP: het overzicht is onvolledig")) && text.contains(QStringLiteral("Stichting Pensioenfonds Meridiaan")),
                 qPrintable(text));
        applyPlan(plan, *app);
        QVERIFY(schemeById(*app, 1, QStringLiteral("PVB-40233918")));
        QVERIFY(!schemeById(*app, 1, QStringLiteral("SPM-7781-02")));
    }

    void reimportOfTheSameFileChangesNothing()
    {
        auto app = couple();
        importInto(*app, overviewFile(QStringLiteral("overzicht-aanvrager.json")));
        const QByteArray after1 = QJsonDocument(app->exportJson()).toJson();
        const ImportPlan again = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.xml")), *app, 1, kToday);
        QCOMPARE(again.count(PlanStatus::Unchanged), 3);
        QVERIFY(!again.hasChanges());
        applyPlan(again, *app);
        QCOMPARE(QJsonDocument(app->exportJson()).toJson(), after1);
    }

    void higherAmountChangesOnlyThatAmountAndKeepsTheAdvisersFields()
    {
        auto app = couple();
        importInto(*app, overviewFile(QStringLiteral("overzicht-aanvrager.json")));
        auto pvb = schemeById(*app, 1, QStringLiteral("PVB-40233918"));
        const QString employment = app->Get_Dossier()->Get_Aanvrager(1)->Get_Dienstverband(1)->Key();
        pvb->setSoortRegeling(SoortRegeling::Middelloon);
        pvb->setOpbouwPercentage(1.75f);
        pvb->setSalaris(61000);
        pvb->setDienstverbandKey(employment);
        pvb->setPc_PP(65.0f);
        pvb->setBranche(QStringLiteral("Bouw"));
        const QByteArray before = exported(*app);

        QByteArray newer = bytesOf(QStringLiteral("overzicht-aanvrager.json"));
        newer.replace("\"TeBereiken\": 14400", "\"TeBereiken\": 15000");
        const ImportPlan plan = planImport(overviewOf(newer), *app, 1, kToday);
        QCOMPARE(plan.count(PlanStatus::Updated), 1);
        QCOMPARE(plan.count(PlanStatus::Unchanged), 2);
        const PlannedScheme &updated = *std::find_if(plan.schemes.begin(), plan.schemes.end(),
                                                     [](const PlannedScheme &s) { return s.status == PlanStatus::Updated; });
        QCOMPARE(updated.values.schemeId, QStringLiteral("PVB-40233918"));
        QCOMPARE(updated.changes.size(), 1);
        QCOMPARE(updated.changes[0].label, QStringLiteral("Ouderdomspensioen (OP)"));
        QCOMPARE(updated.changes[0].before, QStringLiteral("€ 14.400"));
        QCOMPARE(updated.changes[0].after, QStringLiteral("€ 15.000"));
        QVERIFY(previewText(plan).contains(QStringLiteral("Ouderdomspensioen (OP): € 14.400 → € 15.000")));
        applyPlan(plan, *app);

        QCOMPARE(pvb->Get_OuderdomRegel(1)->BedragOP(), 15000.0);
        QCOMPARE(pvb->SoortRegeling(), SoortRegeling::Middelloon);
        QCOMPARE(pvb->OpbouwPercentage(), 1.75f);
        QCOMPARE(pvb->Salaris(), 61000.0);
        QCOMPARE(pvb->DienstverbandKey(), employment);
        QCOMPARE(pvb->Pc_PP(), 65.0f);
        QCOMPARE(pvb->Branche(), QStringLiteral("Bouw"));
        // Exactly one value in the whole case differs.
        QByteArray expected = before;
        const QByteArray after = exported(*app);
        QCOMPARE(after.count("15000"), expected.count("15000") + 1);
        QCOMPARE(after.size(), expected.size());
        const QStringList a = QString::fromUtf8(after).split(QLatin1Char('\n'));
        const QStringList b = QString::fromUtf8(expected).split(QLatin1Char('\n'));
        QStringList differ;
        for (int i = 0; i < a.size(); ++i)
            if (a[i] != b[i])
                differ << a[i].trimmed();
        QCOMPARE(differ, QStringList{QStringLiteral("\"BedragOP\": 15000,")});
    }

    void olderOverviewDoesNotOverwriteNewerFigures()
    {
        auto app = couple();
        importInto(*app, overviewFile(QStringLiteral("overzicht-aanvrager.json")));
        QByteArray older = bytesOf(QStringLiteral("overzicht-aanvrager.json"));
        older.replace("\"TeBereiken\": 14400", "\"TeBereiken\": 13000");
        older.replace("\"StandPer\": \"2025-12-31\"", "\"StandPer\": \"2024-12-31\"");
        const QByteArray before = exported(*app);
        const ImportPlan plan = planImport(overviewOf(older), *app, 1, kToday);
        const auto pvb = std::find_if(plan.schemes.begin(), plan.schemes.end(),
                                      [](const PlannedScheme &s) { return s.values.schemeId == QLatin1String("PVB-40233918"); });
        QCOMPARE(pvb->status, PlanStatus::Unchanged);
        QVERIFY2(pvb->skipReason.contains(QStringLiteral("nieuwere cijfers")), qPrintable(pvb->skipReason));
        applyPlan(plan, *app);
        QCOMPARE(exported(*app), before);
    }

    void moreThan99SchemesIsRefusedBeforeAnythingIsWritten()
    {
        auto app = HostApplication::importJson(TestSupport::exampleCase("stress-99.json"));
        const QByteArray before = exported(*app);
        const ImportPlan plan = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *app, 1, kToday);
        QVERIFY(!plan.refusal.isEmpty());
        QVERIFY2(plan.refusal.contains(QStringLiteral("99")), qPrintable(plan.refusal));
        QVERIFY(!plan.hasChanges());
        QVERIFY_THROWS_EXCEPTION(HostError, applyPlan(plan, *app));
        QCOMPARE(exported(*app), before);

        // 97 + 3 is one too many as well.
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        anv->RemovePension(1);
        anv->RemovePension(1);
        QVERIFY(!planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *app, 1, kToday).refusal.isEmpty());
        anv->RemovePension(1);
        QVERIFY(planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *app, 1, kToday).refusal.isEmpty());
    }

    void caseFilledUpBetweenPreviewAndOkKeepsNothingOfTheImport()
    {
        const QString path = m_dir.filePath(QStringLiteral("vol.zdossier"));
        QByteArray expectedExport;
        {
            auto app = HostApplication::createFile(path);
            const ImportPlan plan = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *app, 1, kToday);
            QVERIFY2(plan.refusal.isEmpty(), qPrintable(plan.refusal));
            auto anv = app->Get_Dossier()->Get_Aanvrager(1);
            for (int i = 0; i < 98; ++i)
                anv->AddPension();
            expectedExport = exported(*app);
            // The first new scheme fits, the second does not: all or nothing.
            QVERIFY_THROWS_EXCEPTION(HostError, applyPlan(plan, *app));
            QCOMPARE(schemeCount(*app, 1), 98);
            QCOMPARE(exported(*app), expectedExport);
        }
        auto reopened = HostApplication::openFile(path);
        QCOMPARE(schemeCount(*reopened, 1), 98);
        QCOMPARE(exported(*reopened), expectedExport);
    }

    void oneChangeThatFailsLeavesFileAndMemoryAsTheyWere()
    {
        const QString path = m_dir.filePath(QStringLiteral("eenwijziging.zdossier"));
        {
            auto app = HostApplication::createFile(path);
            auto anv = app->Get_Dossier()->Get_Aanvrager(1);
            anv->Get_Pensioen(anv->AddPension())->setUitvoerder(QStringLiteral("Eigen invoer"));
            const QByteArray before = exported(*app);
            PensioenPtr added;
            QVERIFY_THROWS_EXCEPTION(HostError, app->RunAsOneChange([&] {
                anv->Get_Pensioen(1)->setUitvoerder(QStringLiteral("Overschreven"));
                added = anv->Get_Pensioen(anv->AddPension());
                added->setUitvoerder(QStringLiteral("Nieuw"));
                throw std::runtime_error("schijf vol");
            }));
        }
        auto reopened = HostApplication::openFile(path);
        QCOMPARE(schemeCount(*reopened, 1), 1);
        QCOMPARE(reopened->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Uitvoerder(), QStringLiteral("Eigen invoer"));
    }

    void oneChangeThatFailsInMemoryPutsValuesBackAndAddedSchemesAreGone()
    {
        auto app = couple();
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        const QByteArray before = exported(*app);
        const QString first = anv->Get_Pensioen(1)->Uitvoerder();
        PensioenPtr added;
        try {
            app->RunAsOneChange([&] {
                anv->Get_Pensioen(1)->setUitvoerder(QStringLiteral("Overschreven"));
                added = anv->Get_Pensioen(anv->AddPension());
                throw HostError(HostErrorCode::StoreFailed, QStringLiteral("schijf vol"));
            });
            QFAIL("no exception");
        } catch (const HostError &) {
        }
        QCOMPARE(anv->Get_Pensioen(1)->Uitvoerder(), first);
        QCOMPARE(exported(*app), before);
        QVERIFY_THROWS_EXCEPTION(HostError, added->Uitvoerder());
    }

    void identifierSurvivesTheCaseFileAndTheJsonExport()
    {
        const QString path = m_dir.filePath(QStringLiteral("bewaard.zdossier"));
        {
            auto app = HostApplication::createFile(path);
            importInto(*app, overviewFile(QStringLiteral("overzicht-aanvrager.json")));
        }
        auto reopened = HostApplication::openFile(path);
        QVERIFY(schemeById(*reopened, 1, QStringLiteral("PVB-40233918")));
        const QJsonObject json = reopened->exportJson();
        QVERIFY(QJsonDocument(json).toJson().contains("\"HerkenningsNummer\": \"PVB-40233918\""));
        auto copy = HostApplication::importJson(json);
        QVERIFY(schemeById(*copy, 1, QStringLiteral("SPM-7781-02")));
        QVERIFY(!planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *copy, 1, kToday).hasChanges());
    }

    void statementDateTheCaseCannotHoldIsIgnoredAndReimportStaysStable()
    {
        auto app = couple();
        QByteArray odd = bytesOf(QStringLiteral("overzicht-partner-een-regeling.xml"));
        odd.replace("2025-12-31", "1013-01-01");
        importInto(*app, overviewOf(odd), 2);
        auto p = schemeById(*app, 2, QStringLiteral("PZK-552019"));
        QVERIFY(!isFilled(p->Dt_Overzicht()));
        QVERIFY(!planImport(overviewOf(odd), *app, 2, kToday).hasChanges());
    }

    void caseWithoutImportsExportsWithoutTheField()
    {
        auto app = couple();
        QVERIFY(!QJsonDocument(app->exportJson()).toJson().contains("HerkenningsNummer"));
    }

    void hostWithoutRegisterLinkImportsButSaysItCannotRecognise()
    {
        auto inner = couple();
        PlainHost host(inner);
        const int before = schemeCount(host, 1);
        ImportPlan plan = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), host, 1, kToday);
        QVERIFY(!plan.canRecognise);
        QVERIFY(previewText(plan).contains(QStringLiteral("bewaart geen herkenningsnummers")));
        applyPlan(plan, host);
        QCOMPARE(schemeCount(host, 1), before + 3);

        // Without the host's transaction the import still takes back what it did: the case fills
        // up between the preview and OK, so the second new scheme no longer fits.
        plan = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), host, 1, kToday);
        QVERIFY(plan.refusal.isEmpty());
        auto anv = host.Get_Dossier()->Get_Aanvrager(1);
        while (schemeCount(host, 1) < 98)
            anv->AddPension();
        const QByteArray full = exported(*inner);
        QVERIFY_THROWS_EXCEPTION(HostError, applyPlan(plan, host));
        QCOMPARE(schemeCount(host, 1), 98);
        QCOMPARE(exported(*inner), full);
    }

    void predictedCheckFailuresFollowTheParticipantAndTheDate()
    {
        auto app = couple();
        ImportPlan plan = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *app, 1, kToday);
        for (const PlannedScheme &s : plan.schemes)
            QVERIFY2(s.checkFailures.isEmpty(), qPrintable(s.checkFailures.join(QLatin1Char('\n'))));

        app->Get_Dossier()->Get_Aanvrager(1)->setGeboorteDatum(QDate());
        plan = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *app, 1, kToday);
        for (const PlannedScheme &s : plan.schemes)
            QVERIFY2(s.checkFailures.join(QLatin1Char(' ')).contains(QStringLiteral("geboortedatum")), qPrintable(s.values.provider));

        plan = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *couple(), 1, QDate(2026, 1, 1));
        const auto spm = std::find_if(plan.schemes.begin(), plan.schemes.end(),
                                      [](const PlannedScheme &s) { return s.values.schemeId == QLatin1String("SPM-7781-02"); });
        QVERIFY(spm->checkFailures.join(QLatin1Char(' ')).contains(QStringLiteral("in het verleden")));
        QVERIFY(previewText(plan).contains(QStringLiteral("Controle pensioenscherm houdt tegen")));
    }

    void newSchemesListWhatTheAdviserStillHasToFillIn()
    {
        auto app = couple();
        const ImportPlan plan = planImport(overviewFile(QStringLiteral("overzicht-aanvrager.json")), *app, 1, kToday);
        for (const PlannedScheme &s : plan.schemes)
            QCOMPARE(s.toFill, (QStringList{QStringLiteral("soort regeling"), QStringLiteral("opbouwpercentage"),
                                            QStringLiteral("pensioengevend salaris"), QStringLiteral("dienstverband")}));
        QVERIFY(previewText(plan).contains(QStringLiteral("Nog in te vullen door de adviseur: soort regeling")));
        QVERIFY(previewText(plan).contains(QStringLiteral("De bedragen zijn bruto bedragen per jaar.")));
    }

    void partnerOverviewForACaseWithoutPartnerIsRefused()
    {
        auto app = HostApplication::importJson(TestSupport::exampleCase("single.json"));
        const QByteArray before = exported(*app);
        const ImportPlan plan = planImport(overviewFile(QStringLiteral("overzicht-partner-een-regeling.xml")), *app, 2, kToday);
        QVERIFY(plan.refusal.contains(QStringLiteral("geen partner")));
        QVERIFY_THROWS_EXCEPTION(HostError, applyPlan(plan, *app));
        QCOMPARE(exported(*app), before);
    }
};

QTEST_GUILESS_MAIN(TstOverzichtImport)
#include "tst_overzichtimport.moc"
