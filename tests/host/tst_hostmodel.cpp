// The in-memory case: collections, handles, defaults and the host's own rules.

#include "hostapplication.h"

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
};

QTEST_GUILESS_MAIN(TstHostModel)
#include "tst_hostmodel.moc"
