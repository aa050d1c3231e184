// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The numbered scheme checks as a pure function.

#include "schemevalidation.h"

#include <QTest>

using namespace VandrelPensioen;

namespace {

const QDateTime kNu(QDate(2024, 5, 15), QTime(14, 30));

SchemeFields eindloon()
{
    SchemeFields f;
    f.regelingVisible = true;
    f.eindloonEnabled = true;
    f.grondslagFrameVisible = true;
    f.grondslagVisible = true;
    f.eindloon = 1.75;
    f.salaris = 40000;
    f.grondslag = 30001;
    f.aangroei = 500;
    return f;
}

SchemeFields premie()
{
    SchemeFields f;
    f.regelingVisible = true;
    f.grondslagFrameVisible = true;
    f.beschikbarePremie = true;
    f.doelvermogen = 100000;
    f.pcOpbouw = 4;
    f.pcUitkering = 3;
    return f;
}

QString message(const SchemeFields &f, qint32 nr)
{
    const auto failure = checkSchemeFields(f, nr, kNu);
    return failure ? failure->message : QString();
}

} // namespace

class TestSchemeValidation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void validSchemesPass()
    {
        QVERIFY(!checkSchemeFields(eindloon(), 0, kNu));
        QVERIFY(!checkSchemeFields(premie(), 0, kNu));
    }

    void numberThreeRunsNothing()
    {
        SchemeFields f = eindloon();
        f.eindloon = 0;
        f.grondslag = 50000;
        QVERIFY(checkSchemeFields(f, 0, kNu));
        QVERIFY(!checkSchemeFields(f, 3, kNu));
        QVERIFY(!checkSchemeFields(f, 10, kNu));
    }

    void positivePercentage()
    {
        SchemeFields f = eindloon();
        f.eindloon = 0;
        const auto failure = checkSchemeFields(f, 1, kNu);
        QVERIFY(failure);
        QCOMPARE(failure->message, QStringLiteral("Vul een positief percentage in."));
        QCOMPARE(failure->title, QStringLiteral("Ongeldige invoer"));
        f.eindloon = -1;
        QVERIFY(checkSchemeFields(f, 1, kNu));
        // Details not known: the field is disabled and the check does not apply.
        f.eindloonEnabled = false;
        QVERIFY(!checkSchemeFields(f, 1, kNu));

        SchemeFields m = eindloon();
        m.eindloonEnabled = false;
        m.eindloon = 0;
        m.middelloonEnabled = true;
        m.middelloon = 0;
        QCOMPARE(message(m, 4), QStringLiteral("Vul een positief percentage in."));
        QVERIFY(!checkSchemeFields(m, 1, kNu));
        m.middelloon = 0.001;
        QVERIFY(!checkSchemeFields(m, 4, kNu));
    }

    void basisUpToSalary()
    {
        SchemeFields f = eindloon();
        f.aangroei = 0;
        f.grondslag = f.salaris;
        QVERIFY(!checkSchemeFields(f, 2, kNu));
        f.grondslag = f.salaris + 1;
        QCOMPARE(message(f, 2),
                 QStringLiteral("Pensioengrondslag kan niet groter dan pensioengevend salaris zijn."));
        f.grondslagVisible = false;
        QVERIFY(!checkSchemeFields(f, 2, kNu));
    }

    void statementDateInThePast()
    {
        SchemeFields f = eindloon();
        f.overzicht = kNu.date();
        QVERIFY(!checkSchemeFields(f, 5, kNu));
        f.overzicht = kNu.date().addDays(1);
        QCOMPARE(message(f, 5), QStringLiteral("Datum pensioenoverzicht moet in het verleden liggen."));
        f.overzicht = QDate();
        QVERIFY(!checkSchemeFields(f, 5, kNu));
        // Just after midnight today still passes.
        f.overzicht = kNu.date();
        QVERIFY(!checkSchemeFields(f, 5, QDateTime(kNu.date(), QTime(0, 0, 1))));
    }

    void accrualLimitRoundsHalfToEven_data()
    {
        QTest::addColumn<double>("p");
        QTest::addColumn<double>("g");
        QTest::addColumn<double>("limiet");
        QTest::addColumn<double>("getoond");
        QTest::newRow("525.0175") << 1.75 << 30001.0 << 525.0 << 525.0;
        QTest::newRow("612.5") << 1.75 << 35000.0 << 612.0 << 612.0;
        QTest::newRow("613.5") << 1.5 << 40900.0 << 614.0 << 613.0;
    }
    void accrualLimitRoundsHalfToEven()
    {
        QFETCH(double, p);
        QFETCH(double, g);
        QFETCH(double, limiet);
        QFETCH(double, getoond);
        QCOMPARE(aangroeiLimiet(p, g), limiet);
        QCOMPARE(aangroeiGetoondMaximum(p, g), getoond);

        SchemeFields f = eindloon();
        f.eindloon = p;
        f.grondslag = g;
        f.salaris = g;
        f.aangroei = limiet;
        QVERIFY(!checkSchemeFields(f, 6, kNu));
        f.aangroei = limiet + 0.01;
        QVERIFY(checkSchemeFields(f, 6, kNu));
    }

    void accrualMessage()
    {
        SchemeFields f = eindloon();
        f.aangroei = 526;
        QCOMPARE(message(f, 6),
                 QStringLiteral("Pensioenaangroei (factor A) mag maximaal het opbouwpercentage (1,750%) "
                                "vermenigvuldigd met de Pensioengrondslag (€ 30.001) zijn (€ 525)."));
        // The message names the cut-off amount, one euro below the tested limit.
        f.eindloon = 1.5;
        f.grondslag = 40900;
        f.salaris = 40900;
        f.aangroei = 615;
        QCOMPARE(message(f, 6),
                 QStringLiteral("Pensioenaangroei (factor A) mag maximaal het opbouwpercentage (1,500%) "
                                "vermenigvuldigd met de Pensioengrondslag (€ 40.900) zijn (€ 613)."));
        // P is the sum of both fields: the one not chosen holds 0.
        f.eindloon = 0;
        f.middelloon = 1.5;
        QVERIFY(checkSchemeFields(f, 6, kNu));
        f.beschikbarePremie = true;
        QVERIFY(!checkSchemeFields(f, 6, kNu));
    }

    void targetCapitalRequired()
    {
        SchemeFields f = premie();
        f.doelvermogen = 0;
        const auto failure = checkSchemeFields(f, 7, kNu);
        QVERIFY(failure);
        QCOMPARE(failure->message, QStringLiteral("Doelvermogen niet ingevuld."));
        QCOMPARE(failure->title, QStringLiteral("Invoer verplicht"));
        f.beschikbarePremie = false;
        QVERIFY(!checkSchemeFields(f, 7, kNu));
    }

    void ratesAboveZeroUpToTwenty_data()
    {
        QTest::addColumn<double>("rente");
        QTest::addColumn<bool>("fout");
        QTest::newRow("0") << 0.0 << true;
        QTest::newRow("-1") << -1.0 << true;
        QTest::newRow("0,001") << 0.001 << false;
        QTest::newRow("20") << 20.0 << false;
        QTest::newRow("20,001") << 20.001 << true;
    }
    void ratesAboveZeroUpToTwenty()
    {
        QFETCH(double, rente);
        QFETCH(bool, fout);
        SchemeFields f = premie();
        f.pcOpbouw = rente;
        QCOMPARE(message(f, 8),
                 fout ? QStringLiteral("Rekenrente opbouwfase doelvermogen vanaf 0 t/m 20% invullen.")
                      : QString());
        f = premie();
        f.pcUitkering = rente;
        QCOMPARE(message(f, 9),
                 fout ? QStringLiteral("Rekenrente uitkeringsfase doelvermogen vanaf 0 t/m 20% invullen.")
                      : QString());
    }

    void onlyTheFirstFailureCounts()
    {
        SchemeFields f = eindloon();
        f.eindloon = 0;                 // check 1
        f.grondslag = 50000;            // check 2
        const auto failure = checkSchemeFields(f, 0, kNu);
        QVERIFY(failure);
        QCOMPARE(failure->controleNr, qint16(1));
        f.eindloon = 1.75;
        QCOMPARE(checkSchemeFields(f, 0, kNu)->controleNr, qint16(2));

        SchemeFields p = premie();
        p.doelvermogen = 0;
        p.pcOpbouw = 0;
        QCOMPARE(checkSchemeFields(p, 0, kNu)->controleNr, qint16(7));
    }
};

QTEST_GUILESS_MAIN(TestSchemeValidation)
#include "tst_schemevalidation.moc"
