// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The franchise, basis and accrual rules without any widget.

#include "franchise.h"

#include <QTest>

using namespace VandrelPensioen;

class TestFranchise : public QObject
{
    Q_OBJECT

private:
    const FranchiseBedragen bedragen{17000.0, 15000.0, 14000.0, 12000.0};

private Q_SLOTS:
    void categoryGroups_data()
    {
        QTest::addColumn<int>("categorie");
        QTest::addColumn<bool>("eerste");
        for (int c : {1, 2, 4, 6, 7})
            QTest::addRow("categorie %d", c) << c << true;
        for (int c : {0, 3, 5, 8, 9, 255})
            QTest::addRow("categorie %d", c) << c << false;
    }
    void categoryGroups()
    {
        QFETCH(int, categorie);
        QFETCH(bool, eerste);
        QCOMPARE(isEersteCategorieGroep(categorie), eerste);
        QCOMPARE(calcFranchise(1, categorie, bedragen), eerste ? 17000.0 : 15000.0);
        QCOMPARE(calcFranchise(2, categorie, bedragen), eerste ? 14000.0 : 12000.0);
    }

    void onlyFinalPayHasItsOwnPair()
    {
        for (int categorie : {3, 4}) {
            QCOMPARE(calcFranchise(2, categorie, bedragen), calcFranchise(3, categorie, bedragen));
            QCOMPARE(calcFranchise(0, categorie, bedragen), calcFranchise(2, categorie, bedragen));
            QCOMPARE(calcFranchise(7, categorie, bedragen), calcFranchise(2, categorie, bedragen));
            QVERIFY(calcFranchise(1, categorie, bedragen) != calcFranchise(2, categorie, bedragen));
        }
    }

    void basisNeverBelowZero()
    {
        QCOMPARE(berekenGrondslag(30000, 35000), 0.0);
        QCOMPARE(berekenGrondslag(45000, 15000), 30000.0);
        QCOMPARE(berekenGrondslag(15000, 15000), 0.0);
    }

    void accrualKeepsCentsWhenSynchronised()
    {
        QCOMPARE(berekenAangroei(2.25f, 40000), 900.0);
        QCOMPARE(berekenAangroei(1.875f, 33333), 624.99375);
        QCOMPARE(berekenAangroei(0.0f, 33333), 0.0);
    }

    void accrualCutOffFromPercentageField()
    {
        QCOMPARE(berekenAangroeiAfgekapt(1.875f, 33333), 624.0);
        QCOMPARE(berekenAangroeiAfgekapt(2.25f, 40000), 900.0);
        // Cut off is towards minus infinity, not towards zero.
        QCOMPARE(berekenAangroeiAfgekapt(1.875f, -33333), -625.0);
    }

    void lastMatchingEmploymentWins()
    {
        const QString key = QStringLiteral("{11111111-2222-3333-4444-555555555555}");
        const QString other = QStringLiteral("{99999999-2222-3333-4444-555555555555}");
        QCOMPARE(salarisVanDienstverband(key, {{key, 40000}, {other, 1}, {key, 52000}}),
                 std::optional<double>(52000));
        QCOMPARE(salarisVanDienstverband(key, {{key, 40000}, {other, 1}}),
                 std::optional<double>(40000));
        QVERIFY(!salarisVanDienstverband(key, {{other, 1}}).has_value());
        // Keys compare as exact text.
        QVERIFY(!salarisVanDienstverband(key.toLower().replace(QLatin1Char('{'), QLatin1Char(' ')),
                                         {{key, 1}}).has_value());
        QVERIFY(!salarisVanDienstverband(QString(), {{key, 1}}).has_value());
    }
};

QTEST_GUILESS_MAIN(TestFranchise)
#include "tst_franchise.moc"
