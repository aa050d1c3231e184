// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// What the case files and the safe writes promise a user who is unlucky or hostile: a failed write
// keeps the old file, nothing is written through a symlink, personal data stays the owner's,
// opening and looking writes nothing, and the age-65 date never drifts from the birth date.

#include "hostapplication.h"
#include "rules.h"
#include "safefile.h"
#include "casebackend.h"
#include "usersim.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace VandrelApplication;
using Zarnoveld::HostApplication;
using Zarnoveld::SafeFile;

namespace {

template <typename Body>
QString errorOf(Body &&body)
{
    return TestSupport::hostErrorOf(body).description();
}

unsigned modeOf(const QString &path)
{
    struct stat st {};
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return 0xFFFF;
    return st.st_mode & 07777;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject example(const char *name)
{
    return TestSupport::exampleCase(name);
}

qint64 walSize(const QString &casePath)
{
    return QFileInfo(casePath + QStringLiteral("-wal")).size();
}

} // namespace

class TstHostTrust : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void safeWriteReplacesOnlyWhenAsked()
    {
        const QString path = m_dir.filePath(QStringLiteral("uitvoer.json"));
        SafeFile::write(path, "eerste", SafeFile::Existing::Refuse);
        QCOMPARE(contentOf(path), QByteArray("eerste"));
        QCOMPARE(modeOf(path), 0600u);
        QVERIFY(errorOf([&] { SafeFile::write(path, "tweede", SafeFile::Existing::Refuse); }).contains(QStringLiteral("bestaat al")));
        QCOMPARE(contentOf(path), QByteArray("eerste"));
        SafeFile::write(path, "tweede", SafeFile::Existing::Replace);
        QCOMPARE(contentOf(path), QByteArray("tweede"));
        // No temporary file is left next to it.
        QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("uitvoer")).size(), 1);
    }

    void symlinkAsTargetLeavesItsTargetUntouched()
    {
        const QString victim = m_dir.filePath(QStringLiteral("andermans-bestand.txt"));
        QFile file(victim);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("niet van jou");
        file.close();
        const QString link = m_dir.filePath(QStringLiteral("link.json"));
        QVERIFY(QFile::link(victim, link));
        for (const auto existing : {SafeFile::Existing::Refuse, SafeFile::Existing::Replace}) {
            const QString error = errorOf([&] { SafeFile::write(link, "overschreven", existing); });
            QVERIFY2(error.contains(QStringLiteral("symbolische link")), qPrintable(error));
        }
        QCOMPARE(contentOf(victim), QByteArray("niet van jou"));
        QVERIFY(QFileInfo(link).isSymLink());

        // A dangling link must not create the file it points to either.
        const QString nowhere = m_dir.filePath(QStringLiteral("bestaat-niet.json"));
        const QString dangling = m_dir.filePath(QStringLiteral("los.json"));
        QVERIFY(QFile::link(nowhere, dangling));
        QVERIFY(!errorOf([&] { SafeFile::write(dangling, "x", SafeFile::Existing::Replace); }).isEmpty());
        QVERIFY(!errorOf([&] { HostApplication::importJson(example("single.json"), dangling); }).isEmpty());
        QVERIFY(!QFileInfo::exists(nowhere));
    }

    void deviceAsTargetIsRefused()
    {
        QVERIFY(!errorOf([] { SafeFile::write(QStringLiteral("/dev/full"), "x", SafeFile::Existing::Replace); }).isEmpty());
    }

    // The file system fills up halfway through: the old file stays as it was, no temporary file
    // is left, and the caller hears why. Done on a small tmpfs when this process may mount one;
    // always also in a child process whose file-size limit cuts the write off.
    void fullFileSystemKeepsTheOldFile()
    {
        const QByteArray big(300 * 1024, 'x');
        bool mounted = false;
        const QString mountPoint = m_dir.filePath(QStringLiteral("klein"));
        QVERIFY(QDir().mkpath(mountPoint));
        if (::geteuid() == 0)
            mounted = ::mount("tmpfs", QFile::encodeName(mountPoint).constData(), "tmpfs", 0, "size=256k") == 0;
        if (mounted) {
            const QString path = mountPoint + QStringLiteral("/export.json");
            SafeFile::write(path, "{\"goed\": true}", SafeFile::Existing::Refuse);
            const QString error = errorOf([&] { SafeFile::write(path, big, SafeFile::Existing::Replace); });
            QVERIFY2(error.contains(QStringLiteral("schijf is vol")), qPrintable(error));
            QCOMPARE(contentOf(path), QByteArray("{\"goed\": true}"));
            QCOMPARE(QDir(mountPoint).entryList(QDir::Files | QDir::Hidden).size(), 1);
            QVERIFY(::umount(QFile::encodeName(mountPoint).constData()) == 0);
        } else {
            qInfo("no tmpfs could be mounted here; the file-size limit below stands in for a full disk");
        }

        const QString path = m_dir.filePath(QStringLiteral("begrensd.json"));
        SafeFile::write(path, "{\"goed\": true}", SafeFile::Existing::Refuse);
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            ::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{64 * 1024, 64 * 1024};
            ::setrlimit(RLIMIT_FSIZE, &limit);
            const QString error = errorOf([&] { SafeFile::write(path, big, SafeFile::Existing::Replace); });
            ::_exit(error.contains(QStringLiteral("groter dan is toegestaan")) ? 0 : 1);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
        QCOMPARE(contentOf(path), QByteArray("{\"goed\": true}"));
        QCOMPARE(QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("begrensd")).size(), 1);
    }

    void caseFilesAreTheOwnersOnly()
    {
        const QString folder = m_dir.filePath(QStringLiteral("nieuw/dossiers"));
        QVERIFY(SafeFile::makePrivateDir(folder));
        QCOMPARE(modeOf(folder), 0700u);
        QCOMPARE(modeOf(m_dir.filePath(QStringLiteral("nieuw"))), 0700u);
        const QString path = folder + QStringLiteral("/klant.zdossier");
        const mode_t old = ::umask(022);   // as a user's shell usually has it
        auto app = HostApplication::importJson(example("sample-couple.json"), path);
        app->Get_Dossier()->Get_Aanvrager(1)->setNaam(QStringLiteral("Iemand Anders"));
        ::umask(old);
        for (const QString &suffix : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"), QStringLiteral(".lock")}) {
            QVERIFY2(QFileInfo::exists(path + suffix), qPrintable(suffix));
            QCOMPARE(modeOf(path + suffix), 0600u);
        }
        app.reset();
        QCOMPARE(modeOf(path), 0600u);

        // A case made before (0644) is made private when it is opened.
        QVERIFY(::chmod(QFile::encodeName(path).constData(), 0644) == 0);
        auto reopened = HostApplication::openFile(path);
        QCOMPARE(modeOf(path), 0600u);
    }

    void oneMegabyteNameIsRefusedWithItsPlace()
    {
        QJsonObject doc = example("single.json");
        QJsonArray aanvragers = doc.value(QStringLiteral("Aanvragers")).toArray();
        QJsonObject first = aanvragers.at(0).toObject();
        first.insert(QStringLiteral("Naam"), QString(1024 * 1024, QLatin1Char('A')));
        aanvragers[0] = first;
        doc.insert(QStringLiteral("Aanvragers"), aanvragers);
        const QString path = m_dir.filePath(QStringLiteral("lang.zdossier"));
        const QString error = errorOf([&] { HostApplication::importJson(doc, path); });
        QVERIFY2(error.contains(QStringLiteral("$.Aanvragers[0].Naam")), qPrintable(error.left(300)));
        QVERIFY2(error.contains(QStringLiteral("te lang")), qPrintable(error.left(300)));
        QVERIFY2(error.size() < 400, "the message must not repeat the name");
        QVERIFY(!QFileInfo::exists(path));

        // A provider too, and exactly the limit still fits.
        QJsonObject pen = first.value(QStringLiteral("Pensioenen")).toArray().at(0).toObject();
        first.insert(QStringLiteral("Naam"), QString(HostApplication::MaxTextLength, QLatin1Char('N')));
        pen.insert(QStringLiteral("Uitvoerder"), QString(HostApplication::MaxTextLength + 1, QLatin1Char('U')));
        first.insert(QStringLiteral("Pensioenen"), QJsonArray{pen});
        aanvragers[0] = first;
        doc.insert(QStringLiteral("Aanvragers"), aanvragers);
        QVERIFY(errorOf([&] { HostApplication::importJson(doc); }).contains(QStringLiteral("$.Aanvragers[0].Pensioenen[0].Uitvoerder")));
        pen.insert(QStringLiteral("Uitvoerder"), QString(HostApplication::MaxTextLength, QLatin1Char('U')));
        first.insert(QStringLiteral("Pensioenen"), QJsonArray{pen});
        aanvragers[0] = first;
        doc.insert(QStringLiteral("Aanvragers"), aanvragers);
        QCOMPARE(errorOf([&] { HostApplication::importJson(doc); }), QString());
    }

    void writingTheValueHeldChangesNothingInTheFile()
    {
        const QString path = m_dir.filePath(QStringLiteral("gelijk.zdossier"));
        auto app = HostApplication::importJson(example("sample-couple.json"), path);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        auto pen = anv->Get_Pensioen(1);
        anv->setNaam(anv->Naam() + QStringLiteral(" "));   // one real write, so the log exists
        const qint64 before = walSize(path);
        QVERIFY(before > 0);
        anv->setNaam(anv->Naam());
        anv->setGeboorteDatum(anv->GeboorteDatum());
        pen->setSalaris(pen->Salaris());
        pen->setDt_65(pen->Dt_65());
        pen->setUitvoerder(pen->Uitvoerder());
        QCOMPARE(walSize(path), before);
        pen->setSalaris(pen->Salaris() + 1);
        QVERIFY(walSize(path) > before);
    }

    void ageSixtyFiveDateFollowsTheBirthDate()
    {
        QJsonObject doc = example("single.json");
        QJsonArray aanvragers = doc.value(QStringLiteral("Aanvragers")).toArray();
        QJsonObject first = aanvragers.at(0).toObject();
        QJsonArray pens = first.value(QStringLiteral("Pensioenen")).toArray();
        QJsonObject pen = pens.at(0).toObject();
        pen.insert(QStringLiteral("Dt_65"), QStringLiteral("2001-01-01"));   // out of step in the file
        pens[0] = pen;
        first.insert(QStringLiteral("Pensioenen"), pens);
        first.insert(QStringLiteral("GeboorteDatum"), QStringLiteral("1980-02-29"));
        aanvragers[0] = first;
        doc.insert(QStringLiteral("Aanvragers"), aanvragers);

        const QString path = m_dir.filePath(QStringLiteral("65.zdossier"));
        {
            auto app = HostApplication::importJson(doc, path);
            QCOMPARE(app->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Dt_65(), QDate(2045, 2, 1));
        }
        auto app = HostApplication::openFile(path);
        auto anv = app->Get_Dossier()->Get_Aanvrager(1);
        QCOMPARE(anv->Get_Pensioen(1)->Dt_65(), QDate(2045, 2, 1));
        anv->setGeboorteDatum(QDate(1970, 12, 31));
        QCOMPARE(anv->Get_Pensioen(1)->Dt_65(), QDate(2035, 12, 1));
        const qint16 added = anv->AddPension();
        QCOMPARE(anv->Get_Pensioen(added)->Dt_65(), QDate(2035, 12, 1));
        anv->setGeboorteDatum(QDate());
        QCOMPARE(anv->Get_Pensioen(1)->Dt_65(), QDate());
        anv->setGeboorteDatum(QDate(1970, 12, 31));
        app.reset();
        auto again = HostApplication::openFile(path);
        QCOMPARE(again->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(1)->Dt_65(), QDate(2035, 12, 1));
        QCOMPARE(again->Get_Dossier()->Get_Aanvrager(1)->Get_Pensioen(added)->Dt_65(), QDate(2035, 12, 1));
    }

    // A case the user may not change is shown as it is and every change is refused. Root may
    // change any file whatever its mode, so as root the case lies on a tmpfs remounted read-only
    // (which stops root too); otherwise the file is 0444 in a 0555 folder.
    void readOnlyCaseRefusesEveryChangeAndWritesNothing()
    {
        const QString folder = m_dir.filePath(QStringLiteral("alleen-lezen"));
        QVERIFY(QDir().mkpath(folder));
        const QByteArray native = QFile::encodeName(folder);
        const bool root = ::geteuid() == 0;
        if (root && ::mount("tmpfs", native.constData(), "tmpfs", 0, "size=4m") != 0)
            QSKIP("running as root without the right to mount: tst_e2e_trust covers a read-only case as the user nobody");
        const QString path = folder + QStringLiteral("/klant.zdossier");
        HostApplication::importJson(example("sample-couple.json"), path);
        if (root)
            QVERIFY(::mount("tmpfs", native.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=4m") == 0);
        else
            QVERIFY(::chmod(QFile::encodeName(path).constData(), 0444) == 0 && ::chmod(native.constData(), 0555) == 0);
        const QByteArray before = contentOf(path);
        {
            auto app = HostApplication::openFile(path);
            QVERIFY(app->readOnly());
            auto anv = app->Get_Dossier()->Get_Aanvrager(1);
            const QString name = anv->Naam();
            anv->setNaam(name);   // what a screen does on binding: no change, no refusal
            const QString error = errorOf([&] { anv->setNaam(QStringLiteral("Iemand Anders")); });
            QVERIFY2(error.contains(QStringLiteral("alleen-lezen")), qPrintable(error));
            QCOMPARE(anv->Naam(), name);
            QVERIFY(!errorOf([&] { anv->AddPension(); }).isEmpty());
            QVERIFY(app->exportJson() == HostApplication::importJson(example("sample-couple.json"))->exportJson());
        }
        QVERIFY(contentOf(path) == before);
        QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList{QStringLiteral("klant.zdossier")});
        if (root)
            QVERIFY(::umount(native.constData()) == 0);
        else
            ::chmod(native.constData(), 0700);
    }

    void importLeavesNoTemporaryFileAndNeverOverwrites()
    {
        const QString path = m_dir.filePath(QStringLiteral("heel.zdossier"));
        HostApplication::importJson(example("single.json"), path);
        QStringList left = QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden).filter(QStringLiteral("heel"));
        QCOMPARE(left, QStringList{QStringLiteral("heel.zdossier")});
        QVERIFY(errorOf([&] { HostApplication::importJson(example("sample-couple.json"), path); }).contains(QStringLiteral("bestaat al")));
        QCOMPARE(HostApplication::openFile(path)->Get_Dossier()->Get_Aanvrager(1)->Naam(), QStringLiteral("Fatima el Amrani"));

        // What a killed import leaves under its temporary name is cleared by the next one.
        const QString stale = m_dir.filePath(QStringLiteral(".later.zdossier.import"));
        QFile junk(stale);
        QVERIFY(junk.open(QIODevice::WriteOnly));
        junk.write("half geschreven");
        junk.close();
        HostApplication::importJson(example("single.json"), m_dir.filePath(QStringLiteral("later.zdossier")));
        QVERIFY(!QFileInfo::exists(stale));
        QVERIFY(HostApplication::openFile(m_dir.filePath(QStringLiteral("later.zdossier"))));
    }
};

QTEST_GUILESS_MAIN(TstHostTrust)
#include "tst_hosttrust.moc"
