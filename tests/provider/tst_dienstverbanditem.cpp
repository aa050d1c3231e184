// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// How an employment becomes a combo item and how its key is read back.

#include "dienstverbanditem.h"

#include <QTest>

using namespace VandrelPensioen;

class TestDienstverbandItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void descriptionLeavesEmptyPartsOut()
    {
        namespace Item = DienstverbandItem;
        QCOMPARE(Item::description(QStringLiteral("Bakkerij Vos"), QDate(2010, 1, 1),
                                   QDate(2030, 12, 31), 45250.4, QDate(2029, 6, 30)),
                 QStringLiteral("Bakkerij Vos, 01-01-2010 - 31-12-2030, € 45.250, meetellen tot 30-06-2029  "));
        QCOMPARE(Item::description(QString(), QDate(2010, 1, 1), QDate(), 0, QDate()),
                 QStringLiteral("01-01-2010, € 0  "));
        // Dates in 1900 or before count as not filled.
        QCOMPARE(Item::description(QStringLiteral("X"), QDate(1900, 1, 1), QDate(1899, 5, 5),
                                   1234567, QDate(1900, 12, 31)),
                 QStringLiteral("X, € 1.234.567  "));
    }

    void keyIsTheRightmost38Characters()
    {
        namespace Item = DienstverbandItem;
        const QString key = QStringLiteral("{0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9}");
        QCOMPARE(key.size(), 38);
        const QString beschrijving = QStringLiteral("Bakkerij Vos, € 1.000  ");
        const QString text = Item::paddedText(beschrijving, key);
        QCOMPARE(text.size(), beschrijving.size() + 255 + 38);
        QCOMPARE(Item::keyOf(text), key);
        QCOMPARE(Item::visiblePart(text), QStringLiteral("Bakkerij Vos, € 1.000"));
    }
};

QTEST_GUILESS_MAIN(TestDienstverbandItem)
#include "tst_dienstverbanditem.moc"
