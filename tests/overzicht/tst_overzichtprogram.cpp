// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// zarnoveld pensioenoverzicht run as a process, the way an adviser or a script runs it: exit
// status, what it prints, what it leaves in the case file, and whether `zarnoveld check` agrees
// with what the preview promised about each imported scheme.

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Run
{
    int exitCode = -1;
    QString out;
    QString err;
};

QString example(const QString &name)
{
    return QStringLiteral(VANDREL_SOURCE_DIR "/examples/") + name;
}

QString overview(const QString &name)
{
    return example(QStringLiteral("pensioenoverzicht/") + name);
}

} // namespace

class TstOverzichtProgram : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    int m_n = 0;

    Run run(const QStringList &arguments)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY"})
            env.remove(QLatin1String(name));
        env.insert(QStringLiteral("XDG_DATA_HOME"), m_dir.filePath(QStringLiteral("data")));
        env.insert(QStringLiteral("XDG_STATE_HOME"), m_dir.filePath(QStringLiteral("state")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_dir.filePath(QStringLiteral("config")));
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(ZARNOVELD_EXECUTABLE), arguments);
        Run r;
        if (!process.waitForFinished(90000)) {
            process.kill();
            process.waitForFinished();
            return r;
        }
        r.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
        r.out = QString::fromUtf8(process.readAllStandardOutput());
        r.err = QString::fromUtf8(process.readAllStandardError());
        return r;
    }

    // A fresh case file made from a bundled example case, with the program itself.
    QString newCase(const QString &exampleName)
    {
        const QString path = m_dir.filePath(QStringLiteral("dossier%1.zdossier").arg(++m_n));
        const Run r = run({QStringLiteral("import"), example(exampleName), path});
        if (r.exitCode != 0)
            qWarning("%s", qPrintable(r.err));
        return path;
    }

    QByteArray exportOf(const QString &casePath)
    {
        const QString json = m_dir.filePath(QStringLiteral("export%1.json").arg(++m_n));
        const Run r = run({QStringLiteral("export"), casePath, json});
        QFile f(json);
        return r.exitCode == 0 && f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("export mislukt: ") + r.err.toUtf8();
    }

    // The applicant's schemes as `zarnoveld check --json` judged them, by scheme number.
    QMap<int, bool> checkVerdicts(const QString &casePath, qint16 anvId)
    {
        const Run r = run({QStringLiteral("check"), casePath, QStringLiteral("--json")});
        QMap<int, bool> verdicts;
        const QJsonArray cases = QJsonDocument::fromJson(r.out.toUtf8()).object().value(QStringLiteral("dossiers")).toArray();
        for (const QJsonValue &c : cases)
            for (const QJsonValue &s : c.toObject().value(QStringLiteral("regelingen")).toArray())
                if (s.toObject().value(QStringLiteral("Anv_Id")).toInt() == anvId)
                    verdicts[s.toObject().value(QStringLiteral("Pen_Id")).toInt()] = s.toObject().value(QStringLiteral("geslaagd")).toBool();
        return verdicts;
    }

    void expectCheckAgreesWithPreview(const QString &casePath, const QString &file, qint16 anvId, int before)
    {
        const Run r = run({QStringLiteral("pensioenoverzicht"), casePath, file, QStringLiteral("--deelnemer"),
                           anvId == 2 ? QStringLiteral("partner") : QStringLiteral("aanvrager")});
        QCOMPARE(r.exitCode, 0);
        // A scheme with several objections is listed once per objection: collapse to one verdict.
        QList<bool> promised;
        bool inNew = false, verdictTaken = false;
        for (const QString &line : r.out.split(QLatin1Char('\n'))) {
            if (line.startsWith(QLatin1Char('['))) {
                inNew = line.startsWith(QStringLiteral("[nieuw]"));
                verdictTaken = false;
            }
            if (!inNew || verdictTaken)
                continue;
            if (line.contains(QStringLiteral("Controle pensioenscherm: in orde"))) {
                promised << true;
                verdictTaken = true;
            } else if (line.contains(QStringLiteral("Controle pensioenscherm houdt tegen"))) {
                promised << false;
                verdictTaken = true;
            }
        }
        QVERIFY(!promised.isEmpty());
        const QMap<int, bool> verdicts = checkVerdicts(casePath, anvId);
        for (int i = 0; i < promised.size(); ++i) {
            QVERIFY2(verdicts.contains(before + 1 + i), qPrintable(QStringLiteral("scheme %1 not checked").arg(before + 1 + i)));
            QVERIFY2(verdicts.value(before + 1 + i) == promised[i],
                     qPrintable(QStringLiteral("scheme %1: preview %2, check %3\n%4").arg(before + 1 + i).arg(promised[i]).arg(verdicts.value(before + 1 + i)).arg(r.out)));
        }
    }

private slots:
    void trialRunPrintsThePreviewAndWritesNothing()
    {
        const QString c = newCase(QStringLiteral("sample-couple.json"));
        const QByteArray before = exportOf(c);
        const Run r = run({QStringLiteral("pensioenoverzicht"), c, overview(QStringLiteral("overzicht-aanvrager.json")),
                           QStringLiteral("--deelnemer"), QStringLiteral("aanvrager"), QStringLiteral("--proef")});
        QCOMPARE(r.exitCode, 0);
        QVERIFY2(r.out.contains(QStringLiteral("[nieuw] Stichting Pensioenfonds Meridiaan (SPM-7781-02)")), qPrintable(r.out));
        QVERIFY(r.out.contains(QStringLiteral("Regelingen: 3 nieuw, 0 bijgewerkt, 0 ongewijzigd")));
        QVERIFY(r.out.contains(QStringLiteral("Proef: er is niets gewijzigd.")));
        QCOMPARE(exportOf(c), before);
    }

    void importThenImportAgainChangesNothingTheSecondTime()
    {
        const QString c = newCase(QStringLiteral("sample-couple.json"));
        Run r = run({QStringLiteral("pensioenoverzicht"), c, overview(QStringLiteral("overzicht-aanvrager.xml")),
                     QStringLiteral("--deelnemer"), QStringLiteral("aanvrager")});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.out.contains(QStringLiteral("Ingelezen: 3 nieuw, 0 bijgewerkt, 0 ongewijzigd.")));
        const QByteArray once = exportOf(c);
        QVERIFY(once.contains("\"HerkenningsNummer\": \"PPI-0093311\""));
        r = run({QStringLiteral("pensioenoverzicht"), c, overview(QStringLiteral("overzicht-aanvrager.json")),
                 QStringLiteral("--deelnemer"), QStringLiteral("aanvrager")});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.out.contains(QStringLiteral("Regelingen: 0 nieuw, 0 bijgewerkt, 3 ongewijzigd")));
        QCOMPARE(exportOf(c), once);
    }

    void failedStatusFileExitsTwoWithItsStatusAndLeavesTheCase()
    {
        const QString c = newCase(QStringLiteral("sample-couple.json"));
        const QByteArray before = exportOf(c);
        const Run r = run({QStringLiteral("pensioenoverzicht"), c, overview(QStringLiteral("overzicht-fout.json")),
                           QStringLiteral("--deelnemer"), QStringLiteral("aanvrager")});
        QCOMPARE(r.exitCode, 2);
        QVERIFY2(r.err.contains(QStringLiteral("\"003\"")) && r.err.contains(QStringLiteral("overzicht-fout.json")), qPrintable(r.err));
        QCOMPARE(exportOf(c), before);
    }

    void truncatedFileExitsTwo()
    {
        const QString c = newCase(QStringLiteral("single.json"));
        const QByteArray before = exportOf(c);
        QFile in(overview(QStringLiteral("overzicht-aanvrager.xml")));
        QVERIFY(in.open(QIODevice::ReadOnly));
        const QString cut = m_dir.filePath(QStringLiteral("afgebroken.xml"));
        QFile out(cut);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(in.readAll().left(3000));
        out.close();
        const Run r = run({QStringLiteral("pensioenoverzicht"), c, cut, QStringLiteral("--deelnemer"), QStringLiteral("aanvrager")});
        QCOMPARE(r.exitCode, 2);
        QVERIFY2(r.err.contains(QStringLiteral("afgebroken.xml")), qPrintable(r.err));
        QCOMPARE(exportOf(c), before);
    }

    void partnerOverviewOnACaseWithoutPartnerExitsOne()
    {
        const QString c = newCase(QStringLiteral("single.json"));
        const QByteArray before = exportOf(c);
        const Run r = run({QStringLiteral("pensioenoverzicht"), c, overview(QStringLiteral("overzicht-partner-een-regeling.xml")),
                           QStringLiteral("--deelnemer"), QStringLiteral("partner")});
        QCOMPARE(r.exitCode, 1);
        QVERIFY2(r.out.contains(QStringLiteral("geen partner")), qPrintable(r.out));
        QCOMPARE(exportOf(c), before);
    }

    void ninetyNineSchemesExitOneAndWriteNothing()
    {
        const QString c = newCase(QStringLiteral("stress-99.json"));
        const QByteArray before = exportOf(c);
        const Run r = run({QStringLiteral("pensioenoverzicht"), c, overview(QStringLiteral("overzicht-onvolledig.json")),
                           QStringLiteral("--deelnemer"), QStringLiteral("aanvrager")});
        QCOMPARE(r.exitCode, 1);
        QVERIFY2(r.out.contains(QStringLiteral("NIET INGELEZEN")), qPrintable(r.out));
        QCOMPARE(exportOf(c), before);
    }

    void missingParticipantOptionIsAUsageError()
    {
        const QString c = newCase(QStringLiteral("single.json"));
        const Run r = run({QStringLiteral("pensioenoverzicht"), c, overview(QStringLiteral("overzicht-aanvrager.json"))});
        QCOMPARE(r.exitCode, 2);
        QVERIFY(r.err.contains(QStringLiteral("--deelnemer aanvrager|partner")));
    }

    void incompleteOverviewWarnsNamingTheProvider()
    {
        const QString c = newCase(QStringLiteral("sample-couple.json"));
        const Run r = run({QStringLiteral("pensioenoverzicht"), c, overview(QStringLiteral("overzicht-onvolledig.json")),
                           QStringLiteral("--deelnemer"), QStringLiteral("aanvrager")});
        QCOMPARE(r.exitCode, 0);
        QVERIFY2(r.out.contains(QStringLiteral("LET OP: het overzicht is onvolledig")) &&
                     r.out.contains(QStringLiteral("niet ophalen: Stichting Pensioenfonds Meridiaan")), qPrintable(r.out));
    }

    void checkAgreesWithThePreviewForASoundParticipant()
    {
        const QString c = newCase(QStringLiteral("sample-couple.json"));
        const int before = checkVerdicts(c, 1).size();
        QVERIFY(before > 0);
        expectCheckAgreesWithPreview(c, overview(QStringLiteral("overzicht-aanvrager.json")), 1, before);
        const int partner = checkVerdicts(c, 2).size();
        expectCheckAgreesWithPreview(c, overview(QStringLiteral("overzicht-partner-een-regeling.xml")), 2, partner);
    }

    void checkAgreesWithThePreviewWhenTheBirthDateIsMissing()
    {
        QFile in(example(QStringLiteral("single.json")));
        QVERIFY(in.open(QIODevice::ReadOnly));
        QJsonObject doc = QJsonDocument::fromJson(in.readAll()).object();
        QJsonArray anvs = doc.value(QStringLiteral("Aanvragers")).toArray();
        QJsonObject anv = anvs.at(0).toObject();
        anv.insert(QStringLiteral("GeboorteDatum"), QJsonValue::Null);
        anv.insert(QStringLiteral("Pensioenen"), QJsonArray());
        anvs[0] = anv;
        doc.insert(QStringLiteral("Aanvragers"), anvs);
        const QString json = m_dir.filePath(QStringLiteral("zondergeboortedatum.json"));
        QFile out(json);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(QJsonDocument(doc).toJson());
        out.close();
        const QString c = m_dir.filePath(QStringLiteral("zondergeboortedatum.zdossier"));
        QCOMPARE(run({QStringLiteral("import"), json, c}).exitCode, 0);
        expectCheckAgreesWithPreview(c, overview(QStringLiteral("overzicht-aanvrager.json")), 1, 0);
        QMap<int, bool> verdicts = checkVerdicts(c, 1);
        QCOMPARE(verdicts.size(), 3);
        QVERIFY(!verdicts.value(1) && !verdicts.value(2) && !verdicts.value(3));
    }

    void checkAgreesWithThePreviewForAStatementDatedInTheFuture()
    {
        QFile in(overview(QStringLiteral("overzicht-partner-een-regeling.xml")));
        QVERIFY(in.open(QIODevice::ReadOnly));
        QByteArray data = in.readAll();
        data.replace("2025-12-31", QDate::currentDate().addDays(30).toString(Qt::ISODate).toLatin1());
        const QString file = m_dir.filePath(QStringLiteral("toekomst.xml"));
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(data);
        out.close();
        const QString c = newCase(QStringLiteral("sample-couple.json"));
        const int partner = checkVerdicts(c, 2).size();
        expectCheckAgreesWithPreview(c, file, 2, partner);
        QVERIFY(!checkVerdicts(c, 2).value(partner + 1));
    }
};

QTEST_GUILESS_MAIN(TstOverzichtProgram)
#include "tst_overzichtprogram.moc"
