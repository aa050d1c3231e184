// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The host library's own parts: error record, host error, filled dates and the check service.

#include "errorrecord.h"
#include "hostapplication.h"
#include "hostcheck.h"
#include "hostmodel.h"

#include <QTest>

using namespace VandrelApplication;

class TstApplication : public QObject
{
    Q_OBJECT

private slots:
    void errorRecordClearAndText()
    {
        ErrorRecord r;
        r.Procedure = QStringLiteral("TxtUitvoerder_Validation");
        r.Title = QStringLiteral("Zarnoveld");
        r.Component = QStringLiteral("PensUitv");
        r.Product = QStringLiteral("Zarnoveld");
        r.Subject = QStringLiteral("Pensioenuitvoerder");
        r.Message = QStringLiteral("Er is een fout opgetreden.");
        r.Number = QStringLiteral("1001");
        r.Description = QStringLiteral("Deze pensioenregeling bestaat niet meer.");
        r.Source = QStringLiteral("Zarnoveld");
        const QString text = r.toText();
        QVERIFY(text.startsWith(QStringLiteral("Er is een fout opgetreden.\n")));
        QVERIFY(text.contains(QStringLiteral("Procedure: TxtUitvoerder_Validation")));
        QVERIFY(text.contains(QStringLiteral("Foutnummer: 1001")));
        QVERIFY(text.contains(QStringLiteral("Omschrijving: Deze pensioenregeling bestaat niet meer.")));
        QVERIFY(text.contains(QStringLiteral("Onderdeel: PensUitv")));
        r.clear();
        QVERIFY(r.Procedure.isEmpty() && r.Description.isEmpty() && r.Number.isEmpty());
        QVERIFY(r.toText().isEmpty());
    }

    void hostErrorCarriesItsParts()
    {
        const HostError e(HostErrorCode::StoreFailed, QStringLiteral("Schijf vol"), QStringLiteral("Bron"));
        QCOMPARE(e.number(), HostErrorCode::StoreFailed);
        QCOMPARE(e.description(), QStringLiteral("Schijf vol"));
        QCOMPARE(e.source(), QStringLiteral("Bron"));
        QCOMPARE(QString::fromUtf8(e.what()), QStringLiteral("Schijf vol"));
        QCOMPARE(HostError(1, QStringLiteral("x")).source(), QStringLiteral("VandrelApplication"));
    }

    void filledDates()
    {
        QVERIFY(!isFilled(QDate()));
        QVERIFY(!isFilled(QDate(1900, 12, 31)));
        QVERIFY(!isFilled(QDate(1899, 1, 1)));
        QVERIFY(isFilled(QDate(1901, 1, 1)));
    }

    void hostCheckReportsAndCounts()
    {
        HostCheck &check = HostCheck::instance();
        QCOMPARE(&check, &HostCheck::instance());
        const qint32 before = check.RunCount();
        auto host = Zarnoveld::HostApplication::createInMemory();
        ApplicationPtr app = host;
        auto anv = host->Get_Dossier()->Get_Aanvrager(1);
        anv->setGeboorteDatum(QDate(1970, 1, 1));
        anv->AddDienstverband();
        anv->AddPension();
        auto pen = anv->Get_Pensioen(1);
        pen->setUitvoerder(QStringLiteral("ABP"));
        pen->setDienstverbandKey(anv->Get_Dienstverband(1)->Key());
        pen->Get_OuderdomRegel(1)->setOP(true);
        pen->Get_OuderdomRegel(1)->setLeeftijdOP(67 * 12);
        check.RunHostCheck(app, 1, QDate(), 1, QDate());
        QCOMPARE(check.RunCount(), before + 1);
        QVERIFY(check.Bevindingen().isEmpty());

        anv->RemoveDienstverband(1);
        pen->Get_OuderdomRegel(1)->setDt_IngangOP(QDate(1965, 1, 1));
        check.RunHostCheck(app, 1, QDate(), 1, QDate());
        QCOMPARE(check.Bevindingen(), QStringList({
            QStringLiteral("Pensioenregeling 1 (ABP) van de aanvrager: het dienstverband bestaat niet (meer)."),
            QStringLiteral("Pensioenregeling 1 (ABP) van de aanvrager: de ingangsdatum van het ouderdomspensioen (01-01-1965) ligt voor de geboortedatum."),
        }));
        // A period that leaves the date out skips the dated finding.
        check.RunHostCheck(app, 1, QDate(2000, 1, 1), 1, QDate());
        QCOMPARE(check.Bevindingen().size(), 1);
        // Niveau 2 adds the doubtful ones.
        pen->setUitvoerder(QString());
        check.RunHostCheck(app, 1, QDate(2000, 1, 1), 2, QDate());
        QVERIFY(check.Bevindingen().contains(QStringLiteral("Pensioenregeling 1 van de aanvrager: de pensioenuitvoerder is niet ingevuld.")));
        // Other kinds of check find nothing here; a missing application is a finding, not a throw.
        check.RunHostCheck(app, 2, QDate(), 1, QDate());
        QVERIFY(check.Bevindingen().isEmpty());
        ApplicationPtr none;
        check.RunHostCheck(none, 1, QDate(), 1, QDate());
        QCOMPARE(check.Bevindingen(), QStringList{QStringLiteral("Er is geen toepassing om te controleren.")});
        QCOMPARE(check.RunCount(), before + 6);
    }

    void hostCheckAcceptsANewDefaultScheme()
    {
        auto host = Zarnoveld::HostApplication::createInMemory();
        ApplicationPtr app = host;
        host->Get_Dossier()->Get_Aanvrager(1)->AddPension();
        HostCheck::instance().RunHostCheck(app, 1, QDate(), 1, QDate());
        QVERIFY(HostCheck::instance().Bevindingen().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TstApplication)
#include "tst_application.moc"
