// SPDX-FileCopyrightText: 2026 VandrelPensioen contributors
// SPDX-License-Identifier: Apache-2.0
// Installs the build into a scratch prefix, as `cmake --install --prefix` does for a packager,
// and checks what an integrator finds there: headers only under the package prefix, libraries
// that find each other without LD_LIBRARY_PATH, the Designer plugin where Qt looks, a version
// rule that fits a 0.x release, and a pkg-config file that points at the prefix it lies in.

#include <VandrelPensioen/actionbutton.h>
#include <VandrelPensioen/componentloader.h>
#include <VandrelPensioen/errorrecord.h>
#include <VandrelPensioen/formats.h>
#include <VandrelPensioen/hint.h>
#include <VandrelPensioen/hostapplication.h>
#include <VandrelPensioen/hostcheck.h>
#include <VandrelPensioen/hosterror.h>
#include <VandrelPensioen/hostmodel.h>
#include <VandrelPensioen/messagebox.h>
#include <VandrelPensioen/pensmain.h>
#include <VandrelPensioen/registration.h>
#include <VandrelPensioen/textbox.h>
#include <VandrelPensioen/version.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Run
{
    int status = -1;
    QString output;
};

Run run(const QString &program, const QStringList &arguments, const QProcessEnvironment &env = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(env);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    Run result;
    if (!process.waitForFinished(120000))
        return result;
    result.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.output = QString::fromLocal8Bit(process.readAll());
    return result;
}

} // namespace

class TestPackage : public QObject
{
    Q_OBJECT

    QTemporaryDir m_scratch;
    QString m_prefix;
    QString m_lib;

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_scratch.isValid());
        // A prefix with a space: RUNPATH and pkg-config must not depend on a tidy path.
        m_prefix = m_scratch.filePath(QStringLiteral("opt/vandrel pensioen"));
        m_lib = m_prefix + QLatin1Char('/') + QStringLiteral(VANDREL_INSTALL_LIBDIR);
        const Run install = run(QStringLiteral(VANDREL_CMAKE_COMMAND),
                                {QStringLiteral("--install"), QStringLiteral(VANDREL_BINARY_DIR),
                                 QStringLiteral("--prefix"), m_prefix});
        QVERIFY2(install.status == 0, qPrintable(install.output));
    }

    void prefixedHeadersServeTheBuildTreeToo()
    {
        // The headers above came through the build tree's <VandrelPensioen/...> folder; they are
        // the very files the libraries were built from, so one type seen both ways is one type.
        QCOMPARE(QStringLiteral(VANDRELPENSIOEN_VERSION_STRING), QStringLiteral(VANDREL_PROJECT_VERSION));
        QCOMPARE(VANDRELPENSIOEN_VERSION, VANDRELPENSIOEN_VERSION_CHECK(VANDRELPENSIOEN_VERSION_MAJOR,
                                                                       VANDRELPENSIOEN_VERSION_MINOR,
                                                                       VANDRELPENSIOEN_VERSION_PATCH));
        const auto host = Zarnoveld::HostApplication::createInMemory();
        QVERIFY(host->Get_Dossier() && host->Get_Dossier()->Get_Aanvrager(1));
        QCOMPARE(VandrelControl::Format::amount(12345), QStringLiteral("12.345"));
    }

    void headersAreIncludedWithThePackagePrefixOnly()
    {
        const QDir include(m_prefix + QStringLiteral("/include"));
        for (const char *header : {"pensmain.h", "hostmodel.h", "hostcheck.h", "messagebox.h",
                                   "formats.h", "version.h", "hostapplication.h",
                                   "componentloader.h", "registration.h",
                                   "vandrelpensioen_export.h"})
            QVERIFY2(include.exists(QStringLiteral("VandrelPensioen/") + QLatin1String(header)), header);
        // Nothing flat and no per-library folders next to the prefix: generic names such as
        // formats.h must not land where a host's own headers live.
        const QStringList top = include.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
        QCOMPARE(top, QStringList{QStringLiteral("VandrelPensioen")});
        QFile version(include.filePath(QStringLiteral("VandrelPensioen/version.h")));
        QVERIFY(version.open(QIODevice::ReadOnly));
        QVERIFY(version.readAll().contains("#define VANDRELPENSIOEN_VERSION_STRING \"0."));
    }

    void installedLibrariesFindEachOtherThroughTheirRunpath()
    {
        const QString readelf = QStandardPaths::findExecutable(QStringLiteral("readelf"));
        if (readelf.isEmpty())
            QSKIP("readelf (binutils) is not installed");
        for (const char *library : {"libVandrelPensioen.so", "libVandrelControl.so", "libVandrelApplication.so"}) {
            const Run dynamic = run(readelf, {QStringLiteral("-d"), m_lib + QLatin1Char('/') + QLatin1String(library)});
            QVERIFY2(dynamic.status == 0, qPrintable(dynamic.output));
            QVERIFY2(dynamic.output.contains(QStringLiteral("(RUNPATH)")) && dynamic.output.contains(QStringLiteral("[$ORIGIN]")),
                     qPrintable(QLatin1String(library) + QLatin1Char('\n') + dynamic.output));
        }
        // The installed program starts from the scratch prefix with no library path set at all.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("LD_LIBRARY_PATH"));
        const Run ldd = run(QStringLiteral("ldd"), {m_prefix + QStringLiteral("/bin/zarnoveld")}, env);
        QVERIFY2(ldd.status == 0 && !ldd.output.contains(QStringLiteral("not found")), qPrintable(ldd.output));
        QVERIFY2(ldd.output.contains(m_prefix), qPrintable(ldd.output));
    }

    void designerPluginLiesInQtsPluginFolderUnderThePrefix()
    {
        if (!VANDREL_HAS_DESIGNER_PLUGIN)
            QSKIP("built without the Designer plugin");
        const QDir designer(m_prefix + QLatin1Char('/') + QStringLiteral(VANDREL_QT_PLUGIN_DIR) + QStringLiteral("/designer"));
        QVERIFY2(!designer.entryList({QStringLiteral("*.so")}, QDir::Files).isEmpty(), qPrintable(designer.path()));
    }

    void aNewerMinorVersionIsNotTakenForCompatible()
    {
        const QString versionFile = m_lib + QStringLiteral("/cmake/VandrelPensioen/VandrelPensioenConfigVersion.cmake");
        QVERIFY(QFile::exists(versionFile));
        const auto compatible = [&](int major, int minor) {
            QTemporaryDir dir;
            const QString script = dir.filePath(QStringLiteral("ask.cmake"));
            QFile f(script);
            f.open(QIODevice::WriteOnly);
            f.write(QStringLiteral("set(PACKAGE_FIND_NAME VandrelPensioen)\n"
                                   "set(PACKAGE_FIND_VERSION %1.%2)\n"
                                   "set(PACKAGE_FIND_VERSION_MAJOR %1)\n"
                                   "set(PACKAGE_FIND_VERSION_MINOR %2)\n"
                                   "set(PACKAGE_FIND_VERSION_PATCH 0)\n"
                                   "set(PACKAGE_FIND_VERSION_COUNT 2)\n"
                                   "set(CMAKE_SIZEOF_VOID_P 8)\n"
                                   "include(\"%3\")\n"
                                   "message(\"compatible=${PACKAGE_VERSION_COMPATIBLE}\")\n")
                        .arg(major).arg(minor).arg(versionFile).toUtf8());
            f.close();
            const Run r = run(QStringLiteral(VANDREL_CMAKE_COMMAND), {QStringLiteral("-P"), script});
            return r.output.contains(QStringLiteral("compatible=TRUE"));
        };
        QVERIFY(compatible(0, 1));
        QVERIFY(!compatible(0, 0));   // a host written for 0.0 may use what 0.1 changed
        QVERIFY(!compatible(0, 2));
        QVERIFY(!compatible(1, 0));
    }

    void pkgConfigPointsIntoThePrefixItLiesIn()
    {
        const QString pkgConfig = QStandardPaths::findExecutable(QStringLiteral("pkg-config"));
        if (pkgConfig.isEmpty())
            QSKIP("pkg-config is not installed");
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("PKG_CONFIG_PATH"), m_lib + QStringLiteral("/pkgconfig"));
        const Run flags = run(pkgConfig, {QStringLiteral("--cflags"), QStringLiteral("--libs"),
                                          QStringLiteral("vandrelpensioen")}, env);
        QVERIFY2(flags.status == 0, qPrintable(flags.output));
        QVERIFY2(flags.output.contains(QStringLiteral("-lVandrelPensioen")), qPrintable(flags.output));
        // The file finds the prefix from its own place; pkg-config escapes the space in it.
        QString escaped = flags.output.trimmed();
        escaped.replace(QStringLiteral("\\ "), QStringLiteral("\x01"));
        QStringList includes;
        for (QString flag : escaped.split(QLatin1Char(' '), Qt::SkipEmptyParts))
            if (flag.startsWith(QStringLiteral("-I")))
                includes << QDir::cleanPath(flag.mid(2).replace(QLatin1Char('\x01'), QLatin1Char(' ')));
        QVERIFY2(includes.contains(QDir::cleanPath(m_prefix + QStringLiteral("/include"))), qPrintable(flags.output));
    }
};

QTEST_MAIN(TestPackage)
#include "tst_package.moc"
