// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The commitments arithmetic on its own: rounding, percentages of the OP, ages and the 65 date.

#include "commitmentrules.h"

#include <QTest>

using namespace VandrelPensioen::CommitmentRules;

class TestCommitmentRules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void amountFromPercentage_data()
    {
        QTest::addColumn<float>("pc");
        QTest::addColumn<double>("op");
        QTest::addColumn<double>("expected");
        QTest::newRow("70% of 10.000") << 70.0f << 10000.0 << 7000.0;
        QTest::newRow("14% of 10.000") << 14.0f << 10000.0 << 1400.0;
        QTest::newRow("half down to even") << 70.0f << 12345.0 << 8642.0;   // 8641.5
        QTest::newRow("half up to even") << 50.0f << 7.0 << 4.0;            // 3.5
        QTest::newRow("half stays even") << 50.0f << 5.0 << 2.0;            // 2.5
        QTest::newRow("zero OP") << 70.0f << 0.0 << 0.0;
        QTest::newRow("zero percentage") << 0.0f << 12345.0 << 0.0;
        QTest::newRow("above 100%") << 1000.0f << 1234.0 << 12340.0;
    }
    void amountFromPercentage()
    {
        QFETCH(float, pc);
        QFETCH(double, op);
        QFETCH(double, expected);
        QCOMPARE(VandrelPensioen::CommitmentRules::amountFromPercentage(pc, op), expected);
    }

    void percentageFromAmount()
    {
        QCOMPARE(VandrelPensioen::CommitmentRules::percentageFromAmount(5000, 0), 0.0f);
        QCOMPARE(VandrelPensioen::CommitmentRules::percentageFromAmount(7000, 10000), 70.0f);
        // Not rounded: 5000 of 12345 keeps its decimals.
        QCOMPARE(VandrelPensioen::CommitmentRules::percentageFromAmount(5000, 12345),
                 float(5000.0 * 100.0 / 12345.0));
        QVERIFY(VandrelPensioen::CommitmentRules::percentageFromAmount(5000, 12345) != 40.5f);
    }

    void splitMonths_data()
    {
        QTest::addColumn<int>("months");
        QTest::addColumn<int>("years");
        QTest::addColumn<int>("rest");
        QTest::newRow("0") << 0 << 0 << 0;
        QTest::newRow("65y") << 780 << 65 << 0;
        QTest::newRow("64y11m") << 779 << 64 << 11;
        QTest::newRow("99y11m") << 1199 << 99 << 11;
        QTest::newRow("negative is cut off downwards") << -1 << -1 << 11;
    }
    void splitMonths()
    {
        QFETCH(int, months);
        QFETCH(int, years);
        QFETCH(int, rest);
        const auto split = VandrelPensioen::CommitmentRules::splitMonths(months);
        QCOMPARE(split.years, years);
        QCOMPARE(split.months, rest);
        QCOMPARE(joinMonths(split.years, split.months), months);
    }

    void joinMonthsTakesOverflowingMonths()
    {
        QCOMPARE(joinMonths(39, 12), 480);
        QCOMPARE(joinMonths(99, 1), 1189);
    }

    void dateOf65_data()
    {
        QTest::addColumn<QDate>("birth");
        QTest::addColumn<QDate>("expected");
        QTest::newRow("15-07-1960") << QDate(1960, 7, 15) << QDate(2025, 7, 1);
        QTest::newRow("first of month") << QDate(1958, 1, 1) << QDate(2023, 1, 1);
        QTest::newRow("29 February") << QDate(1960, 2, 29) << QDate(2025, 2, 1);
        QTest::newRow("31 December") << QDate(1959, 12, 31) << QDate(2024, 12, 1);
        QTest::newRow("not filled") << QDate() << QDate();
    }
    void dateOf65()
    {
        QFETCH(QDate, birth);
        QFETCH(QDate, expected);
        QCOMPARE(VandrelPensioen::CommitmentRules::dateOf65(birth), expected);
    }

    void aowDate()
    {
        QCOMPARE(VandrelPensioen::CommitmentRules::aowDate(QDate(1960, 7, 15), 67), QDate(2027, 7, 15));
        QCOMPARE(VandrelPensioen::CommitmentRules::aowDate(QDate(), 67), QDate());
    }
};

QTEST_GUILESS_MAIN(TestCommitmentRules)
#include "tst_commitmentrules.moc"
