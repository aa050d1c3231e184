// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// The preview dialog as the adviser sees it: what it shows per scheme, the register's remarks and
// warnings, and that only OK writes anything.

#include "hostapplication.h"
#include "previewdialog.h"
#include "usersim.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QJsonDocument>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

using namespace VandrelApplication;
using namespace VandrelPensioen::Overzicht;
using Zarnoveld::HostApplication;

namespace {

const QDate kToday(2026, 11, 24);

QByteArray bytesOf(const QString &name)
{
    QFile f(QStringLiteral(VANDREL_SOURCE_DIR "/examples/pensioenoverzicht/") + name);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

Overview overviewOf(const QByteArray &data, const QString &name)
{
    ReadResult r = readOverview(data, name);
    if (!r.ok())
        qFatal("%s", qPrintable(r.error));
    return *r.overview;
}

// A case that already holds two schemes of an earlier, incomplete overview; the newer overview
// adds one, raises one amount and leaves one alone, and misses a provider.
struct Scene
{
    std::shared_ptr<HostApplication> app = HostApplication::importJson(TestSupport::exampleCase("sample-couple.json"));
    ImportPlan plan;

    Scene()
    {
        applyPlan(planImport(overviewOf(bytesOf(QStringLiteral("overzicht-onvolledig.json")), QStringLiteral("eerder.json")), *app, 1, kToday),
                  *app);
        QByteArray newer = bytesOf(QStringLiteral("overzicht-aanvrager.json"));
        newer.replace("\"TeBereiken\": 14400", "\"TeBereiken\": 15000");
        newer.replace("\"OntbrekendePuvsError\": []", "\"OntbrekendePuvsError\": [\"Pensioenfonds Horizon\"]");
        plan = planImport(overviewOf(newer, QStringLiteral("pensioenaanspraken.json")), *app, 1, kToday);
    }
    QByteArray exported() const { return QJsonDocument(app->exportJson()).toJson(); }
};

QTreeWidgetItem *schemeRow(QTreeWidget *tree, const QString &startsWith)
{
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        if (tree->topLevelItem(i)->text(0).startsWith(startsWith))
            return tree->topLevelItem(i);
    return nullptr;
}

QStringList childTexts(QTreeWidgetItem *item)
{
    QStringList out;
    for (int i = 0; i < item->childCount(); ++i)
        out << QStringList{item->child(i)->text(0), item->child(i)->text(2), item->child(i)->text(3)}.join(QLatin1Char('|'));
    return out;
}

} // namespace

class TstOverzichtDialog : public QObject
{
    Q_OBJECT

private slots:
    void showsEachSchemeWithWhatHappensToIt()
    {
        Scene scene;
        PreviewDialog dialog(scene.plan, scene.app);
        QVERIFY(TestSupport::showActive(&dialog));
        auto *tree = TestSupport::find<QTreeWidget>(&dialog, QStringLiteral("lvwRegelingen"));
        QCOMPARE(tree->topLevelItemCount(), 3);
        QTreeWidgetItem *spm = schemeRow(tree, QStringLiteral("Stichting Pensioenfonds Meridiaan"));
        QTreeWidgetItem *pvb = schemeRow(tree, QStringLiteral("Pensioenfonds Vandrel Bouw"));
        QTreeWidgetItem *ppi = schemeRow(tree, QStringLiteral("Premiepensioeninstelling Noordkust"));
        QVERIFY(spm && pvb && ppi);
        QCOMPARE(spm->text(1), QStringLiteral("nieuw"));
        QCOMPARE(pvb->text(1), QStringLiteral("bijgewerkt"));
        QCOMPARE(ppi->text(1), QStringLiteral("ongewijzigd"));
        QVERIFY2(childTexts(pvb).contains(QStringLiteral("Ouderdomspensioen (OP)|€ 14.400|€ 15.000")), qPrintable(childTexts(pvb).join(QLatin1Char('\n'))));
        QVERIFY(childTexts(spm).contains(QStringLiteral("Overbruggingspensioen|—|€ 1.100")));
        QVERIFY(childTexts(spm).contains(QStringLiteral("Nog in te vullen: soort regeling, opbouwpercentage, pensioengevend salaris, dienstverband||")));

        const QString warning = TestSupport::find<QLabel>(&dialog, QStringLiteral("lblWaarschuwing"))->text();
        QVERIFY2(warning.contains(QStringLiteral("Pensioenfonds Horizon")), qPrintable(warning));
        const QString remarks = TestSupport::find<QLabel>(&dialog, QStringLiteral("lblBijzonderheden"))->text();
        QVERIFY(remarks.contains(QStringLiteral("gelijkblijvend salaris")));
        QCOMPARE(TestSupport::find<QPushButton>(&dialog, QStringLiteral("cmdInlezen"))->text(), QStringLiteral("Inlezen"));

        TestSupport::checkLayoutAndGrab(&dialog, QStringLiteral(VANDREL_BINARY_DIR "/pensioenoverzicht-voorbeeld.png"));
        // The picture in docs/ is taken from this very dialog when asked for.
        const QString docs = qEnvironmentVariable("VANDREL_SCREENSHOT_DIR");
        if (!docs.isEmpty())
            QVERIFY(dialog.grab().save(QDir(docs).filePath(QStringLiteral("pensioenoverzicht-voorbeeld.png"))));
    }

    void cancelChangesNothing()
    {
        Scene scene;
        const QByteArray before = scene.exported();
        PreviewDialog dialog(scene.plan, scene.app);
        QVERIFY(TestSupport::showActive(&dialog));
        TestSupport::click(TestSupport::find<QPushButton>(&dialog, QStringLiteral("cmdAnnuleren")));
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QVERIFY(!dialog.applied());
        QCOMPARE(scene.exported(), before);
    }

    void longOverviewOpensFoldedAndShowsASchemeWhenOpened()
    {
        QByteArray json = "{\"StatusCode\":\"000\",\"Details\":{\"OuderdomsPensioenDetails\":{\"OuderdomsPensioen\":[{"
                          "\"Van\":{\"Leeftijd\":{\"Jaren\":67,\"Maanden\":0}},\"Tot\":{\"OuderdomsPensioenEvent\":\"Overlijden\"},"
                          "\"Pensioen\":[";
        for (int i = 0; i < 40; ++i)
            json += QStringLiteral("%1{\"PensioenUitvoerder\":\"Fonds %2\",\"HerkenningsNummer\":\"F-%2\",\"StandPer\":\"2026-01-01\","
                                   "\"TeBereiken\":%3}")
                        .arg(i ? QStringLiteral(",") : QString()).arg(i).arg(1000 + i).toUtf8();
        json += "]}]}}}";
        auto app = HostApplication::createInMemory();
        app->Get_Dossier()->Get_Aanvrager(1)->setGeboorteDatum(QDate(1970, 3, 1));
        PreviewDialog dialog(planImport(overviewOf(json, QStringLiteral("lang.json")), *app, 1, kToday), app);
        auto *tree = TestSupport::find<QTreeWidget>(&dialog, QStringLiteral("lvwRegelingen"));
        QCOMPARE(tree->topLevelItemCount(), 40);
        QTreeWidgetItem *last = tree->topLevelItem(39);
        QVERIFY(!last->isExpanded());
        QCOMPARE(last->childCount(), 0);
        tree->expandItem(last);
        QVERIFY2(childTexts(last).contains(QStringLiteral("Ouderdomspensioen (OP)|—|€ 1.039")), qPrintable(childTexts(last).join(QLatin1Char('\n'))));
        tree->collapseItem(last);
        tree->expandItem(last);
        QCOMPARE(childTexts(last).count(QStringLiteral("Ouderdomspensioen (OP)|—|€ 1.039")), 1);
    }

    void okAppliesEverything()
    {
        Scene scene;
        const QByteArray before = scene.exported();
        PreviewDialog dialog(scene.plan, scene.app);
        QVERIFY(TestSupport::showActive(&dialog));
        TestSupport::click(TestSupport::find<QPushButton>(&dialog, QStringLiteral("cmdInlezen")));
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(dialog.applied());
        QVERIFY(scene.exported() != before);
        // A second preview of the same file has nothing left to do.
        QVERIFY(!planImport(overviewOf([] {
                                QByteArray newer = bytesOf(QStringLiteral("overzicht-aanvrager.json"));
                                newer.replace("\"TeBereiken\": 14400", "\"TeBereiken\": 15000");
                                return newer;
                            }(), QStringLiteral("x.json")),
                            *scene.app, 1, kToday)
                     .hasChanges());
    }

    void refusedPlanCannotBeAppliedAndSaysWhy()
    {
        auto app = HostApplication::importJson(TestSupport::exampleCase("stress-99.json"));
        const QByteArray before = QJsonDocument(app->exportJson()).toJson();
        PreviewDialog dialog(planImport(overviewOf(bytesOf(QStringLiteral("overzicht-aanvrager.json")), QStringLiteral("a.json")), *app, 1, kToday),
                             app);
        QVERIFY(TestSupport::showActive(&dialog));
        QVERIFY(!TestSupport::find<QPushButton>(&dialog, QStringLiteral("cmdInlezen"))->isEnabled());
        QVERIFY(TestSupport::find<QLabel>(&dialog, QStringLiteral("lblWaarschuwing"))->text().contains(QStringLiteral("99")));
        dialog.accept();   // even a forced OK writes nothing
        QCOMPARE(QJsonDocument(app->exportJson()).toJson(), before);
    }

    void failureWhileApplyingIsShownAndNothingIsKept()
    {
        Scene scene;
        auto anv = scene.app->Get_Dossier()->Get_Aanvrager(1);
        while (anv->Get_Pensioen(99) == nullptr)
            anv->AddPension();
        const QByteArray before = scene.exported();
        TestSupport::MessageRecorder messages;
        PreviewDialog dialog(scene.plan, scene.app);
        QVERIFY(TestSupport::showActive(&dialog));
        TestSupport::click(TestSupport::find<QPushButton>(&dialog, QStringLiteral("cmdInlezen")));
        QCOMPARE(messages.count(), 1);
        QVERIFY2(messages.lastText().contains(QStringLiteral("niet gewijzigd")), qPrintable(messages.lastText()));
        QVERIFY(!dialog.applied());
        QCOMPARE(scene.exported(), before);
    }
};

QTEST_MAIN(TstOverzichtDialog)
#include "tst_overzichtdialog.moc"
